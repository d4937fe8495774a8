// Windows that a window manager puts into frames, moves, raises and lowers.

import { expectClicksToLand } from './landing.js';

let app, window, pad;

beforeEach(() => {
    app = launch();
    window = app.find({ name: 'window' });
    pad = app.find({ name: 'pad' });
});

function named(name) {
    return app.find({ name: name });
}

function openAway() {
    app.find({ type: 'QTabBar' }).item('Drags').click();
    named('elsewhere').click();
    named('away').waitUntilReady();
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
    waitUntil(() => window.get('frameGeometry').y < window.get('geometry').y);
    expectClicksToLand(app);
});

test('moved by its frame', () => {
    pad.waitUntilReady();
    const before = pad.bounds();
    const frame = window.get('geometry').y - window.get('frameGeometry').y;
    pad.dragTo(named('popup'), { x: 150, y: -Math.round(frame / 2) });
    log(JSON.stringify(before), JSON.stringify(pad.bounds()));
    waitUntil(() => pad.bounds().x !== before.x);
    expectClicksToLand(app);
});

test('a window behind another one', () => {
    openAway();
    expect(named('away')).toHaveProperty('isActiveWindow', true);
    pad.click();
    expect(named('said')).toHaveText('30,20');
    expect(window).toHaveProperty('isActiveWindow', true);
    named('away').set('geometry', window.get('geometry'));
    named('away').call('raise');
    waitUntil(() => obstacle(pad).includes("is covered at (50, 50) by the window 'Away'"), { message: obstacle(pad) });
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
    pad.click();
    app.keys('<Alt+Escape>');
    log(obstacle(pad));
    app.keys('<Alt+Space>');
    app.keys('n');
    waitUntil(() => obstacle(pad).includes("is not visible: its window 'Obstacles' is minimised"), { message: obstacle(pad) });
});
