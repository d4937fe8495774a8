#include "support/xserver.h"

#include <csignal>
#include <sys/prctl.h>

namespace {

constexpr int LimitMs = 60000;

} // namespace

XServer::~XServer()
{
    stop();
}

QString XServer::start(const QStringList &screens, const QStringList &options)
{
    stop();
    QStringList arguments = QStringLiteral("-displayfd 1 -nolisten tcp -noreset").split(u' ') + options;
    for (qsizetype i = 0; i < screens.size(); ++i)
        arguments << QStringLiteral("-screen") << QString::number(i) << screens.at(i);
    // It tells of each display that it found taken.
    m_process.setStandardErrorFile(QProcess::nullDevice());
    m_process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
    m_process.start(QStringLiteral("Xvfb"), arguments);
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(LimitMs))
            return QString();
    }
    m_display = u':' + QString::fromLatin1(m_process.readLine().trimmed());
    return m_display;
}

QProcessEnvironment XServer::environment() const
{
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DISPLAY"), m_display);
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    return environment;
}

void XServer::stop()
{
    if (m_process.state() != QProcess::NotRunning) {
        m_process.terminate();
        m_process.waitForFinished();
    }
    m_display.clear();
}
