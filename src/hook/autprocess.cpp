#include "hook/autprocess.h"

#include "fkit/environment.h"
#include "hook/processstat.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <cstdio>

#include <sys/utsname.h>
#include <unistd.h>

namespace Vorkel {

namespace {

constexpr int UserTimeField = 13;
constexpr int SystemTimeField = 14;
constexpr int StartTimeField = 21;
constexpr qint64 LogLineBuffer = 4096;

std::unique_ptr<QFile> openLog(const char *variable)
{
    const QString path = Environment::value(variable);
    if (path.isEmpty())
        return nullptr;
    auto file = std::make_unique<QFile>(path);
    return file->open(QIODevice::ReadOnly) ? std::move(file) : nullptr;
}

quint64 processStartTime()
{
    const auto ticks = ProcessStat::selfField(StartTimeField);
    return ticks ? ProcessStat::bootTime() * 1000 + ProcessStat::ticksToMs(*ticks) : 0;
}

} // namespace

AUTProcess::AUTProcess()
    : m_stdoutLog(openLog("VORKEL_LOG_AUTSTDOUT_FILE"))
    , m_stderrLog(openLog("VORKEL_LOG_AUTSTDERR_FILE"))
{
}

AUTProcess::~AUTProcess() = default;

QString AUTProcess::name() const
{
    return baseName(arguments().value(0));
}

QStringList AUTProcess::arguments() const
{
    return QCoreApplication::arguments();
}

quint64 AUTProcess::startTime() const
{
    static quint64 known = 0;
    if (known == 0)
        known = processStartTime();
    return known;
}

qint64 AUTProcess::totalTime() const
{
    const auto user = ProcessStat::selfField(UserTimeField);
    const auto system = ProcessStat::selfField(SystemTimeField);
    if (!user || !system)
        return -1;
    return static_cast<qint64>(ProcessStat::ticksToMs(*user) + ProcessStat::ticksToMs(*system));
}

int AUTProcess::processId() const
{
    return ::getpid();
}

QString AUTProcess::workingDirectory() const
{
    return QDir::toNativeSeparators(QDir::currentPath());
}

qint64 AUTProcess::usedMemory() const
{
    const auto status = ProcessStat::fileContent("/proc/self/status");
    return ProcessStat::residentBytes(status.value_or(QByteArray())).value_or(-1);
}

QString AUTProcess::readStdout() const
{
    return readLog(m_stdoutLog.get());
}

QString AUTProcess::readStderr() const
{
    return readLog(m_stderrLog.get());
}

QString AUTProcess::osName() const
{
    utsname system = {};
    return ::uname(&system) == 0 ? QString::fromLocal8Bit(system.sysname) : QStringLiteral("Unknown");
}

QString AUTProcess::environmentVariable(const QString &name)
{
    return Environment::value(name.toUtf8().constData());
}

QString AUTProcess::baseName(const QString &path)
{
    return QFileInfo(path).fileName();
}

QString AUTProcess::readLog(QFile *file) const
{
    std::fflush(stdout);
    std::fflush(stderr);
    QString text;
    if (!file || !file->isOpen())
        return text;
    char line[LogLineBuffer];
    while (file->readLine(line, sizeof line) > 0)
        text += QString::fromLocal8Bit(line);
    return text;
}

} // namespace Vorkel
