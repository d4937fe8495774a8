#pragma once

#include "qttarget.h"

#include "objectmodel/object.h"

#include <QObject>
#include <QObjectList>

#include <memory>
#include <vector>

namespace Vorkel {

class ObjectName;

/// What a library of Qt adds to the wrapper, where the program uses that library.
class VORKEL_EXPORT QtToolkit
{
public:
    virtual ~QtToolkit() = default;

    /// The objects to begin with, such as windows.
    [[nodiscard]] virtual QObjectList topLevels() const = 0;
    /// What stands below `object` besides its children, such as actions without a parent.
    [[nodiscard]] virtual QObjectList associates(const QObject *object) const = 0;
    /// Whether it is a window that a person would call one: not a menu or a tool tip.
    [[nodiscard]] virtual bool isWindow(const QObject *object) const = 0;
    [[nodiscard]] virtual bool isVisible(const QObject *object) const = 0;
    /// What `object` is the label of; null for objects that are no label.
    [[nodiscard]] virtual QObject *labelled(const QObject *object) const = 0;

    /// What a person can do with the object; null when it cannot be pointed at, such as a model.
    [[nodiscard]] virtual std::unique_ptr<QtTarget> target(const SharedPtr<Object> &object) const = 0;
    /// The picture of a window that this toolkit fills; null for others.
    [[nodiscard]] virtual QImage picture(QWindow *window) const = 0;

    // Items: what can be pointed at and is no QObject, such as the rows of a list

    [[nodiscard]] virtual bool isItemClass(const QString &className) const = 0;
    /// The items of a container, itself an object or an item, that can be seen now.
    [[nodiscard]] virtual ObjectList visibleItems(const SharedPtr<Object> &container) const = 0;
    /// The item of `container` that `name` describes; null when there is none.
    [[nodiscard]] virtual SharedPtr<Object> findItem(const SharedPtr<Object> &container,
                                                     const ObjectName &name) const = 0;
    /// The first item of `container` that bears this text; null when there is none.
    [[nodiscard]] virtual SharedPtr<Object> itemByText(const SharedPtr<Object> &container,
                                                       const QString &text) const = 0;
    [[nodiscard]] virtual SharedPtr<Object> itemByPlace(const SharedPtr<Object> &container, int row,
                                                        int column) const = 0;
};

/// All toolkits of this process together. Each lives as long as the process.
namespace QtToolkits {

VORKEL_EXPORT void add(const QtToolkit *toolkit);

/// The last toolkit that was added is asked first; without a window there is the application object.
[[nodiscard]] VORKEL_EXPORT QObjectList topLevels();
/// The children in the order in which they were made, then what is associated.
[[nodiscard]] VORKEL_EXPORT QObjectList childrenOf(const QObject *object);
[[nodiscard]] VORKEL_EXPORT bool isWindow(const QObject *object);
[[nodiscard]] VORKEL_EXPORT bool isVisible(const QObject *object);
[[nodiscard]] VORKEL_EXPORT QObject *labelled(const QObject *object);
/// The toolkit that has items of this class; null when none has.
[[nodiscard]] const QtToolkit *ofItemClass(const QString &className);
[[nodiscard]] ObjectList visibleItems(const SharedPtr<Object> &container);
[[nodiscard]] SharedPtr<Object> itemByText(const SharedPtr<Object> &container, const QString &text);
[[nodiscard]] SharedPtr<Object> itemByPlace(const SharedPtr<Object> &container, int row, int column);
/// By the toolkit that knows the object; windows are known without one.
[[nodiscard]] std::unique_ptr<QtTarget> target(const SharedPtr<Object> &object);
[[nodiscard]] VORKEL_EXPORT QImage picture(QWindow *window);

/// Visits all objects, parents before their children, until `visit(object, window)` gives false;
/// `window` is the one that the object is or stands in, null when there is none.
template <typename Visit>
void walk(const Visit &visit);

} // namespace QtToolkits

namespace QtToolkits::Detail {

template <typename Visit>
bool walk(QObject *object, QObject *window, const Visit &visit)
{
    if (isWindow(object))
        window = object;
    if (!visit(object, window))
        return false;
    // Asking an object for a property may give it children.
    for (QObject *child : childrenOf(object)) {
        if (!walk(child, window, visit))
            return false;
    }
    return true;
}

} // namespace QtToolkits::Detail

template <typename Visit>
void QtToolkits::walk(const Visit &visit)
{
    for (QObject *object : topLevels()) {
        if (!Detail::walk(object, nullptr, visit))
            return;
    }
}

} // namespace Vorkel
