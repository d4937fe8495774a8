#pragma once

#include <QObject>

namespace Vorkel::Runner {

/// Turns the signals that ask a command to end (SIGINT, SIGTERM, SIGHUP) into a Qt signal of every
/// instance; those that the caller has us ignore stay ignored. While there is an instance, they do not end
/// the process.
class Interrupt : public QObject
{
    Q_OBJECT

public:
    explicit Interrupt(QObject *parent = nullptr);
    ~Interrupt() override;

    /// What to call in the signal handler itself, null for nothing: only what POSIX allows there.
    static void setImmediate(void (*immediate)());

signals:
    void requested();

private:
    void drain();
};

} // namespace Vorkel::Runner
