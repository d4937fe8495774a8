#include "session.h"

#include "injection.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QEventLoop>
#include <QScopeGuard>
#include <QTimer>

namespace Vorkel::Runner {

namespace {

constexpr int TickMs = 200;
constexpr int EndAfterConnectionMs = 500;
/// What a call takes that waits for nobody.
constexpr int MomentMs = 250;

/// Where the program finds what belongs to this command, such as plug-ins: the folder above `bin`.
const QString PrefixVariable = QStringLiteral("VORKEL_PREFIX");

} // namespace

Session::Session(const SessionSettings &settings, QObject *parent)
    : QObject(parent)
    , m_settings(settings)
{
    connect(&m_interrupt, &Interrupt::requested, this, [this] { m_interrupted = true; });
    connect(&m_server, &MessagingServer::newChannel, this, [this](AsyncMessageChannel *channel) {
        if (m_milestones.connected == 0)
            m_milestones.connected = m_sinceStart.nsecsElapsed();
        m_registrar.addChannel(channel);
    });
    connect(&m_registrar, &IPCHandshaker::newChannel, this, &Session::takeIn);
}

Session::~Session()
{
    m_program.end();
    // Before the listeners of its calls.
    qDeleteAll(findChildren<Application *>(Qt::FindDirectChildrenOnly));
}

Failure Session::listen()
{
    const VoidResult result = m_server.listen(m_settings.host, m_settings.port);
    return result.isOk() ? Failure() : Failure { ExitCode::CannotListen, result.error() };
}

QProcessEnvironment Session::programEnvironment(const QString &preload) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(PreloadVariable), preload);
    environment.insert(QStringLiteral("VORKEL_RUNNERID"), QString::number(Protocol::ServerAddress));
    environment.insert(QStringLiteral("VORKEL_SERVERADDRESS"), m_settings.host);
    environment.insert(QStringLiteral("VORKEL_PORT"), QString::number(m_server.port()));
    environment.insert(QStringLiteral("VORKEL_APPID"), QString::number(Registrar::FirstApplication));
    environment.insert(QStringLiteral("VORKEL_RECORD"), QStringLiteral("0"));
    if (!environment.contains(PrefixVariable))
        environment.insert(PrefixVariable,
                           QDir::cleanPath(QCoreApplication::applicationDirPath() + QLatin1String("/..")));
    if (!m_settings.platform.isEmpty())
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), m_settings.platform);
    for (auto entry = m_settings.environment.begin(); entry != m_settings.environment.end(); ++entry)
        environment.insert(entry.key(), *entry);
    return environment;
}

Failure Session::start(const QStringList &command)
{
    const auto preload = preloadValue(QProcessEnvironment::systemEnvironment());
    if (!preload.isOk())
        return { ExitCode::NoProgram, preload.error() };
    if (const Failure failure = listen(); failure.isFailure())
        return failure;
    m_sinceStart.start();
    if (const Failure failure = m_program.start(command, programEnvironment(preload.value()));
        failure.isFailure())
        return failure;
    const Failure failure = waitUntil(QStringLiteral("%1 to connect").arg(command.first()),
                                      [this] { return m_application != nullptr; });
    if (failure.isFailure())
        return failure;
    return waitUntil(QStringLiteral("%1 to reach its event loop").arg(command.first()),
                     [this] { return m_application->stage() == Application::Stage::Ready; });
}

void Session::takeIn(AsyncMessageChannel *channel, const ClientData &data)
{
    auto *application = new Application(channel, data, this);
    if (m_application)
        return;
    m_application = application;
    m_milestones.shookHands = m_sinceStart.nsecsElapsed();
    connect(application, &Application::stageChanged, this, &Session::noteStage);
    connect(application, &Application::classesAnnounced, this, &Session::classesAnnounced);
}

void Session::noteStage()
{
    const bool ready = m_application->stage() == Application::Stage::Ready;
    (ready ? m_milestones.ready : m_milestones.initialised) = m_sinceStart.nsecsElapsed();
}

struct Session::Reply : ResponseListener<ArgumentList>
{
    explicit Reply(const QString &name)
        : function(name)
    {
    }
    void response(const FunctionCallResult<ArgumentList> &outcome) override { result = outcome; }

    QString function;
    std::optional<FunctionCallResult<ArgumentList>> result;
};

Session::PendingCall Session::begin(const QString &name, const ArgumentList &arguments)
{
    const auto call = std::make_shared<Reply>(name);
    m_pendingCalls.removeIf([](const PendingCall &other) { return other->result.has_value(); });
    m_pendingCalls.append(call);
    if (isConnected())
        m_application->call(name, arguments, call.get());
    return call;
}

Failure Session::await(const PendingCall &call, ArgumentList *reply)
{
    const Failure failure = waitUntil(QStringLiteral("the reply to %1").arg(call->function),
                                      [&] { return call->result.has_value(); });
    return failure.isFailure() ? failure : outcome(call, reply);
}

/// What a call came to that is over.
Failure Session::outcome(const PendingCall &call, ArgumentList *values)
{
    if (!call->result->isOk()) {
        const Failure lost = whyNot();
        return lost.isFailure() ? lost : Failure { ExitCode::CallFailed, call->result->error() };
    }
    *values = call->result->value();
    return {};
}

Failure Session::call(const QString &name, const ArgumentList &arguments, ArgumentList *reply)
{
    const Failure lost = whyNot();
    return lost.isFailure() ? lost : await(begin(name, arguments), reply);
}

Failure Session::callOrLeave(const QString &name, const ArgumentList &arguments, ArgumentList *reply)
{
    if (const Failure lost = whyNot(); lost.isFailure())
        return lost;
    const PendingCall open = begin(name, arguments);
    const QDeadlineTimer moment(MomentMs);
    Failure failure = waitUntil(QStringLiteral("the reply to %1").arg(name),
                                [&] { return open->result.has_value() || moment.hasExpired(); });
    // Asked behind the call, so the answer comes behind its reply unless that waits for something.
    ArgumentList answer;
    if (!failure.isFailure() && !open->result)
        failure = call(QStringLiteral("getPID"), {}, &answer);
    return failure.isFailure() || !open->result ? failure : outcome(open, reply);
}

Failure Session::send(const QString &name, const ArgumentList &arguments)
{
    if (m_application->send(name, arguments))
        return {};
    const Failure lost = whyNot();
    return lost.isFailure() ? lost : Failure { ExitCode::CallFailed, QStringLiteral("could not be sent") };
}

bool Session::awaitEnd(int limitMs)
{
    QEventLoop loop;
    connect(&m_program, &Program::ended, &loop, &QEventLoop::quit);
    connect(&m_interrupt, &Interrupt::requested, &loop, &QEventLoop::quit);
    QTimer::singleShot(limitMs, &loop, &QEventLoop::quit);
    if (!m_program.hasEnded() && !m_interrupted)
        loop.exec();
    return m_program.hasEnded();
}

bool Session::hasEndedWell()
{
    return m_application && !m_application->isOpen() && m_program.awaitEnd(EndAfterConnectionMs)
            && m_program.endedWell();
}

void Session::idle(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

/// Why what is waited for can no longer happen.
Failure Session::whyNot()
{
    if (m_interrupted)
        return { ExitCode::Interrupted, QStringLiteral("interrupted") };
    if (!m_application)
        return m_program.hasEnded() ? endedBeforeConnecting() : Failure();
    if (m_application->isOpen())
        return {};
    // The connection goes a moment before the process does.
    const QString how = m_program.awaitEnd(EndAfterConnectionMs) ? m_program.ending()
                                                                 : QStringLiteral("closed the connection");
    const bool ready = m_application->stage() == Application::Stage::Ready;
    const QString when = ready ? QString() : QStringLiteral(" before it reached its event loop");
    return { ExitCode::ConnectionLost,
             withLastWords(QStringLiteral("'%1' %2").arg(m_application->name(), how) + when) };
}

Failure Session::endedBeforeConnecting() const
{
    if (m_program.isKnownToLackQt())
        return lacksQt(QStringLiteral("before it ") + m_program.ending());
    return {
        ExitCode::EndedEarly,
        withLastWords(QStringLiteral("'%1' %2 before it connected").arg(m_program.name(), m_program.ending()))
    };
}

/// A program without Qt may still have started one with it.
Failure Session::lacksQt(const QString &until) const
{
    return { ExitCode::NoQtProgram,
             withLastWords(QStringLiteral("'%1' is no dynamically linked Qt 6 program (it does not load "
                                          "libQt6Core.so.6), and nothing connected %2")
                                   .arg(m_program.name(), until)) };
}

QString Session::withLastWords(const QString &text) const
{
    const QString words = m_program.lastWords();
    return words.isEmpty() ? text : QStringLiteral("%1; its last words:\n%2").arg(text, words);
}

Failure Session::timedOut(const QString &what) const
{
    const QString limit = QString::number(m_settings.timeoutMs / 1000.0);
    if (!m_application && m_program.isKnownToLackQt())
        return lacksQt(QStringLiteral("within %1 s").arg(limit));
    const QString text = QStringLiteral("waited %1 s in vain for %2").arg(limit, what);
    return { ExitCode::NeverConnected, m_application ? text : withLastWords(text) };
}

Failure Session::waitUntil(const QString &what, const std::function<bool()> &happened)
{
    QEventLoop loop;
    QTimer ticks;
    ticks.start(TickMs);
    QElapsedTimer elapsed;
    elapsed.start();
    connect(&ticks, &QTimer::timeout, this, [&] { emit waiting(what, static_cast<int>(elapsed.elapsed())); });
    const auto tellEnd = qScopeGuard([this] { emit waited(); });
    while (!happened()) {
        if (const Failure failure = whyNot(); failure.isFailure())
            return failure;
        if (elapsed.elapsed() > m_settings.timeoutMs)
            return timedOut(what);
        loop.processEvents(QEventLoop::WaitForMoreEvents);
    }
    return {};
}

} // namespace Vorkel::Runner
