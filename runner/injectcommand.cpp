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

} // namespace

Failure injectCommand(const Options &options)
{
    const auto preload = preloadValue(QProcessEnvironment::systemEnvironment());
    if (!preload.isOk())
        return { ExitCode::NoProgram, preload.error() };
    // All other variables stay byte by byte what they are.
    qputenv(PreloadVariable, QFile::encodeName(preload.value()));
    QList<QByteArray> command;
    for (const QString &text : options.command)
        command.append(QFile::encodeName(text));
    ::execvp(command.constFirst().constData(), pointers(command).data());
    return { ExitCode::NoProgram,
             QStringLiteral("cannot start '%1': %2")
                     .arg(options.command.constFirst(), QString::fromLocal8Bit(std::strerror(errno))) };
}

} // namespace Vorkel::Runner
