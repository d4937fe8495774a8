// A large program that was not made for this: Qt's own Designer.

test('makes a form from the first dialog', () => {
    const designer = launch('/usr/lib/qt6/bin/designer');
    const dialog = designer.find({ type: 'NewForm' });

    dialog.find({ name: 'treeWidget' }).item('Widget').click();
    dialog.find({ type: 'QPushButton', text: 'Create' }).click();
    dialog.waitUntilGone();

    const form = designer.find({ container: { name: 'formContainer' }, type: 'QDesignerWidget' });
    form.waitFor();
    expect(form).toHaveProperty('objectName', 'Form');
    expect(designer.find({ type: 'QDesignerFormWindow' })).toHaveProperty('windowTitle', /^Form/);
});
