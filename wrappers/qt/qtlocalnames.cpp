#include "qtlocalnames.h"

#include "qtstillness.h"
#include "qttoolkit.h"

#include <QHash>

namespace Vorkel {

namespace {

/// The numbers of the unnamed children of one object among those of their class, so that naming all of
/// them takes one look at each. Holds as long as nothing happens.
struct Numbering
{
    const QObject *parent = nullptr;
    quint64 epoch = 0;
    QHash<const QObject *, int> numbers;
};

QHash<const QObject *, int> numberChildren(const QObjectList &children)
{
    QHash<const QObject *, int> numbers;
    QHash<const QMetaObject *, int> counts;
    for (const QObject *child : children) {
        if (child->objectName().isEmpty())
            numbers.insert(child, ++counts[child->metaObject()]);
    }
    return numbers;
}

int numberOf(const QObject *object)
{
    static auto *const last = new Numbering;
    const QObject *parent = object->parent();
    const quint64 epoch = QtStillness::self()->epoch();
    if (epoch != last->epoch || parent != last->parent)
        *last = { parent, epoch,
                  numberChildren(parent ? QtToolkits::childrenOf(parent) : QtToolkits::topLevels()) };
    return last->numbers.value(object, 1);
}

} // namespace

QString QtLocalNames::nameOf(const QObject *object)
{
    if (!object->objectName().isEmpty())
        return object->objectName();
    const QString className = QString::fromLatin1(object->metaObject()->className());
    const int number = numberOf(object);
    return number == 1 ? className : className + QString::number(number);
}

} // namespace Vorkel
