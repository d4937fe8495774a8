#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QMainWindow>
#include <QMenuBar>
#include <QMouseEvent>
#include <QRadioButton>
#include <QSlider>
#include <QTabWidget>
#include <QVBoxLayout>

// A program with one of each control that a person works with. What happens stands in its label.

namespace {

QLabel *said = nullptr;

void say(const QString &text)
{
    said->setText(text);
}

/// Tells what buttons do to it.
class Pad : public QLabel
{
public:
    Pad()
        : QLabel(QStringLiteral("pad"))
    {
        setObjectName(QStringLiteral("pad"));
    }

protected:
    void mousePressEvent(QMouseEvent *event) override
    {
        m_start = event->position().toPoint();
        say(QStringLiteral("%1 with %2").arg(int(event->button())).arg(int(event->modifiers()) >> 24));
    }

    void mouseReleaseEvent(QMouseEvent *event) override
    {
        if (rect().contains(event->position().toPoint()))
            return;
        const QWidget *under = QApplication::widgetAt(event->globalPosition().toPoint());
        say(QStringLiteral("to %1").arg(under ? under->objectName() : QString()));
    }

    void mouseDoubleClickEvent(QMouseEvent *) override { say(QStringLiteral("double")); }

private:
    QPoint m_start;
};

QWidget *page()
{
    auto *combo = new QComboBox;
    auto *list = new QListWidget;
    for (int i = 0; i < 100; ++i) {
        combo->addItem(QStringLiteral("entry %1").arg(i));
        list->addItem(QStringLiteral("row %1").arg(i));
    }
    QObject::connect(list, &QListWidget::currentTextChanged, say);
    auto *group = new QGroupBox(QStringLiteral("Group"));
    group->setCheckable(true);
    group->setMinimumHeight(60);
    auto *slider = new QSlider(Qt::Horizontal);
    said = new QLabel(QStringLiteral("nothing"));
    said->setObjectName(QStringLiteral("said"));
    auto *widget = new QWidget;
    auto *layout = new QVBoxLayout(widget);
    for (QWidget *each : std::initializer_list<QWidget *> {
                 combo, list, group, new QRadioButton(QStringLiteral("Radio")), slider, new Pad, said })
        layout->addWidget(each);
    return widget;
}

void addMenus(QMainWindow *window)
{
    QMenu *insert = window->menuBar()->addMenu(QStringLiteral("&Edit"))->addMenu(QStringLiteral("&Insert"));
    window->menuBar()->addMenu(QStringLiteral("&View"));
    insert->addAction(QStringLiteral("&Time"), [] { say(QStringLiteral("time")); });
    insert->addAction(QStringLiteral("&Date"), [] { say(QStringLiteral("date")); });
    auto *copy = new QAction(QStringLiteral("&Copy"), window);
    QObject::connect(copy, &QAction::triggered, [] { say(QStringLiteral("copied")); });
    said->addAction(copy);
    said->setContextMenuPolicy(Qt::ActionsContextMenu);
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QMainWindow window;
    auto *tabs = new QTabWidget;
    tabs->addTab(page(), QStringLiteral("First"));
    tabs->addTab(new QLabel(QStringLiteral("second page")), QStringLiteral("Second"));
    window.setCentralWidget(tabs);
    addMenus(&window);
    window.show();
    return QApplication::exec();
}
