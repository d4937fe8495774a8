#include "scriptprogram.h"

#include "driving/choosing.h"
#include "driving/evidence.h"
#include "driving/expectations.h"
#include "driving/keyboard.h"
#include "driving/screenshots.h"
#include "nearestname.h"
#include "scripttarget.h"

namespace Vorkel::Runner {

namespace {

/// The number of an enum's key, or of several joined by "|".
Failure readEnum(const EnumRecord &record, const QString &keys, int *number)
{
    QStringList known;
    for (const auto &[key, value] : record.items)
        known.append(key);
    *number = 0;
    for (const QString &part : keys.split(u'|')) {
        const qsizetype found = known.indexOf(part.trimmed());
        if (found < 0) {
            return { ExitCode::CallFailed,
                     QStringLiteral("%1 has no key '%2'%3").arg(record.name, part, suggestion(part, known)) };
        }
        *number |= record.items.at(found).second;
    }
    return {};
}

} // namespace

QJSValue ScriptProgram::find(const QString &name) const
{
    return given(new ScriptTarget(Locator(m_program, name)));
}

void ScriptProgram::keys(const QString &keys) const
{
    succeeded(pressKeys(*m_program, keys));
}

void ScriptProgram::menu(const QStringList &path) const
{
    succeeded(chooseFromMenu(m_program, path));
}

QVariant ScriptProgram::callGlobal(const QString &what, const QString &function,
                                   const QVariantList &arguments) const
{
    QVariant result;
    QVariantList values;
    if (succeeded(fromScript(arguments, &values))) {
        succeeded(m_program->step(
                what, [&] { return m_program->objects().invokeGlobal(function, values, &result); }));
    }
    return result;
}

QString ScriptProgram::clipboard() const
{
    return callGlobal(QStringLiteral("read clipboard"), QStringLiteral("getClipboardText"), {}).toString();
}

void ScriptProgram::setClipboard(const QString &text) const
{
    callGlobal(QStringLiteral("set clipboard to '%1'").arg(text), QStringLiteral("setClipboardText"),
               { text });
}

QJSValue ScriptProgram::call(const QString &function, const QVariantList &arguments) const
{
    return toScript(m_program, callGlobal(QStringLiteral("call %1").arg(function), function, arguments));
}

QJSValue ScriptProgram::remote(const QString &function, const QVariantList &arguments) const
{
    QVariant reply;
    QVariantList values;
    if (!succeeded(fromScript(arguments, &values)))
        return {};
    succeeded(m_program->step(QStringLiteral("remote %1").arg(function), [&] {
        return m_program->objects().call(function, ArgumentList(values.begin(), values.end()), &reply);
    }));
    return toScript(m_program, reply);
}

QJSValue ScriptProgram::enumValue(const QString &enumName, const QString &keys) const
{
    int number = 0;
    succeeded(m_program->step(QStringLiteral("look up %1::%2").arg(enumName, keys), [&] {
        const qsizetype split = enumName.lastIndexOf(QLatin1String("::"));
        const EnumRecord *record = m_program->objects().classes().enumNamed(
                enumName.left(std::max<qsizetype>(split, 0)), enumName.mid(split + 2));
        return split > 0 && record
                ? readEnum(*record, keys, &number)
                : Failure { ExitCode::CallFailed,
                            QStringLiteral("the program has told of no enum '%1'").arg(enumName) };
    }));
    return number;
}

void ScriptProgram::screenshot(const QString &path) const
{
    QImage image;
    if (succeeded(takeScreenshot(*m_program, &image)))
        succeeded(saveImage(image, path));
}

QString ScriptProgram::tree() const
{
    QString text;
    succeeded(readTreeText(*m_program, &text));
    return text;
}

void ScriptProgram::quit() const
{
    succeeded(m_program->quit());
}

void ScriptProgram::expectRunning(bool isNegated) const
{
    succeeded(Runner::expectRunning(*m_program, isNegated));
}

} // namespace Vorkel::Runner
