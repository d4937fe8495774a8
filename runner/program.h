#pragma once

#include "exitcode.h"

#include <QObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

namespace Vorkel::Runner {

/// A program that we started, with all that it starts in turn: what we start, we end. Its output
/// goes to files of ours, where the hook finds it.
class Program : public QObject
{
    Q_OBJECT

public:
    explicit Program(QObject *parent = nullptr);
    /// Ends what still runs.
    ~Program() override;

    /// Starts `command`, a program and its arguments, in `environment`.
    Failure start(const QStringList &command, QProcessEnvironment environment);
    /// Asks the program and its children to end, and ends them if they do not.
    void end();

    [[nodiscard]] QString name() const { return m_process.program(); }
    [[nodiscard]] bool hasEnded() const { return m_process.state() == QProcess::NotRunning; }
    /// Waits up to `ms` milliseconds for its end; whether it has ended.
    [[nodiscard]] bool awaitEnd(int ms) { return hasEnded() || m_process.waitForFinished(ms); }
    /// Whether it ended with code 0.
    [[nodiscard]] bool endedWell() const
    {
        return hasEnded() && m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
    }
    /// How it ended, for a person.
    [[nodiscard]] QString ending() const;
    /// The last lines that it wrote on its standard error stream.
    [[nodiscard]] QString lastWords() const;
    /// Whether the program's executable is known to run without Qt 6.
    [[nodiscard]] bool isKnownToLackQt() const;

signals:
    void ended();

private:
    [[nodiscard]] QString logPath(const QString &name) const { return m_logs.filePath(name); }

    QTemporaryDir m_logs;
    QProcess m_process;
    qint64 m_group = 0;
};

} // namespace Vorkel::Runner
