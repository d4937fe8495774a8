#pragma once

#include "quellog/tracepoint.h"

#include <QByteArray>
#include <QString>
#include <QStringView>

#include <cerrno>
#include <initializer_list>
#include <string_view>
#include <type_traits>
#include <variant>

/// Reports a message and named values to the trace, should anyone listen to the category:
///
///     VORKEL_TRACE("Hook", "Processing IPC call", {"caller", caller}, {"func", functionId});
///
/// The category is a literal. The message is any text; the values are numbers, enumerators, truth values and
/// texts (QString, QStringView, QByteArray, std::string, const char *; bytes are taken as UTF-8). Message and
/// values are evaluated only when somebody listens, so they must have no effects that matter; otherwise the
/// line costs one load and one branch. errno survives. Not for signal handlers.
#define VORKEL_TRACE(category, ...) VORKEL_TRACE_AT(Debug, category, __VA_ARGS__)

/// The same at a level of halvex::quellog::TraceLevel: `VORKEL_TRACE_AT(Warning, "IPC", "Late answer");`.
#define VORKEL_TRACE_AT(level, category, ...) \
    do { \
        static constinit ::halvex::quellog::TracePoint vorkelTracePoint( \
                ::halvex::quellog::TraceLevel::level, __FILE__, __LINE__, __PRETTY_FUNCTION__, category); \
        if (::halvex::quellog::advanceVisit(&vorkelTracePoint)) [[unlikely]] \
            ::Vorkel::TraceVisit(&vorkelTracePoint).report({ __VA_ARGS__ }); \
    } while (false)

namespace Vorkel {

/// One part of a trace line: the message, or a value with its name. Refers to its texts and owns nothing; it
/// is made for the length of one VORKEL_TRACE.
class TraceArgument
{
public:
    template <typename Text>
    TraceArgument(const Text &message) noexcept
        : TraceArgument("", message)
    {
    }

    template <typename Value>
    TraceArgument(const char *name, const Value &value) noexcept
        : m_name(name)
        , m_value(valueOf(value))
    {
    }

    [[nodiscard]] halvex::quellog::VariableValue toVariable() const
    {
        return std::visit([this](auto value) { return named(value); }, m_value);
    }

private:
    using Value = std::variant<long long, unsigned long long, double, bool, std::string_view, QStringView>;
    using Variable = halvex::quellog::VariableValue;

    static Value valueOf(const char *text) noexcept
    {
        return text ? std::string_view(text) : std::string_view();
    }
    static Value valueOf(std::string_view text) noexcept { return text; }
    static Value valueOf(QStringView text) noexcept { return text; }
    static Value valueOf(const QByteArray &text) noexcept
    {
        return std::string_view(text.constData(), static_cast<std::size_t>(text.size()));
    }

    template <typename T>
        requires std::is_arithmetic_v<T>
    static Value valueOf(T value) noexcept
    {
        if constexpr (std::is_same_v<T, bool>)
            return value;
        else if constexpr (std::is_floating_point_v<T>)
            return static_cast<double>(value);
        else if constexpr (std::is_signed_v<T>)
            return static_cast<long long>(value);
        else
            return static_cast<unsigned long long>(value);
    }

    template <typename T>
        requires std::is_enum_v<T>
    static Value valueOf(T value) noexcept { return valueOf(static_cast<std::underlying_type_t<T>>(value)); }

    template <typename Number>
    Variable named(Number value) const
    {
        return Variable::numberValue(m_name, value);
    }
    Variable named(bool value) const { return Variable::booleanValue(m_name, value); }
    Variable named(std::string_view text) const { return Variable::stringValue(m_name, text); }
    Variable named(QStringView text) const
    {
        const QByteArray bytes = text.toUtf8();
        return Variable::stringValue(m_name, { bytes.constData(), static_cast<std::size_t>(bytes.size()) });
    }

    const char *m_name;
    Value m_value;
};

/// A visit of an active trace point. Lives around the evaluation of the arguments, to put errno back behind
/// them.
class TraceVisit
{
public:
    explicit TraceVisit(halvex::quellog::TracePoint *point) noexcept
        : m_point(point)
    {
    }
    ~TraceVisit() { errno = m_errno; }
    Q_DISABLE_COPY_MOVE(TraceVisit)

    /// `parts` is the message and after it the values. Drops the line when memory runs out.
    [[gnu::cold, gnu::noinline]] void report(std::initializer_list<TraceArgument> parts) const noexcept
    {
        try {
            halvex::quellog::VariableSnapshot snapshot;
            for (const auto *part = parts.begin() + 1; part != parts.end(); ++part)
                snapshot.append(part->toVariable());
            visitTracePoint(m_point, parts.begin()->toVariable().convertToString(), snapshot);
        } catch (...) {
        }
    }

private:
    halvex::quellog::TracePoint *m_point;
    int m_errno = errno;
};

} // namespace Vorkel
