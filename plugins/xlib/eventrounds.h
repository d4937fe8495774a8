#pragma once

#include <QElapsedTimer>
#include <QObject>

#include <functional>

namespace Vorkel {

/// Tells whether the application that we run in has had the time to read what we injected: counts how often
/// its event loop had nothing more to do. Costs nothing while nothing is injected.
class EventRounds : public QObject
{
public:
    /// `settled` is called when the application has read everything.
    explicit EventRounds(std::function<void()> settled);

    /// Something is being injected. False when there is no event loop on this thread to be watched.
    bool inject();
    [[nodiscard]] int round() const { return m_round; }
    /// What was injected in `round` has been read.
    [[nodiscard]] bool isRead(int round) const { return m_round >= round + RoundsToRead; }

private:
    static constexpr int RoundsToRead = 2;
    static constexpr int SettledMs = 100;

    void aboutToBlock();

    std::function<void()> m_settled;
    QMetaObject::Connection m_connection;
    QElapsedTimer m_lastInjection;
    int m_round = 0;
};

} // namespace Vorkel
