// Clicks that have to land where they are meant to, wherever the window is.

// The pad is pressed in the middle, or in that of the part which the larger part of it is on, and may be missed by
// `slack` pixels.
export function expectClicksToLand(app, { middle = [30, 20], slack = 0 } = {}) {
    const said = app.find({ name: 'said' });
    const pad = app.find({ name: 'pad' });
    const expectPressed = (place) => {
        const near = said.text().split(',').map((part, axis) => Math.abs(part - place[axis]) <= slack);
        expect(near, said.text()).toEqual([true, true]);
    };
    pad.click();
    expectPressed(middle);
    for (const [x, y] of [[0, 0], [1, 1], [2, 3], [3, 2], [60, 40]]) {
        pad.click({ x: x, y: y });
        expectPressed([x, y]);
    }
    app.find({ name: 'inner' }).click();
    expect(said).toHaveText('inner');
    app.find({ name: 'wide' }).check();
    const combo = app.find({ type: 'QComboBox' });
    combo.select('two');
    expect(combo).toHaveText('two');
}
