#pragma once

#include <QObject>

namespace Vorkel {

/// Counts what input reached the windows of the application: pressed and released buttons, released keys,
/// turned wheels, touches that began or ended. Whoever injects input waits for it to have arrived by that.
class QtInputCount : public QObject
{
    Q_OBJECT

public:
    /// Lives as long as the process and counts from the first question on.
    [[nodiscard]] static QtInputCount *self();

    [[nodiscard]] int count();

    bool eventFilter(QObject *receiver, QEvent *event) override;

private:
    QObject *m_watched = nullptr; // the application object
    int m_count = 0;
};

} // namespace Vorkel
