#pragma once

#include "scriptobject.h"

#include <QVariantMap>

namespace Vorkel::Runner {

/// What one script asks of whoever runs it: programs, tests, its log. Programs run until they are ended here.
class ScriptHost : public ScriptObject
{
    Q_OBJECT

public:
    struct Test
    {
        QString name;
        QJSValue body;
        bool isSkipped = false;
    };

    /// Programs are started with `settings`; `command` is the one that scripts launch without naming any.
    /// `listener` lives longer.
    ScriptHost(const LaunchSettings &settings, const QStringList &command, StepListener *listener);

    [[nodiscard]] const QList<Test> &tests() const { return m_tests; }
    [[nodiscard]] const QList<QJSValue> &before() const { return m_before; }
    [[nodiscard]] const QList<QJSValue> &after() const { return m_after; }
    [[nodiscard]] const QList<std::shared_ptr<DrivenProgram>> &programs() const { return m_programs; }
    /// Ends all programs but the first `kept`.
    void endPrograms(qsizetype kept);

    Q_INVOKABLE QJSValue launch(const QStringList &command, const QVariantMap &options);
    Q_INVOKABLE void addTest(const QString &name, const QJSValue &body, bool isSkipped);
    Q_INVOKABLE void addBefore(const QJSValue &body);
    Q_INVOKABLE void addAfter(const QJSValue &body);
    Q_INVOKABLE void log(const QString &text);
    Q_INVOKABLE void idle(int ms) const;
    /// Tells of a step that the script took itself; empty as failure when it went well.
    Q_INVOKABLE void step(const QString &text, int elapsedMs, const QString &failure) const;
    [[nodiscard]] Q_INVOKABLE int limit() const { return m_settings.limitMs; }

signals:
    void logged(const QString &text);

private:
    Failure readOptions(const QVariantMap &options, LaunchSettings *settings) const;

    LaunchSettings m_settings;
    QStringList m_command;
    StepListener *m_listener;
    QList<Test> m_tests;
    QList<QJSValue> m_before;
    QList<QJSValue> m_after;
    QList<std::shared_ptr<DrivenProgram>> m_programs;
};

} // namespace Vorkel::Runner
