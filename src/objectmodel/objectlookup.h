#pragma once

#include "objectmodel/object.h"

#include <QString>

namespace Vorkel {

class ObjectName;
class Registry;

/// Turns names into objects: one try, without waiting.
///
/// A name by properties is the top-level delegates' to resolve; a hierarchical one is walked down when
/// none of them knows it. A failure leaves its whole reason as the last error.
class ObjectLookup
{
public:
    /// `registry` lives longer.
    explicit ObjectLookup(Registry *registry)
        : m_registry(registry)
    {
    }

    [[nodiscard]] SharedPtr<Object> find(const QString &name);

private:
    struct Walk;

    [[nodiscard]] SharedPtr<Object> askDelegates(const ObjectName &name) const;
    [[nodiscard]] Walk walk(const QString &first, const QString &path);
    [[nodiscard]] QString failureText(const QString &name, const QString &lookup, const Walk &walk) const;
    void remember(const QString &name, const QString &lookup, const SharedPtr<Object> &found);

    Registry *m_registry;
    // The object that was found last, for scripts that stay with one for a while. The name alone would
    // not do: a symbol means another object when the object map has changed.
    QString m_lastName;
    QString m_lastLookup;
    SharedPtr<Object> m_lastFound;
};

} // namespace Vorkel
