#include "hook/autprocess.h"
#include "hook/hook.h"
#include "hook/remotefunctions.h"
#include "objectmodel/class.h"
#include "objectmodel/containers.h"
#include "objectmodel/inspector.h"
#include "objectmodel/toolkit.h"
#include "serverlib/nullmessagechannel.h"
#include "support/harness.h"
#include "support/input.h"
#include "support/operationscript.h"

#include <iostream>

using namespace Vorkel;
using namespace OperationScript;

namespace {

/// Carries out what an input says, on a hook of its own.
class Runner
{
public:
    explicit Runner(Input *input)
        : m_input(input)
    {
        give(m_hook.objectToVariant(Toolkit::newShape(3)));
        const SharedPtr<Object> square = Toolkit::newShape(4);
        (void)square->castTo(Toolkit::squareClass());
        give(m_hook.objectToVariant(square));
        give(m_hook.objectToVariant(ArrayClass::wrapObject({})));
        give(m_hook.objectToVariant(MapClass::wrapObject({})));
    }

    void carryOutNext()
    {
        const Function &function =
                OperationScript::Functions[m_input->below(std::size(OperationScript::Functions))];
        const QString name = QString::fromLatin1(function.name);
        ArgumentList arguments;
        for (int i = 0; i < function.arguments; ++i)
            arguments << nextArgument();
        // These take texts in place of numbers.
        if (name.startsWith(QLatin1String("fetch")) || name == QLatin1String("objectHasComponents"))
            arguments = { QVariant(QStringList { arguments.at(0).toString(), nextArgument().toString() }) };
        if (remoteFunction(name)->kind == FunctionKind::Send)
            m_hook.handleSend(1, name, arguments);
        else
            give(m_hook.handleCall(1, name, arguments));
    }

private:
    void give(const QVariant &reply)
    {
        for (const QString &text : reply.toStringList()) {
            if (const int id = text.section(QLatin1Char(','), 0, 0).toInt(); text.contains(QLatin1Char(',')))
                m_given.append(id);
        }
    }

    QVariant nextArgument()
    {
        const int kind = m_input->below(ArgumentKinds);
        const int value = m_input->byte();
        switch (kind) {
        case Handle:
            return value < m_given.size() ? m_given.at(m_given.size() - 1 - value) : 0;
        case Small:
            return static_cast<int>(static_cast<std::int8_t>(value));
        case ClassNumber:
            return value % Inspector::self()->numClasses();
        case MinusClassNumber:
            return -(value % Inspector::self()->numClasses());
        case Extreme:
            return Extremes[value % std::size(Extremes)];
        case Text:
            return QString::fromUtf8(Texts[value % std::size(Texts)]);
        case Real:
            return Reals[value % std::size(Reals)];
        case Truth:
            return value % 2 != 0;
        case TextList:
            return QStringList(value % 9, QStringLiteral("text"));
        default:
            return QVariant();
        }
    }

    Hook m_hook { new IPC(new NullMessageChannel, ClientData(), nullptr, nullptr),
                  Hook::NoRunner,
                  nullptr,
                  new AUTProcess,
                  nullptr,
                  0 };
    Input *m_input;
    QList<int> m_given;
};

} // namespace

/// The input is a list of remote operations (`support/operationscript.h`). Whatever a runner asks for, the
/// objects stay within their memory and go when the hook goes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Harness::start();
    std::clog.setstate(std::ios::badbit);
    (void)Toolkit::squareClass()->method(0);
    Input input(data, size);
    {
        Runner runner(&input);
        while (!input.isEmpty())
            runner.carryOutNext();
    }
    FUZZ_CHECK(!Hook::hook);
    return 0;
}
