// What a person does with controls, done from a script.

let app, said;

beforeEach(() => {
    app = launch();
    said = app.find({ name: 'said' });
});

test('combo box', () => {
    const combo = app.find({ type: 'QComboBox' });
    combo.select('entry 77');
    expect(combo).toHaveText('entry 77');
    combo.select('entry 2');
    expect(combo).toHaveProperty('currentIndex', 2);
});

test('rows out of sight', () => {
    const list = app.find({ type: 'QListWidget' });
    list.select('row 93');
    expect(said).toHaveText('row 93');
    list.item(3, 0).click();
    expect(said).toHaveText('row 3');
    expect(list.item('row 3')).toHaveProperty('selected', true);
    list.press('<Down>');
    expect(said).toHaveText('row 4');
});

test('tabs', () => {
    app.find({ type: 'QTabBar' }).item('Second').click();
    expect(app.find({ text: 'second page' })).toBeVisible();
    expect(said).not.toBeVisible();
});

test('marks', () => {
    const group = app.find({ type: 'QGroupBox' });
    group.uncheck();
    expect(group).not.toBeChecked();
    group.check();
    group.check();
    expect(group).toBeChecked();
    app.find({ type: 'QRadioButton' }).check();
    expect(app.find({ type: 'QRadioButton' })).toBeChecked();
});

test('menus in menus', () => {
    app.menu('Edit', 'Insert', 'Date');
    expect(said).toHaveText('date');
    app.menu('Edit', 'Insert', 'Time');
    expect(said).toHaveText('time');
});

test('context menu', () => {
    said.rightClick();
    app.menu('Copy');
    expect(said).toHaveText('copied');
});

test('pointer', () => {
    const pad = app.find({ name: 'pad' });
    pad.click({ button: 'middle', modifiers: ['Ctrl', 'Shift'] });
    expect(said).toHaveText('4 with 6');
    pad.doubleClick();
    expect(said).toHaveText('double');
    pad.dragTo(said);
    expect(said).toHaveText('to said');
    const slider = app.find({ type: 'QSlider' });
    slider.wheel(-2);
    expect(slider).toHaveProperty('value', 0);
    slider.wheel(2);
    expect(slider.get('value')).toBeGreaterThan(0);
});

test('clipboard', () => {
    app.setClipboard('from outside');
    expect(app.clipboard()).toBe('from outside');
});
