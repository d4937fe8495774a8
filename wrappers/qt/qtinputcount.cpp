#include "qtinputcount.h"

#include <QCoreApplication>
#include <QEvent>

namespace Vorkel {

QtInputCount *QtInputCount::self()
{
    static auto *const instance = new QtInputCount;
    return instance;
}

int QtInputCount::count()
{
    QCoreApplication *application = QCoreApplication::instance();
    if (application && m_watched != application) {
        application->installEventFilter(this);
        m_watched = application;
    }
    return m_count;
}

bool QtInputCount::eventFilter(QObject *receiver, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    // A key that a shortcut consumes reaches no window when it goes down.
    case QEvent::KeyRelease:
    case QEvent::Wheel:
    case QEvent::TouchBegin:
    case QEvent::TouchEnd:
        m_count += receiver->isWindowType() && event->spontaneous();
        break;
    default:
        break;
    }
    return false;
}

} // namespace Vorkel
