#pragma once

#include "hook/autprocess.h"
#include "hook/hook.h"
#include "objectmodel/inspector.h"

#include <optional>
#include <type_traits>
#include <utility>

/// Makes a remote function's handler out of an operation: who carries it out, how its arguments
/// are converted and what its reply looks like all follow from the operation's own type.
namespace Vorkel::FunctionHandling {

// Who carries the operation out.

template <typename Owner>
Owner &owner(Hook &hook)
{
    if constexpr (std::is_same_v<Owner, Hook>)
        return hook;
    else if constexpr (std::is_same_v<Owner, AUTProcess>)
        return *hook.autProcess();
    else if constexpr (std::is_same_v<Owner, InspectorInterface>)
        return *Inspector::self();
}

// What a result becomes. 64-bit numbers leave as Qt's own types: others have no number on the wire.

template <typename T>
constexpr bool isOptional = false;
template <typename T>
constexpr bool isOptional<std::optional<T>> = true;

template <typename Result>
QVariant toReply(Hook &hook, const Result &result)
{
    if constexpr (std::is_same_v<Result, SharedPtr<Object>>) {
        return hook.objectToVariant(result);
    } else if constexpr (std::is_same_v<Result, VoidResult>) {
        return result.isOk() ? QVariant(true) : QVariant(result.error());
    } else if constexpr (isOptional<Result>) {
        return result ? toReply(hook, *result) : QVariant();
    } else if constexpr (std::is_integral_v<Result> && sizeof(Result) == sizeof(qlonglong)) {
        using Wide = std::conditional_t<std::is_signed_v<Result>, qlonglong, qulonglong>;
        return QVariant(static_cast<Wide>(result));
    } else {
        return QVariant(result);
    }
}

// What an argument becomes: the object that the runner knows by a number, or Qt's plain conversion, so a bad
// value is null, 0 or empty.

template <typename Argument>
Argument fromArgument([[maybe_unused]] const Hook &hook, const QVariant &value)
{
    if constexpr (std::is_same_v<Argument, QVariant>)
        return value;
    else if constexpr (std::is_same_v<Argument, SharedPtr<Object>>)
        return hook.objectById(value.toInt());
    else
        return value.value<Argument>();
}

/// A handler may run an event loop in which the hook goes; then nobody waits for the reply.
template <typename Result, typename Invoke>
QVariant invokeForReply(Hook &hook, Invoke invoke)
{
    if constexpr (std::is_void_v<Result>) {
        invoke();
        return QVariant();
    } else {
        const QPointer<Hook> guard(&hook);
        const Result result = invoke();
        return guard ? toReply(*guard, result) : QVariant();
    }
}

template <auto Operation, typename Owner, typename Result, typename... Arguments, std::size_t... Index>
QVariant apply(Hook &hook, const ArgumentList &arguments, std::index_sequence<Index...>)
{
    return invokeForReply<Result>(hook, [&]() -> Result {
        return (owner<Owner>(hook)
                .*Operation)(fromArgument<std::remove_cvref_t<Arguments>>(hook, arguments.value(Index))...);
    });
}

template <typename... Arguments>
constexpr bool takesList = std::is_same_v<std::tuple<Arguments...>, std::tuple<const ArgumentList &>>;

/// `Operation` takes the values of the list, one by one, or the list itself.
template <auto Operation, typename Owner, typename Result, typename... Arguments>
QVariant convertAndApply(Hook &hook, const ArgumentList &arguments)
{
    if constexpr (takesList<Arguments...>)
        return invokeForReply<Result>(hook,
                                      [&]() -> Result { return (owner<Owner>(hook).*Operation)(arguments); });
    else
        return apply<Operation, Owner, Result, Arguments...>(hook, arguments,
                                                             std::index_sequence_for<Arguments...>());
}

/// The same for an operation that owes its answer to a listener.
template <auto Operation, typename Owner, typename... Arguments>
void convertAndStart(Hook &hook, const ArgumentList &arguments, ResponseListener<ArgumentList> *listener)
{
    if constexpr (takesList<Arguments...>) {
        (owner<Owner>(hook).*Operation)(listener, arguments);
    } else {
        [&]<std::size_t... Index>(std::index_sequence<Index...>)
        {
            (owner<Owner>(hook).*Operation)(
                    listener, fromArgument<std::remove_cvref_t<Arguments>>(hook, arguments.value(Index))...);
        }
        (std::index_sequence_for<Arguments...>());
    }
}

template <auto Operation>
struct Deduced;

template <typename Owner, typename Result, typename... Arguments, Result (Owner::*Operation)(Arguments...)>
struct Deduced<Operation>
{
    static constexpr auto handler = convertAndApply<Operation, Owner, Result, Arguments...>;
};

template <typename Owner, typename Result, typename... Arguments,
          Result (Owner::*Operation)(Arguments...) const>
struct Deduced<Operation>
{
    static constexpr auto handler = convertAndApply<Operation, Owner, Result, Arguments...>;
};

/// The handler of `Operation`, an operation of `Hook`, `AUTProcess` or `InspectorInterface`.
template <auto Operation>
constexpr auto call = Deduced<Operation>::handler;

template <auto Operation>
struct DeducedLater;

template <typename Owner, typename... Arguments,
          void (Owner::*Operation)(ResponseListener<ArgumentList> *, Arguments...)>
struct DeducedLater<Operation>
{
    static constexpr auto handler = convertAndStart<Operation, Owner, Arguments...>;
};

/// The same for an operation that answers later, through the listener that is its first argument.
template <auto Operation>
constexpr auto callLater = DeducedLater<Operation>::handler;

} // namespace Vorkel::FunctionHandling
