#pragma once

#include "shared/serializable.h"

#include <QHash>
#include <QString>

#include <vector>

namespace Vorkel {

class Class;

/// A place for classes and further namespaces. Owns neither.
class VORKEL_EXPORT Namespace : public Serializable
{
public:
    static constexpr int NotRegistered = -1;

    /// Unnamed, unregistered, without a parent.
    Namespace() = default;
    /// Enters itself in `parent`, if there is one, and in the registry.
    Namespace(Namespace *parent, const QString &name);

    [[nodiscard]] int id() const { return m_id; }
    [[nodiscard]] const QString &name() const { return m_name; }
    [[nodiscard]] Namespace *parent() const { return m_parent; }
    /// With the namespaces above, but for the root, joined by "::".
    [[nodiscard]] QString fullyQualifiedName() const;

    /// Stores the class under its name, in place of what stood there.
    void registerClass(const Class *entry);
    /// Stores the child under its name, in place of what stood there, and behind all others.
    void registerNamespace(Namespace *child);
    [[nodiscard]] const Class *getClass(const QString &name) const { return m_classes.value(name); }
    [[nodiscard]] Namespace *getNamespace(const QString &name) const { return m_namespaceByName.value(name); }
    /// `index` is below `numNamespaces()`.
    [[nodiscard]] Namespace *getNamespace(int index) const
    {
        return m_namespaces[static_cast<std::size_t>(index)];
    }
    [[nodiscard]] int numNamespaces() const { return static_cast<int>(m_namespaces.size()); }
    [[nodiscard]] bool containsIdentifier(const QString &name) const;

    void writeObject(QDataStream &stream) const override;
    void readObject(QDataStream &stream) override;

private:
    Namespace *m_parent = nullptr;
    QString m_name;
    std::vector<Namespace *> m_namespaces;
    QHash<QString, const Class *> m_classes;
    QHash<QString, Namespace *> m_namespaceByName;
    int m_id = NotRegistered;
};

} // namespace Vorkel

/// For wrappers: objects of the class `name` stand in the same hierarchy as those of "QObject".
/// `name` is UTF-8; a name that is known already changes nothing.
VORKEL_EXPORT void vorkel_register_qobject_type(const char *name);

namespace Vorkel {

/// Whether `vorkel_register_qobject_type` was told of `className`.
[[nodiscard]] bool isQObjectType(const QString &className);

} // namespace Vorkel
