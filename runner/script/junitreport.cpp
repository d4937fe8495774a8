#include "junitreport.h"

#include <QXmlStreamWriter>

#include <algorithm>

namespace Vorkel::Runner {

namespace {

/// XML has no form for most control characters, not even escaped.
QString printable(QString text)
{
    for (QChar &letter : text) {
        const ushort code = letter.unicode();
        if ((code < 0x20 && code != '\n' && code != '\t') || code == 0xfffe || code == 0xffff)
            letter = QChar::ReplacementCharacter;
    }
    return text;
}

QString seconds(qint64 ms)
{
    return QString::number(static_cast<double>(ms) / 1000.0, 'f', 3);
}

void writeCounts(QXmlStreamWriter &xml, const QList<TestResult> &results)
{
    const auto count = [&](TestResult::Outcome outcome) {
        return QString::number(std::count_if(results.begin(), results.end(), [&](const TestResult &each) {
            return each.outcome == outcome;
        }));
    };
    qint64 elapsed = 0;
    for (const TestResult &result : results)
        elapsed += result.elapsedMs;
    xml.writeAttribute(QStringLiteral("tests"), QString::number(results.size()));
    xml.writeAttribute(QStringLiteral("failures"), count(TestResult::Failed));
    xml.writeAttribute(QStringLiteral("skipped"), count(TestResult::Skipped));
    xml.writeAttribute(QStringLiteral("errors"), QStringLiteral("0"));
    xml.writeAttribute(QStringLiteral("time"), seconds(elapsed));
}

void writeCase(QXmlStreamWriter &xml, const TestResult &result)
{
    xml.writeStartElement(QStringLiteral("testcase"));
    xml.writeAttribute(QStringLiteral("classname"), printable(result.file));
    xml.writeAttribute(QStringLiteral("name"), printable(result.name));
    xml.writeAttribute(QStringLiteral("time"), seconds(result.elapsedMs));
    if (result.outcome == TestResult::Skipped)
        xml.writeEmptyElement(QStringLiteral("skipped"));
    if (result.outcome == TestResult::Failed) {
        xml.writeStartElement(QStringLiteral("failure"));
        xml.writeAttribute(QStringLiteral("message"), printable(result.message.section(u'\n', 0, 0)));
        xml.writeCharacters(printable(result.message + u'\n' + result.where + u'\n' + result.excerpt));
        xml.writeEndElement();
    }
    QStringList output = result.steps;
    for (const QString &file : result.evidence)
        output.append(QStringLiteral("[[ATTACHMENT|%1]]").arg(file));
    if (!output.isEmpty())
        xml.writeTextElement(QStringLiteral("system-out"), printable(output.join(u'\n')));
    xml.writeEndElement();
}

} // namespace

QByteArray junitReport(const QList<TestResult> &results)
{
    QByteArray bytes;
    QXmlStreamWriter xml(&bytes);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("testsuites"));
    writeCounts(xml, results);
    for (qsizetype first = 0, next = 0; first < results.size(); first = next) {
        while (next < results.size() && results.at(next).file == results.at(first).file)
            ++next;
        const QList<TestResult> suite = results.mid(first, next - first);
        xml.writeStartElement(QStringLiteral("testsuite"));
        xml.writeAttribute(QStringLiteral("name"), printable(results.at(first).file));
        writeCounts(xml, suite);
        for (const TestResult &result : suite)
            writeCase(xml, result);
        xml.writeEndElement();
    }
    xml.writeEndDocument();
    return bytes;
}

} // namespace Vorkel::Runner
