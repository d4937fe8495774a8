#pragma once

#include <QString>

#include <utility>

namespace Vorkel {

/// What a fallible operation gives when it succeeds with no value: a failure text, empty on success.
class [[nodiscard]] VoidResult
{
public:
    VoidResult() = default;

    [[nodiscard]] static VoidResult failure(QString error)
    {
        VoidResult result;
        result.m_error = std::move(error);
        return result;
    }

    [[nodiscard]] bool isOk() const { return m_error.isEmpty(); }
    [[nodiscard]] const QString &error() const { return m_error; }

private:
    QString m_error;
};

/// The value of a fallible operation, or the text that says why there is none. A failed result
/// holds a default value unless it is given one; an empty text is the only mark of success.
template <typename T>
class [[nodiscard]] FunctionCallResult
{
public:
    FunctionCallResult(T value)
        : m_value(std::move(value))
    {
    }

    [[nodiscard]] static FunctionCallResult failure(QString error, T value = T())
    {
        FunctionCallResult result { std::move(value) };
        result.m_error = std::move(error);
        return result;
    }

    [[nodiscard]] bool isOk() const { return m_error.isEmpty(); }
    [[nodiscard]] const T &value() const { return m_value; }
    [[nodiscard]] const QString &error() const { return m_error; }

private:
    T m_value;
    QString m_error;
};

} // namespace Vorkel
