#pragma once

#include "qtproperties.h"

#include "objectmodel/propertyvalue.h"

#include <QHash>
#include <QList>
#include <QObject>

namespace Vorkel {

/// All objects of the application by what a name may say of them, to tell which names are unique. Holds as
/// long as nothing happens in the application.
class QtNameIndex
{
public:
    QtNameIndex();

    /// See `QtNames::realName`.
    [[nodiscard]] QString realName(QObject *object);

private:
    /// What tells an object from others of its class: a key of names and its value. Without a key it is
    /// the class alone.
    struct Mark
    {
        const char *key = nullptr;
        QString value;
    };

    struct Entry
    {
        QObject *window;
        QString name; // made when it is asked for
    };

    /// Objects of a class that bear the same mark.
    struct Group
    {
        QList<QObject *> members; // once sorted, those that can be seen stand first
        bool isSorted = false;
        QHash<const QObject *, int> positions; // of a large group, once they are asked for
    };

    struct GroupKey
    {
        const QObject *window; // null: in all windows
        const QMetaObject *type;
        const char *key; // of the mark; one of few constants
        QString value;

        friend bool operator==(const GroupKey &, const GroupKey &) = default;
        friend std::size_t qHash(const GroupKey &of, std::size_t seed = 0) noexcept
        {
            return qHashMulti(seed, of.window, of.type, of.key, of.value);
        }
    };

    void add(QObject *object, QObject *window);
    [[nodiscard]] const QMetaObject *typeOf(const QObject *object);
    [[nodiscard]] QString read(const QObject *object, const char *property);
    [[nodiscard]] Mark captionOf(const QObject *object, const QObject *window);
    [[nodiscard]] QList<Mark> marksOf(const QObject *object, const QObject *window);
    [[nodiscard]] Mark chooseMark(const QObject *object, const QObject *window);
    [[nodiscard]] Group &groupOf(const QObject *object, const QObject *window, const Mark &mark);
    [[nodiscard]] int positionIn(Group &group, QObject *object);
    [[nodiscard]] QObject *containerOf(const QObject *object, const QObject *window);
    [[nodiscard]] bool describeByContainer(QObject *object, const QObject *window, const Mark &mark,
                                           PropertyMap *name);
    [[nodiscard]] PropertyMap describe(QObject *object, QObject *window);

    QHash<const QObject *, Entry> m_entries;
    QHash<const QObject *, QObject *> m_labels; // by what they label
    QHash<GroupKey, Group> m_groups;
    QHash<const QMetaObject *, const QMetaObject *> m_types; // one for all that have the same name
    QHash<QByteArray, const QMetaObject *> m_typeByName;
    QHash<const char *, QtPropertyReader> m_readers;
};

} // namespace Vorkel
