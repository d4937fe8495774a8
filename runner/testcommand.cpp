#include "commands.h"
#include "testconsole.h"

#include "driving/virtualdisplay.h"
#include "script/junitreport.h"
#include "script/scriptfile.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

#include <cstdio>

namespace Vorkel::Runner {

namespace {

Failure checkFiles(const QStringList &files)
{
    for (const QString &file : files) {
        if (!QFileInfo(file).isFile())
            return { ExitCode::BadUsage, QStringLiteral("there is no script '%1'").arg(file) };
    }
    return {};
}

Failure readFilter(const QString &pattern, QRegularExpression *filter)
{
    *filter = QRegularExpression(pattern);
    return filter->isValid()
            ? Failure()
            : Failure { ExitCode::BadUsage, QStringLiteral("--filter: %1").arg(filter->errorString()) };
}

Failure writeReport(const QString &path, const QList<TestResult> &results)
{
    if (path.isEmpty())
        return {};
    QDir().mkpath(QFileInfo(path).absolutePath());
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(junitReport(results)) >= 0 && file.commit())
        return {};
    return { ExitCode::BadUsage, QStringLiteral("cannot write '%1': %2").arg(path, file.errorString()) };
}

/// What the programs of the run are shown on.
Failure prepareDisplay(const Options &options, VirtualDisplay *display, SessionSettings *session)
{
    if (options.displaySize.isEmpty())
        return {};
    const Failure failure = display->start(options.displaySize);
    session->environment.insert(QStringLiteral("DISPLAY"), display->name());
    if (!options.isPlatformGiven)
        session->platform = QStringLiteral("xcb");
    return failure;
}

} // namespace

Failure testCommand(const Options &options)
{
    ScriptSettings settings;
    settings.launch = { options.session, options.stepLimitMs, QString() };
    settings.command = options.command;
    settings.evidenceFolder = options.evidenceFolder;
    // Declared first, so that it outlives the programs on it.
    const Interrupt interrupt;
    VirtualDisplay display;
    Failure failure = checkFiles(options.words);
    if (!failure.isFailure())
        failure = readFilter(options.filter, &settings.filter);
    if (!failure.isFailure())
        failure = prepareDisplay(options, &display, &settings.launch.session);
    if (failure.isFailure())
        return failure;
    TestConsole console;
    for (const QString &file : options.words) {
        failure = runScriptFile(file, settings, &console);
        if (failure.isFailure())
            break;
    }
    console.summarise();
    const Failure unwritten = writeReport(options.junitFile, console.results());
    if (failure.isFailure() || unwritten.isFailure())
        return failure.isFailure() ? failure : unwritten;
    return console.verdict();
}

} // namespace Vorkel::Runner
