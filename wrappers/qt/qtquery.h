#pragma once

#include "qtproperties.h"

#include "objectmodel/objectname.h"

#include <QObject>
#include <QSet>

#include <vector>

namespace Vorkel {

/// A name by properties, made ready to be compared with many objects.
///
/// `type` is the class of the object, `name` its object name, `window`, `container` and `buddy` are names
/// of the window it stands in, of anything it stands in and of its label; `occurrence` counts among what
/// the rest fits. Any other key is a property of the object.
class QtQuery
{
public:
    /// `depth` counts how deep the name is nested in others.
    explicit QtQuery(const ObjectName &name, int depth = 0);

    /// The object that is meant; null when there is none.
    [[nodiscard]] QObject *find();
    /// Tells the registry which objects come near, and what about them does not fit.
    void reportNearMisses();

private:
    enum class Kind { Type, Name, Window, Container, Buddy, Property };

    struct KeyWithMeaning;

    struct Demand
    {
        Kind kind;
        QString key;
        PropertyValue value;
        QtPropertyReader reader;
        QSet<const QObject *> related; // what a reference may mean
        QHash<const QMetaObject *, bool> types; // those that were compared
    };

    static const KeyWithMeaning Meanings[];

    void addDemand(const QString &key, const PropertyValue &value, int depth);
    [[nodiscard]] QSet<const QObject *> resolve(Kind kind, const PropertyValue &value, int depth) const;
    [[nodiscard]] bool fits(const QObject *object, const QObject *window);
    [[nodiscard]] bool meets(Demand &demand, const QObject *object, const QObject *window) const;
    [[nodiscard]] QStringList unmet(const QObject *object, const QObject *window);

    std::vector<Demand> m_demands; // the ones that are quick to tell first
    int m_occurrence; // among what fits: that which can be seen, then the rest
    QString m_lost; // what is said of a reference that leads nowhere
};

} // namespace Vorkel
