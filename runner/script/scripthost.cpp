#include "scripthost.h"

#include "scriptprogram.h"

#include <QEventLoop>
#include <QFile>
#include <QTimer>

namespace Vorkel::Runner {

namespace {

Failure refused(const QString &text)
{
    return { ExitCode::CallFailed, text };
}

} // namespace

ScriptHost::ScriptHost(const LaunchSettings &settings, const QStringList &command, StepListener *listener)
    : m_settings(settings)
    , m_command(command)
    , m_listener(listener)
{
}

void ScriptHost::endPrograms(qsizetype kept)
{
    while (m_programs.size() > kept)
        m_programs.takeLast()->end();
}

Failure ScriptHost::readOptions(const QVariantMap &options, LaunchSettings *settings) const
{
    for (auto option = options.begin(); option != options.end(); ++option) {
        if (option.key() == QLatin1String("env")) {
            const QVariantMap variables = option->toMap();
            for (auto variable = variables.begin(); variable != variables.end(); ++variable)
                settings->session.environment.insert(variable.key(), variable->toString());
        } else if (option.key() == QLatin1String("timeout")) {
            settings->limitMs = option->toInt();
        } else if (option.key() == QLatin1String("platform")) {
            settings->session.platform = option->toString();
        } else if (option.key() == QLatin1String("map")) {
            QFile file(option->toString());
            if (!file.open(QIODevice::ReadOnly)) {
                return refused(QStringLiteral("cannot read the object map '%1': %2")
                                       .arg(file.fileName(), file.errorString()));
            }
            settings->objectMap = QString::fromUtf8(file.readAll());
        } else {
            return refused(QStringLiteral("launch has no option '%1'").arg(option.key()));
        }
    }
    return {};
}

QJSValue ScriptHost::launch(const QStringList &command, const QVariantMap &options)
{
    const QStringList words = command.isEmpty() ? m_command : command;
    LaunchSettings settings = m_settings;
    Failure failure = words.isEmpty()
            ? refused(QStringLiteral("name a program to launch, or give one behind '--'"))
            : readOptions(options, &settings);
    if (!succeeded(failure))
        return {};
    m_programs.append(std::make_shared<DrivenProgram>(settings, m_listener));
    return succeeded(m_programs.last()->launch(words)) ? given(new ScriptProgram(m_programs.last()))
                                                       : QJSValue();
}

void ScriptHost::addTest(const QString &name, const QJSValue &body, bool isSkipped)
{
    m_tests.append({ name, body, isSkipped });
}

void ScriptHost::addBefore(const QJSValue &body)
{
    m_before.append(body);
}

void ScriptHost::addAfter(const QJSValue &body)
{
    m_after.append(body);
}

void ScriptHost::log(const QString &text)
{
    emit logged(text);
}

void ScriptHost::idle(int ms) const
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

void ScriptHost::step(const QString &text, int elapsedMs, const QString &failure) const
{
    const ExitCode code = failure.isEmpty() ? ExitCode::Success : ExitCode::CallFailed;
    m_listener->stepEnded(text, elapsedMs, { code, failure });
}

} // namespace Vorkel::Runner
