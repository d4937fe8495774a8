#include "hook/platform/currentplatform.h"
#include "hook/platform/keynames.h"
#include "hook/platform/keysequence.h"
#include "hook/platform/keysym.h"
#include "hook/platform/keysymtable.h"
#include "support/recordingnativeinterface.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using namespace Vorkel;

namespace {

RecordingNativeInterface *current = nullptr;

} // namespace

NativeInterface *Vorkel::currentNativeInterface()
{
    return current;
}

class TestKeys : public QObject
{
    Q_OBJECT

private slots:
    void sequences_data();
    void sequences();
    void names();
    void keysyms_data();
    void keysyms();
    void keysymTableIsX11s();
};

void TestKeys::sequences_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");

    // clang-format off
    QTest::newRow("combination")            << u"<Ctrl+a>"_s        << u"[Ctrl a]"_s;
    QTest::newRow("plus as key")            << u"<Ctrl++>"_s        << u"[Ctrl +]"_s;
    QTest::newRow("plus between keys")      << u"<Ctrl+++a>"_s      << u"[Ctrl + a]"_s;
    QTest::newRow("bracket as key")         << u"<Ctrl+>>"_s        << u"[Ctrl >]"_s;
    QTest::newRow("bracket alone")          << u"<>>"_s             << u"[>]"_s;
    QTest::newRow("among characters")       << u"x<Shift+Tab>y"_s   << u"[x][Shift Tab][y]"_s;
    QTest::newRow("next one's plus")        << u"<a><b+c>"_s        << u"[a][b c]"_s;
    QTest::newRow("beyond the basic plane") << u"\U0001F600b"_s     << u"[\U0001F600][b]"_s;
    QTest::newRow("open")                   << u"a<b"_s             << u"Unterminated key combination: <b"_s;
    QTest::newRow("empty brackets")         << u"<>"_s              << u"Unterminated key combination: <>"_s;
    QTest::newRow("open after bracket key") << u"x<Ctrl+>y"_s       << u"Unterminated key combination: <Ctrl+>y"_s;
    // clang-format on
}

void TestKeys::sequences()
{
    QFETCH(QString, text);
    const auto result = parseKeyEvents(text);
    QString shown = result.error();
    for (const QStringList &keys : result.value())
        shown += u"["_s + keys.join(u' ') + u"]"_s;
    QTEST(shown, "expected");
}

void TestKeys::names()
{
    QCOMPARE(ourKeyToXKBString(u"PageUp"_s), u"Prior"_s);
    QCOMPARE(ourKeyToXKBString(u"NumPad7"_s), u"KP_7"_s);
    QCOMPARE(ourKeyToXKBString(u"ctrl"_s), u"ctrl"_s);

    QVERIFY(!isValidKey(u"Eject"_s));
    RecordingNativeInterface native;
    native.specialKeys << u"Eject"_s;
    current = &native;
    QVERIFY(isValidKey(u"Eject"_s));
    current = nullptr;
}

void TestKeys::keysyms_data()
{
    QTest::addColumn<unsigned>("code");
    QTest::addColumn<unsigned>("keysym");

    // clang-format off
    QTest::newRow("delete")                  << 0x7FU     << 0x100007FU;
    QTest::newRow("last of Latin 1")         << 0xFFU     << 0xFFU;
    QTest::newRow("of its own")              << 0x104U    << 0x1A1U;
    QTest::newRow("first of two")            << 0x250CU   << 0x8A2U;
    QTest::newRow("before what is none")     << 0xFDCFU   << 0x100FDCFU;
    QTest::newRow("none")                    << 0xFDD0U   << 0U;
    QTest::newRow("none, at a plane's end")  << 0xFFFEU   << 0U;
    QTest::newRow("beyond Unicode")          << 0x110000U << 0U;
    // clang-format on
}

void TestKeys::keysyms()
{
    QFETCH(unsigned, code);
    QTEST(xkbUnicodeToKeysym(code), "keysym");
}

void TestKeys::keysymTableIsX11s()
{
    QFile header(u"/usr/include/X11/keysymdef.h"_s);
    QVERIFY2(header.open(QIODevice::ReadOnly), "needs the package x11proto-dev");
    // A code in parentheses says that the two are not quite the same.
    static const QRegularExpression row(u"^#define XK_\\w+\\s+0x(\\w+)\\s*/\\*[ (]U\\+(\\w+) .*\\*/"_s,
                                        QRegularExpression::MultilineOption);
    QMap<unsigned, unsigned> published;
    for (const auto &match : row.globalMatch(QString::fromUtf8(header.readAll()))) {
        const unsigned keysym = match.captured(1).toUInt(nullptr, 16);
        if (keysym > 0xFF && keysym <= 0xFFFF)
            published.insert(keysym, match.captured(2).toUInt(nullptr, 16));
    }

    QCOMPARE(keysymTable().size(), std::size_t(published.size()));
    auto expected = published.cbegin();
    for (const KeysymRow &each : keysymTable()) {
        QCOMPARE(unsigned(each.keysym), expected.key());
        QCOMPARE(unsigned(each.code), expected.value());
        ++expected;
    }
}

QTEST_GUILESS_MAIN(TestKeys)

#include "tst_keys.moc"
