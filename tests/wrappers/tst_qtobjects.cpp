#include "remoteobjects.h"
#include "session.h"

#include <QTest>
#include <QTimer>

#include <memory>

using namespace Qt::StringLiterals;
using namespace Vorkel;
using namespace Vorkel::Runner;

// A program's objects as a runner has them, whatever becomes of them meanwhile. The program is a process of
// its own; after each function it and its hook must still be there.

class tst_qtobjects : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        if (m_session)
            return;
        SessionSettings settings;
        settings.timeoutMs = 60000;
        settings.platform = u"offscreen"_s;
        m_session = std::make_unique<Session>(settings);
        const QString program = QCoreApplication::applicationDirPath() + u"/workshop"_s;
        const Failure failure = m_session->start({ program });
        QVERIFY2(!failure.isFailure(), qPrintable(failure.text));
        m_objects = std::make_unique<RemoteObjects>(m_session.get());
        m_bench = object(u"bench"_s);
    }

    void cleanup()
    {
        if (m_session)
            QCOMPARE(get(u"bench"_s, u"objectName"_s), u"bench"_s);
    }

    void cleanupTestCase() { m_session.reset(); }

    void takesValues_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("property");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("outcome");
        const auto row = [](const QString &path, const QString &property, const QVariant &value,
                            const QString &outcome) {
            const QByteArray name = property.toUtf8() + ' ' + value.typeName() + ' ' + value.toByteArray();
            QTest::newRow(name.constData()) << u"bench"_s + path << property << value << outcome;
        };
        const QString no = u"!Property %1 of %2 takes a %3, not '%4'"_s;
        // clang-format off
        row(u".edit"_s,     u"echoMode"_s,     u"QLineEdit::NoEcho"_s,            u"NoEcho"_s);
        row(u".edit"_s,     u"echoMode"_s,     3,                                 u"PasswordEchoOnEdit"_s);
        row(u".edit"_s,     u"text"_s,         u"\u00fc\u4e2d\U0001f600"_s,       u"\u00fc\u4e2d\U0001f600"_s);
        row(u".edit"_s,     u"readOnly"_s,     u"true"_s,                         u"true"_s);
        row(u".edit"_s,     u"readOnly"_s,     u"maybe"_s,                        no.arg(u"readOnly"_s, u"QLineEdit"_s, u"bool"_s, u"maybe"_s));
        row(u".label"_s,    u"alignment"_s,    u"AlignTop|AlignRight"_s,          u"AlignRight|AlignTop"_s);
        row(u".label"_s,    u"alignment"_s,    u"AlignUp"_s,                      no.arg(u"alignment"_s, u"QLabel"_s, u"QFlags<Qt::AlignmentFlag>"_s, u"AlignUp"_s));
        row(u".label"_s,    u"font"_s,         u"Courier,12"_s,                   u"Courier,12,-1,5,400,0,0,0,0,0,0,0,0,0,0,1"_s);
        row(u".label"_s,    u"geometry"_s,     u"1"_s,                            no.arg(u"geometry"_s, u"QWidget"_s, u"QRect"_s, u"1"_s));
        row(u".spin"_s,     u"value"_s,        u"12"_s,                           u"12"_s);
        row(u".spin"_s,     u"value"_s,        7.0,                               u"7"_s);
        row(u".spin"_s,     u"value"_s,        7.5,                               no.arg(u"value"_s, u"QSpinBox"_s, u"int"_s, u"7.5"_s));
        row(u".spin"_s,     u"value"_s,        1e300,                             no.arg(u"value"_s, u"QSpinBox"_s, u"int"_s, u"1e+300"_s));
        row(u".spin"_s,     u"value"_s,        Q_INT64_C(5000000000),             no.arg(u"value"_s, u"QSpinBox"_s, u"int"_s, u"5000000000"_s));
        row(u".spin"_s,     u"value"_s,        u"twelve"_s,                       no.arg(u"value"_s, u"QSpinBox"_s, u"int"_s, u"twelve"_s));
        row(u".calendar"_s, u"selectedDate"_s, u"2024-02-29"_s,                   u"2024/2/29 0:0:0"_s);
        row(u".calendar"_s, u"selectedDate"_s, u"2023-02-29"_s,                   no.arg(u"selectedDate"_s, u"QCalendarWidget"_s, u"QDate"_s, u"2023-02-29"_s));
        row(u".browser"_s,  u"source"_s,       u"nowhere:a%20b"_s,                u"nowhere:a b"_s);
        row(u".colour"_s,   u"currentColor"_s, u"red"_s,                          u"#ff0000"_s);
        row(u""_s,          u"any"_s,          Q_INT64_C(5000000000),             u"5000000000"_s);
        row(u""_s,          u"tools"_s,        u"Hammer|File"_s,                  u"Hammer|File"_s);
        row(u""_s,          u"tools"_s,        6,                                 u"Saw|File"_s);
        row(u""_s,          u"small"_s,        300,                               no.arg(u"small"_s, u"Bench"_s, u"uchar"_s, u"300"_s));
        row(u""_s,          u"names"_s,        QStringList { u"a"_s, u"b"_s },    u"[\"a\",\"b\"]"_s);
        row(u""_s,          u"list"_s,         QVariantList { 1, u"x"_s, QVariantList { true } }, u"[1,\"x\",[true]]"_s);
        row(u""_s,          u"map"_s,          QVariantMap { { u"k"_s, QVariantMap { { u"l"_s, 2.5 } } } }, u"{\"k\":{\"l\":2.5}}"_s);
        row(u""_s,          u"list"_s,         QVariantMap(),                     no.arg(u"list"_s, u"Bench"_s, u"QVariantList"_s, u"Vorkel_Map"_s));
        row(u""_s,          u"friendly"_s,     QVariant(),                        u"!property 'friendly' of Bench has no value"_s);
        row(u""_s,          u"friendly"_s,     1,                                 no.arg(u"friendly"_s, u"Bench"_s, u"QWidget*"_s, u"1"_s));
        row(u""_s,          u"cursed"_s,       1,                                 u"!Setting cursed of Bench ended with an exception"_s);
        // clang-format on
    }

    void takesValues()
    {
        QFETCH(const QString, path);
        QFETCH(const QString, property);
        QFETCH(const QVariant, value);
        const Failure failure = m_objects->setProperty(object(path), property, value);
        QTEST(failure.isFailure() ? u'!' + failure.text : get(path, property), "outcome");
    }

    void callsMethods_data()
    {
        QTest::addColumn<QVariantList>("arguments");
        QTest::addColumn<QString>("outcome");
        const auto row = [](const char *name, const QVariantList &arguments, const QString &outcome) {
            QTest::addRow("%s %d", name, int(arguments.size())) << arguments << outcome;
        };
        const QString none = u"!no overload of '%1' of Bench took the call:\n  "_s;
        // clang-format off
        row("fail",  {},                           (none + u"void fail(): fail ended with an exception"_s).arg(u"fail"_s));
        row("text",  { u"a"_s, u"-"_s, 2 },        u"a-2"_s);
        row("text",  { 1, 2, u"x"_s },             (none + u"char* text(char * bytes, char * mark, int64 number): Found no matching overload"_s).arg(u"text"_s));
        row("count", { QVariant(QVariantList { 1, 2, 3 }) }, u"3"_s);
        row("count", { QVariant() },               (none + u"int count(Vorkel_Array list): Found no matching overload"_s).arg(u"count"_s));
        row("echo",  { 2.5 },                      u"2.5"_s);
        row("solid", {},                           u""_s);
        // clang-format on
    }

    void callsMethods()
    {
        QFETCH(const QVariantList, arguments);
        QTEST(invoke(QString::fromLatin1(QTest::currentDataTag()).section(u' ', 0, 0), arguments), "outcome");
    }

    // What has parts is made in the program and changed there.
    void changesParts()
    {
        const int rectangle = construct(u"QRect"_s);
        const int offset = construct(u"QPoint"_s);
        for (const auto &[id, property, value] :
             { std::tuple(rectangle, u"width"_s, 30), std::tuple(rectangle, u"x"_s, 5),
               std::tuple(offset, u"y"_s, 2) })
            QCOMPARE(m_objects->setProperty({ id, classId(id) }, property, value).text, QString());
        QCOMPARE(m_objects->setProperty({ offset, classId(offset) }, u"y"_s, u"far"_s).text,
                 u"Property y of QPoint takes a int, not 'far'"_s);
        const int moved = methodId(m_bench, u"moved"_s);
        const int result = id(call(u"invoke"_s, { m_bench.id, moved, rectangle, offset }));
        QCOMPARE(call(u"objectToString"_s, { result }), QVariant(u"QRect(5,2 30x0)"_s));
        const int part = id(property(m_bench.id, u"part"_s));
        QCOMPARE(id(property(part, u"size"_s)) != 0, true);
        // Where a pointer points is nobody's business.
        QVERIFY(call(u"objectToDebugString"_s, { id(property(m_bench.id, u"partPointer"_s)) }).isValid());
    }

    void outlivesObjects_data()
    {
        QTest::addColumn<QString>("deed");
        for (const char *deed : { "replace", "endLater", "leave", "fatal", "setFatal" })
            QTest::newRow(deed) << QString::fromLatin1(deed);
    }

    // The same name again and again, often at the same address, and each handle stays with its own object.
    void outlivesObjects()
    {
        QFETCH(const QString, deed);
        invoke(u"replace"_s);
        const auto ended = object(u"bench.victim"_s);
        const int fatal = propertyId(ended.id, u"fatal"_s);
        const int name = propertyId(ended.id, u"objectName"_s);
        const int leave = methodId(ended, u"leave"_s);
        const int one = id(call(u"createPrimitive"_s, { u"int"_s, 1 }));
        const int list = construct(u"Vorkel_Array"_s);
        for (int i = 0; i < 500; ++i) {
            const int victim = id(call(u"objectByName"_s, { m_bench.id, u"victim"_s }));
            QVERIFY(victim >= ended.id);
            if (deed == u"leave"_s)
                QVERIFY(!call(u"invoke"_s, { victim, leave, list }).isValid());
            else if (deed == u"fatal"_s)
                QCOMPARE(call(u"objectToString"_s, { id(call(u"getProperty"_s, { victim, fatal })) }),
                         QVariant(u"1"_s));
            else if (deed == u"setFatal"_s)
                (void)call(u"setProperty"_s, { victim, fatal, one });
            else
                invoke(deed);
            invoke(u"replace"_s);
            for (const int stale : { victim, ended.id }) {
                QCOMPARE(call(u"objectIsNull"_s, { stale }), QVariant(true));
                QVERIFY(!call(u"getProperty"_s, { stale, name }).isValid());
                QVERIFY(!call(u"invoke"_s, { stale, 0 }).isValid());
                QCOMPARE(call(u"objects"_s, { stale }).toStringList(), QStringList());
                QVERIFY(!call(u"parent"_s, { stale }).isValid());
            }
            (void)m_session->send(u"remoteObjectDestroyed"_s, { victim });
        }
    }

    // A runner may call an object what it is not, and take what a pointer points to.
    void keepsToWhatObjectsAre()
    {
        const auto label = object(u"bench.label"_s);
        const auto classNamed = [this](const QString &name) { return m_objects->classes().byName(name); };
        QVERIFY(!m_objects->readClasses().isFailure());
        const int frame = classNamed(u"QFrame"_s)->id;
        const int area = classNamed(u"QAbstractScrollArea"_s)->id;
        QCOMPARE(call(u"objectCastTo"_s, { label.id, frame }), QVariant(frame));
        QCOMPARE(call(u"objectCastTo"_s, { label.id, area }), QVariant(area));
        const QString no = u"A QLabel is no QAbstractScrollArea"_s;
        QString value;
        QCOMPARE(m_objects->getProperty({ label.id, area }, u"sizeAdjustPolicy"_s, &value).text, no);
        QCOMPARE(m_objects->setProperty({ label.id, area }, u"sizeAdjustPolicy"_s, 0).text, no);
        for (const int classId : { frame, label.classId })
            QCOMPARE(call(u"objectCastTo"_s, { label.id, classId }), QVariant(classId));

        invoke(u"replace"_s);
        const auto victim = object(u"bench.victim"_s);
        const int pointee = id(call(u"objectDereference"_s, { victim.id }));
        QCOMPARE(pointee, victim.id);
        invoke(u"replace"_s);
        QCOMPARE(call(u"objectIsNull"_s, { pointee }), QVariant(true));
    }

    void leavesOtherThreadsAlone()
    {
        QCOMPARE(get(u"bench"_s, u"foreign"_s), u"!The object lives in another thread and cannot be used"_s);
        invoke(u"giveAway"_s);
        const ObjectHandle given { id(call(u"invoke"_s, { m_bench.id, methodId(m_bench, u"given"_s) })),
                                   m_bench.classId };
        QVERIFY(given.id != 0);
        QCOMPARE(call(u"objectIsNull"_s, { given.id }), QVariant(false));
        for (const QString &deed : { u"sendGiven"_s, u"endGiven"_s }) {
            invoke(deed);
            QCOMPARE(call(u"objectIsNull"_s, { given.id }), QVariant(true));
            QVERIFY(!call(u"getProperty"_s, { given.id, 0 }).isValid());
        }
        // A thread's object lives where it was made.
        QCOMPARE(get(u"bench.thread"_s, u"objectName"_s), u"thread"_s);
    }

    void takesMetaObjectsThatGo()
    {
        for (int i = 0; i < 200; ++i) {
            const QVariant shifting = call(u"invoke"_s, { m_bench.id, methodId(m_bench, u"shift"_s) });
            QVERIFY(id(shifting) != 0);
            QCOMPARE(property(id(shifting), u"objectName"_s).isValid(), true);
        }
        QVERIFY(!m_objects->readClasses().isFailure());
        QVERIFY(m_objects->classes().classes().size() < 500);
    }

    void servesInsideCalls()
    {
        QStringList inside;
        const int ask = methodId(m_bench, u"ask"_s);
        QTimer::singleShot(0, this, [&] {
            inside << get(u"bench.question"_s, u"modal"_s) << invoke(u"echo"_s, { 1 });
            (void)m_objects->invoke(object(u"bench.question"_s), u"done"_s, { 42 }, &inside.emplaceBack());
        });
        const int answer = id(call(u"invoke"_s, { m_bench.id, ask }));
        QCOMPARE(call(u"objectToString"_s, { answer }), QVariant(u"42"_s));
        QCOMPARE(inside, (QStringList { u"true"_s, u"1"_s, QString() }));
    }

    // A window that goes has told so before its children go.
    void outlivesObjectsThatLinger()
    {
        const int close = methodId(m_bench, u"closePanel"_s);
        for (int i = 0; i < 20; ++i) {
            invoke(u"buildPanel"_s);
            const auto lingering = object(u"bench.panel.lingering"_s);
            int panel = 0;
            QTimer::singleShot(0, this, [&] {
                panel = id(call(u"parent"_s, { lingering.id }));
                (void)call(u"objectToDebugString"_s, { panel });
                invoke(u"goOn"_s);
            });
            (void)call(u"invoke"_s, { m_bench.id, close });
            (void)property(panel, u"objectName"_s);
            QVERIFY(!call(u"objects"_s, { panel }).toStringList().size());
            (void)call(u"objectToDebugString"_s, { panel });
        }
    }

    void tellsWhenItQuits()
    {
        const QString ending = u"'workshop' ended with code 0"_s;
        QVERIFY(invoke(u"quit"_s).startsWith(u'!' + ending));
        ArgumentList reply;
        const Failure failure = m_session->call(u"getPID"_s, {}, &reply);
        QVERIFY2(failure.text.startsWith(ending), qPrintable(failure.text));
        m_session.reset();
    }

private:
    QVariant call(const QString &name, const ArgumentList &arguments)
    {
        ArgumentList reply;
        const Failure failure = m_session->call(name, arguments, &reply);
        if (failure.isFailure())
            qFatal("%s: %s", qPrintable(name), qPrintable(failure.text));
        return reply.value(0);
    }
    static int id(const QVariant &object) { return object.toString().section(u',', 0, 0).toInt(); }
    ObjectHandle object(const QString &path)
    {
        ObjectHandle found;
        if (const Failure failure = m_objects->find(path, 0, &found); failure.isFailure())
            qFatal("%s", qPrintable(failure.text));
        return found;
    }
    QString get(const QString &path, const QString &property)
    {
        QString value;
        const Failure failure = m_objects->getProperty(object(path), property, &value);
        return failure.isFailure() ? u'!' + failure.text : value;
    }
    QString invoke(const QString &method, const QVariantList &arguments = {})
    {
        QString result;
        const Failure failure = m_objects->invoke(m_bench, method, arguments, &result);
        return failure.isFailure() ? u'!' + failure.text : result;
    }
    int classId(int object)
    {
        return call(u"objectReference"_s, { object }).toString().section(u',', 1).toInt();
    }
    int construct(const QString &className)
    {
        if (m_objects->readClasses().isFailure() || !m_objects->classes().byName(className))
            qFatal("no class %s", qPrintable(className));
        return id(call(u"construct"_s, { 0, m_objects->classes().byName(className)->id }));
    }
    int propertyId(int object, const QString &name)
    {
        const ClassRecord *record = nullptr;
        (void)m_objects->classOf({ object, classId(object) }, &record);
        const PropertyRecord *found = record ? m_objects->classes().property(record, name) : nullptr;
        return found ? found->id : -1;
    }
    int methodId(const ObjectHandle &object, const QString &name)
    {
        const ClassRecord *record = nullptr;
        (void)m_objects->classOf(object, &record);
        return m_objects->classes().methods(record, name).constFirst()->id;
    }
    QVariant property(int object, const QString &name)
    {
        return call(u"getProperty"_s, { object, propertyId(object, name) });
    }

    std::unique_ptr<Session> m_session;
    std::unique_ptr<RemoteObjects> m_objects;
    ObjectHandle m_bench;
};

QTEST_GUILESS_MAIN(tst_qtobjects)
#include "tst_qtobjects.moc"
