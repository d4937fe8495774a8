#include "objectmodel/class.h"
#include "objectmodel/inspector.h"
#include "objectmodel/objectname.h"
#include "objectmodel/property.h"
#include "qtnames.h"
#include "qtobjects.h"
#include "qtsetup.h"

#include <QtTest>
#include <QtWidgets>

#include <memory>

using namespace Qt::StringLiterals;
using Vorkel::Inspector;
using Vorkel::Object;
using Vorkel::SharedPtr;

namespace {

/// Holds what a window has to show.
using Build = void (*)(QMainWindow *window);

template <typename Widget>
Widget *add(QWidget *parent, const QString &text = {}, const QString &name = {})
{
    auto *widget = new Widget(parent);
    if (!text.isEmpty())
        widget->setProperty(qobject_cast<QGroupBox *>(widget) ? "title" : "text", text);
    widget->setObjectName(name);
    return widget;
}

void manyAlike(QMainWindow *window)
{
    for (int i = 0; i < 40; ++i)
        add<QPushButton>(window, i % 3 == 0 ? u"Again"_s : QString());
    for (const QString &title : { u"Home"_s, u"Work"_s }) {
        auto *box = add<QGroupBox>(window, title);
        add<QPushButton>(box, u"Edit"_s);
        add<QLineEdit>(box);
        add<QPushButton>(box, u"Again"_s);
        add<QPushButton>(box, u"Again"_s);
    }
    add<QPushButton>(window, u"Again"_s, u"twice"_s);
    add<QPushButton>(window, u"Other"_s, u"twice"_s);
}

void hardTexts(QMainWindow *window)
{
    for (const QString &text :
         { u"it's"_s, u"back\\slash"_s, u"{braces} ='x'"_s, u"two\nlines"_s, u"&&"_s, u"A&&B"_s, u"&AB"_s,
           u":colon"_s, u"\u00e9\U0001F600"_s, u" "_s, u"<b>rich</b>"_s, u"*?[a]"_s })
        add<QLabel>(window, text);
    add<QLabel>(window, QString(500, u'x'));
    add<QLabel>(window, {}, u"it's {named}.'\\"_s);
}

void labelled(QMainWindow *window)
{
    auto *form = new QFormLayout(add<QWidget>(window));
    form->addRow(u"&First"_s, new QLineEdit);
    form->addRow(u"&Second"_s, new QLineEdit);
    form->addRow(u"&Second"_s, new QComboBox);
    auto *hinted = add<QLineEdit>(window);
    hinted->setPlaceholderText(u"Search"_s);
}

void menus(QMainWindow *window)
{
    for (const QString &title : { u"&File"_s, u"&Edit"_s }) {
        QMenu *menu = window->menuBar()->addMenu(title);
        menu->addAction(u"&Open\tCtrl+O"_s);
        menu->addSeparator();
        menu->addAction(u"Open"_s);
    }
    QToolBar *bar = window->addToolBar(u"Tools"_s);
    bar->addAction(u"Run"_s);
    static QAction lonely(u"Lonely"_s);
    bar->addAction(&lonely);
}

void items(QMainWindow *window)
{
    auto *splitter = new QSplitter;
    window->setCentralWidget(splitter);
    auto *list = new QListWidget(splitter);
    list->addItems({ u"one"_s, u"two"_s, u"two"_s, QString() });
    auto *tree = new QTreeWidget(splitter);
    auto *branch = new QTreeWidgetItem(tree, { u"branch"_s });
    new QTreeWidgetItem(branch, { u"leaf"_s });
    auto *other = new QTreeWidgetItem(tree, { u"other"_s });
    new QTreeWidgetItem(other, { u"leaf"_s });
    tree->expandAll();
    auto *table = new QTableWidget(3, 2, splitter);
    table->setHorizontalHeaderLabels({ u"A"_s, u"B"_s });
    table->setItem(1, 1, new QTableWidgetItem(u"cell"_s));
    auto *tabs = new QTabWidget(splitter);
    for (const QString &title : { u"&General"_s, u"More"_s, u"More"_s })
        tabs->addTab(add<QPushButton>(nullptr, u"On a page"_s), title);
}

void dialogs(QMainWindow *window)
{
    for (int i = 0; i < 2; ++i) {
        auto *dialog = new QDialog(window);
        dialog->setWindowTitle(i == 0 ? u"Options"_s : u"Options[*]"_s);
        add<QPushButton>(dialog, u"OK"_s);
        if (i == 1)
            dialog->show();
    }
    add<QPushButton>(window, u"OK"_s);
}

int checkAll(const SharedPtr<Object> &object)
{
    int count = 0;
    const QString name = object->qualifiedName();
    const SharedPtr<Object> found = Inspector::self()->findObject(name);
    if (!found || !found->sameAs(object)) {
        qWarning().noquote() << object->className() << object->name() << "is not found by" << name << "but"
                             << (found ? found->qualifiedName() : Inspector::self()->lastError());
        return -100000;
    }
    for (const SharedPtr<Object> &child : object->children())
        count += checkAll(child);
    return count + 1;
}

} // namespace

class tst_qtnames : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { Vorkel::setUpQtObjectModel(); }
    void init()
    {
        m_window = std::make_unique<QMainWindow>();
        m_window->resize(800, 600);
    }
    void cleanup() { m_window.reset(); }
    void findsWhatItNames_data();
    void findsWhatItNames();
    void choosesWhatLasts_data();
    void choosesWhatLasts();
    void explainsFailures_data();
    void explainsFailures();
    void keepsUpWithChanges();

private:
    std::unique_ptr<QMainWindow> m_window;
};

void tst_qtnames::findsWhatItNames_data()
{
    QTest::addColumn<Build>("build");
    QTest::addColumn<int>("least");
    // clang-format off
    QTest::newRow("many alike") << Build(manyAlike) << 50;
    QTest::newRow("hard texts") << Build(hardTexts) << 14;
    QTest::newRow("labelled")   << Build(labelled)  << 8;
    QTest::newRow("menus")      << Build(menus)     << 15;
    QTest::newRow("items")      << Build(items)     << 40;
    QTest::newRow("dialogs")    << Build(dialogs)   << 6;
    // clang-format on
}

// Every object, what is hidden as well, is found by the name that was made for it.
void tst_qtnames::findsWhatItNames()
{
    QFETCH(Build, build);
    QFETCH(int, least);
    build(m_window.get());
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    // Another window of the same kind, which must not be mistaken for the first.
    QMainWindow hidden;
    build(&hidden);
    for (int round = 0; round < 2; ++round) {
        int count = 0;
        for (const SharedPtr<Object> &object : Inspector::self()->objects())
            count += checkAll(object);
        QVERIFY2(count >= 2 * least, qPrintable(QString::number(count)));
        hidden.show();
    }
}

void tst_qtnames::choosesWhatLasts_data()
{
    QTest::addColumn<Build>("build");
    QTest::addColumn<QString>("name");
    const auto row = [](const char *tag, Build build, const QString &name) {
        QTest::newRow(tag) << build << name;
    };
    // clang-format off
    row("label",          labelled,
        u"{buddy={text='First' type='QLabel' window={type='QMainWindow' windowTitle='Main'}} type='QLineEdit'}"_s);
    row("hint",           labelled,
        u"{placeholderText='Search' type='QLineEdit' window={type='QMainWindow' windowTitle='Main'}}"_s);
    row("container",      manyAlike,
        u"{container={title='Work' type='QGroupBox' window={type='QMainWindow' windowTitle='Main'}} text='Edit' type='QPushButton'}"_s);
    row("menu",           menus,
        u"{container={title='Edit' type='QMenu' window={type='QMainWindow' windowTitle='Main'}} occurrence='2' text='Open' type='QAction'}"_s);
    row("tab",            items,
        u"{container={name='qt_tabwidget_tabbar' type='QTabBar' window={type='QMainWindow' windowTitle='Main'}} text='General' type='TabItem'}"_s);
    // clang-format on
}

void tst_qtnames::choosesWhatLasts()
{
    QFETCH(Build, build);
    QFETCH(QString, name);
    m_window->setWindowTitle(u"Main"_s);
    build(m_window.get());
    m_window->show();
    const SharedPtr<Object> found = Inspector::self()->findObject(name);
    QVERIFY2(found, qPrintable(Inspector::self()->lastError()));
    QCOMPARE(found->qualifiedName(),
             Vorkel::ObjectName(Vorkel::parseNameByProperties(name, nullptr)).qualifiedName());
}

void tst_qtnames::explainsFailures_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    // clang-format off
    QTest::newRow("near miss") << u"{type='QPushButton' text='Run' enabled='false'}"_s
                               << u". Could not match properties:\n    enabled for object name: '{text='Run' type='QPushButton' window={type='QMainWindow' windowTitle='Main'}}'"_s;
    QTest::newRow("too few")   << u"{type='QPushButton' text='Run' occurrence='2'}"_s
                               << u". Could not match properties:\n    occurrence for object name: '{text='Run' type='QPushButton' window={type='QMainWindow' windowTitle='Main'}}'"_s;
    QTest::newRow("no window") << u"{type='QPushButton' text='Run' window={type='QDialog'}}"_s
                               << u": nothing is its window {type='QDialog'} Could not match properties:\n    window for object name: '{text='Run' type='QPushButton' window={type='QMainWindow' windowTitle='Main'}}'"_s;
    QTest::newRow("item")      << u"{type='TabItem' text='Run'}"_s
                               << u": the name of an item has to say what its container is"_s;
    QTest::newRow("nothing")   << u"{type='QNothing'}"_s << u"."_s;
    // clang-format on
    const QString deep = u"{type='QPushButton' window="_s;
    QTest::newRow("deep") << deep.repeated(2000) + u"{type='QDialog'}"_s + u"}"_s.repeated(2000) << QString();
    const QString deepItem = u"{type='TabItem' container="_s;
    QTest::newRow("deep item") << deepItem.repeated(2000) + u"{type='QTabBar'}"_s + u"}"_s.repeated(2000)
                               << QString();
}

void tst_qtnames::explainsFailures()
{
    QFETCH(QString, name);
    QFETCH(QString, reason);
    m_window->setWindowTitle(u"Main"_s);
    add<QPushButton>(m_window.get(), u"Run"_s);
    m_window->show();
    QVERIFY(!Inspector::self()->findObject(name));
    const QString error = Inspector::self()->lastError();
    if (!reason.isEmpty())
        QCOMPARE(error, u"Object '%1' not found"_s.arg(name) + reason);
    QVERIFY(!error.isEmpty());
}

// A name is true when it is made, whatever has happened since the one before it.
void tst_qtnames::keepsUpWithChanges()
{
    auto *button = add<QPushButton>(m_window.get(), u"Before"_s);
    m_window->show();
    const auto nameOf = [](QObject *object) { return Vorkel::QtNames::realName(object); };
    QVERIFY(nameOf(button).contains(u"Before"_s));
    // As the runner changes it, without an event.
    const SharedPtr<Object> object = Vorkel::QtObjects::self()->wrap(button);
    const Vorkel::Property *text = object->objectClass()->property(u"text"_s);
    QVERIFY(text->set(object, Inspector::self()->createPrimitive("After")));
    QVERIFY(nameOf(button).contains(u"After"_s));
    // As the program does, because of an event.
    QTimer::singleShot(0, button, [=] { button->setText(u"Later"_s); });
    QTRY_VERIFY(nameOf(button).contains(u"Later"_s));
    const QString alone = nameOf(button);
    auto *twin = add<QPushButton>(m_window.get(), u"Later"_s);
    twin->show();
    QVERIFY(nameOf(button).contains(u"occurrence='1'"_s));
    delete twin;
    QCOMPARE(nameOf(button), alone);
    // Found once, gone now.
    QVERIFY(Inspector::self()->findObject(alone));
    delete button;
    QVERIFY(!Inspector::self()->findObject(alone));
    QVERIFY(object->isInvalidated());
}

QTEST_MAIN(tst_qtnames)

#include "tst_qtnames.moc"
