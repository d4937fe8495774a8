#include "objectmodel/objectmap.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

using namespace Qt::StringLiterals;
using namespace Vorkel;

namespace {

QString described(const ObjectMap &map)
{
    QStringList texts;
    for (auto it = map.symbolicNames().cbegin(); it != map.symbolicNames().cend(); ++it)
        texts.append(it.key() + u' ' + it->qualifiedName());
    return texts.join(u'|');
}

/// A name of few properties and values, so that many are equal but for their looks, or in their old form.
QString randomName(QRandomGenerator &random, int depth = 0)
{
    static const QString odd[] = { u"a.b"_s, u"{}"_s, u"}"_s, u"{a}"_s, u""_s, u":x"_s };
    static const QString keys[] = { u"name"_s,       u"type"_s,       u"window"_s,   u"buddy"_s,
                                    u"windowName"_s, u"windowType"_s, u"buddyText"_s };
    static const QString values[] = { u"unnamed"_s, u":A"_s, u":B"_s, u"1"_s, u"{}"_s, u"\\\\"_s, u"\\'"_s };
    if (depth == 0 && random.bounded(20) == 0)
        return odd[random.bounded(int(std::size(odd)))];
    QString text(u'{');
    for (int count = random.bounded(4); count > 0; --count) {
        text += keys[random.bounded(int(std::size(keys)))];
        text += random.bounded(8) == 0 ? "~="_L1 : "="_L1;
        if (depth < 2 && random.bounded(8) == 0)
            text += randomName(random, depth + 1);
        else
            text += u'\'' + values[random.bounded(int(std::size(values)))] + u'\'';
        text += QString(random.bounded(2), u' ');
    }
    return text + u'}';
}

/// The symbol of the first name that equals `text` or its old form, found by looking at all.
QString symbolOrText(const ObjectMap &map, const QMap<ObjectName, QString> &symbols, const QString &text)
{
    const ObjectName name(text);
    const ObjectName old(map.convertToOldName(text));
    for (auto it = symbols.cbegin(); it != symbols.cend() && !text.startsWith(u':'); ++it) {
        if (it.key() == name || it.key() == old)
            return *it;
    }
    return text;
}

} // namespace

class TestObjectMap : public QObject
{
    Q_OBJECT

private slots:
    void theNewestMapIsCurrent();
    void readsItsText_data();
    void readsItsText();
    void savesWhenChanged();
    void lastOfEqualTextsKeepsTheSymbol();
    void matchesByTheMap_data();
    void matchesByTheMap();
    void replacesNestedNames();
    void makesSymbols_data();
    void makesSymbols();
    void numbersSymbols();
    void leavesFormatCharactersOut();
    void addsNestedNamesInOrder();
    void writesOldNames_data();
    void writesOldNames();
    void findsOldNames();
    void findsWhatAWalkFinds();
    void followsReferencesInACircle();
    void copesWithHugeNames();
};

void TestObjectMap::theNewestMapIsCurrent()
{
    QVERIFY(!ObjectMap::self());
    auto older = std::make_unique<ObjectMap>(false);
    QCOMPARE(ObjectMap::self(), older.get());
    {
        const ObjectMap newer(false);
        QCOMPARE(ObjectMap::self(), &newer);
        older.reset();
        QCOMPARE(ObjectMap::self(), &newer);
    }
    QVERIFY(!ObjectMap::self());
    QCOMPARE(ObjectMap::resolve(u":a.b"_s).qualifiedName(), u"a.b"_s);
    QCOMPARE(ObjectMap::symbolFromMultiPropName(u"{window=':W' text='OK'}"_s), u"OK_"_s);
}

void TestObjectMap::readsItsText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("pairs");
    const auto row = [](const char *name, const char *text, const char *pairs) {
        QTest::newRow(name) << QString::fromLatin1(text) << QString::fromLatin1(pairs);
    };
    // clang-format off
    row("in their order",       ":b\t{b='1'}\n:a\ta.b\n", ":b {b='1'}|:a a.b");
    row("no TAB",               "#\n\n:a x\n:b\ty",       ":b y");
    row("only a TAB",           "\t",                     " ");
    row("carriage return",      ":a\tx\r\n",              ":a x\r");
    row("escapes",              ":\\t\\n\tx\\r\\\\\\\\",  ":\t\n x\r\\\\");
    row("unknown escape",       ":\\x\t{\\q='1'}",        ":\\x {\\q='1'}");
    row("backslash at the end", ":\\\tx\\",               ": x");
    row("new backslash",        ":a\ta\\\\\\\\b",         ":a a\\\\b");
    row("escaped separators",   ":a\ta\\\\.b\\\\[c\\\\",  ":a a\\.b\\[c\\");
    row("in braces",            ":a\t{a='\\\\b'}",        ":a {a='\\b'}");
    // clang-format on
}

void TestObjectMap::readsItsText()
{
    QFETCH(QString, text);
    QStringList pairs;
    for (const auto &[symbol, name] : ObjectMap::parseSerializedMap(text))
        pairs.append(symbol + u' ' + name.qualifiedName());
    QTEST(pairs.join(u'|'), "pairs");
}

void TestObjectMap::savesWhenChanged()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"objects.map"_s);
    ObjectMap map(false);
    map.loadFromString(u":b\ty\n:a\tx\n"_s);
    map.clear();
    QVERIFY(map.saveToFile(path));
    QVERIFY(!QFile::exists(path));
    map.setSymbolicNames({ { u":\u20ac"_s, ObjectName(u"x\\y"_s) },
                           { u":\n\r\t\\"_s, ObjectName(u"{b='\n\\\\ \\''  a='1'}"_s) } });
    QVERIFY(map.saveToFile(path));
    QVERIFY(!map.isModified());
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(),
             QByteArray(":\\n\\r\\t\\\\\t{b='\\n\\\\\\\\ \\\\''  a='1'}\n:\xe2\x82\xac\tx\\\\y\n"));

    map.add(ObjectName(u"y"_s), u":b"_s);
    QVERIFY(!map.loadFromFile(folder.filePath(u"none"_s)));
    QCOMPARE(map.symbolicNames().size(), 3);
    QVERIFY(!map.saveToFile(folder.filePath(u"none/objects.map"_s)));
    QVERIFY(map.isModified());
    QVERIFY(map.loadFromFile(path));
    QCOMPARE(described(map), u":\n\r\t\\ {b='\n\\\\ \\''  a='1'}|:\u20ac x\\\\y"_s);
    QCOMPARE(map.symbolicName(u"y"_s, false), u"y"_s);
}

void TestObjectMap::lastOfEqualTextsKeepsTheSymbol()
{
    ObjectMap map(false);
    map.loadFromString(u":b\t{x='1'}\n:a\t{x='1'}\n"_s);
    QCOMPARE(map.symbolicNames().size(), 2);
    QCOMPARE(map.symbolicName(u"{ x='1'}"_s, false), u":a"_s);
    map.setSymbolicNames(QMap<QString, ObjectName>(map.symbolicNames()));
    QCOMPARE(map.symbolicName(u"{x='1'}"_s, false), u":b"_s);
    map.setSymbolicNames({ { u":d"_s, ObjectName(u"{x='2'}"_s) } });
    QCOMPARE(map.printableName(u"{x='1'}"_s), u"{x='1'}"_s);
}

void TestObjectMap::matchesByTheMap_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("candidate");
    QTest::addColumn<bool>("doesMatch");
    // clang-format off
    QTest::newRow("symbol and its name")    << u":a"_s             << u"{y='2' x='1'}"_s << true;
    QTest::newRow("symbol and another")     << u":a"_s             << u"{y='2'}"_s       << false;
    QTest::newRow("two of one name")        << u":a"_s             << u":b"_s            << true;
    QTest::newRow("hierarchical candidate") << u":c"_s             << u"p.q"_s           << false;
    QTest::newRow("hierarchical symbol")    << u":c"_s             << u":p.q"_s          << true;
    QTest::newRow("unknown symbol")         << u":p.q"_s           << u":c"_s            << false;
    QTest::newRow("nested and a symbol")    << u"{x='1'  y='2'}"_s << u":b"_s            << true;
    QTest::newRow("nested and unknown")     << u"{x='1'  y='2'}"_s << u":d"_s            << false;
    // clang-format on
}

void TestObjectMap::matchesByTheMap()
{
    QFETCH(QString, value);
    QFETCH(QString, candidate);
    ObjectMap map(false);
    map.loadFromString(u":a\t{x='1' y='2'}\n:b\t{y='2' x='1'}\n:c\tp.q\n"_s);
    const auto type = value.startsWith(u':') ? PropertyValue::Text : PropertyValue::NestedName;
    QTEST(PropertyValue(value, PropertyValue::Exact, type).matches(candidate), "doesMatch");
}

void TestObjectMap::replacesNestedNames()
{
    ObjectMap map(false);
    map.loadFromString(u":W\t{title='W'}\n:B\t{text='B\\\\\\\\' window=':W'}\n:H\ta.b\n"_s);
    const QString known = u"{window~={title='W'} buddy={window={title='W'} text='B\\\\'}}"_s;
    const QString unknown = u"{buddy={window={title='V'} text='it\\'s'} a='\\\\'}"_s;
    QCOMPARE(map.fixedName(known, false), u"{buddy=':B' window~=':W'}"_s);
    QCOMPARE(map.printableName(known), u"{buddy={text='B\\\\' window=:W} window~=:W}"_s);
    QCOMPARE(map.fixedName(unknown, false),
             uR"({a='\\' buddy='{text=\'it\\\'s\' window=\'{title=\\\'V\\\'}\'}'})"_s);
    QCOMPARE(map.printableName(unknown), u"{a='\\\\' buddy={text='it\\'s' window={title='V'}}}"_s);
    QCOMPARE(map.symbolicName(unknown, false), map.fixedName(unknown, false));
    QCOMPARE(map.symbolicName(u"{window={title='W'} text='B\\\\'}"_s, false), u":B"_s);
    for (const QString &name : { u":W"_s, u":X"_s, u"a.c"_s, u"{a"_s, QString() }) {
        QCOMPARE(map.fixedName(name, true), name);
        QCOMPARE(map.symbolicName(name, false), name);
        QCOMPARE(map.printableName(name), name);
    }
    QCOMPARE(map.symbolicName(u"a.b"_s, true), u":H"_s);
    QCOMPARE(map.printableName(u"a.b"_s), u":H"_s);
    // A bad name has no properties.
    QCOMPARE(map.fixedName(u"{a={}b}"_s, true), u"{}"_s);
    QVERIFY(!map.isModified());
}

void TestObjectMap::makesSymbols_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("symbol");
    // clang-format off
    QTest::newRow("all parts")             << u"{type='T' text='OK' window=':W' container=':C'}"_s << u"Main.Page.OK_T"_s;
    QTest::newRow("nested reference")      << u"{type='T' window={caption='Main'}}"_s << u"Main_T"_s;
    QTest::newRow("reference to nowhere")  << u"{type='T' text='OK' window=':none'}"_s << u"OK_T"_s;
    QTest::newRow("container before form") << u"{form='F' container='x'}"_s      << u"_"_s;
    QTest::newRow("text before name")      << u"{name='n' text='t' innerText=''}"_s << u"t_"_s;
    QTest::newRow("unnamed")               << u"{name='unnamed' type='A' row='1' column='2'}"_s << u"1_2_A"_s;
    QTest::newRow("row alone")             << u"{name='qt_viewport' type='A' row='1'}"_s << u"_A"_s;
    QTest::newRow("through the buddy")     << u"{buddy=':B' stringValue='x'}"_s  << u"Label_"_s;
    QTest::newRow("namespace")             << u"{type='Foo.Bar' tagName='x'}"_s  << u"_Bar"_s;
    QTest::newRow("bad name")              << u"{text='a'}}"_s                   << u"_"_s;
    // clang-format on
}

void TestObjectMap::makesSymbols()
{
    QFETCH(QString, name);
    QFETCH(QString, symbol);
    ObjectMap map(false);
    map.loadFromString(u":W\t{title='Main'}\n:C\t{container=':W' id='Page'}\n:B\t{leftWidget=':L'}\n"
                       ":L\t{text='Label'}\n"_s);
    QCOMPARE(ObjectMap::symbolFromMultiPropName(name), symbol);
    QCOMPARE(map.multiPropNameToSymbolic(name), u':' + symbol);
}

void TestObjectMap::numbersSymbols()
{
    ObjectMap map(false);
    map.loadFromString(u":Main_QWidget\t{text='Main' type='QWidget'}\n:Main.OK_QPushButton_3\tx\n"_s);
    const auto symbol = [&](int occurrence) {
        return map.symbolicName(
                u"{type='QPushButton' text='OK' window=':Main_QWidget' occurrence='%1'}"_s.arg(occurrence),
                true);
    };
    QCOMPARE(symbol(1), u":Main.OK_QPushButton"_s);
    QCOMPARE(symbol(2), u":Main.OK_QPushButton_2"_s);
    QCOMPARE(symbol(3), u":Main.OK_QPushButton_4"_s);
    QCOMPARE(symbol(2), u":Main.OK_QPushButton_2"_s);
    map.add(ObjectName(u"y"_s), u":Main.OK_QPushButton_5"_s);
    QCOMPARE(symbol(4), u":Main.OK_QPushButton_6"_s);
    QCOMPARE(map.symbolicName(u"a.b"_s, true), u":a.b"_s);
    QVERIFY(map.isModified());
    map.clear();
    map.loadFromString(u":Main_QWidget\t{text='Main' type='QWidget'}\n"_s);
    QCOMPARE(symbol(5), u":Main.OK_QPushButton"_s);
    QCOMPARE(symbol(6), u":Main.OK_QPushButton_2"_s);
}

void TestObjectMap::leavesFormatCharactersOut()
{
    ObjectMap map(false);
    QCOMPARE(map.symbolicName(u"{text='a\u200eb\U000E0041\u00ad'}"_s, true), u":ab_"_s);
    QCOMPARE(map.realName(u":ab_"_s), u"{text='a\u200eb\U000E0041\u00ad'}"_s);
    // It is free as long as it is looked at with them.
    QCOMPARE(map.symbolicName(u"{text='a\u200fb'}"_s, true), u":ab_"_s);
    QCOMPARE(map.realName(u":ab_"_s), u"{text='a\u200fb'}"_s);
    QCOMPARE(map.symbolicName(u"a\u200e"_s + QChar(0xD83D), true), u":a"_s + QChar(0xD83D));
}

void TestObjectMap::addsNestedNamesInOrder()
{
    ObjectMap map(false);
    QCOMPARE(map.symbolicName(u"{window={a='1'} buddy={b='2' window={c='3'}} window={d='4'}}"_s, true),
             u":__4"_s);
    QCOMPARE(described(map),
             u":_ {c='3'}|:__2 {b='2' window=':_'}|:__3 {d='4'}|:__4 {buddy=':__2' window=':__3'}"_s);
}

void TestObjectMap::writesOldNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("old");
    // clang-format off
    QTest::newRow("hierarchical")  << u"a.b"_s                             << u"a.b"_s;
    QTest::newRow("unnamed alone") << u"{name='unnamed'}"_s                << u"}"_s;
    QTest::newRow("no references") << u"{b~='\\\\\\'' a?='*' c={ d='1'}}"_s << u"{a='*' b='\\\\'' c='{ d=\\'1\\'}'}"_s;
    QTest::newRow("all kinds")     << u"{window=':W' container=':C' buddy=':B' name='n'}"_s
                                   << u"{buddyText='B' containerLabel='L' containerName='c' containerType='C' name='n' "
                                      "windowCaption='Cap' windowOccurrence='2' windowType='W'}"_s;
    QTest::newRow("unknown")       << u"{window=':X' container={} a='1'}"_s << u"{a='1'}"_s;
    QTest::newRow("bad name")      << u"{a}"_s                              << u"}"_s;
    // clang-format on
}

void TestObjectMap::writesOldNames()
{
    QFETCH(QString, name);
    ObjectMap map(false);
    map.loadFromString(u":W\t{name='unnamed' type~='W' occurrence='2' caption='Cap' text='x'}\n"
                       ":C\t{name='c' type='C' text='L' caption='x'}\n:B\t{text='B' name='x'}\n"
                       "\t{type='symbol without a text'}\n"_s);
    QTEST(map.convertToOldName(name), "old");
}

void TestObjectMap::findsOldNames()
{
    ObjectMap map(false);
    map.loadFromString(u":W\t{caption='Cap\\\\'s'}\n:old\t{type='T' windowCaption='Cap\\\\'s'}\n"_s);
    const QString name = u"{type='T' window={caption='Cap\\'s'} name='unnamed'}"_s;
    QCOMPARE(map.symbolicName(name, true), u":old"_s);
    QCOMPARE(map.printableName(u"{type~='T' window=':W'}"_s), u":old"_s);
    QVERIFY(!map.isModified());
}

void TestObjectMap::findsWhatAWalkFinds()
{
    for (quint32 seed = 0; seed < 100; ++seed) {
        QRandomGenerator random(seed);
        ObjectMap map(false);
        map.loadFromString(u":A\t{name='1' type='\\\\'}\n:B\t{name='unnamed' text='1' type='1'}\n"_s);
        for (quint32 i = 0; i < 10 + 5 * seed; ++i)
            map.add(ObjectName(randomName(random)), u":%1"_s.arg(i));
        map.setSymbolicNames(map.symbolicNames());
        QMap<ObjectName, QString> symbols;
        for (auto it = map.symbolicNames().cbegin(); it != map.symbolicNames().cend(); ++it)
            symbols.insert(it.value(), it.key());
        for (int i = 0; i < 50; ++i) {
            const QString name = randomName(random);
            QCOMPARE(map.symbolicName(name, false), symbolOrText(map, symbols, map.fixedName(name, false)));
        }
    }
}

void TestObjectMap::followsReferencesInACircle()
{
    ObjectMap map(false);
    map.loadFromString(u":A\t{buddy=':B'}\n:B\t{buddy=':A'}\n"_s);
    QCOMPARE(ObjectMap::symbolFromMultiPropName(u"{window=':A' type='T'}"_s), u"_T"_s);
    QCOMPARE(map.symbolicName(u"{window=':A' type='T'}"_s, true), u":_T"_s);
}

void TestObjectMap::copesWithHugeNames()
{
    const auto nested = [](int depth, const QString &inner) {
        return u"{buddy="_s.repeated(depth) + inner + u"}"_s.repeated(depth);
    };
    ObjectMap map(false);
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        const QString text(1 << 20, u'\'');
        const QString large = u"{text='"_s + u"\\'"_s.repeated(1 << 20) + u"'}"_s;
        QCOMPARE(map.fixedName(large, true), large);
        QCOMPARE(map.printableName(nested(3, large)), nested(3, large));
        QCOMPARE(map.symbolicName(large, true), u':' + text + u'_');

        const QString deep = nested(1000, u"{text='x'}"_s);
        QCOMPARE(map.printableName(deep), deep);
        QCOMPARE(map.symbolicName(deep, true), u":x__1001"_s);
        QCOMPARE(map.fixedName(deep, true), u"{buddy=':x__1000'}"_s);
        map.clear();
        // Quoted, it would fill the memory.
        QCOMPARE(map.fixedName(deep, false), deep);

        const QString tooDeep = nested(20'000, u"{text='x'}"_s);
        QCOMPARE(map.fixedName(tooDeep, true), tooDeep);
        QCOMPARE(map.printableName(tooDeep), tooDeep);
        QCOMPARE(map.printableName(tooDeep + u'}'), u"{}"_s);
        QCOMPARE(map.symbolicName(tooDeep, true), u":_"_s);
        QCOMPARE(map.symbolicName(tooDeep, false), u":_"_s);
    }));
    thread->setStackSize(256 * 1024);
    thread->start();
    QVERIFY(thread->wait());
}

QTEST_GUILESS_MAIN(TestObjectMap)
#include "tst_objectmap.moc"
