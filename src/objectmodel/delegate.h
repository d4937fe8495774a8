#pragma once

#include "fkit/export.h"

#include <QString>

#include <map>
#include <vector>

namespace Vorkel {

class Class;

/// Adds behaviour to a class, and to all below it, from outside. Constructing one registers it; the
/// last one registered for a class wins. Delegates live as long as the process.
class VORKEL_EXPORT Delegate
{
public:
    enum Type {
        HierarchyType = 0,
        StaticPropertyType = 1,
        SerializeType = 3,
        ConversionType = 4,
        ComparisonType = 5,
        CastType = 6,
        GeometryType = 7,
        ObjectDumpType = 9,
        WindowInteractionType = 10
    };
    static constexpr int NumTypes = 11;

    Delegate(const QString &className, Type type);
    Delegate(const Delegate &) = delete;
    Delegate &operator=(const Delegate &) = delete;
    virtual ~Delegate();

    [[nodiscard]] const QString &className() const { return m_className; }
    [[nodiscard]] Type type() const { return m_type; }
    /// The delegate of the same kind that this one hides: one of a class above. Found once.
    [[nodiscard]] const Delegate *super() const;

private:
    QString m_className;
    Type m_type;
    mutable bool m_superResolved = false;
    mutable const Delegate *m_super = nullptr;
};

/// All delegates of the process, which it does not own.
class VORKEL_EXPORT DelegateFactory
{
public:
    [[nodiscard]] static DelegateFactory *self();

    /// The delegate registered for exactly that class name; null when there is none.
    [[nodiscard]] const Delegate *delegate(const QString &className, Delegate::Type type) const;
    /// The same for the class or the nearest one above it that has one.
    [[nodiscard]] const Delegate *delegate(const Class *forClass, Delegate::Type type) const;
    void addDelegate(const Delegate *delegate);
    void removeDelegate(const Delegate *delegate);
    [[nodiscard]] std::vector<const Delegate *> delegatesForType(Delegate::Type type) const;
    /// Changes whenever a delegate comes or goes, so that lookups can be kept until then.
    [[nodiscard]] int generation() const { return m_generation; }

private:
    std::map<std::pair<Delegate::Type, QString>, const Delegate *> m_delegates;
    int m_generation = 0;
};

} // namespace Vorkel
