// What keeps a person from using a control, and where clicks land.

import { expectClicksToLand } from './landing.js';

let app, said, pad, window;

function start(options = {}) {
    app = launch(options);
    window = app.find({ name: 'window' });
    said = window.find({ name: 'said' });
    pad = window.find({ name: 'pad' });
}

function named(name) {
    return app.find({ name: name });
}

function open(tab) {
    app.find({ type: 'QTabBar' }).item(tab).click();
}

// What is said of an object that a person cannot use.
function obstacle(target) {
    try {
        expect(target, { timeout: 0 }).toBeReady();
    } catch (error) {
        return error.message.replace(/^[^]*?not ready: (.*)[^]*$/, '$1');
    }
    return '';
}

// Windows take their time to follow.
function expectObstacle(target, reason) {
    const pattern = new RegExp('^it ' + reason + '$');
    let seen;
    try {
        waitUntil(() => pattern.test(seen = obstacle(target)));
    } catch (late) {
        expect(seen).toMatch(pattern);
    }
}

beforeEach(() => start());

test('hidden parent', () => {
    named('panel').set('visible', false);
    expectObstacle(named('inner'), "is not visible: 'panel' \\(QWidget\\) is hidden");
    open('Moving');
    expectObstacle(named('wide'), 'is not visible: a QWidget is hidden');
});

test('disabled parent', () => {
    named('panel').set('enabled', false);
    expectObstacle(named('inner'), "is disabled, as is 'panel' \\(QWidget\\)");
    named('wide').set('enabled', false);
    expectObstacle(named('wide'), 'is disabled');
});

test('covered by a widget', () => {
    named('cover').set('visible', true);
    expectObstacle(named('inner'), "is covered at \\(\\d+, \\d+\\) by 'cover' \\(QLabel\\)");
    named('cover').set('visible', false);
    named('inner').click();
    expect(said).toHaveText('inner');
});

test('blocked by a dialog', () => {
    open('Dialogs');
    named('ask').click();
    expectObstacle(named('popup'), "is blocked by the modal window 'Sure'");
    app.find({ text: 'Yes' }).click();
    expect(said).toHaveText('yes');
});

test('dialog in a dialog', () => {
    open('Dialogs');
    named('nested').click();
    named('deeper').click();
    expectObstacle(named('deeper'), "is blocked by the modal window 'Inner'");
    expectObstacle(named('ask'), "is blocked by the modal window '(Inner|Outer)'");
    app.find({ text: 'OK' }).click();
    expect(said).toHaveText('both closed');
});

test('file dialog', () => {
    open('Dialogs');
    named('file').click();
    named('fileNameEdit').fill('/nowhere.txt');
    app.find({ type: 'QFileDialog' }).find({ text: 'Save' }).click();
    expect(said).toHaveText('chose /nowhere.txt');
});

test('open pop-up', () => {
    open('Dialogs');
    named('popup').click();
    expectObstacle(named('ask'), "is blocked by the open 'menu' \\(QMenu\\)");
    app.menu('entry');
    expect(said).toHaveText('entry');
    named('ask').waitUntilReady();
});

test('window out of sight', () => {
    window.call('showMinimized');
    expectObstacle(pad, "is not visible: its window 'Obstacles' is minimised");
    // A window manager that has not minimised it yet does so after this.
    waitUntil(() => {
        window.call('showNormal');
        return obstacle(pad) === '';
    });
    window.set('visible', false);
    expectObstacle(pad, "is not visible: 'window' \\(QMainWindow\\) is hidden");
    window.set('visible', true);
    window.set('pos', { x: -3000, y: 0 });
    expectObstacle(pad, 'has no part in sight: it covers 61x41 at \\(-\\d+, \\d+\\)');
});

test('moving', () => {
    open('Moving');
    named('start').click();
    expectObstacle(named('runner'), 'is moving: it was 80x30 at \\(\\d+, \\d+\\) and is 80x30 at \\(\\d+, \\d+\\) now');
    named('runner').click();
    expect(said).toHaveText('at rest');
});

test('out of sight in two scroll areas', () => {
    open('Scroll');
    named('deep').click();
    expect(said).toHaveText('deep');
});

test('gone', () => {
    open('Moving');
    const runner = named('animation').get('targetObject');
    runner.waitUntilReady();
    runner.call('deleteLater');
    runner.waitUntilGone();
    expect(obstacle(runner)).toContain("ready-state for object of type 'Dead'");
});

for (const factor of ['1', '1.25', '1.5', '1.75', '2']) {
    test('clicks land at scale ' + factor, () => {
        start({ env: { QT_SCALE_FACTOR: factor } });
        expectClicksToLand(app);
    });
}

test('clicks land in a frameless window', () => {
    start({ env: { OBSTACLES_FRAMELESS: '1' } });
    expectClicksToLand(app);
});

test('clicks land in what is left on the screen', () => {
    window.set('geometry', { x: -40, y: 50, width: 360, height: 400 });
    waitUntil(() => pad.bounds().x < -30);
    const left = 61 + pad.bounds().x;
    pad.click();
    expect(said).toHaveText((60 - Math.floor(left / 2)) + ',20');
});

test('two clicks are no double click', () => {
    pad.click();
    pad.click();
    expect(pad).toHaveProperty('toolTip', '11');
    pad.doubleClick();
    expect(pad).toHaveProperty('toolTip', '1112');
    pad.click();
    expect(pad).toHaveProperty('toolTip', '11121');
});

test('wheel', () => {
    pad.wheel(1);
    expect(said).toHaveText('wheel 120 with 0');
    pad.wheel(-1);
    expect(said).toHaveText('wheel -120 with 0');
});

test('keys', () => {
    const edit = app.find({ type: 'QLineEdit' });
    edit.type('aB<ß');
    expect(edit).toHaveText('aB<ß');
    edit.press('<Shift+Home>');
    expect(edit).toHaveProperty('selectedText', 'aB<ß');
    edit.press('<Ctrl+c>');
    expect(app.clipboard()).toBe('aB<ß');
    app.keys('<Ctrl+Shift+d>');
    expect(said).toHaveText('shortcut');
    edit.type('x');
    expect(edit).toHaveText('x');
});

test('items', () => {
    open('Items');
    const tree = app.find({ type: 'QTreeWidget' });
    const table = app.find({ type: 'QTableWidget' });
    tree.item('leaf 33').click();
    expect(said).toHaveText('tree leaf 33');
    tree.item('root').doubleClick();
    expect(said).toHaveText('twice root');
    table.item(55, 28).click();
    expect(said).toHaveText('cell 55/28');
    table.item(0, 0).click();
    expect(said).toHaveText('cell 0/0');
    table.find({ type: 'QHeaderView', occurrence: 2 }).item(25).click();
    expect(said).toHaveText('head 25');
});

for (const basket of ['basket', 'away', 'asking']) {
    test('dragged into the ' + basket, () => {
        open('Drags');
        if (basket === 'away') {
            named('elsewhere').click();
            named('away').waitUntilReady();
        }
        for (const fruit of ['pear', 'apple']) {
            named('fruits').item(fruit).dragTo(named(basket));
            if (basket === 'asking')
                app.find({ text: 'Yes' }).click();
            expect(said).toHaveText('dropped ' + fruit);
        }
        expect(named(basket)).toHaveProperty('count', 2);
        pad.click();
        expect(said).toHaveText('30,20');
    });
}

test('tabs out of sight', () => {
    for (const tab of ['Far 8', 'Far 3', 'Plain']) {
        open(tab);
        expect(app.find({ type: 'QTabBar' }).item(tab)).toHaveProperty('selected', true);
    }
});
