#include "things.h"

#include "hook/platform/screen.h"

#include <QTest>

using namespace Things;

class tst_readiness : public QObject
{
    Q_OBJECT

private slots:
    void tellsWhatKeepsObjects_data();
    void tellsWhatKeepsObjects();
    void knowsOnlyOwnedObjects();
    void tellsBounds();
    void spies();
    void knowsNoScreensWithoutGui();
};

void tst_readiness::tellsWhatKeepsObjects_data()
{
    QTest::addColumn<QString>("reason");
    QTest::addColumn<QString>("map");
    QTest::addColumn<QString>("error");
    // clang-format off
    QTest::newRow("ready")     << u""_s           << u""_s                   << u""_s;
    QTest::newRow("a reason")  << u"covered by %1"_s << u""_s                << u"covered by %1"_s;
    QTest::newRow("no reason") << u"silent"_s     << u""_s                   << u"Object is not ready for an unknown reason"_s;
    QTest::newRow("a symbol")  << u"disabled"_s   << u":OK\t{text='%1'}\n"_s << u"disabled"_s;
    // clang-format on
}

void tst_readiness::tellsWhatKeepsObjects()
{
    QFETCH(const QString, reason);
    QFETCH(const QString, map);
    QFETCH(const QString, error);
    Session session;
    session.hook->handleSend(1, u"setObjectMap"_s, { map });
    session.wrapper->reason = reason;
    const QString shown = map.isEmpty() ? u"{text='%1'}"_s : u":OK"_s;
    for (const bool byName : { true, false }) {
        const QVariant object = byName ? QVariant(u"{text='x'}"_s) : QVariant(session.id(session.thing));
        const QVariant found = session.call(byName ? u"objectReady"_s : u"objectReady2"_s, { object });
        QCOMPARE(session.object(found), error.isEmpty() ? session.thing : nullptr);
        QCOMPARE(session.error(),
                 error.isEmpty() ? error : u"Object '"_s + shown + u"' not ready: "_s + error);

        const QString items = byName ? u"getObjectItemIfReady"_s : u"getObjectItemIfReady2"_s;
        const QString cells = byName ? u"getObjectItemByRowColIfReady"_s : u"getObjectItemByRowColIfReady2"_s;
        for (const QVariant &item :
             { session.call(items, { object, u"a"_s }), session.call(cells, { object, 1, 2 }) })
        {
            QCOMPARE(item.isValid(), error.isEmpty());
            if (item.isValid())
                QCOMPARE(session.object(item)->toString(), u"<not-wrapped-item>"_s);
        }
        QCOMPARE(session.error(), error);
    }
    QVERIFY(session.log.takeLines().isEmpty());
}

void tst_readiness::knowsOnlyOwnedObjects()
{
    Session session;
    const int stranger = session.id(session.stranger);
    QVERIFY(!session.call(u"objectReady2"_s, { stranger }).isValid());
    QCOMPARE(
            session.error(),
            u"Internal error: No handler felt responsible for checking the ready-state for object of type 'int'."_s);
    QVERIFY(!session.call(u"getObjectItemIfReady2"_s, { stranger, u"a"_s }).isValid());
    QCOMPARE(session.error(), u""_s);
    QCOMPARE(
            session.log.takeLines(),
            QStringList(
                    { u"No handler felt responsible for checking the ready-state for object of type int"_s,
                      u"No handler felt responsible for checking the ready-state of items from object of type int"_s }));
    for (const char *name : { "objectReady2", "objectGlobalBounds" }) {
        QVERIFY(!session.call(QString::fromLatin1(name), { 4711 }).isValid());
        QVERIFY(!session.error().isEmpty());
    }
    QVERIFY(!session.call(u"mousePress"_s, { 4711, 1, 0, 0, 0, 0, true, true }).toBool());
}

void tst_readiness::tellsBounds()
{
    Session session;
    const QVariant bounds = session.call(u"objectGlobalBounds"_s, { session.id(session.thing) });
    QCOMPARE(unwrapScreenRectangle(session.object(bounds)), (ScreenRectangle { 10, -20, 50, 30 }));
    QVERIFY(!session.call(u"objectGlobalBounds"_s, { session.id(session.stranger) }).isValid());
    QCOMPARE(session.error(), u"Cannot fetch geometry for object of type int."_s);
    session.thing->invalidate();
    QVERIFY(!session.call(u"objectGlobalBounds"_s, { session.id(session.thing) }).isValid());
    QCOMPARE(session.error(), u"Cannot fetch geometry for object of type Dead."_s);
}

void tst_readiness::spies()
{
    Session session;
    const QByteArray record = Bytes::text(u"thing"_s) + Bytes::text(u"QtGUIObject"_s) + '\1' + '\1';
    QCOMPARE(session.call(u"spyObjects"_s, { QString() }).toByteArray(), record);
    // What has no extent cannot be framed.
    session.geometry->bounds.height = 0;
    QCOMPARE(session.call(u"spyObjects"_s, { QString() }).toByteArray(), record.chopped(1) + '\0');
    const QVariant below = session.call(u"spyObjects"_s, { u"{text='x'}"_s });
    QVERIFY(below.isValid());
    QCOMPARE(below.toByteArray(), QByteArray());
    // A wrapper is its owner's, who may be done with it.
    session.wrapper.reset();
    QVERIFY(!session.call(u"spyObjects"_s, { u"{text='x'}"_s }).isValid());
    session.hook->handleSend(1, u"setObjectMap"_s, { QString() });
    session.hook->notifyApplicationExit();
    QVERIFY(!session.call(u"spyObjects"_s, { QString() }).isValid());
}

void tst_readiness::knowsNoScreensWithoutGui()
{
    StandardScreen screen;
    QCOMPARE(screen.screenCount().error(), u"Cannot fetch screen count"_s);
    QCOMPARE(screen.screenOrientation(0).error(), u"Cannot fetch screen orientation"_s);
    QCOMPARE(screen.screenGeometry(0).error(), u"Cannot fetch screen geometry"_s);
    QCOMPARE(screen.screenGeometry(0).value(), NativeRect::at(-1, -1, -1, -1));
}

QTEST_GUILESS_MAIN(tst_readiness)

#include "tst_readiness.moc"
