#include "eventrounds.h"

#include <QAbstractEventDispatcher>
#include <QThread>

namespace Vorkel {

EventRounds::EventRounds(std::function<void()> settled)
    : m_settled(std::move(settled))
{
}

bool EventRounds::inject()
{
    auto *const dispatcher = QAbstractEventDispatcher::instance();
    if (!dispatcher || thread() != QThread::currentThread())
        return false;
    m_lastInjection.start();
    if (!m_connection) {
        m_connection = connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this,
                               &EventRounds::aboutToBlock);
    }
    return true;
}

void EventRounds::aboutToBlock()
{
    ++m_round;
    if (!m_lastInjection.hasExpired(SettledMs))
        return;
    m_round += RoundsToRead;
    disconnect(m_connection);
    m_settled();
}

} // namespace Vorkel
