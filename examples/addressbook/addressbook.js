// What a tester would write for the address book:
//   vorkel test --xvfb examples/addressbook/addressbook.js -- build/release/bin/vorkel-example

let app, form, contacts;

beforeEach(() => {
    app = launch();
    form = app.find({ type: 'ContactForm' });
    contacts = app.find({ name: 'contacts', type: 'QTableWidget' });
});

test('adds a contact', () => {
    expect(contacts).toHaveProperty('rowCount', 2);

    form.find({ name: 'nameEdit' }).fill('Linus');
    form.find({ name: 'ageSpin' }).fill('54');
    form.find({ text: 'Favourite' }).check();
    form.find({ text: 'Add' }).click();

    expect(contacts).toHaveProperty('rowCount', 3);
    expect(contacts.item(2, 0)).toHaveText('Linus');
    expect(contacts.item(2, 1)).toHaveText('54');
    expect(contacts.item(2, 2)).toHaveText('yes');
    expect(form.find({ name: 'nameEdit' })).toHaveText('');
    expect(form.find({ text: 'Favourite' })).not.toBeChecked();
    app.find({ type: 'MainWindow' }).screenshot('addressbook.png');
    log('The form is filled in and the contact is there: see addressbook.png');
});

test('takes a name before it adds', () => {
    const add = form.find({ text: 'Add' });
    expect(add).not.toBeEnabled();
    form.find({ name: 'nameEdit' }).type('Grace Hopper');
    expect(add).toBeEnabled();
    form.find({ name: 'nameEdit' }).press('<Ctrl+a><Delete>');
    expect(add).not.toBeEnabled();
});

test('removes the contact that is chosen', () => {
    contacts.item('Ada').click();
    app.menu('File', 'Remove contact');
    expect(contacts).toHaveProperty('rowCount', 1);
    expect(contacts.item(0, 0)).toHaveText('Grace');
});

test('tells about itself', () => {
    app.menu('Help', 'About');
    const box = app.find({ type: 'QMessageBox' });
    expect(box).toHaveText('A small program to be tested.');
    box.find({ type: 'QPushButton', text: 'OK' }).click();
    box.waitUntilGone();
});

test('ends when it is told to', () => {
    app.menu('File', 'Quit');
    expect(app).not.toBeRunning();
});
