#include "objectmodel/objectname.h"

#include <QTest>
#include <QThread>

using namespace Qt::StringLiterals;
using namespace Vorkel;

namespace {

/// Every property as key, operator, type and value.
QString described(const PropertyMap &properties)
{
    QStringList texts;
    for (auto it = properties.cbegin(); it != properties.cend(); ++it)
        texts.append(it.key() + PropertyValue::operatorText(it->modifier())
                     + (it->type() == PropertyValue::NestedName ? "name "_L1 : "text "_L1) + it->value());
    return texts.join(u'|');
}

PropertyValue value(PropertyValue::Modifiers modifier, const QString &text)
{
    return PropertyValue(text, modifier, PropertyValue::Text);
}

QString nested(int depth)
{
    return "{a="_L1 + u"{a="_s.repeated(depth - 1) + "{}"_L1 + u"}"_s.repeated(depth);
}

/// Runs `work` on a stack that has no room for a recursion into the input.
void onSmallStack(const std::function<void()> &work)
{
    const std::unique_ptr<QThread> thread(QThread::create(work));
    thread->setStackSize(256 * 1024);
    thread->start();
    QVERIFY(thread->wait());
}

} // namespace

class TestObjectName : public QObject
{
    Q_OBJECT

private slots:
    void parses_data();
    void parses();
    void reportsBadNames_data();
    void reportsBadNames();
    void keepsOrReplacesAnOlderMessage();
    void readsWithoutAnErrorToReport();
    void convertsBetweenTextAndProperties();
    void tellsTheKindsOfNamesApart_data();
    void tellsTheKindsOfNamesApart();
    void comparesNames_data();
    void comparesNames();
    void countsOccurrences();
    void convertsWildcards_data();
    void convertsWildcards();
    void matches_data();
    void matches();
    void givesUpOnEndlessPatterns();
    void copesWithHugeNames();
};

void TestObjectName::parses_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("properties");
    QTest::addColumn<QString>("canonical");
    const auto row = [](const char *name, const QString &text, const QString &properties,
                        const QString &canonical) { QTest::newRow(name) << text << properties << canonical; };
    // clang-format off
    row("sorts keys",           u"{b='2' a='1' B='3'}"_s,        u"B=text 3|a=text 1|b=text 2"_s, u"{B='3' a='1' b='2'}"_s);
    row("last of a key",        u"{a={} a='1' a~='2'}"_s,        u"a~=text 2"_s,                  u"{a~='2'}"_s);
    row("operators",            u"{a='1' b~='2' c?='3'}"_s,      u"a=text 1|b~=text 2|c?=text 3"_s, u"{a='1' b~='2' c?='3'}"_s);
    row("blanks everywhere",    u"{\t n a me \t= '1' b ?= '2'}"_s, u"b?=text 2|name=text 1"_s,    u"{b?='2' name='1'}"_s);
    row("any first character",  u"{=='1' ~='2' '='3' {='4'}"_s,  u"'=text 3|==text 1|{=text 4|~=text 2"_s, u"{'='3' =='1' {='4' ~='2'}"_s);
    row("odd keys",             u"{a>b}c'='1' d\n='2'}"_s,       u"a>b}c'=text 1|d\n=text 2"_s,   u"{a>b}c'='1' d\n='2'}"_s);
    row("escapes",              u"{a='it\\'s \\\\ \\n }'}"_s,    u"a=text it's \\ n }"_s,         u"{a='it\\'s \\\\ n }'}"_s);
    row("nested as it stands",  u"{b~={ y='\\'}' x={}} a='1'}"_s, u"a=text 1|b~=name { y='\\'}' x={}}"_s, u"{a='1' b~={ y='\\'}' x={}}}"_s);
    // clang-format on
}

void TestObjectName::parses()
{
    QFETCH(QString, text);
    QFETCH(QString, canonical);
    QString error;
    const PropertyMap properties = parseNameByProperties(text, &error);
    QCOMPARE(error, QString());
    QTEST(described(properties), "properties");
    QCOMPARE(qualifiedNameFromProperties(properties), canonical);
    QCOMPARE(described(parseNameByProperties(canonical, &error)), described(properties));
    QCOMPARE(described(parseNameByProperties(text, nullptr)), described(properties));
}

void TestObjectName::reportsBadNames_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("message");
    const auto row = [](const char *name, const QString &text, const QString &message) {
        QTest::newRow(name) << text << message;
    };
    const auto wrong = [row](const char *name, const QString &text, int column, const QString &expected,
                             QChar got) {
        row(name, text,
            u"Parse error while parsing '%1': at column %2: expected %3, got %4\n"_s.arg(
                    text.trimmed(), QString::number(column), expected, got));
    };
    const auto ended = [row](const char *name, const QString &text) {
        row(name, text,
            u"Object name '%1' ended unexpectedly at column %2"_s.arg(text, QString::number(text.size())));
    };
    const QString start = u"either ' or { or whitespace"_s;
    // clang-format off
    row("no braces",                 u" a.b "_s, u"Not a multi-property string: a.b"_s);
    row("half a pair",               u"{"_s,     u"Not a multi-property string: {"_s);
    wrong("double quotes",           u"{type=\"A\"}"_s,     7, start, u'"');
    wrong("no value",                u" {a=}"_s,            4, start, u'}');
    wrong("above Latin-1",           u"{a=\u20ac}"_s,       4, start, QChar::Null);
    wrong("placeholders in name",    u"{%4=\u00ff%2}"_s,    5, start, u'\u00ff');
    wrong("half an operator",        u"{name~'x'}"_s,       6, u"="_s, u'~');
    ended("key only",                u"{a}"_s);
    ended("no closing quote",        u"{a='x}"_s);
    ended("open quote in a nested",  u"{a={b={c='}}}"_s);
    row("more behind",               u" {a='x'}} "_s,
        u"Error parsing object name  {a='x'}}  (trimmed: {a='x'}}). Parsed 6 characters, but name still has 1 more to parse"_s);
    // clang-format on
}

void TestObjectName::reportsBadNames()
{
    QFETCH(QString, text);
    QFETCH(QString, message);
    QString error;
    QCOMPARE(parseNameByProperties(text, &error), PropertyMap());
    QCOMPARE(error, message);
}

void TestObjectName::keepsOrReplacesAnOlderMessage()
{
    const auto after = [](const QString &text) {
        QString error = u"older"_s;
        (void)parseNameByProperties(text, &error);
        return error;
    };
    QCOMPARE(after(u"{a='}"_s), u"older"_s);
    QCOMPARE(after(u"{a={b=}}"_s).left(11), u"Parse error"_s);
    QCOMPARE(after(u"{a={b={c='}}}"_s),
             u"Unexpected end of object name: {a={b={c='}}}. Parsing a nested object name starting at column "
             u"6 "
             "ended at column 13 which is unexpected."_s);
}

void TestObjectName::readsWithoutAnErrorToReport()
{
    QCOMPARE(described(parseNameByProperties(u"{a={b=} c={d={e= }}}"_s, nullptr)),
             u"a=name {b=}|c=name {d={e= }}"_s);
    QCOMPARE(parseNameByProperties(u"{a={b=x}}"_s, nullptr), PropertyMap());
}

void TestObjectName::convertsBetweenTextAndProperties()
{
    const ObjectName ofText(u"{b='2' a~='1'}"_s);
    ObjectName changed = ofText;
    changed.setProperty(u"c"_s, value(PropertyValue::Wildcard, u"3*"_s));
    QCOMPARE(changed.qualifiedName(), u"{a~='1' b='2' c?='3*'}"_s);
    changed.removeProperty(u"a"_s);
    changed.removeProperty(u"none"_s);
    QCOMPARE(changed.qualifiedName(), u"{b='2' c?='3*'}"_s);
    QCOMPARE(ofText.qualifiedName(), u"{b='2' a~='1'}"_s);
    QCOMPARE(described(ofText.properties()), u"a~=text 1|b=text 2"_s);
    QCOMPARE(ofText.property(u"a"_s).value(), u"1"_s);
    QCOMPARE(ofText.property(u"none"_s), PropertyValue());

    const ObjectName ofMap(changed.properties());
    QCOMPARE(ofMap.qualifiedName(), changed.qualifiedName());
    QCOMPARE(ObjectName(PropertyMap()).qualifiedName(), u"{}"_s);

    ObjectName bad(u"{a}"_s);
    bad.setProperty(u"b"_s, value(PropertyValue::Exact, u"1"_s));
    QCOMPARE(bad.qualifiedName(), u"{b='1'}"_s);
    QVERIFY(!bad.isValid());
}

void TestObjectName::tellsTheKindsOfNamesApart_data()
{
    QTest::addColumn<ObjectName>("name");
    QTest::addColumn<QString>("error");
    QTest::addColumn<bool>("isMultiProperty");
    QTest::addColumn<bool>("isEmpty");
    const QString hierarchical = u"Hierarchical names must not start with '{' or end in '}': "_s;
    // clang-format off
    QTest::newRow("default")          << ObjectName()                       << u""_s << false << true;
    QTest::newRow("empty text")       << ObjectName(u""_s)                  << u"Empty string is not a valid object name."_s << false << true;
    QTest::newRow("no properties")    << ObjectName(PropertyMap())          << u""_s << true  << true;
    QTest::newRow("braces alone")     << ObjectName(u"{}"_s)                << u""_s << true  << false;
    QTest::newRow("properties")       << ObjectName(u"{a='1'}"_s)           << u""_s << true  << false;
    QTest::newRow("blanks in front")  << ObjectName(u" {a='1'} "_s)         << u""_s << false << false;
    QTest::newRow("hierarchical")     << ObjectName(u"a.b"_s)               << u""_s << false << false;
    QTest::newRow("bad properties")   << ObjectName(u"{a}"_s)               << u"Object name '{a}' ended unexpectedly at column 3"_s << false << false;
    QTest::newRow("something behind") << ObjectName(u"{a='x'} trailing"_s)  << hierarchical + u"{a='x'} trailing"_s << false << false;
    QTest::newRow("brace at the end") << ObjectName(u"a}"_s)                << hierarchical + u"a}"_s << false << false;
    // clang-format on
}

void TestObjectName::tellsTheKindsOfNamesApart()
{
    QFETCH(ObjectName, name);
    QFETCH(QString, error);
    QTEST(name.isEmpty(), "isEmpty");
    QCOMPARE(name.errorMessage(), error);
    QCOMPARE(name.isValid(), error.isEmpty());
    QTEST(name.isMultiProperty(), "isMultiProperty");
    // Without properties, once that is known.
    QCOMPARE(name.isEmpty(), name.properties().isEmpty());
}

void TestObjectName::comparesNames_data()
{
    QTest::addColumn<QString>("left");
    QTest::addColumn<QString>("right");
    QTest::addColumn<bool>("areEqual");
    // clang-format off
    QTest::newRow("order and blanks")  << u"{a='1' b='2'}"_s     << u"{b='2'   a='1'}"_s << true;
    QTest::newRow("text and name")     << u"{a={}}"_s            << u"{a='{}'}"_s        << true;
    QTest::newRow("operator")          << u"{a~='1'}"_s          << u"{a='1'}"_s         << false;
    QTest::newRow("order in a nested") << u"{a={b='1' c='2'}}"_s << u"{a={c='2' b='1'}}"_s << false;
    QTest::newRow("hierarchical")      << u"a.b"_s               << u"a.b"_s             << true;
    QTest::newRow("blanks around")     << u" {a='1'}"_s          << u"{a='1'}"_s         << false;
    // clang-format on
}

void TestObjectName::comparesNames()
{
    QFETCH(QString, left);
    QFETCH(QString, right);
    QFETCH(bool, areEqual);
    QCOMPARE(ObjectName(left) == ObjectName(right), areEqual);
    QCOMPARE(ObjectName(right) != ObjectName(left), !areEqual);
    QCOMPARE(qualifiedNamesEqual(left, right), areEqual);
    if (left != right) {
        QVERIFY((ObjectName(left) < ObjectName(right)) == (left < right));
        // By text alone, bad names have no properties to differ in.
        QVERIFY(qualifiedNamesEqual(u"{a}"_s, u"{b~}"_s));
        QVERIFY(ObjectName(u"{a}"_s) != ObjectName(u"{b~}"_s));
    }
}

void TestObjectName::countsOccurrences()
{
    const QMap<QString, int> numbers { { u""_s, 1 },    { u"2147483647"_s, 2147483647 },
                                       { u"0"_s, -1 },  { u"0x2"_s, -1 },
                                       { u"-3"_s, -1 }, { u"2147483648"_s, -1 } };
    for (auto number = numbers.cbegin(); number != numbers.cend(); ++number)
        QCOMPARE(ObjectName(u"{occurrence='%1'}"_s.arg(number.key())).occurrenceValue(), *number);
    QCOMPARE(ObjectName(u"{a='2'}"_s).occurrenceValue(), 1);
}

void TestObjectName::convertsWildcards_data()
{
    QTest::addColumn<QString>("wildcard");
    QTest::addColumn<QString>("pattern");
    const auto row = [](const char *name, const char *wildcard, const char *pattern) {
        QTest::newRow(name) << QString::fromLatin1(wildcard) << QString::fromLatin1(pattern);
    };
    // clang-format off
    row("wildcards",                 "a*b?",        "a.*b.");
    row("special characters",        "$()+.^{|}",   R"(\$\(\)\+\.\^\{\|\})");
    row("escaped wildcards",         R"(\*\?\[\])", R"(\*\?\[\])");
    row("escaped letter",            R"(\d)",       R"(\\d)");
    row("two at the end",            R"(a\\)",      R"(a\\\\)");
    row("two and a wildcard",        R"(\\*)",      R"(\\\*)");
    row("set",                       "x[a-c.*]?",   "x[a-c.*].");
    row("inverted set",              "[^]^]*",      "[^]^].*");
    row("bracket in a set",          "[]*]*",       "[]*].*");
    row("escape in a set",           R"([a\]b]*)",  R"([a\]b].*)");
    row("open set",                  "[a*",         "[a*");
    row("backslash ends open set",   R"([a\)",      R"([a\)");
    // clang-format on
}

void TestObjectName::convertsWildcards()
{
    QFETCH(QString, wildcard);
    QTEST(PropertyValue::wildcardToPattern(wildcard), "pattern");
}

void TestObjectName::matches_data()
{
    QTest::addColumn<PropertyValue>("value");
    QTest::addColumn<QString>("candidate");
    QTest::addColumn<bool>("doesMatch");
    const auto row = [](const char *name, PropertyValue::Modifiers modifier, const QString &text,
                        const QString &candidate, bool doesMatch) {
        QTest::newRow(name) << value(modifier, text) << candidate << doesMatch;
    };
    using enum PropertyValue::Modifiers;
    // clang-format off
    row("same text",                Exact,             u"a\0b"_s,       u"a\0b"_s,       true);
    row("text like a name",         Exact,             u"{a='1' b='2'}"_s, u"{b='2' a='1'}"_s, false);
    row("symbol without a map",     Exact,             u":a"_s,         u"a"_s,          false);
    row("wildcard inside",          Wildcard,          u"a*b"_s,        u"xxaYbzz"_s,    true);
    row("literal star",             Wildcard,          u"a\\*b"_s,      u"aYb"_s,        false);
    row("open set",                 Wildcard,          u"[a"_s,         u"a"_s,          false);
    row("expression across 16 bits", RegularExpression, u"^.$"_s,       u"\U0001F600"_s, true);
    row("bad expression",           RegularExpression, u"("_s,          u"("_s,          false);
    row("expression with settings", RegularExpression, u"(*UCP)^\\w$"_s, u"\u00e9"_s,    true);
    // clang-format on
    QTest::newRow("nested name in another order")
            << PropertyValue(u"{a='1' b='2'}"_s, Exact, PropertyValue::NestedName) << u"{b='2' a='1'}"_s
            << true;
    QTest::newRow("nested name as a pattern")
            << PropertyValue(u"{a='1' b='2'}"_s, RegularExpression, PropertyValue::NestedName)
            << u"{b='2' a='1'}"_s << false;
    QTest::newRow("unknown operator")
            << PropertyValue(u"a"_s, PropertyValue::Modifiers(3), PropertyValue::Text) << u"a"_s << false;
}

void TestObjectName::matches()
{
    QFETCH(PropertyValue, value);
    QFETCH(QString, candidate);
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    QTEST(value.matches(candidate), "doesMatch");
}

void TestObjectName::givesUpOnEndlessPatterns()
{
    const QString many(40, u'x');
    QVERIFY(!value(PropertyValue::RegularExpression, u"(x+x+)+y"_s).matches(many + u"zy"_s));
    QVERIFY(!value(PropertyValue::Wildcard, u"*x"_s.repeated(20) + u"y"_s)
                     .matches(many.repeated(100) + u"\ny"_s));
    QVERIFY(!value(PropertyValue::RegularExpression, u"^(?:a|b)*$"_s).matches(QString(1 << 24, u'a')));
    QVERIFY(!value(PropertyValue::RegularExpression, u"(x+x+)+y"_s).matches(many.first(21) + u"zxxy"_s));
    // Where it takes its time but not for ever, a pattern still matches.
    QVERIFY(value(PropertyValue::Wildcard, u"*y"_s).matches(QString(1 << 20, u'x') + u'y'));
    QVERIFY(value(PropertyValue::RegularExpression, u"(x+x+)+y"_s).matches(u"xxxxxxxxxxzxxy"_s));
    QVERIFY(!value(PropertyValue::RegularExpression, QString(1 << 20, u'(')).matches(many));
}

void TestObjectName::copesWithHugeNames()
{
    constexpr int depth = 100'000;
    onSmallStack([] {
        for (const QString &part : { u"x"_s, u"\\'"_s, u"{"_s, u"\U0001F600"_s }) {
            const ObjectName name("{a='"_L1 + part.repeated(1 << 20) + "'}"_L1);
            QVERIFY(name.isValid());
            QCOMPARE(ObjectName(name.properties()).qualifiedName(), name.qualifiedName());
        }
        QString text(u'{');
        for (int i = 10'000; i > 0; --i)
            text += u"k%1='%1' "_s.arg(i);
        const ObjectName name(text + u'}');
        QCOMPARE(name.properties().size(), 10'000);
        QVERIFY(ObjectName(name.properties()) == name);

        QCOMPARE(ObjectName(nested(depth)).property(u"a"_s).value(), nested(depth - 1));
        QVERIFY(ObjectName(nested(depth).chopped(1))
                        .errorMessage()
                        .endsWith(u"ended unexpectedly at column %1"_s.arg(4 * depth + 1)));
        QVERIFY(ObjectName(nested(depth) + u'}').errorMessage().endsWith(u"1 more to parse"_s));
    });
}

QTEST_GUILESS_MAIN(TestObjectName)
#include "tst_objectname.moc"
