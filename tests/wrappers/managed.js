// Windows that a window manager puts into frames, moves, raises and lowers.

import { expectClicksToLand } from './landing.js';

let app, window, pad;

beforeEach(() => {
    app = launch();
    window = app.find({ name: 'window' });
    pad = app.find({ name: 'pad' });
    waitUntil(() => frameHeight() > 0);
});

function frameHeight() {
    return window.get('geometry').y - window.get('frameGeometry').y;
}

function named(name) {
    return app.find({ name: name });
}

function obstacle(target) {
    let seen = '';
    try {
        expect(target, { timeout: 0 }).toBeReady();
    } catch (error) {
        seen = error.message;
    }
    return seen;
}

test('the frame is no part of the window', () => {
    expectClicksToLand(app);
});

test('moved by its frame', () => {
    pad.waitUntilReady();
    const before = pad.bounds();
    // A busy window manager finds the button up again when it looks.
    waitUntil(() => {
        pad.dragTo(named('inner'), { x: 150, y: -Math.round(frameHeight() / 2) });
        return pad.bounds().y !== before.y;
    });
    expectClicksToLand(app);
});

test('a window behind another one', () => {
    app.find({ type: 'QTabBar' }).item('Drags').click();
    named('elsewhere').click();
    expect(named('away')).toHaveProperty('isActiveWindow', true);
    pad.click();
    expect(named('said')).toHaveText('30,20');
    expect(window).toHaveProperty('isActiveWindow', true);
    named('away').set('geometry', window.get('geometry'));
    named('away').call('raise');
    waitUntil(() => obstacle(pad).includes("is covered at (50, 50) by the window 'Away'"));
});

test('maximised and put back', () => {
    window.call('showMaximized');
    waitUntil(() => pad.bounds().x < 5);
    expectClicksToLand(app);
    window.call('showNormal');
    waitUntil(() => pad.bounds().x > 5);
    expectClicksToLand(app);
});

test('minimised by the window manager', () => {
    // By the first button in its frame.
    pad.click({ x: 318, y: -Math.round(frameHeight() / 2) });
    waitUntil(() => obstacle(pad).includes("is not visible: its window 'Obstacles' is minimised"));
});
