#include "qtquery.h"

#include "qtnames.h"
#include "qtobjects.h"
#include "qttoolkit.h"

#include "objectmodel/inspector.h"
#include "objectmodel/objectmap.h"

#include <algorithm>

namespace Vorkel {

namespace {

/// Deeper names are the work of machines, and each level is a search of its own.
constexpr int MaxDepth = 100;
constexpr qsizetype MaxNearMisses = 3;
constexpr const char Unnamed[] = "unnamed";

QString nameText(const QObject *object)
{
    return object->objectName().isEmpty() ? QString::fromLatin1(Unnamed) : object->objectName();
}

/// Objects that fit, in the order in which they count.
class Found
{
public:
    void add(QObject *object)
    {
        if (QtToolkits::isVisible(object))
            m_visible.append(object);
        else
            m_hidden.append(object);
    }

    [[nodiscard]] QList<QObject *> all() const { return m_visible + m_hidden; }
    [[nodiscard]] qsizetype visibleCount() const { return m_visible.size(); }

private:
    QList<QObject *> m_visible;
    QList<QObject *> m_hidden;
};

} // namespace

struct QtQuery::KeyWithMeaning
{
    const char *key;
    Kind kind;
};

// clang-format off
const QtQuery::KeyWithMeaning QtQuery::Meanings[] = {
    { "type",      Kind::Type      },
    { "name",      Kind::Name      },
    { "window",    Kind::Window    },
    { "container", Kind::Container },
    { "buddy",     Kind::Buddy     },
};
// clang-format on

QtQuery::QtQuery(const ObjectName &name, int depth)
    : m_occurrence(depth > MaxDepth ? -1 : name.occurrenceValue())
{
    if (m_occurrence < 1)
        return;
    const PropertyMap properties = name.properties();
    for (auto entry = properties.begin(); entry != properties.end(); ++entry) {
        if (entry.key() != QLatin1String("occurrence"))
            addDemand(entry.key(), entry.value(), depth);
    }
    std::stable_sort(m_demands.begin(), m_demands.end(),
                     [](const Demand &a, const Demand &b) { return a.kind < b.kind; });
}

void QtQuery::addDemand(const QString &key, const PropertyValue &value, int depth)
{
    const auto *meaning = std::find_if(std::begin(Meanings), std::end(Meanings),
                                       [&](const auto &each) { return key == QLatin1String(each.key); });
    const Kind kind = meaning == std::end(Meanings) ? Kind::Property : meaning->kind;
    Demand demand { kind, key, value, QtPropertyReader(key), {}, {} };
    if (kind == Kind::Window || kind == Kind::Container || kind == Kind::Buddy) {
        demand.related = resolve(kind, value, depth);
        if (demand.related.isEmpty() && m_lost.isEmpty())
            m_lost = QStringLiteral("nothing is its %1 %2").arg(key, value.value());
    }
    m_demands.push_back(std::move(demand));
}

/// What the name in `value` means, for a label what it labels. A pattern may mean several objects.
QSet<const QObject *> QtQuery::resolve(Kind kind, const PropertyValue &value, int depth) const
{
    QSet<const QObject *> related;
    const auto add = [&](QObject *object) {
        if (const QObject *meant = object && kind == Kind::Buddy ? QtToolkits::labelled(object) : object)
            related.insert(meant);
    };
    if (value.modifier() == PropertyValue::Exact) {
        const ObjectName name = ObjectMap::resolve(value.value());
        add(name.isMultiProperty() ? QtQuery(name, depth + 1).find()
                                   : QtObjects::unwrap(Inspector::self()->findObject(name.qualifiedName())));
        return related;
    }
    QtToolkits::walk([&](QObject *object, QObject *window) {
        if ((kind != Kind::Window || object == window) && value.matches(QtNames::realName(object)))
            add(object);
        return true;
    });
    return related;
}

bool QtQuery::meets(Demand &demand, const QObject *object, const QObject *window) const
{
    switch (demand.kind) {
    case Kind::Type: {
        const QMetaObject *metaObject = object->metaObject();
        auto known = demand.types.constFind(metaObject);
        if (known == demand.types.constEnd())
            known = demand.types.insert(metaObject,
                                        demand.value.matches(QString::fromLatin1(metaObject->className())));
        return *known;
    }
    case Kind::Name:
        return demand.value.matches(nameText(object));
    case Kind::Window:
        return demand.related.contains(window);
    case Kind::Container:
        for (const QObject *at = object->parent(); at; at = at->parent()) {
            if (demand.related.contains(at))
                return true;
        }
        return false;
    case Kind::Buddy:
        return demand.related.contains(object);
    case Kind::Property:
        break;
    }
    const std::optional<QString> text = demand.reader.read(object);
    return text && demand.value.matches(*text);
}

bool QtQuery::fits(const QObject *object, const QObject *window)
{
    return std::all_of(m_demands.begin(), m_demands.end(),
                       [&](Demand &demand) { return meets(demand, object, window); });
}

QObject *QtQuery::find()
{
    Found found;
    if (m_occurrence < 1)
        return nullptr;
    QtToolkits::walk([&](QObject *object, QObject *window) {
        if (fits(object, window))
            found.add(object);
        return found.visibleCount() < m_occurrence;
    });
    return found.all().value(m_occurrence - 1);
}

QStringList QtQuery::unmet(const QObject *object, const QObject *window)
{
    QStringList keys;
    for (Demand &demand : m_demands) {
        if (!meets(demand, object, window))
            keys.append(demand.key);
    }
    return keys;
}

void QtQuery::reportNearMisses()
{
    struct Miss
    {
        QObject *object;
        QStringList unmet;
    };
    QList<Miss> nearest;
    // What fits nothing is not near.
    qsizetype fewest = static_cast<qsizetype>(m_demands.size()) - 1;
    QtToolkits::walk([&](QObject *object, QObject *window) {
        QStringList keys = unmet(object, window);
        if (keys.size() < fewest) {
            nearest.clear();
            fewest = keys.size();
        }
        if (keys.size() == fewest && nearest.size() < MaxNearMisses)
            nearest.append({ object, std::move(keys) });
        return true;
    });
    for (const Miss &miss : nearest) {
        // Where all else fits, there are not so many.
        const QStringList keys =
                miss.unmet.isEmpty() ? QStringList(QStringLiteral("occurrence")) : miss.unmet;
        Inspector::self()->setUnmatchedProperties(QtNames::realName(miss.object), keys);
    }
    if (!m_lost.isEmpty())
        Inspector::self()->setError(m_lost);
}

} // namespace Vorkel
