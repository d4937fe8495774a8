#include "callsyntax.h"

#include <QDateTime>
#include <QPoint>
#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;
using Vorkel::Runner::CallText;
using Vorkel::Runner::parseCall;
using Vorkel::Runner::toJsonText;

namespace {

/// The call as it was understood, with the type of each argument.
QString shown(const CallText &call)
{
    QStringList arguments;
    for (const QVariant &value : call.arguments)
        arguments << QLatin1String(value.isValid() ? value.typeName() : "none") + u' ' + toJsonText(value);
    return (call.isSend ? u"send "_s : u"call "_s) + call.name + u'(' + arguments.join(u"; "_s) + u')';
}

} // namespace

class tst_callsyntax : public QObject
{
    Q_OBJECT

private slots:
    void understands_data();
    void understands();
    void refuses_data();
    void refuses();
    void showsValues_data();
    void showsValues();
};

void tst_callsyntax::understands_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("call");
    // clang-format off
    QTest::newRow("one way")         << u"send:set_id2(1)"_s           << u"send set_id2(int 1)"_s;
    QTest::newRow("texts")           << uR"~(f("", "a, b)", "\u00fc"))~"_s << uR"~(call f(QString ""; QString "a, b)"; QString "ü"))~"_s;
    QTest::newRow("truth and none")  << u"f(true, false, null)"_s      << u"call f(bool true; bool false; none null)"_s;
    QTest::newRow("ints")            << u"f(-2147483648, 2147483647)"_s << u"call f(int -2147483648; int 2147483647)"_s;
    QTest::newRow("long longs")      << u"f(2147483648, -9223372036854775808, 9007199254740993)"_s
                                     << u"call f(qlonglong 2147483648; qlonglong -9223372036854775808; qlonglong 9007199254740993)"_s;
    QTest::newRow("doubles")         << u"f(0.5, 1e300, 9223372036854775808)"_s
                                     << u"call f(double 0.5; double 1e+300; double 9223372036854776000)"_s;
    QTest::newRow("string list")     << uR"(f(["a", ""]))"_s           << uR"(call f(QStringList ["a",""]))"_s;
    QTest::newRow("other lists")     << uR"(f([], ["a", 1, ["b"]]))"_s << uR"(call f(QVariantList []; QVariantList ["a",1,["b"]]))"_s;
    QTest::newRow("map")             << uR"(f({"b": {"c": null}, "a": [1]}))"_s << uR"(call f(QVariantMap {"a":[1],"b":{"c":null}}))"_s;
    // clang-format on
}

void tst_callsyntax::understands()
{
    QFETCH(const QString, text);
    const auto call = parseCall(text);
    QCOMPARE(call.error(), QString());
    QTEST(shown(call.value()), "call");
}

void tst_callsyntax::refuses_data()
{
    const QString noCall = u"'%1' is no call; write NAME or NAME(JSON, ...)"_s;
    const QString noJson = u"the arguments of '%1' are no JSON: %2 (at character %3 of them)"_s;
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("error");
    const auto row = [](const QString &text, const QString &error) {
        QTest::addRow("<%s>", qPrintable(text)) << text << QString(error).replace(u"%1"_s, text);
    };
    // clang-format off
    for (const QString &text : { u""_s, u"1f"_s, u"f g"_s, u"f.g"_s, u"f(1"_s, u"f)"_s, u"f(1) g"_s, u"sent:f"_s, u"send:"_s, u"ü"_s })
        row(text, noCall);
    row(u"f(x)"_s,       noJson.arg(u"%1"_s, u"illegal number"_s, u"1"_s));
    row(u"f(\"x)"_s,     noJson.arg(u"%1"_s, u"unterminated string"_s, u"2"_s));
    row(u"f(1],[2)"_s,   noJson.arg(u"%1"_s, u"garbage at the end of the document"_s, u"3"_s));
    // clang-format on
}

void tst_callsyntax::refuses()
{
    QFETCH(const QString, text);
    QTEST(parseCall(text).error(), "error");
}

void tst_callsyntax::showsValues_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const QVariant &value, const QString &text) {
        QTest::newRow(name) << value << text;
    };
    // clang-format off
    row("no value",     QVariant(),                                      u"null"_s);
    row("text",         u"a\"b\nü"_s,                                    uR"("a\"b\nü")"_s);
    row("other bytes",  QByteArray("\xFF\x00", 2),                       u"\"base64:/wA=\""_s);
    row("strings",      QStringList({ u"a"_s, QString() }),              uR"(["a",""])"_s);
    row("nested bytes", QVariantList({ QVariantMap({ { u"k"_s, QByteArray("\xFF") } }) }), uR"([{"k":"base64:/w=="}])"_s);
    row("date",         QDateTime({ 2024, 2, 29 }, { 1, 2 }, Qt::UTC),   u"\"2024-02-29T01:02:00.000Z\""_s);
    row("no JSON type", QPoint(1, -2),                                   u"\"QPoint(1,-2)\""_s);
    // clang-format on
}

void tst_callsyntax::showsValues()
{
    QFETCH(const QVariant, value);
    QTEST(toJsonText(value), "text");
}

QTEST_GUILESS_MAIN(tst_callsyntax)
#include "tst_callsyntax.moc"
