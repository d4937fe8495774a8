#include "qttouchscreen.h"

#include "qtgeometry.h"

#include <QGuiApplication>
#include <QPointingDevice>

#include <qpa/qwindowsysteminterface.h>

namespace Vorkel {

namespace {

constexpr int MaxFingers = 10;
/// In pixels.
constexpr int FingerSize = 8;

QPointingDevice *createDevice()
{
    // Above what a platform counts its devices with.
    constexpr qint64 SystemId = 0x766F726B;
    auto *device = new QPointingDevice(
            QStringLiteral("Vorkel touch screen"), SystemId, QInputDevice::DeviceType::TouchScreen,
            QPointingDevice::PointerType::Finger, QInputDevice::Capability::Position, MaxFingers, 0);
    QWindowSystemInterface::registerInputDevice(device);
    return device;
}

QEventPoint::State stateOf(NativeInterface::TouchType type)
{
    if (type == NativeInterface::TouchDown)
        return QEventPoint::State::Pressed;
    return type == NativeInterface::TouchUp ? QEventPoint::State::Released : QEventPoint::State::Updated;
}

} // namespace

VoidResult QtTouchScreen::touch(NativeInterface::TouchType type, const NativePoint &point, unsigned finger,
                                Qt::KeyboardModifiers modifiers)
{
    const QPoint place(point.x, point.y);
    if (m_fingers.isEmpty())
        m_window = QGuiApplication::topLevelAt(QtPixels::fromNative(place));
    if (!m_window)
        return VoidResult::failure(
                QStringLiteral("There is no window at (%1, %2)").arg(point.x).arg(point.y));
    if (type != NativeInterface::TouchDown && !m_fingers.contains(finger))
        return VoidResult::failure(QStringLiteral("Finger %1 is not down").arg(finger));
    if (!m_device)
        m_device = createDevice();
    m_fingers.insert(finger, place);
    QList<QWindowSystemInterface::TouchPoint> points;
    for (auto each = m_fingers.cbegin(); each != m_fingers.cend(); ++each) {
        QWindowSystemInterface::TouchPoint touched;
        touched.id = static_cast<int>(each.key());
        touched.area =
                QRectF(each.value() - QPoint(FingerSize / 2, FingerSize / 2), QSize(FingerSize, FingerSize));
        touched.state = each.key() == finger ? stateOf(type) : QEventPoint::State::Stationary;
        touched.pressure = touched.state == QEventPoint::State::Released ? 0 : 1;
        points.append(touched);
    }
    QWindowSystemInterface::handleTouchEvent<QWindowSystemInterface::AsynchronousDelivery>(m_window, m_device,
                                                                                           points, modifiers);
    if (type == NativeInterface::TouchUp)
        m_fingers.remove(finger);
    return {};
}

} // namespace Vorkel
