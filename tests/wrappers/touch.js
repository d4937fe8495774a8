// A touch screen where the platform has none.

test('two fingers', () => {
    const app = launch();
    const said = app.find({ name: 'said' });
    const pad = app.find({ name: 'pad' });
    pad.waitUntilReady();
    const { x, y } = pad.bounds();
    const touch = (type, finger, dx, dy) => app.remote('rawTouchEvent', type, x + dx, y + dy, finger, 0, 0);
    expect(touch(0, 1, 10, 12)).toBe(true);
    expect(said).toHaveText('touch of 1 at 10,12');
    expect(touch(0, 2, 30, 20)).toBe(true);
    expect(touch(2, 2, 30, 20)).toBe(true);
    expect(touch(2, 1, 11, 13)).toBe(true);
    expect(said).toHaveText('end of 1 at 11,13');
    expect(touch(2, 1, 0, 0)).toBe('Finger 1 is not down');
});
