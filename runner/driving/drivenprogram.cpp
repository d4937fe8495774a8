#include "drivenprogram.h"

#include <QFileInfo>
#include <QScopeGuard>

#include <algorithm>

namespace Vorkel::Runner {

namespace {

/// Between two looks, short enough that nobody waits for it. What has to be seen in one place for a frame of
/// 16 ms has been, at the second look.
constexpr int PollMs = 17;
/// A reply may always take so long, also at the end of a step.
constexpr int LeastReplyMs = 1000;

} // namespace

DrivenProgram::DrivenProgram(const LaunchSettings &settings, StepListener *listener)
    : m_settings(settings)
    , m_listener(listener)
{
}

Failure DrivenProgram::launch(const QStringList &command)
{
    m_name = QFileInfo(command.value(0)).fileName();
    m_session = std::make_unique<Session>(m_settings.session);
    m_objects = std::make_unique<RemoteObjects>(m_session.get());
    m_sinceStep.start();
    Failure failure = m_session->start(command);
    if (!failure.isFailure())
        failure = m_objects->readClasses();
    if (!failure.isFailure() && !m_settings.objectMap.isEmpty())
        failure = m_objects->setObjectMap(m_settings.objectMap);
    const QString what = QStringLiteral("launch %1").arg(command.join(u' '));
    if (failure.isFailure())
        failure.text = QStringLiteral("%1: %2").arg(what, failure.text);
    tell(what, failure);
    if (failure.isFailure())
        end();
    return failure;
}

Failure DrivenProgram::closeWindows()
{
    QList<ObjectHandle> windows;
    if (const Failure failure = m_objects->children({}, &windows); failure.isFailure())
        return failure;
    for (const ObjectHandle &window : windows) {
        const ClassRecord *record = nullptr;
        QVariant isVisible;
        QVariant nothing;
        Failure failure = m_objects->classOf(window, &record);
        if (!failure.isFailure() && m_objects->classes().inherits(record, QStringLiteral("QWidget")))
            failure = m_objects->getProperty(window, QStringLiteral("visible"), &isVisible);
        if (!failure.isFailure() && isVisible.toBool())
            failure = m_objects->invoke(window, QStringLiteral("close"), {}, &nothing);
        // What was a window may have gone with the one before.
        if (failure.isFailure() && failure.code != ExitCode::CallFailed)
            return failure;
    }
    return {};
}

Failure DrivenProgram::quit()
{
    return step(QStringLiteral("quit %1").arg(m_name), [this] {
        Failure failure = closeWindows();
        if (failure.code == ExitCode::ConnectionLost && hasEndedWell())
            return Failure();
        if (!failure.isFailure() && !m_session->awaitEnd(m_settings.limitMs))
            failure = { ExitCode::CallFailed, QStringLiteral("it runs on when its windows are closed") };
        else if (!failure.isFailure() && !hasEndedWell())
            failure = m_session->whyNot();
        return failure;
    });
}

void DrivenProgram::end()
{
    m_objects.reset();
    m_session.reset();
}

void DrivenProgram::idle(int ms)
{
    m_session->idle(ms);
}

/// Why no step can be taken at all.
Failure DrivenProgram::unusable() const
{
    if (!m_session)
        return { ExitCode::ConnectionLost, QStringLiteral("'%1' is not running any more").arg(m_name) };
    return m_session->whyNot();
}

Failure DrivenProgram::judged(const QString &what, Failure failure)
{
    if (!failure.isFailure())
        return failure;
    if (failure.code == ExitCode::NeverConnected) {
        m_isHanging = true;
        failure.text = QStringLiteral("'%1' does not answer (%2)").arg(m_name, failure.text);
    } else if (failure.code == ExitCode::CallFailed && m_sinceStep.elapsed() >= m_stepLimitMs) {
        failure.text += QStringLiteral("\n(tried for %1 s)").arg(m_stepLimitMs / 1000.0);
    }
    const QLatin1String separator(failure.text.startsWith(u'\n') ? ":" : ": ");
    failure.text = what + separator + failure.text;
    return failure;
}

void DrivenProgram::tell(const QString &what, const Failure &failure)
{
    if (m_listener)
        m_listener->stepEnded(what, m_sinceStep.elapsed(), failure);
}

Failure DrivenProgram::step(const QString &what, const std::function<Failure()> &work, int limitMs)
{
    if (m_depth > 0)
        return work();
    ++m_depth;
    const auto leave = qScopeGuard([this] { --m_depth; });
    m_stepLimitMs = limitMs < 0 ? m_settings.limitMs : limitMs;
    m_sinceStep.start();
    Failure failure = unusable();
    if (!failure.isFailure()) {
        m_session->setReplyLimit(std::max(m_stepLimitMs, LeastReplyMs));
        m_isHanging = false;
        failure = work();
    }
    if (isRunning() && !failure.isFailure())
        (void)m_objects->giveBack();
    failure = judged(what, failure);
    tell(what, failure);
    return failure;
}

Failure DrivenProgram::watch(const QString &what, const std::function<bool()> &happened)
{
    m_stepLimitMs = m_settings.limitMs;
    m_sinceStep.start();
    while (!happened() && !m_sinceStep.hasExpired(m_stepLimitMs) && m_session)
        m_session->idle(PollMs);
    Failure failure = happened() ? Failure() : unusable();
    if (!happened() && !failure.isFailure())
        failure = { ExitCode::CallFailed, QStringLiteral("it runs") };
    failure = judged(what, failure);
    tell(what, failure);
    return failure;
}

Failure DrivenProgram::retry(const std::function<Failure()> &attempt)
{
    for (;;) {
        const auto left = std::max(0, m_stepLimitMs - static_cast<int>(m_sinceStep.elapsed()));
        m_session->setReplyLimit(std::max(left, LeastReplyMs));
        const Failure failure = attempt();
        if (failure.code != ExitCode::CallFailed || failure.isFinal || left == 0)
            return failure;
        m_session->idle(std::min(PollMs, left));
    }
}

} // namespace Vorkel::Runner
