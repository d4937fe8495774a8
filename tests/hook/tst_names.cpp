#include "things.h"

#include "objectmodel/objectmap.h"

#include <QSignalSpy>
#include <QTest>

using namespace Things;

namespace {

const QString computed = u"{text='OK' type='Button'}"_s;

/// With a button for the thing.
struct ButtonSession : Session
{
    ButtonSession()
    {
        hierarchy->properties = { { u"text"_s, u"OK"_s }, { u"type"_s, u"Button"_s } };
        hierarchy->fullName = computed;
    }
    void setObjectMap(const QString &map) { hook->handleSend(1, u"setObjectMap"_s, { map }); }
};

} // namespace

class tst_names : public QObject
{
    Q_OBJECT

private slots:
    void reusesNames_data();
    void reusesNames();
    void searchesOnce();
    void convertsNames();
    void tellsWhatDidNotMatch();
};

void tst_names::reusesNames_data()
{
    QTest::addColumn<QString>("map");
    QTest::addColumn<QString>("existing");
    // clang-format off
    QTest::newRow("empty map")    << u""_s                                        << u""_s;
    QTest::newRow("other order")  << u":b\t{type='Button'  text='OK'}\n"_s        << u"{type='Button'  text='OK'}"_s;
    QTest::newRow("leads there")  << u":a\t{text='Not'}\n:b\t{text?='O*'}\n"_s    << u"{text?='O*'}"_s;
    QTest::newRow("same first")   << u":a\t{text='OK'}\n:b\t{text='OK' type='Button'}\n"_s << computed;
    QTest::newRow("ruled out")    << u":b\t{text='OK' never='Button'}\n"_s        << u""_s;
    // clang-format on
}

void tst_names::reusesNames()
{
    QFETCH(QString, map);
    QFETCH(QString, existing);
    ButtonSession session;
    session.setObjectMap(map);
    for (int round = 0; round < 2; ++round)
        QCOMPARE(session.wrapper->getExistingRealName(session.thing, computed), existing);
    // Looking entries up in vain is no failure.
    QVERIFY(Inspector::self()->unmatchedProperties().isEmpty());
    QCOMPARE(session.error(), QString());
    QCOMPARE(session.wrapper->getExistingRealName(session.thing, u"button"_s), QString());
    QCOMPARE(session.wrapper->getExistingRealName(nullptr, computed), QString());
}

void tst_names::searchesOnce()
{
    ButtonSession session;
    session.setObjectMap(u":a\t{text='Not'}\n"_s);
    QCOMPARE(session.wrapper->getExistingRealName(session.thing, computed), QString());
    const int lookups = session.hierarchy->lookups;
    QCOMPARE(session.wrapper->getExistingRealName(session.thing, computed), QString());
    QCOMPARE(session.hierarchy->lookups, lookups);
    QCOMPARE(session.error(), QString());
    // Until there is another map.
    session.setObjectMap(u":a\t{type='Button'}\n"_s);
    QCOMPARE(session.wrapper->getExistingRealName(session.thing, computed), u"{type='Button'}"_s);
}

void tst_names::convertsNames()
{
    ButtonSession session;
    QSignalSpy schemes(session.hook, &Hook::namingSchemeChanged);
    const auto converted = [&](const QString &name, const QString &scheme) {
        return session.call(u"convertName"_s, { name, scheme }).toString();
    };
    QCOMPARE(converted(u"{text='OK'}"_s, u"0"_s), computed);
    QCOMPARE(converted(u"{text='OK'}"_s, u"1"_s), u"{text='OK'}"_s);
    QCOMPARE(schemes.size(), 4);
    QCOMPARE(session.hook->namingScheme(), 0);
    // The wrapper has seen that the map does not know this one.
    session.call(u"addToObjectMap"_s, { u"{type='Button'}"_s, u":known"_s });
    QVERIFY(ObjectMap::self()->isModified());
    QCOMPARE(converted(u":known"_s, u"0"_s), computed);
    session.setObjectMap(ObjectMap::self()->toString());
    QCOMPARE(converted(u":known"_s, u"0"_s), u"{type='Button'}"_s);
    QCOMPARE(session.error(), QString());
    QCOMPARE(converted(u"{text='No'}"_s, u"0"_s), u"{text='No'}"_s);
    QVERIFY(!session.error().isEmpty());
    session.hook->handleSend(1, u"namingScheme"_s, { 1 });
    QCOMPARE(session.hook->namingScheme(), 1);
}

void tst_names::tellsWhatDidNotMatch()
{
    ButtonSession session;
    QVERIFY(!session.call(u"objectFind"_s, { u"{text='No'}"_s }).isValid());
    const QVariantMap unmatched { { computed, QStringList(u"text"_s) } };
    QCOMPARE(session.call(u"getUnmatchedProperties"_s).toMap(), unmatched);
    QVERIFY(session.error().contains(u"text for object name: '"_s + computed));
    QVERIFY(session.call(u"getUnmatchedProperties"_s).toMap().isEmpty());
}

QTEST_GUILESS_MAIN(tst_names)

#include "tst_names.moc"
