#include "shownobjects.h"

#include "objecttree.h"

#include "objectmodel/objectname.h"

#include <algorithm>
#include <optional>

namespace Vorkel::Runner {

namespace {

/// Classes of what is only there to hold something else, or to be counted in great numbers.
constexpr const char *Unremarkable[] = { "QWidget",     "QFrame",      "QScrollBar",         "QSizeGrip",
                                         "QRubberBand", "QFocusFrame", "QTableCornerButton", "ModelItem",
                                         "HeaderItem" };

bool isRemarkable(const TreeNode &node)
{
    // Qt's own names for the inner parts of its controls.
    if (node.realName.isEmpty() || node.name.startsWith(QLatin1String("qt_")))
        return false;
    const bool hasOwnName = ObjectName(node.realName).properties().contains(QStringLiteral("name"));
    return hasOwnName
            || std::none_of(std::begin(Unremarkable), std::end(Unremarkable), [&](const char *className) {
                   return node.className == QLatin1String(className);
               });
}

/// Whether the object can be seen. Entries of menus count, since one opens a menu to see them.
Failure isShown(RemoteObjects &objects, const TreeNode &node, bool *shown)
{
    const ClassRecord *record = nullptr;
    if (const Failure failure = objects.classOf(node.object, &record); failure.isFailure())
        return failure;
    *shown = node.className.endsWith(QLatin1String("Item"));
    if (!objects.classes().property(record, QStringLiteral("visible")))
        return {};
    QString visible;
    const Failure failure = objects.getProperty(node.object, QStringLiteral("visible"), &visible);
    const bool isEntry =
            node.className == QLatin1String("QAction") || node.className == QLatin1String("QMenu");
    *shown = isEntry ? ObjectName(node.realName).properties().size() > 2 : visible == QLatin1String("true");
    return failure.code == ExitCode::CallFailed ? Failure() : failure;
}

Failure addShown(RemoteObjects &objects, const QList<TreeNode> &nodes, QStringList *names)
{
    for (const TreeNode &node : nodes) {
        bool shown = false;
        Failure failure = isShown(objects, node, &shown);
        if (!failure.isFailure() && shown && isRemarkable(node))
            names->append(node.realName);
        if (!failure.isFailure())
            failure = addShown(objects, node.children, names);
        if (failure.isFailure())
            return failure;
    }
    return {};
}

struct Weakness
{
    const char *key; // in the name
    const char *reason;
};

// The first that holds is the one that counts.
// clang-format off
constexpr Weakness Weaknesses[] = {
    { "occurrence",      "told from others like it by its number alone"             },
    { "text",            "known by its text, which a translation changes"           },
    { "title",           "known by its title, which a translation changes"          },
    { "windowTitle",     "known by its title, which a translation changes"          },
    { "buddy",           "known by its label, whose text a translation changes"     },
    { "placeholderText", "known by its hint, which a translation changes"           },
    { "toolTip",         "known by its tool tip, which a translation changes"       },
    { "accessibleName",  "known by its accessible name, which a translation changes" },
};
// clang-format on

/// "okButton" for a QPushButton with the text "OK".
QString suggestedName(const PropertyMap &properties)
{
    QString text;
    for (const Weakness &weakness : Weaknesses) {
        const PropertyValue value = properties.value(QString::fromLatin1(weakness.key));
        if (value.type() == PropertyValue::Text && qstrcmp(weakness.key, "occurrence") != 0 && text.isEmpty())
            text = value.value();
    }
    if (const PropertyValue buddy = properties.value(QStringLiteral("buddy")); text.isEmpty())
        text = ObjectName(buddy.value()).property(QStringLiteral("text")).value();
    QString type = properties.value(QStringLiteral("type")).value();
    type = type.mid(type.lastIndexOf(u':') + 1);
    if (type.size() > 1 && type.startsWith(u'Q') && type.at(1).isUpper())
        type.remove(0, 1);
    QString name;
    bool startsWord = false;
    for (const QChar letter : text + u' ' + type) {
        if (letter.unicode() < 0x80 && letter.isLetterOrNumber())
            name += name.isEmpty() ? letter.toLower() : startsWord ? letter.toUpper() : letter;
        startsWord = !letter.isLetterOrNumber();
    }
    return name;
}

std::optional<NameFault> faultOf(const QString &realName)
{
    const PropertyMap properties = ObjectName(realName).properties();
    const bool isItem = properties.value(QStringLiteral("type")).value().endsWith(QLatin1String("Item"));
    for (const Weakness &weakness : Weaknesses) {
        if (!properties.contains(QString::fromLatin1(weakness.key)))
            continue;
        const QString help = isItem
                ? QStringLiteral("items have no names of their own; find it by row or index instead")
                : QStringLiteral("call setObjectName(\"%1\") on it").arg(suggestedName(properties));
        return NameFault { realName, QString::fromLatin1(weakness.reason), help };
    }
    return std::nullopt;
}

} // namespace

Failure readShownNames(RemoteObjects &objects, QStringList *names)
{
    QList<TreeNode> nodes;
    const Failure failure = readTree(objects, {}, -1, &nodes);
    return failure.isFailure() ? failure : addShown(objects, nodes, names);
}

QList<NameFault> findFaults(const QStringList &realNames)
{
    QList<NameFault> faults;
    for (const QString &name : realNames) {
        if (const std::optional<NameFault> fault = faultOf(name))
            faults.append(*fault);
    }
    return faults;
}

} // namespace Vorkel::Runner
