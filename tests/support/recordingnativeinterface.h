#pragma once

#include "hook/platform/nativeinterface.h"
#include "hook/platform/nativeinterfaceforwarder.h"
#include "hook/platform/platformplugin.h"

#include <functional>

/// Writes down what it is told to do, one text each, such as "pointerButton 1 down 10,20 2", and answers with
/// what it was given.
class RecordingNativeInterface : public Vorkel::NativeInterface
{
public:
    using NativePoint = Vorkel::NativePoint;
    using NativeRect = Vorkel::NativeRect;
    using VoidResult = Vorkel::VoidResult;
    using Button = Vorkel::MouseButton::Value;
    template <typename T>
    using Result = Vorkel::FunctionCallResult<T>;

    QStringList heard;
    QMap<QString, QString> failures; ///< error texts by the start of what is heard
    std::function<void()> onOperation; ///< done before each operation

    QStringList capabilities;
    QStringList specialKeys;
    QString clipboard;
    NativePoint pointer = NativePoint::at(0, 0);
    Vorkel::ScreenshotResult screenshot;
    bool modifierPressed = true;
    bool flushSuppressed = false;
    Vorkel::ResponseListener<Vorkel::BinaryStream *> *recording = nullptr; ///< kept to be answered

    using NativeInterface::desktopScreenshot;
    using NativeInterface::wheelRoll;

    // clang-format off
    [[nodiscard]] QStringList getCapabilities() override { hear("getCapabilities"); return capabilities; }
    [[nodiscard]] Vorkel::ScreenshotResult desktopScreenshot(const NativeRect &area, int argument) override { hear("desktopScreenshot", area, argument); return screenshot; }
    void recordScreen(FUInt32 id, const QMap<QString, QVariant> &, Vorkel::ResponseListener<Vorkel::BinaryStream *> *listener) override { hear("recordScreen", id); recording = listener; }
    Result<QString> getClipboardText() override { return answer(note("getClipboardText"), clipboard); }
    VoidResult setClipboardText(const QString &text) override { clipboard = text; return note("setClipboardText", text); }
    Result<NativePoint> pointerPosition() override { return answer(note("pointerPosition"), pointer); }
    VoidResult pointerButton(Button button, bool down, int clicks) override { return note("pointerButton", button, down, clicks); }
    VoidResult pointerButton(Button button, bool down, const NativePoint &point, int clicks) override { return note("pointerButton", button, down, point, clicks); }
    VoidResult pointerMove(const NativePoint &point) override { pointer = point; return note("pointerMove", point); }
    VoidResult pointerWarp(const NativePoint &point) override { pointer = point; return note("pointerWarp", point); }
    VoidResult wheelRoll(int delta) override { return note("wheelRoll", delta); }
    VoidResult pointerDragAndDropBegin(const NativePoint &point, Button button, int distance) override { return note("pointerDragAndDropBegin", point, button, distance); }
    VoidResult pointerDragAndDropEnd(const NativePoint &point, Button button, int modifiers, bool drop) override { return note("pointerDragAndDropEnd", point, button, modifiers, drop ? u"drop" : u"hold"); }
    VoidResult keyCode(unsigned code, unsigned modifiers, NativeKeyCodeSet set, bool down) override { return note("keyCode", code, modifiers, int(set), down); }
    VoidResult typeCharacter(QChar character, int modifiers) override { return note("typeCharacter", QString(character), modifiers); }
    VoidResult keyboardPressRelease(const QString &key, bool down) override { return note("keyboardPressRelease", key, down); }
    [[nodiscard]] bool isValidSpecialKey(const QString &key) override { hear("isValidSpecialKey", key); return specialKeys.contains(key); }
    VoidResult pressReleaseModifiers(int modifiers, bool down) override { return note("pressReleaseModifiers", modifiers, down); }
    [[nodiscard]] bool isModifierPressed(ModifierKey key) override { hear("isModifierPressed", int(key)); return modifierPressed; }
    Result<Vorkel::KeyStroke> charToKeyStroke(QChar character, bool pressShift) override { return answer(note("charToKeyStroke", QString(character), pressShift), Vorkel::KeyStroke { character.unicode(), pressShift }); }
    VoidResult touch(TouchType type, const NativePoint &point, unsigned first, unsigned second) override { return note("touch", int(type), point, first, second); }
    VoidResult sendTextToWindow(const QString &window, const QString &text) override { return note("sendTextToWindow", window, text); }
    VoidResult sendKeyEventToFocusWindow(const QString &keys) override { return note("sendKeyEventToFocusWindow", keys); }
    VoidResult sendKeys(const QString &keys, bool down) override { return note("sendKeys", keys, down); }
    [[nodiscard]] NativeInterface *threadSafeCopy() override { hear("threadSafeCopy"); return new Vorkel::NativeInterfaceForwarder(this); }
    bool supressFlush(bool on) override { hear("supressFlush", on ? u"on" : u"off"); return std::exchange(flushSuppressed, on); }
    // clang-format on

private:
    static QString shown(int number) { return QString::number(number); }
    static QString shown(unsigned number) { return QString::number(number); }
    static QString shown(bool down) { return down ? QStringLiteral("down") : QStringLiteral("up"); }
    static QString shown(const char16_t *word) { return QString::fromUtf16(word); }
    static QString shown(const QString &text) { return text; }
    static QString shown(const NativePoint &point)
    {
        return point.defined ? QStringLiteral("%1,%2").arg(point.x).arg(point.y) : QStringLiteral("nowhere");
    }
    static QString shown(const NativeRect &area)
    {
        return shown(area.topLeft) + QStringLiteral(" %1x%2").arg(area.width).arg(area.height);
    }

    template <typename... Arguments>
    QString hear(const char *operation, const Arguments &...arguments)
    {
        const QString line =
                (QStringList { QString::fromLatin1(operation) } << ... << shown(arguments)).join(u' ');
        heard << line;
        if (onOperation)
            onOperation();
        return line;
    }

    template <typename... Arguments>
    VoidResult note(const char *operation, const Arguments &...arguments)
    {
        const QString line = hear(operation, arguments...);
        for (auto failure = failures.cbegin(); failure != failures.cend(); ++failure) {
            if (line.startsWith(failure.key()))
                return VoidResult::failure(failure.value());
        }
        return {};
    }

    template <typename T>
    static Result<T> answer(const VoidResult &noted, const T &value)
    {
        return noted.isOk() ? Result<T>(value) : Result<T>::failure(noted.error());
    }
};

/// Reaches that platform.
class RecordingPlugin : public Vorkel::PlatformPlugin
{
public:
    QString name() override { return QStringLiteral("recording"); }
    Vorkel::NativeInterface *nativeInterface() override { return &native; }
    Vorkel::WidgetHighlighter *widgetHighlighter() override { return &m_highlighter; }

    RecordingNativeInterface native;

private:
    Vorkel::NullWidgetHighlighter m_highlighter;
};
