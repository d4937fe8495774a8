#pragma once

#include "application.h"
#include "exitcode.h"
#include "interrupt.h"
#include "program.h"
#include "registrar.h"
#include "tcpserver.h"

#include <QElapsedTimer>
#include <QMap>

#include <functional>
#include <memory>
#include <optional>

namespace Vorkel::Runner {

/// Where to listen and how long to wait.
struct SessionSettings
{
    QString host = QStringLiteral("127.0.0.1");
    quint16 port = 0; ///< 0: the system picks one
    int timeoutMs = 30000; ///< for the program to connect and run, and for each reply
    QString platform; ///< Qt's platform plug-in for the program; empty leaves it to the program
    QMap<QString, QString> environment {}; ///< variables of the program besides those of this process
};

/// When the program reached each stage, in nanoseconds since it was started.
struct Milestones
{
    qint64 connected = 0;
    qint64 shookHands = 0;
    qint64 initialised = 0;
    qint64 ready = 0;
};

/// A program under test: starts it, waits for it and talks to it, one thing after the other.
/// Whatever was started has ended when the session is destroyed.
class Session : public QObject
{
    Q_OBJECT

    struct Reply;

public:
    /// A call that has been made and may be awaited, or be forgotten.
    using PendingCall = std::shared_ptr<Reply>;

    explicit Session(const SessionSettings &settings, QObject *parent = nullptr);
    ~Session() override;

    /// Starts `command` and waits until its event loop runs, for at most the time limit.
    Failure start(const QStringList &command);
    /// Calls a remote function of the program and waits for the reply, for at most the time limit.
    /// A refused call has the code `ExitCode::CallFailed`.
    Failure call(const QString &name, const ArgumentList &arguments, ArgumentList *reply);
    /// The same for a call that may open a dialog and answer only when that is closed: one that is not
    /// answered in a moment, while the program answers others, is left behind, and `*reply` is empty.
    Failure callOrLeave(const QString &name, const ArgumentList &arguments, ArgumentList *reply);
    /// Only makes the call. The program takes calls in the order in which they were made; whoever wants the
    /// reply awaits it, and may make others before.
    PendingCall begin(const QString &name, const ArgumentList &arguments);
    /// What is left of `call` behind `begin`.
    Failure await(const PendingCall &call, ArgumentList *reply);
    /// Sends a one-way message.
    Failure send(const QString &name, const ArgumentList &arguments);

    /// How long to wait for each reply from here on.
    void setReplyLimit(int ms) { m_settings.timeoutMs = ms; }
    /// Waits for the end of the program, for at most `limitMs`; whether it has ended.
    bool awaitEnd(int limitMs);

    /// Lets so much time pass, in which the program may go on.
    void idle(int ms);

    [[nodiscard]] const Milestones &milestones() const { return m_milestones; }
    /// The name under which the program announced itself.
    [[nodiscard]] QString programName() const { return m_application ? m_application->name() : QString(); }
    /// Whether the program can be talked to.
    [[nodiscard]] bool isConnected() const { return m_application && m_application->isOpen(); }
    /// Whether the program has ended by itself, and well. One that has closed the connection gets a moment
    /// for its end.
    [[nodiscard]] bool hasEndedWell();
    /// Why nothing more can come of the program; no failure while something can.
    Failure whyNot();

signals:
    /// The program has announced classes.
    void classesAnnounced(const QByteArray &records);
    /// While something is waited for: what for, and for how long already.
    void waiting(const QString &what, int elapsedMs);
    /// It is waited for no longer.
    void waited();

private:
    Failure listen();
    Failure outcome(const PendingCall &call, ArgumentList *values);
    [[nodiscard]] QProcessEnvironment programEnvironment(const QString &preload) const;
    Failure waitUntil(const QString &what, const std::function<bool()> &happened);
    Failure endedBeforeConnecting() const;
    Failure lacksQt(const QString &until) const;
    [[nodiscard]] QString withLastWords(const QString &text) const;
    Failure timedOut(const QString &what) const;
    void takeIn(AsyncMessageChannel *channel, const ClientData &data);
    void noteStage();

    SessionSettings m_settings;
    Interrupt m_interrupt;
    TcpServer m_server;
    Registrar m_registrar;
    Program m_program;
    Application *m_application = nullptr; // the first one; others are its children
    QList<PendingCall> m_pendingCalls; // that may still be answered
    QElapsedTimer m_sinceStart;
    Milestones m_milestones;
    bool m_interrupted = false;
};

} // namespace Vorkel::Runner
