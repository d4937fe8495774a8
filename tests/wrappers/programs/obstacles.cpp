#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMenu>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPropertyAnimation>
#include <QPushButton>
#include <QScrollArea>
#include <QTabWidget>
#include <QTableWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

// A program whose controls are hard to reach. What reached them stands in its label.

using namespace Qt::StringLiterals;

namespace {

QLabel *said = nullptr;

void say(const QString &text)
{
    said->setText(text);
}

template <typename Widget>
Widget *named(const QString &name, Widget *widget)
{
    widget->setObjectName(name);
    return widget;
}

template <typename Action>
QPushButton *button(const QString &name, Action action)
{
    auto *made = named(name, new QPushButton(name));
    QObject::connect(made, &QPushButton::clicked, action);
    return made;
}

constexpr QRgb PadColour = qRgb(255, 0, 0);

/// Where the pad is in a picture.
void sayWhereThePadIs(const QImage &picture)
{
    QPolygon pixels;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixel(x, y) == PadColour)
                pixels << QPoint(x, y);
        }
    }
    const QRect pad = pixels.boundingRect();
    say(u"%1,%2 %3x%4 of %5x%6"_s.arg(pad.x())
                .arg(pad.y())
                .arg(pad.width())
                .arg(pad.height())
                .arg(picture.width())
                .arg(picture.height()));
}

/// Tells where it was pressed, and how often.
class Pad : public QWidget
{
public:
    explicit Pad(QWidget *parent)
        : QWidget(parent)
    {
        setObjectName(u"pad"_s);
        setAttribute(Qt::WA_AcceptTouchEvents);
        setGeometry(0, 0, 61, 41);
        setAutoFillBackground(true);
        setPalette(QColor(PadColour));
    }

protected:
    void mousePressEvent(QMouseEvent *event) override
    {
        const QPoint at = event->position().toPoint();
        m_clicks += u"1"_s;
        setToolTip(m_clicks);
        say(u"%1,%2"_s.arg(at.x()).arg(at.y()));
    }
    void mouseDoubleClickEvent(QMouseEvent *) override
    {
        m_clicks += u"2"_s;
        setToolTip(m_clicks);
    }
    void wheelEvent(QWheelEvent *event) override
    {
        say(u"wheel %1 with %2"_s.arg(event->angleDelta().y()).arg(int(event->modifiers()) >> 24));
    }
    bool event(QEvent *event) override
    {
        if (event->type() != QEvent::TouchBegin && event->type() != QEvent::TouchEnd)
            return QWidget::event(event);
        auto *touch = static_cast<QTouchEvent *>(event);
        const QPoint at = touch->point(0).position().toPoint();
        say(u"%1 of %2 at %3,%4"_s.arg(touch->isBeginEvent() ? u"touch"_s : u"end"_s)
                    .arg(touch->pointCount())
                    .arg(at.x())
                    .arg(at.y()));
        return true;
    }

private:
    QString m_clicks;
};

QWidget *movingPage()
{
    auto *page = new QWidget;
    auto *animation = named(u"animation"_s, new QPropertyAnimation(page));
    auto *runner = button(u"runner"_s, [=] {
        say(animation->state() == QAbstractAnimation::Stopped ? u"at rest"_s : u"on its way"_s);
    });
    runner->setParent(page);
    runner->setGeometry(0, 40, 80, 30);
    animation->setTargetObject(runner);
    animation->setPropertyName("pos");
    animation->setStartValue(QPoint(0, 40));
    animation->setEndValue(QPoint(200, 40));
    animation->setDuration(400);
    button(u"start"_s, [=] { animation->start(); })->setParent(page);
    return page;
}

QWidget *dialogsPage()
{
    auto *page = new QWidget;
    auto *layout = new QVBoxLayout(page);
    layout->addWidget(button(u"ask"_s, [=] {
        const auto answer = QMessageBox::question(page->window(), u"Sure"_s, u"Are you?"_s);
        say(answer == QMessageBox::Yes ? u"yes"_s : u"no"_s);
    }));
    layout->addWidget(button(u"nested"_s, [=] {
        QDialog outer(page->window());
        outer.setWindowTitle(u"Outer"_s);
        auto *open = button(u"deeper"_s, [&] {
            QMessageBox::information(&outer, u"Inner"_s, u"text"_s);
            outer.accept();
        });
        (new QVBoxLayout(&outer))->addWidget(open);
        outer.exec();
        say(u"both closed"_s);
    }));
    layout->addWidget(button(u"file"_s, [=] {
        const QString chosen = QFileDialog::getSaveFileName(page->window(), u"File"_s, u"/"_s, QString(),
                                                            nullptr, QFileDialog::DontUseNativeDialog);
        say(u"chose %1"_s.arg(chosen));
    }));
    auto *menu = named(u"menu"_s, new QMenu(page));
    menu->addAction(u"entry"_s, [] { say(u"entry"_s); });
    layout->addWidget(button(u"popup"_s, [=] { menu->popup(page->mapToGlobal(QPoint(150, 0))); }));
    return page;
}

QWidget *itemsPage()
{
    auto *tree = new QTreeWidget;
    auto *branch = new QTreeWidgetItem(new QTreeWidgetItem(tree, { u"root"_s }), { u"branch"_s });
    for (int i = 0; i < 40; ++i)
        new QTreeWidgetItem(branch, { u"leaf %1"_s.arg(i) });
    QObject::connect(tree, &QTreeWidget::itemClicked,
                     [](const QTreeWidgetItem *item) { say(u"tree %1"_s.arg(item->text(0))); });
    QObject::connect(tree, &QTreeWidget::itemDoubleClicked,
                     [](const QTreeWidgetItem *item) { say(u"twice %1"_s.arg(item->text(0))); });
    auto *table = new QTableWidget(60, 30);
    for (int row = 0; row < 60; ++row) {
        for (int column = 0; column < 30; ++column)
            table->setItem(row, column, new QTableWidgetItem(u"%1/%2"_s.arg(row).arg(column)));
    }
    QObject::connect(table, &QTableWidget::cellClicked,
                     [](int row, int column) { say(u"cell %1/%2"_s.arg(row).arg(column)); });
    QObject::connect(table->horizontalHeader(), &QHeaderView::sectionClicked,
                     [](int column) { say(u"head %1"_s.arg(column)); });
    auto *page = new QWidget;
    auto *layout = new QVBoxLayout(page);
    layout->addWidget(tree);
    layout->addWidget(table);
    return page;
}

QWidget *scrollPage()
{
    auto *inner = new QScrollArea;
    auto *content = new QWidget;
    content->resize(900, 900);
    button(u"deep"_s, [] { say(u"deep"_s); })->setParent(content);
    content->findChild<QPushButton *>()->move(800, 850);
    inner->setWidget(content);
    inner->resize(300, 600);
    auto *outer = named(u"outer"_s, new QScrollArea);
    outer->setWidget(inner);
    return outer;
}

/// Takes what is dropped on it, after a question if there is one.
class Basket : public QListWidget
{
public:
    explicit Basket(const QString &name)
    {
        setObjectName(name);
        setDragDropMode(DropOnly);
    }

protected:
    void dropEvent(QDropEvent *event) override
    {
        QListWidget::dropEvent(event);
        if (objectName() == u"asking"_s)
            QMessageBox::question(this, u"Sure"_s, u"Drop it?"_s);
        say(u"dropped %1"_s.arg(item(count() - 1)->text()));
    }
};

QWidget *dragsPage()
{
    auto *page = new QWidget;
    auto *layout = new QVBoxLayout(page);
    auto *fruits = named(u"fruits"_s, new QListWidget);
    fruits->addItems({ u"apple"_s, u"pear"_s });
    fruits->setDragEnabled(true);
    const auto away = std::make_shared<Basket>(u"away"_s);
    away->setWindowTitle(u"Away"_s);
    away->setGeometry(500, 100, 200, 200);
    layout->addWidget(button(u"elsewhere"_s, [=] { away->show(); }));
    for (QWidget *each :
         std::initializer_list<QWidget *> { fruits, new Basket(u"basket"_s), new Basket(u"asking"_s) })
        layout->addWidget(each);
    return page;
}

QWidget *plainPage()
{
    auto *page = new QWidget;
    auto *panel = named(u"panel"_s, new QWidget);
    auto *layout = new QVBoxLayout(page);
    auto *check = named(u"wide"_s, new QCheckBox(u"x"_s));
    (new QVBoxLayout(panel))->addWidget(button(u"inner"_s, [] { say(u"inner"_s); }));
    auto *combo = new QComboBox;
    combo->addItems({ u"one"_s, u"two"_s });
    auto *edit = new QLineEdit;
    QObject::connect(edit, &QLineEdit::returnPressed, [=] { sayWhereThePadIs(QImage(edit->text())); });
    for (QWidget *each : std::initializer_list<QWidget *> { panel, check, combo, edit })
        layout->addWidget(each);
    auto *cover = named(u"cover"_s, new QLabel(page));
    cover->resize(1000, 1000);
    cover->hide();
    return page;
}

/// Programs may change their environment once they have found their display.
void renameDisplay()
{
    if (qEnvironmentVariableIsSet("OBSTACLES_DISPLAY"))
        qputenv("DISPLAY", qgetenv("OBSTACLES_DISPLAY"));
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(renameDisplay)

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QMainWindow window;
    window.setObjectName(u"window"_s);
    window.setWindowTitle(u"Obstacles"_s);
    window.setWindowFlag(Qt::FramelessWindowHint, qEnvironmentVariableIsSet("OBSTACLES_FRAMELESS"));
    auto *central = new QWidget;
    auto *layout = new QVBoxLayout(central);
    layout->setContentsMargins(0, 45, 0, 0);
    layout->addWidget(said = named(u"said"_s, new QLabel(u"nothing"_s)));
    auto *tabs = new QTabWidget;
    tabs->addTab(plainPage(), u"Plain"_s);
    tabs->addTab(movingPage(), u"Moving"_s);
    tabs->addTab(dialogsPage(), u"Dialogs"_s);
    tabs->addTab(itemsPage(), u"Items"_s);
    tabs->addTab(scrollPage(), u"Scroll"_s);
    tabs->addTab(dragsPage(), u"Drags"_s);
    for (int i = 0; i < 9; ++i)
        tabs->addTab(new QWidget, u"Far %1"_s.arg(i));
    layout->addWidget(tabs);
    window.setCentralWidget(central);
    new Pad(central);
    auto *shortcut = new QAction(&window);
    shortcut->setShortcut(QKeySequence(u"Ctrl+Shift+D"_s));
    QObject::connect(shortcut, &QAction::triggered, [] { say(u"shortcut"_s); });
    window.addAction(shortcut);
    window.setGeometry(20, 30, 360, 400);
    window.show();
    return QApplication::exec();
}
