#include "support/childprocess.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>

namespace {

constexpr int LimitMs = 60000;

} // namespace

QString built(const QString &path)
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + u'/' + path);
}

ChildProcess::~ChildProcess()
{
    if (state() != NotRunning) {
        kill();
        waitForFinished();
    }
}

void ChildProcess::launch(const QString &program, const QStringList &arguments,
                          const QProcessEnvironment &variables)
{
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const QString &name : environment.keys()) {
        if (name.startsWith(QLatin1String("VORKEL_")))
            environment.remove(name);
    }
    environment.insert(variables);
    setProcessEnvironment(environment);
    start(program, arguments);
}

void ChildProcess::say(const QByteArray &line)
{
    write(line + '\n');
    waitForBytesWritten();
}

QByteArray ChildProcess::line(const QByteArray &start)
{
    const QDeadlineTimer limit(LimitMs);
    for (;;) {
        while (canReadLine()) {
            const QByteArray text = readLine().chopped(1);
            if (text.startsWith(start))
                return text.mid(start.size()) + "";
        }
        if (limit.hasExpired() || !waitForReadyRead(static_cast<int>(limit.remainingTime())))
            return QByteArray();
    }
}

QByteArrayList ChildProcess::errorLines()
{
    const QByteArray output = readAllStandardError();
    return output.isEmpty() ? QByteArrayList() : output.chopped(output.endsWith('\n')).split('\n');
}

int ChildProcess::finish()
{
    return waitForFinished(LimitMs) && exitStatus() == NormalExit ? exitCode() : -1;
}

Outcome ChildProcess::outcome()
{
    const int code = finish();
    return { code, QString::fromUtf8(readAllStandardOutput()), QString::fromUtf8(readAllStandardError()) };
}

bool isGone(qint64 pid)
{
    QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!stat.open(QIODevice::ReadOnly))
        return true;
    const QByteArray line = stat.readAll();
    return line.isEmpty() || line.mid(line.lastIndexOf(')') + 2).startsWith('Z');
}
