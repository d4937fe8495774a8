#include "program.h"

#include <QFile>
#include <QStandardPaths>

#include <csignal>
#include <cstring>

#include <sys/prctl.h>
#include <unistd.h>

namespace Vorkel::Runner {

namespace {

constexpr int GraceMs = 2000;
constexpr int LinkerLimitMs = 5000;
constexpr qint64 LastWordsLength = 2000;

} // namespace

Program::Program(QObject *parent)
    : QObject(parent)
{
    connect(&m_process, &QProcess::finished, this, &Program::ended);
}

Program::~Program()
{
    end();
}

Failure Program::start(const QStringList &command, QProcessEnvironment environment)
{
    const QString &program = command.first();
    if (!m_logs.isValid()) {
        return { ExitCode::NoProgram,
                 QStringLiteral("cannot keep the output of '%1': %2").arg(program, m_logs.errorString()) };
    }
    const QString out = logPath(QStringLiteral("stdout"));
    const QString err = logPath(QStringLiteral("stderr"));
    environment.insert(QStringLiteral("VORKEL_LOG_AUTSTDOUT_FILE"), out);
    environment.insert(QStringLiteral("VORKEL_LOG_AUTSTDERR_FILE"), err);
    m_process.setProcessEnvironment(environment);
    m_process.setStandardInputFile(QProcess::nullDevice());
    m_process.setStandardOutputFile(out);
    m_process.setStandardErrorFile(err);
    m_process.setChildProcessModifier([] {
        ::setpgid(0, 0);
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    });
    m_process.start(program, command.mid(1));
    if (!m_process.waitForStarted(-1)) {
        const QString reason = m_process.errorString().remove(QLatin1String("execve: "));
        return { ExitCode::NoProgram, QStringLiteral("cannot start '%1': %2").arg(program, reason) };
    }
    m_group = m_process.processId();
    return {};
}

void Program::end()
{
    if (m_group <= 0)
        return;
    const auto group = static_cast<pid_t>(-std::exchange(m_group, 0));
    if (!hasEnded()) {
        ::kill(group, SIGTERM);
        m_process.waitForFinished(GraceMs);
    }
    // Also for children that outlived the program.
    ::kill(group, SIGKILL);
    if (!hasEnded())
        m_process.waitForFinished(-1);
}

QString Program::ending() const
{
    const int code = m_process.exitCode();
    return m_process.exitStatus() == QProcess::CrashExit
            ? QStringLiteral("was ended by signal %1 (%2)")
                      .arg(code)
                      .arg(QString::fromLocal8Bit(::strsignal(code)))
            : QStringLiteral("ended with code %1").arg(code);
}

QString Program::lastWords() const
{
    QFile file(logPath(QStringLiteral("stderr")));
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    file.seek(std::max<qint64>(0, file.size() - LastWordsLength));
    return QString::fromLocal8Bit(file.readAll()).trimmed();
}

bool Program::isKnownToLackQt() const
{
    const QString path = QStandardPaths::findExecutable(m_process.program());
    QProcess linker;
    linker.start(QStringLiteral("ldd"), { path.isEmpty() ? m_process.program() : path });
    if (!linker.waitForFinished(LinkerLimitMs) || linker.exitCode() != 0)
        return false;
    return !linker.readAllStandardOutput().contains("libQt6Core.so.6");
}

} // namespace Vorkel::Runner
