#include "virtualdisplay.h"

#include <QDeadlineTimer>

#include <csignal>

#include <sys/prctl.h>
#include <unistd.h>

namespace Vorkel::Runner {

namespace {

constexpr int StartMs = 20000;
constexpr int GraceMs = 2000;

} // namespace

VirtualDisplay::~VirtualDisplay()
{
    if (m_server.state() == QProcess::NotRunning)
        return;
    m_server.terminate();
    if (m_server.waitForFinished(GraceMs))
        return;
    m_server.kill();
    m_server.waitForFinished(-1);
}

Failure VirtualDisplay::start(const QSize &size)
{
    // What a terminal sends to its processes is for us; the server ends when the last program has ended.
    m_server.setChildProcessModifier([] {
        ::setpgid(0, 0);
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    });
    m_server.setStandardErrorFile(QProcess::nullDevice());
    m_server.start(QStringLiteral("Xvfb"),
                   { QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                     QStringLiteral("0"), QStringLiteral("%1x%2x24").arg(size.width()).arg(size.height()),
                     QStringLiteral("-nolisten"), QStringLiteral("tcp"), QStringLiteral("-noreset") });
    const QDeadlineTimer limit(StartMs);
    while (!m_server.canReadLine()) {
        const bool isThere = m_server.state() != QProcess::NotRunning;
        if (!isThere || !m_server.waitForReadyRead(static_cast<int>(limit.remainingTime()))) {
            return { ExitCode::NoProgram,
                     QStringLiteral("cannot start Xvfb: %1").arg(m_server.errorString()) };
        }
    }
    m_name = u':' + QString::fromLatin1(m_server.readLine()).trimmed();
    return {};
}

} // namespace Vorkel::Runner
