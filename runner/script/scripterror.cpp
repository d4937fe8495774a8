#include "scripterror.h"

#include <QDir>
#include <QFile>
#include <QJSEngine>
#include <QRegularExpression>
#include <QUrl>

#include <algorithm>

namespace Vorkel::Runner {

const QString PreludeName = QStringLiteral("vorkel:prelude");

namespace {

/// A call may stretch over so many lines.
constexpr int LinesOfCall = 12;

struct Frame
{
    QString function;
    QString file;
    int line = 0;
};

QList<Frame> framesOf(const QJSValue &error)
{
    static const QRegularExpression form(QStringLiteral("^(.*?)@(.*):(-?\\d+)$"));
    QList<Frame> frames;
    for (const QString &text : error.property(QStringLiteral("stack")).toString().split(u'\n')) {
        if (const auto match = form.match(text); match.hasMatch())
            frames.append({ match.captured(1), match.captured(2), match.captured(3).toInt() });
    }
    return frames;
}

/// The name in the script that a message of the engine is about.
QString nameIn(const QString &message)
{
    static const QRegularExpression form(
            QStringLiteral("(?:Property|property|method) '(\\w+)' of|^\\w+: (\\w+) is not defined"));
    const auto match = form.match(message);
    return match.captured(1) + match.captured(2);
}

QStringList linesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).split(u'\n') : QStringList();
}

/// The engine tells columns only where it compiles a program, which a module is without its imports and
/// exports.
int syntaxErrorColumn(QStringList lines, int line)
{
    static const QRegularExpression import(QStringLiteral("^\\s*import\\b.*$"));
    static const QRegularExpression exported(QStringLiteral("^(\\s*)export(\\s+default)?\\b"));
    for (QString &text : lines) {
        text.remove(import);
        if (const auto match = exported.match(text); match.hasMatch())
            text.replace(0, match.capturedLength(), QString(match.capturedLength(), u' '));
    }
    QJSEngine engine;
    QStringList stack;
    engine.evaluate(lines.join(u'\n'), QStringLiteral("syntax"), 1, &stack);
    const QStringList parts = stack.value(0).split(u':');
    return parts.value(1).toInt() == line ? std::max(0, parts.value(2).toInt()) : 0;
}

/// Finds the call of `name` at or behind the line of the error.
void findCall(const QStringList &lines, const QString &name, ScriptError *error)
{
    if (name.isEmpty())
        return;
    const QRegularExpression call(QStringLiteral("\\b%1\\b").arg(QRegularExpression::escape(name)));
    for (int i = error->line; i < error->line + LinesOfCall && i <= lines.size(); ++i) {
        if (const auto match = call.match(lines.at(i - 1)); match.hasMatch()) {
            error->line = i;
            error->column = static_cast<int>(match.capturedStart()) + 1;
            return;
        }
    }
}

QString excerptOf(const QString &source, int line, int column)
{
    const QString number = QString::number(line);
    QString text = QStringLiteral("  %1 | %2").arg(number, source);
    if (column > 0) {
        // Tabs stay tabs, so that the mark stands below its letter.
        QString blank = source.left(column - 1);
        std::replace_if(
                blank.begin(), blank.end(), [](QChar letter) { return letter != u'\t'; }, u' ');
        text += QStringLiteral("\n  %1 | %2^").arg(QString(number.size(), u' '), blank);
    }
    return text;
}

void place(const QString &url, const QString &name, bool isSyntaxError, ScriptError *error)
{
    const QUrl location(url);
    const QString path = location.isLocalFile() ? location.toLocalFile() : url;
    const QStringList lines = linesOf(path);
    error->file = QDir::current().relativeFilePath(path);
    if (error->file.startsWith(QLatin1String("../../")))
        error->file = path;
    if (isSyntaxError)
        error->column = syntaxErrorColumn(lines, error->line);
    else
        findCall(lines, name, error);
    if (error->line < 1 || error->line > lines.size())
        return;
    const QString &source = lines.at(error->line - 1);
    const auto first = std::find_if(source.begin(), source.end(), [](QChar c) { return !c.isSpace(); });
    if (error->column == 0)
        error->column = static_cast<int>(first - source.begin()) + 1;
    error->excerpt = excerptOf(source, error->line, error->column);
}

} // namespace

QString ScriptError::where() const
{
    QString text = file;
    for (const int number : { line, column }) {
        if (!text.isEmpty() && number > 0)
            text += QStringLiteral(":%1").arg(number);
    }
    return text;
}

ScriptError scriptError(const QJSValue &thrown)
{
    ScriptError error { thrown.toString() };
    const bool isSyntaxError = thrown.isError() && thrown.errorType() == QJSValue::SyntaxError;
    if (thrown.isError() && thrown.errorType() == QJSValue::GenericError)
        error.message = thrown.property(QStringLiteral("message")).toString();
    if (!thrown.isError())
        error.message += QLatin1String(" (thrown as a value: only an Error knows its place)");
    QString name = nameIn(error.message);
    for (const Frame &frame : framesOf(thrown)) {
        if (frame.file.endsWith(PreludeName)) {
            name = frame.function;
            continue;
        }
        error.line = frame.line;
        place(frame.file, name, isSyntaxError, &error);
        break;
    }
    return error;
}

} // namespace Vorkel::Runner
