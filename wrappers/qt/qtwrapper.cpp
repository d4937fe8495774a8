#include "qtwrapper.h"

#include "qtdesktop.h"
#include "qtgeometry.h"
#include "qthierarchy.h"
#include "qttoolkit.h"
#include "qtwindowtarget.h"

#include "hook/platform/currentplatform.h"
#include "hook/platform/imagetransport.h"
#include "hook/platform/nativeinterface.h"
#include "objectmodel/inspector.h"

#include <QGuiApplication>

namespace Vorkel {

QtWrapper *QtWrapper::self()
{
    static auto *const instance = new QtWrapper;
    return instance;
}

QString QtWrapper::name() const
{
    return QStringLiteral("Qt");
}

bool QtWrapper::ownsObject(const SharedPtr<Object> &object) const
{
    return object && object->wrapperType() == QtHierarchyDelegate::WrapperType;
}

bool QtWrapper::possibleNameMatch(const PropertyMap &mapEntry, const PropertyMap &computed) const
{
    const QString type = QStringLiteral("type");
    const auto entry = mapEntry.constFind(type);
    return entry == mapEntry.constEnd() || entry->matches(computed.value(type).value());
}

bool QtWrapper::isObjectReady(const SharedPtr<Object> &object) const
{
    const QString obstacle = m_readiness.obstacle(object);
    Inspector::self()->setError(obstacle);
    return obstacle.isEmpty();
}

/// `item`, once a person could use it; null with the reason as last error until then.
SharedPtr<Object> QtWrapper::readyItem(const SharedPtr<Object> &container, const SharedPtr<Object> &item,
                                       const QString &description) const
{
    QString why = item ? m_readiness.obstacle(item) : QStringLiteral("there is none");
    // What holds the items may itself be in no state to be used.
    if (const QString obstacle = item ? QString() : m_readiness.obstacle(container); !obstacle.isEmpty())
        why += QStringLiteral("; the container: %1").arg(obstacle);
    if (why.isEmpty())
        return item;
    Inspector::self()->setError(QStringLiteral("Item %1 of '%2' not ready: %3")
                                        .arg(description, container->qualifiedName(), why));
    return nullptr;
}

SharedPtr<Object> QtWrapper::getObjectItemIfReady(const SharedPtr<Object> &object, const QString &item) const
{
    return readyItem(object, QtToolkits::itemByText(object, item), QStringLiteral("'%1'").arg(item));
}

SharedPtr<Object> QtWrapper::getObjectItemIfReady(const SharedPtr<Object> &object, int row, int column) const
{
    return readyItem(object, QtToolkits::itemByPlace(object, row, column),
                     QStringLiteral("(%1, %2)").arg(row).arg(column));
}

// clang-format off
bool QtWrapper::isObjectItemReady(const SharedPtr<Object> &object, const QString &item) const { return bool(getObjectItemIfReady(object, item)); }
bool QtWrapper::isObjectItemReady(const SharedPtr<Object> &object, int row, int column) const { return bool(getObjectItemIfReady(object, row, column)); }
// clang-format on

FunctionCallResult<NativePoint> QtWrapper::pointerMove(const SharedPtr<Object> &object,
                                                       const ObjectPoint &point)
{
    const std::unique_ptr<QtTarget> target = QtToolkits::target(object);
    if (point.defined || !target || target->visibleArea().isEmpty())
        return Wrapper::pointerMove(object, point);
    const QPoint place = target->pressPoint() - target->area().topLeft();
    return Wrapper::pointerMove(object, ObjectPoint::at(place.x(), place.y()));
}

VoidResult QtWrapper::pointerPress(const SharedPtr<Object> &object, const ObjectPoint &point,
                                   MouseButton::Value button, int modifiers, bool press, int count)
{
    if (const std::unique_ptr<QtTarget> target = press ? QtToolkits::target(object) : nullptr)
        (void)QtWindows::activate(target->window());
    return Wrapper::pointerPress(object, point, button, modifiers, press, count);
}

VoidResult QtWrapper::tap(const SharedPtr<Object> &object, int modifiers)
{
    const std::unique_ptr<QtTarget> target = QtToolkits::target(object);
    if (!target || target->visibleArea().isEmpty())
        return VoidResult::failure(QStringLiteral("Object does not have a valid geometry"));
    const FunctionCallResult<int> held = vorkelModifiersToNative(modifiers);
    if (!held.isOk())
        return VoidResult::failure(held.error());
    (void)QtWindows::activate(target->window());
    const QPoint point = QtPixels::toNative(target->window(), target->pressPoint());
    return nativeInterfaceOrRefusal().tap(NativePoint::at(point.x(), point.y()), held.value());
}

QVariant QtWrapper::desktopImage() const
{
    if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        return QVariant();
    const QRect area = QtDesktop::area();
    Screenshot picture;
    picture.image = QtDesktop::picture(area);
    picture.transform.translate(area.x(), area.y());
    return screenshotToVariant(picture);
}

} // namespace Vorkel
