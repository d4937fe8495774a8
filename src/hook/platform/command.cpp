#include "hook/platform/command.h"

#include "hook/platform/currentplatform.h"
#include "hook/platform/keysequence.h"

namespace Vorkel {

namespace {

/// The keys named between the brackets; two plus signs at the end name the key of that sign.
QStringList combinedKeys(const QString &inside)
{
    QStringList keys = inside.split(u'+', Qt::SkipEmptyParts);
    if (inside.endsWith(QLatin1String("++")))
        keys << QStringLiteral("+");
    return keys;
}

} // namespace

void Command::execute()
{
    if (NativeInterface *native = currentNativeInterface())
        (void)executeWith(native);
}

VoidResult CommandQueue::executeWith(NativeInterface *native) const
{
    VoidResult first;
    for (const SharedPtr<Command> &command : m_commands) {
        const VoidResult result = command->executeWith(native);
        if (first.isOk())
            first = result;
    }
    return first;
}

MouseClick::MouseClick(int x, int y, MouseButton::Value button)
{
    add(new MouseMoveTo(NativePoint::at(x, y)));
    add(new MouseButtonPress(button));
    add(new MouseButtonRelease(button));
}

TypeText::TypeText(const QString &text, bool keys)
{
    if (keys && text.size() >= 2 && text.startsWith(u'<') && text.endsWith(u'>'))
        addCombination(combinedKeys(text.mid(1, text.size() - 2)));
    else
        addCharacters(text);
}

void TypeText::addCharacters(const QString &text)
{
    for (qsizetype i = 0; i < text.size();) {
        const QString character = text.mid(i, characterLength(text, i));
        add(new PressKey(character));
        add(new ReleaseKey(character));
        i += character.size();
    }
}

void TypeText::addCombination(const QStringList &keys)
{
    const bool wrapsLast = !keys.isEmpty() && keys.constLast().size() > 1;
    QStringList wrapped;
    for (qsizetype i = 0; i < keys.size(); ++i) {
        const bool plain = i == keys.size() - 1 && !wrapsLast;
        wrapped << (plain ? keys[i] : QStringLiteral("<%1>").arg(keys[i]));
    }

    for (auto key = wrapped.cbegin(); key != wrapped.cend(); ++key)
        add(new PressKey(*key));
    for (auto key = wrapped.crbegin(); key != wrapped.crend(); ++key)
        add(new ReleaseKey(*key));
}

VoidResult executeCommands(const std::list<SharedPtr<Command>> &commands)
{
    NativeInterface *const native = currentNativeInterface();
    return native ? executeCommands(commands, native) : VoidResult::failure(QLatin1String(NoPlatformPlugin));
}

VoidResult executeCommands(const std::list<SharedPtr<Command>> &commands, NativeInterface *native)
{
    VoidResult first;
    for (const SharedPtr<Command> &command : commands) {
        const bool suppressed = native->supressFlush(true);
        const VoidResult result = command->executeWith(native);
        native->supressFlush(suppressed);
        if (first.isOk())
            first = result;
    }
    return first;
}

} // namespace Vorkel
