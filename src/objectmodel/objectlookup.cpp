#include "objectmodel/objectlookup.h"

#include "objectmodel/delegates.h"
#include "objectmodel/inspector.h"
#include "objectmodel/objectmap.h"
#include "objectmodel/objectname.h"
#include "objectmodel/registry.h"

#include <QStringList>

namespace Vorkel {

namespace {

/// Stands for an escaped dot while a text is split at the others.
constexpr QChar EscapedDot = u'\u0001';

/// Where the hierarchical parts of "{...}.child" begin: the index of "}."; -1 in other names, also in
/// those that have "}." in a value.
qsizetype endOfProperties(const QString &lookup)
{
    if (lookup.size() <= 2 || !lookup.startsWith(u'{'))
        return -1;
    const qsizetype end = lookup.indexOf(QLatin1String("}."));
    return end < 0 || lookup.indexOf(u'}', end + 2) >= 0 ? -1 : end;
}

QStringList splitPath(QString path)
{
    path.replace(QLatin1String("\\."), QString(EscapedDot));
    return path.split(u'.', Qt::SkipEmptyParts);
}

QString unescaped(QString part)
{
    return part.replace(EscapedDot, u'.').replace(QLatin1String("\\\\"), QLatin1String("\\"));
}

/// As the part was written.
QString asWritten(QString part)
{
    return part.replace(EscapedDot, QLatin1String("\\."));
}

QString realName(const QString &name)
{
    if (ObjectMap *map = ObjectMap::self())
        return map->realName(name);
    return name.startsWith(u':') ? name.mid(1) : name;
}

QString printable(const QString &name)
{
    const ObjectMap *map = ObjectMap::self();
    return map ? map->printableName(name) : name;
}

} // namespace

/// How far a path led.
struct ObjectLookup::Walk
{
    SharedPtr<Object> found;
    QStringList path; // the objects that were passed, by name
    QString last; // the part that was looked for last
};

SharedPtr<Object> ObjectLookup::find(const QString &name)
{
    // What is left of an earlier failure would pass for a part of this one.
    m_registry->setError(QString());
    if (name.isEmpty()) {
        m_registry->setError(QStringLiteral("Empty Object Name passed to findObject!"));
        return nullptr;
    }
    QString lookup = realName(name);
    if (name == m_lastName && lookup == m_lastLookup && m_lastFound && !m_lastFound->isInvalidated())
        return m_lastFound;

    const QString resolved = lookup;
    const ObjectName objectName(lookup);
    const qsizetype end = endOfProperties(lookup);
    if (end < 0 && !objectName.isValid()) {
        m_registry->setError(QStringLiteral("Cannot find object with invalid object name: ")
                             + objectName.errorMessage());
        return nullptr;
    }
    if (SharedPtr<Object> found = askDelegates(objectName)) {
        remember(name, resolved, found);
        return found;
    }
    Walk walked;
    if (end >= 0 || !objectName.isMultiProperty()) {
        const QString first = end < 0 ? QString() : lookup.left(end + 1);
        if (end >= 0)
            lookup = lookup.mid(end + 2);
        walked = walk(first, lookup);
        remember(name, resolved, walked.found);
    }
    // While the user is being recorded, nobody replays.
    if (!walked.found && !Inspector::self()->isEventRecording())
        m_registry->setError(failureText(name, lookup, walked));
    return walked.found;
}

SharedPtr<Object> ObjectLookup::askDelegates(const ObjectName &name) const
{
    for (const ObjectHierarchyDelegate *delegate : m_registry->hierarchyDelegates()) {
        if (SharedPtr<Object> found = delegate->objectByQualifiedName(nullptr, name))
            return found;
    }
    return nullptr;
}

/// From the object that `first` names, or from the top when it is empty, down the parts of `path`.
ObjectLookup::Walk ObjectLookup::walk(const QString &first, const QString &path)
{
    Walk walk;
    QStringList parts = splitPath(path);
    if (parts.isEmpty())
        return walk;
    if (first.isEmpty()) {
        walk.last = parts.takeFirst();
        walk.found = m_registry->object(unescaped(walk.last));
    } else {
        walk.found = find(first);
    }
    for (const QString &part : parts) {
        if (!walk.found)
            break;
        walk.path.append(walk.last.isEmpty() ? walk.found->name() : asWritten(walk.last));
        walk.found = walk.found->childByName(unescaped(part));
        walk.last = part;
    }
    return walk;
}

QString ObjectLookup::failureText(const QString &name, const QString &lookup, const Walk &walk) const
{
    const QMap<QString, QStringList> unmatched = m_registry->unmatchedProperties();
    const QString reason = m_registry->takeError();
    QString text = QStringLiteral("Object '%1' not found").arg(name);
    text += reason.isEmpty() ? QStringLiteral(".") : QLatin1String(": ") + reason;
    if (isMultiPropertyName(lookup)) {
        if (!unmatched.isEmpty())
            text += QLatin1String(" Could not match properties:");
        for (auto entry = unmatched.begin(); entry != unmatched.end(); ++entry) {
            text += QStringLiteral("\n    %1 for object name: '%2'")
                            .arg(entry->join(u','), printable(entry.key()));
        }
    } else if (!walk.path.isEmpty()) {
        text += QStringLiteral("\n    Could not find child '%1' under '%2'")
                        .arg(asWritten(walk.last), walk.path.join(u'.'));
    } else if (name.startsWith(u':')) {
        text += QLatin1String(" Object name not found in Object Map.");
    }
    return text;
}

void ObjectLookup::remember(const QString &name, const QString &lookup, const SharedPtr<Object> &found)
{
    m_lastName = name;
    m_lastLookup = lookup;
    m_lastFound = found;
}

} // namespace Vorkel
