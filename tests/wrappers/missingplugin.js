// Programs under X that input cannot reach: they are told of, and live.

function expectRefusal(environment, reason) {
    const app = launch({ env: environment });
    const button = app.find({ name: 'inner' });
    let seen = '';
    try {
        button.click();
    } catch (error) {
        seen = error.message;
    }
    expect(seen).toContain(reason);
    button.call('click');
    expect(app.find({ name: 'said' })).toHaveText('inner');
}

test('no library', () => expectRefusal({ VORKEL_PREFIX: '/nowhere' }, "Platform plugin 'xlib' library not found"));

test('no entry point', () => {
    expectRefusal({ VORKEL_PREFIX: 'hollow' }, "The 'hollow/lib/libvorkelxlib.so' library missing an entry point symbol");
});

test('no library at all', () => {
    expectRefusal({ VORKEL_PREFIX: 'broken' }, "Loading of the 'broken/lib/libvorkelxlib.so' library failed: ");
});

test('no display', () => {
    expectRefusal({ OBSTACLES_DISPLAY: ':nowhere' }, "Cannot connect to the X display ':nowhere'");
});
