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

test('display that the environment does not name', () => {
    const app = launch({ env: { OBSTACLES_DISPLAY: ':nowhere' } });
    app.find({ name: 'inner' }).click();
    expect(app.find({ name: 'said' })).toHaveText('inner');
});
