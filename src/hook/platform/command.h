#pragma once

#include "hook/platform/nativeinterface.h"
#include "shared/shared.h"

#include <list>
#include <tuple>
#include <vector>

namespace Vorkel {

/// A piece of input, to be done later.
class VORKEL_EXPORT Command : public Shared
{
public:
    /// By what the platform has at the moment; does nothing where it has nothing. What fails is not told.
    virtual void execute();
    virtual VoidResult executeWith(NativeInterface *native) = 0;
};

/// Commands in order, which it keeps alive.
class VORKEL_EXPORT CommandQueue
{
public:
    void add(Command *command) { m_commands.emplace_back(command); }
    /// Carries all of them out, also those behind one that fails. Gives the first error.
    VoidResult executeWith(NativeInterface *native) const;

private:
    std::vector<SharedPtr<Command>> m_commands;
};

/// A command that holds values.
template <typename... Values>
class CommandWith : public Command
{
public:
    explicit CommandWith(const Values &...values)
        : m_values(values...)
    {
    }

protected:
    template <std::size_t Index = 0>
    [[nodiscard]] const auto &value() const
    {
        return std::get<Index>(m_values);
    }

private:
    std::tuple<Values...> m_values;
};

// clang-format off
#define VORKEL_COMMAND(Name, Operation, ...) \
    class VORKEL_EXPORT Name : public CommandWith<__VA_ARGS__> \
    { \
    public: \
        using CommandWith::CommandWith; \
        VoidResult executeWith(NativeInterface *native) override { return native->Operation; } \
    };

VORKEL_COMMAND(MouseMoveTo,        pointerMove(value()),                NativePoint)
VORKEL_COMMAND(MouseButtonPress,   pointerButton(value(), true, 1),     MouseButton::Value)
VORKEL_COMMAND(MouseButtonRelease, pointerButton(value(), false, 1),    MouseButton::Value)
VORKEL_COMMAND(KeyboardType,       typeCharacter(value(), value<1>()),  QChar, int)
VORKEL_COMMAND(PressKey,           sendKeys(value(), true),             QString)
VORKEL_COMMAND(ReleaseKey,         sendKeys(value(), false),            QString)

#undef VORKEL_COMMAND
// clang-format on

/// Commands that are one.
class VORKEL_EXPORT CompoundCommand : public Command
{
public:
    VoidResult executeWith(NativeInterface *native) override { return m_queue.executeWith(native); }

protected:
    void add(Command *command) { m_queue.add(command); }

private:
    CommandQueue m_queue;
};

/// Moves to a point on the screen, in native pixels, and clicks.
class VORKEL_EXPORT MouseClick : public CompoundCommand
{
public:
    MouseClick(int x, int y, MouseButton::Value button);
};

/// Types a text character by character. With `keys`, a text such as "<Ctrl+a>" is a combination of keys
/// instead.
class VORKEL_EXPORT TypeText : public CompoundCommand
{
public:
    TypeText(const QString &text, bool keys);

private:
    void addCharacters(const QString &text);
    void addCombination(const QStringList &keys);
};

/// Carries all of them out, also those behind one that fails, and lets each reach the display as a whole.
/// Gives the first error. Without an interface: what the platform has at the moment.
VORKEL_EXPORT VoidResult executeCommands(const std::list<SharedPtr<Command>> &commands);
VORKEL_EXPORT VoidResult executeCommands(const std::list<SharedPtr<Command>> &commands,
                                         NativeInterface *native);

} // namespace Vorkel
