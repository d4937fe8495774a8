#include "qtinputwatch.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace Vorkel {

namespace {

bool isModifier(const QEvent *event)
{
    switch (static_cast<const QKeyEvent *>(event)->key()) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
        return true;
    default:
        return false;
    }
}

bool isInput(const QEvent *event)
{
    // Qt makes events of its own, too, but drops only of what lets go of what was dragged.
    if (!event->spontaneous())
        return event->type() == QEvent::Drop;
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::Wheel:
    case QEvent::TouchBegin:
    case QEvent::TouchEnd:
        return true;
    // A key that a shortcut consumes reaches no window when it goes down.
    case QEvent::KeyRelease:
        return !isModifier(event);
    default:
        return false;
    }
}

} // namespace

QtInputWatch *QtInputWatch::self()
{
    static auto *const instance = new QtInputWatch;
    return instance;
}

void QtInputWatch::start()
{
    QCoreApplication *const application = QCoreApplication::instance();
    if (!application || m_watched == application)
        return;
    application->installEventFilter(this);
    m_watched = application;
}

bool QtInputWatch::eventFilter(QObject *receiver, QEvent *event)
{
    if (receiver->isWindowType() && isInput(event))
        emit inputHandled();
    return false;
}

} // namespace Vorkel
