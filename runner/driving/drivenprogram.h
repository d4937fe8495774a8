#pragma once

#include "remoteobjects.h"

#include <QElapsedTimer>

#include <functional>
#include <memory>

namespace Vorkel::Runner {

/// Hears of each step when it is over.
class StepListener
{
public:
    virtual ~StepListener() = default;
    /// `text` says what was done, with the names of the objects; the failure is none when it went well.
    virtual void stepEnded(const QString &text, qint64 elapsedMs, const Failure &failure) = 0;
};

/// How a program is started and driven.
struct LaunchSettings
{
    SessionSettings session;
    int limitMs = 10000; ///< for each step
    QString objectMap; ///< in its text form; empty: none
};

/// A program that is driven, from its start to its end. Whatever goes wrong with it is told as the failure
/// of the step that it happened in, within the limit of that step.
class DrivenProgram : public std::enable_shared_from_this<DrivenProgram>
{
public:
    /// `listener` may be null, else it lives longer.
    DrivenProgram(const LaunchSettings &settings, StepListener *listener);

    Failure launch(const QStringList &command);
    /// Closes the program's windows and waits for its end; fails when it runs on, or does not end well.
    Failure quit();
    /// Ends the program now.
    void end();

    /// Whether it can be talked to.
    [[nodiscard]] bool isRunning() const { return m_session && m_session->isConnected(); }
    [[nodiscard]] bool hasEndedWell() const { return m_session && m_session->hasEndedWell(); }
    /// Whether it has failed to answer in time.
    [[nodiscard]] bool isHanging() const { return m_isHanging; }
    /// The name of its executable.
    [[nodiscard]] const QString &name() const { return m_name; }
    [[nodiscard]] int limitMs() const { return m_settings.limitMs; }
    /// Only between `launch` and the end.
    [[nodiscard]] RemoteObjects &objects() { return *m_objects; }

    /// Does `work` as one step called `what`, which may take `limitMs`, or the program's own limit when that
    /// is negative, and tells the listener. The failure says what the step was.
    Failure step(const QString &what, const std::function<Failure()> &work, int limitMs = -1);
    /// The same for a step that waits for the program to run or to end, and also when it has ended.
    Failure watch(const QString &what, const std::function<bool()> &happened);
    /// Within a step: repeats `attempt` until the program no longer refuses it, or the step's limit is over.
    /// Gives what the last attempt gave.
    Failure retry(const std::function<Failure()> &attempt);
    /// Lets the program go on for so long.
    void idle(int ms);

private:
    Failure closeWindows();
    Failure unusable() const;
    Failure judged(const QString &what, Failure failure);
    void tell(const QString &what, const Failure &failure);

    LaunchSettings m_settings;
    StepListener *m_listener;
    std::unique_ptr<Session> m_session;
    std::unique_ptr<RemoteObjects> m_objects;
    QString m_name;
    QElapsedTimer m_sinceStep;
    int m_stepLimitMs = 0;
    int m_depth = 0; ///< of steps in steps, of which the outermost is told
    bool m_isHanging = false;
};

} // namespace Vorkel::Runner
