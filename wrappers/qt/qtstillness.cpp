#include "qtstillness.h"

#include "hook/hook.h"

#include <QCoreApplication>
#include <QThread>

namespace Vorkel {

namespace {

bool isHooks(const QObject *receiver)
{
    for (const QObject *at = receiver; at; at = at->parent()) {
        if (at == Hook::hook)
            return true;
    }
    return false;
}

} // namespace

QtStillness *QtStillness::self()
{
    static auto *const instance = new QtStillness;
    return instance;
}

quint64 QtStillness::epoch()
{
    // When an event loop ends, the application goes on where it had started it, without an event.
    const int loopLevel = QThread::currentThread()->loopLevel();
    if (!m_watched || m_watched != QCoreApplication::instance() || loopLevel != m_loopLevel) {
        disturb();
        m_loopLevel = loopLevel;
        m_watched = QCoreApplication::instance();
        if (m_watched)
            m_watched->installEventFilter(this);
    }
    return m_epoch;
}

void QtStillness::disturb()
{
    ++m_epoch;
    if (m_watched)
        m_watched->removeEventFilter(this);
    m_watched.clear();
}

bool QtStillness::eventFilter(QObject *receiver, QEvent *)
{
    if (!isHooks(receiver))
        disturb();
    return false;
}

} // namespace Vorkel
