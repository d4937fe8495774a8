#include "commands.h"
#include "injection.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <vector>

#include <unistd.h>

namespace Vorkel::Runner {

namespace {

std::vector<char *> pointers(QList<QByteArray> &texts)
{
    std::vector<char *> result;
    for (QByteArray &text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

QList<QByteArray> encoded(const QStringList &texts)
{
    QList<QByteArray> result;
    for (const QString &text : texts)
        result.append(QFile::encodeName(text));
    return result;
}

} // namespace

Failure injectCommand(const Options &options)
{
    const QString library = preloadLibrary();
    if (library.isEmpty())
        return { ExitCode::NoProgram, QStringLiteral("libvorkelqtpreload.so is not in ../lib of this command") };
    const QProcessEnvironment environment = withHook(QProcessEnvironment::systemEnvironment(), library);
    QList<QByteArray> command = encoded(options.command);
    QList<QByteArray> variables = encoded(environment.toStringList());
    ::execvpe(command.constFirst().constData(), pointers(command).data(), pointers(variables).data());
    return { ExitCode::NoProgram,
             QStringLiteral("cannot start '%1': %2")
                     .arg(options.command.constFirst(), QString::fromLocal8Bit(std::strerror(errno))) };
}

} // namespace Vorkel::Runner
