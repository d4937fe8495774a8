// Clicks that have to land where they are meant to, wherever the window is.

export function expectClicksToLand(app, middle = /^30,20$/) {
    const said = app.find({ name: 'said' });
    const pad = app.find({ name: 'pad' });
    pad.click();
    expect(said).toHaveText(middle);
    for (const [x, y] of [[0, 0], [1, 1], [2, 3], [3, 2], [60, 40]]) {
        pad.click({ x: x, y: y });
        expect(said).toHaveText(x + ',' + y);
    }
    app.find({ name: 'inner' }).click();
    expect(said).toHaveText('inner');
    app.find({ name: 'wide' }).check();
    const combo = app.find({ type: 'QComboBox' });
    combo.select('two');
    expect(combo).toHaveText('two');
}
