// A program full of what can go wrong while somebody looks at it from outside.

#include <QApplication>
#include <QCalendarWidget>
#include <QColorDialog>
#include <QDialog>
#include <QEventLoop>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QSpinBox>
#include <QTextBrowser>
#include <QThread>

#include <array>
#include <stdexcept>

#include <unistd.h>

namespace {

/// A plain value, and a value with parts.
struct Part
{
    Q_GADGET
    Q_PROPERTY(int size MEMBER size)

public:
    int size = 3;
};

/// Cannot be made from nothing.
struct Solid
{
    explicit Solid(int density)
        : weight(density)
    {
    }
    std::array<int, 16> filling {};
    int weight;
};

/// Goes at every opportunity.
class Victim : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int fatal READ fatal WRITE setFatal)

public:
    using QWidget::QWidget;
    int fatal()
    {
        delete this;
        return 1;
    }
    void setFatal(int) { delete this; }
    Q_INVOKABLE QWidget *leave(QVariantList)
    {
        delete this;
        return nullptr;
    }
};

/// Runs an event loop while it is being destroyed.
class Lingering : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;
    ~Lingering() override
    {
        QEventLoop loop;
        goOn = [&] { loop.quit(); };
        loop.exec();
        goOn = nullptr;
    }
    static inline std::function<void()> goOn;
};

/// Has a meta-object of its own, which goes with it.
class Shifting : public QObject
{
public:
    using QObject::QObject;
    const QMetaObject *metaObject() const override { return m_metaObject.get(); }

private:
    static QMetaObject *made()
    {
        auto *metaObject = new QMetaObject(QObject::staticMetaObject);
        metaObject->d.superdata = &QObject::staticMetaObject;
        metaObject->d.static_metacall = nullptr;
        return metaObject;
    }
    const std::unique_ptr<QMetaObject> m_metaObject { made() };
};

class Bench : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(Tools tools READ tools WRITE setTools)
    Q_PROPERTY(QStringList names MEMBER m_names)
    Q_PROPERTY(QVariantList list MEMBER m_list)
    Q_PROPERTY(QVariantMap map MEMBER m_map)
    Q_PROPERTY(QVariant any MEMBER m_any)
    Q_PROPERTY(uchar small MEMBER m_small)
    Q_PROPERTY(Part part READ part WRITE setPart)
    Q_PROPERTY(Part *partPointer READ partPointer CONSTANT)
    Q_PROPERTY(QObject *foreign READ foreign CONSTANT)
    Q_PROPERTY(QWidget *friendly MEMBER m_friend)
    Q_PROPERTY(int cursed READ cursed WRITE setCursed)

public:
    enum Tool { Hammer = 1, Saw = 2, File = 4 };
    Q_DECLARE_FLAGS(Tools, Tool)
    Q_FLAG(Tools)

    Bench()
    {
        setObjectName(QStringLiteral("bench"));
        m_foreign->moveToThread(&m_thread);
        m_thread.start();
        replace();
        const auto add = [this](QObject *object, const char *name) {
            object->setParent(this);
            object->setObjectName(QLatin1String(name));
        };
        add(new QLineEdit(this), "edit");
        add(new QLabel(this), "label");
        add(new QSpinBox(this), "spin");
        add(new QCalendarWidget(this), "calendar");
        add(new QTextBrowser(this), "browser");
        add(new QColorDialog(this), "colour");
        add(new QThread, "thread");
    }
    ~Bench() override
    {
        QMetaObject::invokeMethod(m_foreign, &QObject::deleteLater);
        m_thread.quit();
        m_thread.wait();
    }

    Tools tools() const { return m_tools; }
    void setTools(Tools tools) { m_tools = tools; }
    Part part() const { return m_part; }
    void setPart(Part part) { m_part = part; }
    Part *partPointer() { return &m_part; }
    QObject *foreign() const { return m_foreign; }
    int cursed() const { throw std::runtime_error("cursed"); }
    void setCursed(int) { throw 1; }

public slots:
    /// Another victim in place of the last; often where that was. Nobody hears of its end.
    void replace()
    {
        if (m_victim)
            m_victim->disconnect();
        delete m_victim;
        m_victim = new Victim(this);
        m_victim->setObjectName(QStringLiteral("victim"));
    }
    void endLater() { m_victim->deleteLater(); }
    /// The victim goes to another thread and ends there.
    void giveAway()
    {
        auto *object = new QObject;
        object->setObjectName(QStringLiteral("given"));
        m_given = object;
    }
    QObject *given() { return m_given; }
    void sendGiven() { m_given->moveToThread(&m_thread); }
    void endGiven()
    {
        QMetaObject::invokeMethod(
                m_given, [this] { delete m_given; }, Qt::BlockingQueuedConnection);
    }
    QObject *shift()
    {
        delete m_shifting;
        return m_shifting = new Shifting(this);
    }
    void fail() { throw std::runtime_error("failed"); }
    int ask()
    {
        QDialog dialog(this);
        dialog.setObjectName(QStringLiteral("question"));
        return dialog.exec();
    }
    void buildPanel()
    {
        auto *panel = new QWidget(this);
        panel->setObjectName(QStringLiteral("panel"));
        (new Lingering(panel))->setObjectName(QStringLiteral("lingering"));
    }
    void closePanel() { delete findChild<QWidget *>(QStringLiteral("panel")); }
    void goOn() { Lingering::goOn(); }
    void quit() { QCoreApplication::quit(); }
    QString text(const QByteArray &bytes, QChar mark, qint64 number)
    {
        return QString::fromUtf8(bytes) + mark + QString::number(number);
    }
    QRect moved(QRect rectangle, const QPoint &by) { return rectangle.translated(by); }
    int count(const QVariantList &list) { return static_cast<int>(list.size()); }
    QVariant echo(const QVariant &value) { return value; }
    Solid solid() { return Solid(7); }

private:
    QThread m_thread;
    QObject *m_foreign = new QObject;
    QPointer<QWidget> m_victim;
    QPointer<QObject> m_given;
    QPointer<QObject> m_shifting;
    QWidget *m_friend = nullptr;
    Tools m_tools;
    QStringList m_names;
    QVariantList m_list;
    QVariantMap m_map;
    QVariant m_any;
    uchar m_small = 0;
    Part m_part;
};

} // namespace

int main(int argc, char *argv[])
{
    ::alarm(300);
    const QApplication application(argc, argv);
    Bench bench;
    return QApplication::exec();
}

#include "workshop.moc"
