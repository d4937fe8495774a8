// Two monitors of one X server, 800 and 1200 pixels wide, which Qt may scale differently.

import { expectClicksToLand } from './landing.js';

const single = {};
const scaled = { QT_SCALE_FACTOR: '1.5' };
const scaledRight = { QT_SCREEN_SCALE_FACTORS: '1;1.5' };
const scaledLeft = { QT_SCREEN_SCALE_FACTORS: '1.5;1' };

function start(environment, x, padX) {
    const app = launch({ env: environment });
    app.find({ name: 'window' }).set('pos', { x: x, y: 60 });
    app.find({ name: 'pad' }).set('pos', { x: padX, y: 0 });
    return app;
}

// What is wholly on a monitor is pressed in the middle; what crosses the border, in that of its larger part.
// There Qt rounds where the window starts.
for (const [what, environment, x, padX, middle] of [
    ['right', single, 900, 0],
    ['across, pad across', single, 780, 0, [40, 20]],
    ['across, pad right', single, 600, 250],
    ['across, pad across on the left', single, 470, 290, [19, 20]],
    ['scaled, right', scaled, 900, 170],
    ['scaled, across, pad across', scaled, 780, 0, [40, 20]],
    ['scaled, across, pad right', scaled, 780, 170],
    ['scaled, in the gap of the coordinates', scaled, 410, 0],
    ['right scaled, right', scaledRight, 900, 170],
    ['right scaled, across, pad across', scaledRight, 780, 0, [40, 20]],
    ['right scaled, across, pad right', scaledRight, 600, 290],
    ['left scaled, left', scaledLeft, 50, 170],
    ['left scaled, right', scaledLeft, 900, 170],
    ['left scaled, across, pad across', scaledLeft, 780, 0, [40, 20]],
    ['left scaled, across, pad left', scaledLeft, 600, 0],
]) {
    test('clicks land: ' + what, () => {
        const isAcross = what.includes('scaled, ') && !/, (left|right)$/.test(what);
        expectClicksToLand(start(environment, x, padX), { middle: middle, slack: isAcross ? 1 : 0 });
    });
}

for (const [what, environment, x, onDesktop, onMonitor] of [
    ['left', single, 100, '100,60 61x41 of 2000x800', '100,60 61x41 of 800x800'],
    ['right', single, 900, '900,60 61x41 of 2000x800', '100,60 61x41 of 1200x800'],
    ['right scaled', scaledRight, 900, '950,90 92x62 of 2000x800', '150,90 92x62 of 1200x800'],
]) {
    test('pictures: ' + what, () => {
        const app = start(environment, x, 0);
        const edit = app.find({ type: 'QLineEdit' });
        const monitor = app.call('_vorkel_screen_geometry_get', what === 'left' ? 0 : 1);
        for (const [pictured, place] of [[app, onDesktop], [monitor, onMonitor], [app.find({ name: 'window' }), /^0,0 /]]) {
            pictured.screenshot('pictured.png');
            edit.fill('pictured.png');
            edit.press('<Return>');
            expect(app.find({ name: 'said' })).toHaveText(place);
        }
    });
}
