#include "qtnameindex.h"

#include "qttoolkit.h"

#include "objectmodel/objectname.h"

#include <algorithm>

namespace Vorkel {

namespace {

// The keys of names. Marks compare them by address.
constexpr char TypeKey[] = "type";
constexpr char NameKey[] = "name";
constexpr char WindowKey[] = "window";
constexpr char ContainerKey[] = "container";
constexpr char BuddyKey[] = "buddy";
constexpr char OccurrenceKey[] = "occurrence";
constexpr char WindowTitleKey[] = "windowTitle";

/// What still tells an object apart that bears no name and no text.
constexpr const char *Hints[] = { "placeholderText", "toolTip", "accessibleName" };

/// Longer texts tell a story, and shorter ones a name.
constexpr qsizetype MaxTextLength = 60;
/// Among more objects than this no container is looked for.
constexpr qsizetype MaxForContainer = 64;
/// In a larger group positions are kept.
constexpr qsizetype MaxToSearch = 16;

bool isShort(const QString &text)
{
    return !text.trimmed().isEmpty() && text.size() <= MaxTextLength && !text.contains(u'\n')
            && !text.startsWith(u'<');
}

/// Whether the program defined the class; those of Qt say little about an object.
bool isOwnClass(const QMetaObject *type)
{
    const char *name = type->className();
    return !(name[0] == 'Q' && name[1] >= 'A' && name[1] <= 'Z');
}

bool standsIn(const QObject *object, const QObject *container)
{
    for (const QObject *at = object->parent(); at; at = at->parent()) {
        if (at == container)
            return true;
    }
    return false;
}

void demand(PropertyMap *name, const char *key, const QString &value,
            PropertyValue::Type type = PropertyValue::Text)
{
    name->insert(QString::fromLatin1(key), PropertyValue(value, PropertyValue::Exact, type));
}

} // namespace

QtNameIndex::QtNameIndex()
{
    QList<std::pair<QObject *, QObject *>> all;
    QtToolkits::walk([&](QObject *object, QObject *window) {
        all.emplaceBack(object, window);
        if (QObject *labelled = QtToolkits::labelled(object))
            m_labels.insert(labelled, object);
        return true;
    });
    m_entries.reserve(all.size());
    for (const auto &[object, window] : all)
        add(object, window);
}

void QtNameIndex::add(QObject *object, QObject *window)
{
    if (m_entries.contains(object))
        return;
    m_entries.insert(object, { window, QString() });
    const QMetaObject *type = typeOf(object);
    for (const Mark &mark : marksOf(object, window)) {
        m_groups[{ nullptr, type, mark.key, mark.value }].members.append(object);
        if (window)
            m_groups[{ window, type, mark.key, mark.value }].members.append(object);
    }
}

const QMetaObject *QtNameIndex::typeOf(const QObject *object)
{
    const QMetaObject *&type = m_types[object->metaObject()];
    if (!type) {
        const QMetaObject *&first = m_typeByName[object->metaObject()->className()];
        if (!first)
            first = object->metaObject();
        type = first;
    }
    return type;
}

QString QtNameIndex::read(const QObject *object, const char *property)
{
    auto reader = m_readers.find(property);
    if (reader == m_readers.end())
        reader = m_readers.insert(property, QtPropertyReader(QString::fromLatin1(property)));
    return reader->read(object).value_or(QString());
}

QtNameIndex::Mark QtNameIndex::captionOf(const QObject *object, const QObject *window)
{
    const char *property = object == window ? WindowTitleKey : captionProperty(typeOf(object));
    const QString text = property ? read(object, property) : QString();
    return isShort(text) ? Mark { property, text } : Mark();
}

/// All marks that an object bears, the one last that every object of its class bears.
QList<QtNameIndex::Mark> QtNameIndex::marksOf(const QObject *object, const QObject *window)
{
    QList<Mark> marks;
    if (!object->objectName().isEmpty())
        marks.append({ NameKey, object->objectName() });
    if (const Mark caption = captionOf(object, window); caption.key)
        marks.append(caption);
    for (const char *hint : Hints) {
        if (const QString text = read(object, hint); isShort(text))
            marks.append({ hint, text });
    }
    marks.append(Mark());
    return marks;
}

QtNameIndex::Mark QtNameIndex::chooseMark(const QObject *object, const QObject *window)
{
    const QList<Mark> marks = marksOf(object, window);
    const Mark &best = marks.constFirst();
    if (best.key == NameKey)
        return best;
    // Titles of windows change with what is shown in them.
    if (object == window && isOwnClass(typeOf(object))
        && groupOf(object, nullptr, Mark()).members.size() == 1)
        return Mark();
    const bool hasCaption =
            best.key && std::find(std::begin(Hints), std::end(Hints), best.key) == std::end(Hints);
    if (!hasCaption && m_labels.contains(object) && !QtToolkits::labelled(object))
        return { BuddyKey, QString() };
    return best;
}

QtNameIndex::Group &QtNameIndex::groupOf(const QObject *object, const QObject *window, const Mark &mark)
{
    Group &group = m_groups[{ window, typeOf(object), mark.key, mark.value }];
    if (!group.isSorted) {
        std::stable_partition(group.members.begin(), group.members.end(), QtToolkits::isVisible);
        group.isSorted = true;
    }
    return group;
}

/// Counted from 1.
int QtNameIndex::positionIn(Group &group, QObject *object)
{
    if (group.members.size() <= MaxToSearch)
        return static_cast<int>(group.members.indexOf(object)) + 1;
    if (group.positions.isEmpty()) {
        int position = 0;
        for (const QObject *member : group.members)
            group.positions.insert(member, ++position);
    }
    return group.positions.value(object);
}

/// The nearest object around that has a name or a caption of its own in the window.
QObject *QtNameIndex::containerOf(const QObject *object, const QObject *window)
{
    for (QObject *at = object->parent(); at && at != window; at = at->parent()) {
        const auto entry = m_entries.constFind(at);
        if (entry == m_entries.constEnd() || entry->window != window)
            return nullptr;
        const QList<Mark> marks = marksOf(at, window);
        const Mark &best = marks.constFirst();
        const bool isTelling = best.key == NameKey || best.key == captionProperty(typeOf(at));
        if (isTelling && groupOf(at, window, best).members.size() == 1)
            return at;
    }
    return nullptr;
}

bool QtNameIndex::describeByContainer(QObject *object, const QObject *window, const Mark &mark,
                                      PropertyMap *name)
{
    // A container says where the window is, too.
    const QList<QObject *> alike = groupOf(object, nullptr, mark).members;
    QObject *container = alike.size() <= MaxForContainer ? containerOf(object, window) : nullptr;
    if (!container)
        return false;
    QList<QObject *> inside;
    std::copy_if(alike.begin(), alike.end(), std::back_inserter(inside),
                 [=](const QObject *member) { return standsIn(member, container); });
    demand(name, ContainerKey, realName(container), PropertyValue::NestedName);
    if (inside.size() > 1)
        demand(name, OccurrenceKey, QString::number(inside.indexOf(object) + 1));
    return true;
}

PropertyMap QtNameIndex::describe(QObject *object, QObject *window)
{
    PropertyMap name;
    demand(&name, TypeKey, QString::fromLatin1(object->metaObject()->className()));
    const Mark mark = chooseMark(object, window);
    const bool isInWindow = window && object != window;
    if (mark.key == BuddyKey) {
        // What a label is of is one object.
        demand(&name, BuddyKey, realName(m_labels.value(object)), PropertyValue::NestedName);
        return name;
    }
    if (mark.key)
        demand(&name, mark.key, mark.value);
    const QObject *scope = isInWindow ? window : nullptr;
    const bool isUnique = groupOf(object, scope, mark).members.size() == 1;
    if (isInWindow && !isUnique && describeByContainer(object, window, mark, &name))
        return name;
    if (isInWindow)
        demand(&name, WindowKey, realName(window), PropertyValue::NestedName);
    if (!isUnique)
        demand(&name, OccurrenceKey, QString::number(positionIn(groupOf(object, scope, mark), object)));
    return name;
}

QString QtNameIndex::realName(QObject *object)
{
    const auto entry = m_entries.constFind(object);
    if (entry == m_entries.constEnd())
        return QString();
    if (!entry->name.isEmpty())
        return entry->name;
    const QString name = qualifiedNameFromProperties(describe(object, entry->window));
    m_entries[object].name = name;
    return name;
}

} // namespace Vorkel
