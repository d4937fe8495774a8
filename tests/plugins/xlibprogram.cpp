// A program under test with the plug-in for X11 inside, as it is in earnest. It shows a window, carries out
// the orders on its standard input, one a line with words between tabs, and tells what the window got to
// know.

#include "hook/platform/platformplugin.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMap>
#include <QPainter>
#include <QRasterWindow>
#include <QSocketNotifier>
#include <QThread>

#include <cstdio>
#include <functional>
#include <iostream>
#include <memory>

using namespace Qt::StringLiterals;
using namespace Vorkel;

namespace {

void tell(const QString &line)
{
    const QByteArray bytes = line.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stdout);
    std::fflush(stdout);
}

/// "x*1000" is a thousand times "x".
QString expanded(const QString &word)
{
    const qsizetype star = word.lastIndexOf(u'*');
    return star > 0 ? word.left(star).repeated(word.mid(star + 1).toInt()) : word;
}

QString summary(const QString &text)
{
    return text.size() < 100 ? text : u"%1 units, %2"_s.arg(text.size()).arg(qHash(text));
}

class Window : public QRasterWindow
{
public:
    Window()
    {
        setGeometry(100, 50, 400, 300);
        setTitle(u"A window of its own, für Tests"_s);
        setFlag(Qt::FramelessWindowHint);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.fillRect(0, 0, 200, 300, QColor(255, 0, 0));
        painter.fillRect(200, 0, 200, 300, QColor(0, 0, 255));
    }

    void focusInEvent(QFocusEvent *) override { tell(u"focused"_s); }
    void mousePressEvent(QMouseEvent *e) override { note(u"press"_s, e); }
    void mouseReleaseEvent(QMouseEvent *e) override { note(u"release"_s, e); }
    void mouseDoubleClickEvent(QMouseEvent *e) override { note(u"double"_s, e); }
    void wheelEvent(QWheelEvent *e) override { m_events << u"wheel %1"_s.arg(e->angleDelta().y()); }

    void mouseMoveEvent(QMouseEvent *e) override
    {
        if (e->buttons())
            note(u"drag"_s, e);
        else
            ++m_moves;
    }

    void keyPressEvent(QKeyEvent *e) override
    {
        static const int modifiers[] = { Qt::Key_Shift, Qt::Key_Control, Qt::Key_Alt,        Qt::Key_Meta,
                                         Qt::Key_AltGr, Qt::Key_Super_L, Qt::Key_Mode_switch };
        if (e->key() == Qt::Key_F12) {
            tell(u"events "_s + m_events.join(u' '));
            tell(u"moves %1"_s.arg(std::exchange(m_moves, 0)));
            m_events.clear();
        } else if (std::find(std::begin(modifiers), std::end(modifiers), e->key()) == std::end(modifiers)) {
            const bool isText = !e->text().isEmpty() && e->text().at(0) > u' ';
            const bool isPlain = isText
                    && !(e->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::KeypadModifier));
            m_events << (isPlain ? e->text() : u"<%1>"_s.arg(QKeySequence(e->keyCombination()).toString()));
        }
    }

private:
    void note(const QString &what, QMouseEvent *event)
    {
        const QPoint at = event->position().toPoint();
        const QString modifiers = event->modifiers() & Qt::ControlModifier ? u"Ctrl+"_s : QString();
        m_events << u"%1%2:%3@%4,%5"_s.arg(modifiers, what).arg(event->button()).arg(at.x()).arg(at.y());
    }

    QStringList m_events;
    int m_moves = 0;
};

struct KeyListener : ResponseListener<ExtraKeys>
{
    QStringList names;

    void response(const FunctionCallResult<ExtraKeys> &result) override
    {
        for (const auto &[name, number] : result.value())
            names << name;
    }
};

class Program
{
public:
    std::unique_ptr<PlatformPlugin> plugin;
    NativeInterface *native = nullptr;
    QStringList words;

    void connectTo(const QByteArray &display)
    {
        plugin.reset(createX11PlatformPlugin(display.isEmpty() ? nullptr : display.constData()));
        native = plugin->nativeInterface();
    }

    [[nodiscard]] QString word(int index) const { return words.value(index); }
    [[nodiscard]] int number(int index) const { return word(index).toInt(); }
    [[nodiscard]] NativePoint point(int index) const
    {
        return NativePoint::at(number(index), number(index + 1));
    }
    [[nodiscard]] MouseButton::Value button(int index) const { return MouseButton::Value(number(index)); }

    [[nodiscard]] QString carryOut();

private:
    using Order = std::function<QString(Program &)>;
    static const QMap<QString, Order> &orders();

    [[nodiscard]] QString picture() const;
    [[nodiscard]] QString copiesPosition() const;
};

QString said(const VoidResult &result)
{
    return result.isOk() ? u"ok"_s : result.error();
}

template <typename T>
QString said(const FunctionCallResult<T> &result, const QString &value)
{
    return result.isOk() ? value : result.error();
}

QString Program::picture() const
{
    const ScreenshotResult shot =
            native->desktopScreenshot(NativeRect::at(number(1), number(2), number(3), number(4)), -1);
    if (!shot.isOk())
        return shot.error;
    QStringList seen { u"%1x%2"_s.arg(shot.image.width()).arg(shot.image.height()),
                       u"%1,%2"_s.arg(shot.transform.dx()).arg(shot.transform.dy()) };
    for (int i = 5; i + 1 < words.size(); i += 2)
        seen << QColor(shot.image.pixel(number(i), number(i + 1))).name();
    return seen.join(u' ');
}

QString Program::copiesPosition() const
{
    const std::unique_ptr<NativeInterface> copy(native->threadSafeCopy());
    QString position;
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        const auto at = copy->pointerPosition();
        position = said(at, u"%1,%2"_s.arg(at.value().x).arg(at.value().y));
    }));
    thread->start();
    thread->wait();
    return position;
}

const QMap<QString, Program::Order> &Program::orders()
{
    // clang-format off
    static const QMap<QString, Order> rows {
        { u"connect"_s, [](Program &p) { p.connectTo(p.word(1).toLocal8Bit()); return p.plugin->name(); } },
        { u"end"_s,     [](Program &p) { p.plugin.reset(); return u"ok"_s; } },
        { u"move"_s,    [](Program &p) { return said(p.native->pointerMove(p.point(1))); } },
        { u"warp"_s,    [](Program &p) { return said(p.native->pointerWarp(p.point(1))); } },
        { u"click"_s,   [](Program &p) { return said(p.native->pointerClick(p.button(1), p.point(2), p.number(5), p.number(4))); } },
        { u"double"_s,  [](Program &p) { return said(p.native->doubleClick(p.button(1), p.point(2), 0)); } },
        { u"wheel"_s,   [](Program &p) { return said(p.native->wheelRoll(p.number(1))); } },
        { u"drag"_s,    [](Program &p) { return said(p.native->pointerDragAndDrop(p.point(2), p.number(4), p.number(5), p.button(1), p.number(6))); } },
        { u"where"_s,   [](Program &p) { return p.copiesPosition(); } },
        { u"down"_s,    [](Program &p) { return said(p.native->sendKeys(p.word(1), true)); } },
        { u"up"_s,      [](Program &p) { return said(p.native->sendKeys(p.word(1), false)); } },
        { u"keys"_s,    [](Program &p) { return said(p.native->sendKeyEventToFocusWindow(p.word(1))); } },
        { u"hold"_s,    [](Program &p) { return said(p.native->pressReleaseModifiers(p.number(1), p.number(2))); } },
        { u"held"_s,    [](Program &p) { return QString::number(p.native->isModifierPressed(NativeInterface::ModifierKey(p.number(1)))); } },
        { u"valid"_s,   [](Program &p) { return QString::number(p.native->isValidSpecialKey(p.word(1))); } },
        { u"window"_s,  [](Program &p) { return said(p.native->sendTextToWindow(p.word(1), p.word(2))); } },
        { u"touch"_s,   [](Program &p) { return said(p.native->tap(p.point(1), 0)); } },
        { u"shot"_s,    [](Program &p) { return p.picture(); } },
        { u"set"_s,     [](Program &p) { return said(p.native->setClipboardText(expanded(p.word(1)))); } },
        { u"get"_s,     [](Program &p) { const auto text = p.native->getClipboardText(); return said(text, summary(text.value())); } },
        { u"ownset"_s,  [](Program &p) { QGuiApplication::clipboard()->setText(expanded(p.word(1))); return u"ok"_s; } },
        { u"ownget"_s,  [](Program &) { return summary(QGuiApplication::clipboard()->text()); } },
        { u"summary"_s, [](Program &p) { return summary(expanded(p.word(1))); } },
        { u"type"_s,    [](Program &p) {
            VoidResult result;
            for (const QChar unit : p.word(1))
                result = result.isOk() ? p.native->typeCharacter(unit, p.number(2)) : result;
            return said(result); } },
        { u"stroke"_s,  [](Program &p) {
            const auto stroke = p.native->charToKeyStroke(p.word(1).at(0), true);
            for (const bool down : { true, false })
                (void)p.native->keyCode(stroke.value().keyCode, unsigned(stroke.value().modifiers), NativeInterface::NativeKeyCodeSet(0), down);
            return said(stroke, QString::number(stroke.value().modifiers)); } },
        { u"extra"_s,   [](Program &p) { KeyListener keys; p.native->extraKeys(&keys); return keys.names.join(u' '); } },
    };
    // clang-format on
    return rows;
}

QString Program::carryOut()
{
    const auto order = orders().constFind(words.value(0));
    return order == orders().cend() ? u"no such order"_s : (*order)(*this);
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    Window window;
    Program program;
    program.connectTo(QByteArray());
    window.show();
    window.requestActivate();

    QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&] {
        std::string line;
        if (!std::getline(std::cin, line))
            return QCoreApplication::quit();
        program.words = QString::fromStdString(line).split(u'\t');
        if (program.word(0) == u"quit"_s)
            return QCoreApplication::quit();
        tell(u"answer "_s + program.carryOut());
    });
    return QGuiApplication::exec();
}
