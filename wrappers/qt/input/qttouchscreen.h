#pragma once

#include "hook/platform/nativeinterface.h"

#include <QMap>
#include <QPoint>
#include <QPointer>
#include <QWindow>

class QPointingDevice;

namespace Vorkel {

/// A touch screen for the program. Points are native pixels.
class QtTouchScreen
{
public:
    /// `finger` tells touches that go on at the same time apart.
    VoidResult touch(NativeInterface::TouchType type, const NativePoint &point, unsigned finger,
                     Qt::KeyboardModifiers modifiers);

private:
    QPointingDevice *m_device = nullptr; // Qt's, once it is registered
    QMap<unsigned, QPoint> m_fingers; // those that are down
    QPointer<QWindow> m_window; // that the first one touched
};

} // namespace Vorkel
