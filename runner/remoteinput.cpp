// What a person does with objects, and the program's global functions.

#include "nearestname.h"
#include "remoteobjects.h"

namespace Vorkel::Runner {

namespace {

/// The number that the class of the global functions has in every program.
constexpr int GlobalClass = 9;

/// Which arguments of `mousePress` are given.
enum MousePressFlag { HasObject = 1, HasModifiers = 2, HasButton = 4, HasPoint = 8 };

} // namespace

Failure RemoteObjects::request(const QString &function, const ArgumentList &arguments)
{
    forgetLastError();
    QVariant reply;
    const Failure failure = call(function, arguments, &reply);
    if (failure.isFailure() || reply == QVariant(true))
        return failure;
    // Raw input functions answer with the reason itself.
    if (reply.typeId() == QMetaType::QString)
        return { ExitCode::CallFailed, reply.toString(), true };
    return lastError(QStringLiteral("the program refused %1 without a reason").arg(function));
}

Failure RemoteObjects::checkReady(const ObjectHandle &object)
{
    ObjectHandle ready;
    return callObject(QStringLiteral("objectReady2"), { object.id },
                      QStringLiteral("the object is not ready"), &ready);
}

Failure RemoteObjects::findReady(const QString &name, ObjectHandle *found)
{
    return callObject(QStringLiteral("objectReady"), { name },
                      QStringLiteral("'%1' names no object that is ready").arg(name), found);
}

Failure RemoteObjects::readyItem(const ObjectHandle &container, const QString &text, ObjectHandle *item)
{
    return callObject(QStringLiteral("getObjectItemIfReady2"), { container.id, text },
                      QStringLiteral("there is no item '%1'").arg(text), item);
}

Failure RemoteObjects::readyItem(const ObjectHandle &container, int row, int column, ObjectHandle *item)
{
    return callObject(QStringLiteral("getObjectItemByRowColIfReady2"), { container.id, row, column },
                      QStringLiteral("there is no item at row %1, column %2").arg(row).arg(column), item);
}

Failure RemoteObjects::pointer(const ObjectHandle &object, const PointerAction &action)
{
    const int flags = (object.id ? HasObject : 0) | (action.modifiers ? HasModifiers : 0) | HasButton
            | (action.at ? HasPoint : 0);
    const QPoint at = action.at.value_or(QPoint());
    return request(QStringLiteral("mousePress"),
                   { object.id, flags, at.x(), at.y(), action.button, action.modifiers,
                     action.kind != PointerAction::Move, action.kind == PointerAction::Press });
}

Failure RemoteObjects::clickIfReady(const QVariant &target, int clicks, const ClickSettings &settings)
{
    const QPoint at = settings.at.value_or(QPoint());
    return request(
            QStringLiteral("clickIfReady"),
            { target, clicks, settings.at.has_value(), at.x(), at.y(), settings.button, settings.modifiers });
}

Session::PendingCall RemoteObjects::beginInput(int count, int quietMs)
{
    return m_session->begin(QStringLiteral("awaitInput"), { count, quietMs });
}

Failure RemoteObjects::awaitInput(const Session::PendingCall &call)
{
    ArgumentList handled;
    return m_session->await(call, &handled);
}

Failure RemoteObjects::bounds(const ObjectHandle &object, QRect *bounds)
{
    ObjectHandle rectangle;
    if (const Failure failure =
                callObject(QStringLiteral("objectGlobalBounds"), { object.id },
                           QStringLiteral("the object has no place on the screen"), &rectangle);
        failure.isFailure())
        return failure;
    QList<int> numbers;
    for (const char *part : { "x", "y", "width", "height" }) {
        QVariant number;
        if (const Failure failure = getProperty(rectangle, QLatin1String(part), &number); failure.isFailure())
            return failure;
        numbers.append(number.toInt());
    }
    *bounds = QRect(numbers.at(0), numbers.at(1), numbers.at(2), numbers.at(3));
    return {};
}

bool RemoteObjects::hasGlobal(const QString &function) const
{
    const ClassRecord *record = m_classes.byId(GlobalClass);
    return record && !m_classes.methods(record, function).isEmpty();
}

Failure RemoteObjects::invokeGlobal(const QString &function, const QVariantList &arguments, QVariant *result)
{
    // Functions may have come after the classes were read.
    if (!hasGlobal(function)) {
        if (const Failure failure = readClasses(); failure.isFailure())
            return failure;
    }
    const ClassRecord *record = m_classes.byId(GlobalClass);
    if (!record || !hasGlobal(function)) {
        const QString nearest = record ? suggestion(function, m_classes.methodNames(record)) : QString();
        return { ExitCode::CallFailed,
                 QStringLiteral("the program has no global function '%1'%2").arg(function, nearest) };
    }
    ObjectHandle returned;
    const Failure failure = invokeOn(-GlobalClass, *record, function, arguments, &returned);
    *result = QVariant();
    return failure.isFailure() || returned.id == 0 ? failure : toValue(returned, {}, result);
}

} // namespace Vorkel::Runner
