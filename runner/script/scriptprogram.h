#pragma once

#include "scriptobject.h"

namespace Vorkel::Runner {

/// A driven program, as scripts see it.
class ScriptProgram : public ScriptObject
{
    Q_OBJECT
    Q_PROPERTY(bool isRunning READ isRunning)
    Q_PROPERTY(QString name READ name CONSTANT)

public:
    explicit ScriptProgram(std::shared_ptr<DrivenProgram> program)
        : m_program(std::move(program))
    {
    }

    [[nodiscard]] bool isRunning() const { return m_program->isRunning(); }
    [[nodiscard]] QString name() const { return m_program->name(); }

    Q_INVOKABLE QJSValue find(const QString &name) const;
    Q_INVOKABLE void keys(const QString &keys) const;
    Q_INVOKABLE void menu(const QStringList &path) const;
    Q_INVOKABLE QString clipboard() const;
    Q_INVOKABLE void setClipboard(const QString &text) const;
    Q_INVOKABLE QJSValue call(const QString &function, const QVariantList &arguments) const;
    Q_INVOKABLE QJSValue remote(const QString &function, const QVariantList &arguments) const;
    Q_INVOKABLE QJSValue enumValue(const QString &enumName, const QString &keys) const;
    Q_INVOKABLE void screenshot(const QString &path) const;
    Q_INVOKABLE QString tree() const;
    Q_INVOKABLE void quit() const;
    Q_INVOKABLE void expectRunning(bool isNegated) const;

private:
    QVariant callGlobal(const QString &what, const QString &function, const QVariantList &arguments) const;

    std::shared_ptr<DrivenProgram> m_program;
};

} // namespace Vorkel::Runner
