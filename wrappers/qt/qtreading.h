#pragma once

#include <QMetaProperty>
#include <QVariant>

#include <optional>

namespace Vorkel {

/// Reads a property whose type is exactly `T` without a QVariant in between, which is much of the time that
/// reading takes. An object that gives one all the same gives `*instead`, and the result is nothing.
template <typename T>
std::optional<T> readExactly(const QMetaProperty &property, const QObject *object, QVariant *instead)
{
    T value = {};
    int status = -1; // another, and the value is in `instead`
    void *arguments[] = { &value, instead, &status };
    QMetaObject::metacall(const_cast<QObject *>(object), QMetaObject::ReadProperty, property.propertyIndex(),
                          arguments);
    // It may have been told where else the value is.
    return status == -1 ? std::optional(*static_cast<const T *>(arguments[0])) : std::nullopt;
}

} // namespace Vorkel
