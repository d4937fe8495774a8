#pragma once

#include <QObject>

namespace Vorkel::Runner {

/// Turns the signals that ask a command to end (SIGINT, SIGTERM, SIGHUP) into a Qt signal; those
/// that the caller has us ignore stay ignored. One instance at a time.
class Interrupt : public QObject
{
    Q_OBJECT

public:
    explicit Interrupt(QObject *parent = nullptr);
    ~Interrupt() override;

signals:
    void requested();

private:
    void drain();
};

} // namespace Vorkel::Runner
