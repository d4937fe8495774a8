#include "scriptfile.h"

#include "driving/evidence.h"
#include "scripterror.h"
#include "scripthost.h"

#include <QFile>
#include <QFileInfo>
#include <QJSEngine>
#include <QScopeGuard>

#include <atomic>

/// A static library has to ask for its resources, and outside of namespaces.
static void takeInResources()
{
    Q_INIT_RESOURCE(vorkelscript);
}

namespace Vorkel::Runner {

namespace {

std::atomic<QJSEngine *> runningEngine = nullptr;

/// Also a script that never calls us has to stop.
void interruptEngine()
{
    if (QJSEngine *engine = runningEngine.load())
        engine->setInterrupted(true);
}

/// Letters of a name that every file system takes.
QString folderName(const QString &name)
{
    QString folder;
    for (const QChar letter : name)
        folder += letter.isLetterOrNumber() || letter == u'-' || letter == u'.' ? letter : QChar(u'_');
    return folder.left(80);
}

/// Runs the tests of one file in an engine of their own.
class ScriptRun : public StepListener
{
public:
    ScriptRun(const QString &path, const ScriptSettings &settings, TestListener *listener);
    ~ScriptRun() override;

    Failure run();
    void stepEnded(const QString &text, qint64 elapsedMs, const Failure &failure) override;

private:
    void load();
    void runTest(const ScriptHost::Test &test);
    void call(const QJSValue &function);
    void fail(const QJSValue &thrown);
    void begin(const QString &name);
    void end();
    void add(const QString &line) { m_result.steps.append(line); }

    const ScriptSettings &m_settings;
    TestListener *m_listener;
    QString m_path;
    Interrupt m_interrupt;
    bool m_isInterrupted = false;
    QJSEngine m_engine;
    ScriptHost *m_host; // the engine's
    QJSValue m_guarded; ///< calls a function and gives what it threw
    TestResult m_result;
    QElapsedTimer m_elapsed;
    bool m_isSilent = false; ///< while evidence is taken
};

ScriptRun::ScriptRun(const QString &path, const ScriptSettings &settings, TestListener *listener)
    : m_settings(settings)
    , m_listener(listener)
    , m_path(path)
    , m_host(new ScriptHost(settings.launch, settings.command, this))
{
    QObject::connect(&m_interrupt, &Interrupt::requested, &m_interrupt, [this] { m_isInterrupted = true; });
    QObject::connect(m_host, &ScriptHost::logged, m_host, [this](const QString &text) {
        add(text);
        m_listener->logged(text);
    });
    runningEngine = &m_engine;
    Interrupt::setImmediate(interruptEngine);
}

ScriptRun::~ScriptRun()
{
    m_host->endPrograms(0);
    Interrupt::setImmediate(nullptr);
    runningEngine = nullptr;
}

void ScriptRun::stepEnded(const QString &text, qint64 elapsedMs, const Failure &failure)
{
    if (m_isSilent)
        return;
    add(QStringLiteral("%1 (%2 ms)%3")
                .arg(text, QString::number(elapsedMs),
                     failure.isFailure() ? QStringLiteral(" failed") : QString()));
    m_listener->stepEnded(text, elapsedMs, failure.isFailure());
}

void ScriptRun::begin(const QString &name)
{
    m_result = { m_path, name };
    m_elapsed.start();
    m_listener->testStarted(m_path, name);
}

void ScriptRun::end()
{
    m_result.elapsedMs = m_elapsed.elapsed();
    m_listener->testEnded(m_result);
}

/// Only the first failure counts: what comes after it follows from it.
void ScriptRun::fail(const QJSValue &thrown)
{
    if (m_result.outcome == TestResult::Failed)
        return;
    const ScriptError error = scriptError(thrown);
    m_result.outcome = TestResult::Failed;
    m_result.message = error.message;
    m_result.where = error.where();
    m_result.excerpt = error.excerpt;
    const QString folder =
            QStringLiteral("%1/%2/%3")
                    .arg(m_settings.evidenceFolder, folderName(QFileInfo(m_path).completeBaseName()),
                         folderName(m_result.name));
    m_isSilent = true;
    m_result.evidence =
            keepEvidence(folder, QStringList { error.where(), error.message, error.excerpt }.join(u'\n'),
                         m_host->programs());
    m_isSilent = false;
}

void ScriptRun::call(const QJSValue &function)
{
    const QJSValue outcome = m_guarded.call({ function });
    if (outcome.isError())
        fail(outcome);
    else if (outcome.hasProperty(QStringLiteral("thrown")))
        fail(outcome.property(QStringLiteral("thrown")));
}

void ScriptRun::load()
{
    QFile prelude(QStringLiteral(":/vorkel/prelude.js"));
    const bool isThere = prelude.open(QIODevice::ReadOnly);
    Q_ASSERT(isThere);
    const QJSValue install = m_engine.evaluate(QString::fromUtf8(prelude.readAll()), PreludeName);
    m_guarded = install.isCallable() ? install.call({ m_engine.newQObject(m_host), m_engine.globalObject() })
                                     : install;
    if (!m_guarded.isCallable())
        return fail(m_guarded);
    const QJSValue module = m_engine.importModule(QFileInfo(m_path).absoluteFilePath());
    if (m_engine.hasError())
        fail(m_engine.catchError());
    else if (module.isError())
        fail(module);
}

void ScriptRun::runTest(const ScriptHost::Test &test)
{
    begin(test.name);
    if (test.isSkipped) {
        m_result.outcome = TestResult::Skipped;
        return end();
    }
    const qsizetype kept = m_host->programs().size();
    for (const QJSValue &before : m_host->before()) {
        if (m_result.outcome == TestResult::Passed)
            call(before);
    }
    if (m_result.outcome == TestResult::Passed)
        call(test.body);
    for (const QJSValue &after : m_host->after())
        call(after);
    m_host->endPrograms(kept);
    end();
}

Failure ScriptRun::run()
{
    // A script that fails before its first test is reported under its own name.
    m_result = { m_path, QFileInfo(m_path).fileName() };
    m_elapsed.start();
    load();
    if (m_result.outcome == TestResult::Failed) {
        m_listener->testStarted(m_result.file, m_result.name);
        end();
    }
    const bool isLoaded = m_result.outcome != TestResult::Failed;
    for (const ScriptHost::Test &test : isLoaded ? m_host->tests() : QList<ScriptHost::Test>()) {
        if (!m_isInterrupted && !m_engine.isInterrupted() && m_settings.filter.match(test.name).hasMatch())
            runTest(test);
    }
    const bool isInterrupted = m_isInterrupted || m_engine.isInterrupted();
    return isInterrupted ? Failure { ExitCode::Interrupted, QStringLiteral("interrupted") } : Failure();
}

} // namespace

Failure runScriptFile(const QString &path, const ScriptSettings &settings, TestListener *listener)
{
    takeInResources();
    return ScriptRun(path, settings, listener).run();
}

} // namespace Vorkel::Runner
