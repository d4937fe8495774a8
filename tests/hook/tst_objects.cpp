#include "calledhook.h"
#include "classrecords.h"
#include "hook/classregistrar.h"
#include "objectmodel/containers.h"
#include "objectmodel/event.h"
#include "objectmodel/globalobject.h"
#include "objectmodel/inspector.h"
#include "objectmodel/primitives.h"
#include "objectmodel/toolkit.h"
#include "serverlib/nullmessagechannel.h"

#include <QTest>

#include <limits>
#include <memory>

using namespace Qt::StringLiterals;
using namespace Vorkel;

// What a runner does to objects, in process.

namespace {

/// A class that names another, which is seen for the first time when this one is written.
class LateClass : public Class
{
public:
    LateClass(const char *name, const char *needed)
        : Class(name, false)
        , m_needed(needed)
    {
        const ClassRegistrar registrar;
        setDeclared({ .properties = needed ? 1 : 0 });
        registerClass();
    }
    Property *createProperty(int index) const override
    {
        return new Property(this, Argument(new LateClass(m_needed, nullptr)), u"late"_s, 0, index);
    }

private:
    const char *m_needed;
};

/// Writes down the classes that each message announces.
class RecordingChannel : public NullMessageChannel
{
public:
    bool isOpen() const override { return true; }
    bool enqueueMessage(QByteArray message) override
    {
        const QString told = Bytes::told(message);
        const auto hex = told.section(u',', 1).chopped(1).toLatin1();
        const auto records = Runner::ClassRecords::parse(QByteArray::fromHex(hex));
        QString &names = announced.emplaceBack(told.section(u'(', 0, 0));
        for (const auto &record : records.value().classes())
            names += u' ' + record.name;
        return true;
    }

    QStringList announced;
};

/// What calls give that must give nothing, and the lines that they leave in the log: "Hook::", the function,
/// ": " and the text here. N is a number that nothing has, S a square and C its class.
constexpr struct
{
    const char *calls;
    const char *line;
} Refusals[] = {
    // clang-format off
    { "numObjects objectName qualifiedObjectName getObjectAttribute objectReference objectDereference parent|N", "invalid object id %1" },
    { "objectToDebugString objectToInteger objectToInt64 objectToString objectToDouble objectToBoolean objectIsNull|N", "invalid object id%1" },
    { "objectFromInteger objectFromInt64 objectFromString objectFromDouble objectFromBoolean|N,1", "invalid object id%1" },
    { "objects|N",                  "invalid parent object id %1" },
    { "objectByName|N,x",           "invalid parent object id %1" },
    { "objectByIndex|N,0",          "invalid parent object id %1" },
    { "objectByIndex|0,N",          "index out of range!" },
    { "objectByIndex|S,N",          "index out of range!" },
    { "objectCompare|N,S",          "invalid 1st object id %1" },
    { "objectCompare|S,N",          "invalid 2nd object id %1" },
    { "objectCastTo|N,1",           "invalid object id %1" },
    { "objectCastTo|S,N",           "invalid class id %1" },
    { "canConvertTo|N,1,1,1",       "invalid fromClassId %1" },
    { "convertTo|N,S,1,1",          "invalid fromClassId %1" },
    { "convertTo|1,N,1,1",          "invalid object id%1" },
    { "convertToInterface|N,S,x",   "invalid fromClassId %1" },
    { "convertToInterface|1,N,x",   "invalid object id %1" },
    { "getProperty invoke|N,0",     "invalid %2 id%3" },
    { "setProperty|N,0,S",          "invalid %2 id%3" },
    { "getProperty invoke|S,N",     "invalid property id %1 for class Square" },
    { "setProperty|S,N,S",          "invalid property id %1 for class Square" },
    { "construct|0,N",              "invalid class id %1" },
    { "construct|N,C",              "invalid constructor id %1 for class Square" },
    { "sendEvent|N,S",              "invalid event" },
    { "sendEvent|0,N",              "invalid receiver" },
    { "createNull|N",               "invalid class name %1" },
    { "objectHasComponents|N",      "Hook::handleCall: F_ObjectHasComponents: Invalid object" },
    { "fetchObjectComponents|N",    "Hook::handleCall: F_FetchObjectComponents: Invalid object" },
    // clang-format on
};

const int Extremes[] = { std::numeric_limits<int>::min(), -1000000, 1000000,
                         std::numeric_limits<int>::max() };

} // namespace

class tst_objects : public QObject, CalledHook
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // Classes and delegates live as long as the process.
        (void)Toolkit::squareClass()->super();
        GlobalClass *global = Inspector::self()->globalClass();
        const Class *intClass = Inspector::self()->type(IntClassId);
        static int value = 5;
        global->addProperty(std::make_unique<GlobalProperty>(
                +[](void *raw) { return value = *static_cast<const int *>(raw), true; },
                +[](const Class *) { return wrap(value); }, Argument(intClass), u"limit"_s,
                ReadableProperty | WritableProperty | StaticProperty));
        global->addMethod(std::make_unique<GlobalMethod>(
                +[](const ObjectList &list, const Class *) { return wrap(list[0]->toInteger() + 1); },
                Argument(intClass), u"next"_s, Signature { Argument(intClass) }));
        global->addEvent(std::make_unique<Event>(global, u"event"_s, Signature(), false, 0));
    }

    void init()
    {
        m_channel = new RecordingChannel;
        startHook(m_channel);
    }

    void cleanup() { endHook(); }

    void countsHandles()
    {
        const int id = object("createPrimitive", u"char*"_s, u"kept"_s);
        QCOMPARE(object("objectReference", id), id);
        QCOMPARE(object("objectReference", id), id);
        for (int left = 3; left > 0; --left) {
            QCOMPARE(text(id), u"kept"_s);
            call("remoteObjectDestroyed", id);
        }
        QVERIFY(lines().isEmpty());
        for (const int gone : { id, 0, -1, 1000000 }) {
            call("remoteObjectDestroyed", gone);
            QVERIFY(lines().isEmpty());
            QVERIFY(isNothing(call("objectToString", gone)));
            QCOMPARE(lines().size(), 1);
        }
        QVERIFY(object("createPrimitive", u"char*"_s, u"next"_s) > id);
        m_hook->clearObjectDict();
        QVERIFY(!m_hook->objectById(id + 1));
    }

    void refusesExtremes_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("line");
        for (const auto &[calls, line] : Refusals) {
            const QStringList parts = QString::fromLatin1(calls).split(u'|');
            for (const QString &name : parts[0].split(u' ')) {
                const QString start = *line == 'H' ? QString() : u"Hook::%1: "_s.arg(name);
                QTest::addRow("%s/%s", qPrintable(name), qPrintable(parts[1]))
                        << parts[1].split(u',') << start + QString::fromLatin1(line);
            }
        }
    }

    void refusesExtremes()
    {
        QFETCH(const QStringList, arguments);
        QFETCH(const QString, line);
        const QByteArray name = QByteArray(QTest::currentDataTag()).split('/')[0];
        const SharedPtr<Object> square = Toolkit::newShape(3);
        (void)square->castTo(Toolkit::squareClass());
        const int squareId = handle(square);
        for (const int number : Extremes) {
            ArgumentList given;
            for (const QString &argument : arguments) {
                given << (argument == u'N'           ? QString::number(number)
                                  : argument == u'S' ? QString::number(squareId)
                                  : argument == u'C' ? QString::number(square->objectClass()->id())
                                                     : argument);
            }
            QVERIFY2(isNothing(callWith(name, given)), QByteArray::number(number).constData());
            QString expected = line;
            expected.replace(u"%1"_s, QString::number(number))
                    .replace(u"%2"_s, number < 0 ? u"class"_s : u"object"_s)
                    .replace(u"%3"_s, QString::number(std::abs(qint64(number))));
            QCOMPARE(lines(), QStringList { expected });
        }
    }

    void refusesNull()
    {
        const int null = object("createNull", u"Shape"_s);
        const int number = object("createNull", u"int"_s);
        QCOMPARE(call("objectIsNull", null), QVariant(true));
        QVERIFY(isNothing(call("getProperty", null, 0)));
        QVERIFY(isNothing(call("setProperty", null, 0, number)));
        QCOMPARE(lines(),
                 QString(u"Hook::getProperty: Cannot get property on NULL object with id %1\n"
                         "Hook::setProperty: Cannot set property on NULL object with id %1"_s)
                         .arg(null)
                         .split(u'\n'));
        QVERIFY(isNothing(call("invoke", null, 0)));
        QCOMPARE(lastError(), u"Cannot invoke member function measure() on null object reference"_s);
        QVERIFY(isNothing(call("objectDereference", null)));
        QVERIFY(isNothing(call("fetchObjectComponents", QStringList(QString::number(null)))));
        QCOMPARE(call("objectToDebugString", null), QVariant(u"0 : Shape"_s));

        // Nor is null a value for what is no pointer.
        const int shape = handle(Toolkit::newShape(3));
        QVERIFY(isNothing(call("setProperty", shape, 0, number)));
        QVERIFY(isNothing(call("setProperty", shape, 0, 1000000)));
        QVERIFY(isNothing(call("construct", 0, Toolkit::shapeClass()->id(), number)));
        QVERIFY(isNothing(call("invoke", shape, 1, number)));
        QCOMPARE(lastError(), u"Found no matching overload"_s);
        QVERIFY(isNothing(call("invoke", shape, 1)));
        QCOMPARE(lastError(), u"Class::invoke Shape::1: 1 arguments expected, 0 given"_s);
        QCOMPARE(text(object("getProperty", shape, 0)), u"3"_s);
    }

    void takesClassesForTargets()
    {
        const Class *global = Inspector::self()->globalClass();
        const int limit = global->property(u"limit"_s)->id();
        const int next = global->methods(u"next"_s).constFirst()->id();
        const int value = object("createPrimitive", u"int"_s, 8);
        QCOMPARE(text(object("getProperty", -global->id(), limit)), u"5"_s);
        QCOMPARE(call("setProperty", -global->id(), limit, value), QVariant(true));
        QCOMPARE(text(object("getProperty", -global->id(), limit)), u"8"_s);
        QCOMPARE(text(object("invoke", -global->id(), next, value)), u"9"_s);
        QVERIFY(isNothing(call("getProperty", -Toolkit::shapeClass()->id(), 0)));
        QCOMPARE(lastError(), u"Cannot access non-static property width without object reference"_s);
        QVERIFY(isNothing(call("invoke", -Toolkit::shapeClass()->id(), 0)));
        QCOMPARE(lastError(), u"Cannot invoke non-static function measure() without a object reference"_s);
    }

    void createsPrimitives_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<int>("classId");
        QTest::addColumn<QString>("shown");
        const QString refusal = u"Hook::handleCall: F_CreatePrimitive: %1is not a primitive type"_s;
        // clang-format off
        QTest::newRow("int|")      << QVariant(-7)                             << int(IntClassId)    << u"-7"_s;
        QTest::newRow("long|")     << QVariant(u"12"_s)                        << int(LongClassId)   << u"12"_s;
        QTest::newRow("bool|")     << QVariant(1)                              << int(BoolClassId)   << u"true"_s;
        QTest::newRow("char|")     << QVariant(321)                            << int(IntClassId)    << u"65"_s;
        QTest::newRow("char*|")    << QVariant(u"\u00fc\u4e2d"_s)              << int(StringClassId) << u"\u00fc\u4e2d"_s;
        QTest::newRow("double|")   << QVariant(1234567.5)                      << int(DoubleClassId) << u"1.23457e+06"_s;
        QTest::newRow("int64|")    << QVariant(Q_INT64_C(-5000000000))         << int(Int64ClassId)  << u"-5000000000"_s;
        QTest::newRow("[char*|")   << QVariant(QStringList { u"a"_s, u"b"_s }) << int(StringClassId) << u"[a, b]"_s;
        QTest::newRow("string|")   << QVariant(u"x"_s)                         << -1                 << refusal.arg(u"string"_s);
        // clang-format on
    }

    void createsPrimitives()
    {
        QFETCH(const QVariant, value);
        QFETCH(const int, classId);
        QFETCH(const QString, shown);
        const QString name = QString::fromLatin1(QTest::currentDataTag()).section(u'|', 0, 0);
        const QStringList reply = call("createPrimitive", name, value).toString().split(u',');
        QCOMPARE(reply.size() == 2 ? reply[1].toInt() : -1, classId);
        QCOMPARE(classId == -1 ? lines().join(u'\n') : text(reply[0].toInt()), shown);
    }

    void announcesClasses()
    {
        new LateClass("before", nullptr);
        QVERIFY(m_channel->announced.isEmpty());
        const auto all = Runner::ClassRecords::parse(call("allClasses").toByteArray());
        QCOMPARE(static_cast<int>(all.value().classes().size()), Inspector::self()->numClasses());
        {
            const ClassRegistrar registrar;
            new LateClass("inner", nullptr);
            new LateClass("other", nullptr);
            QVERIFY(m_channel->announced.isEmpty());
        }
        new LateClass("outer", "needed");
        {
            const ClassRegistrar nothingNew;
        }
        m_hook->registerClasses(Inspector::self()->numClasses());
        QCOMPARE(m_channel->announced,
                 (QStringList { u"send 0>-1 registerClasses inner other"_s,
                                u"send 0>-1 registerClasses outer needed"_s }));
    }

    void keepsWhatIsReferredTo_data()
    {
        QTest::addColumn<QString>("primitive");
        QTest::addColumn<ArgumentList>("arguments");
        QTest::newRow("objectReference|int") << u"int"_s << ArgumentList();
        QTest::newRow("objectDereference|char*") << u"char*"_s << ArgumentList();
        QTest::newRow("construct|int64") << u"int64"_s << ArgumentList { 2, int(Int64ClassId) };
        QTest::newRow("construct|char*") << u"char*"_s << ArgumentList { 2, int(StringClassId) };
    }

    void keepsWhatIsReferredTo()
    {
        QFETCH(const QString, primitive);
        QFETCH(ArgumentList, arguments);
        const int original = object("createPrimitive", primitive, u"7"_s);
        arguments << original;
        const QVariant made = callWith(QByteArray(QTest::currentDataTag()).split('|')[0], arguments);
        const int other = made.toString().section(u',', 0, 0).toInt();
        QVERIFY(other > original);
        // A text is changed by another in its place.
        call("objectFromString", original, u"8"_s);
        call("remoteObjectDestroyed", original);
        QCOMPARE(text(other), primitive == u"char*"_s ? u"7"_s : u"8"_s);
        call("objectFromString", other, u"9"_s);
        (void)text(other);
    }

    // Whatever is done to an array of strings, nobody writes where its pointers are.
    void keepsArraysOfStrings()
    {
        const int array = object("createPrimitive", u"[char*"_s, QStringList { u"x"_s, u"y"_s, u"z"_s });
        for (const int classId : { int(DoubleClassId), int(Int64ClassId), int(StringClassId) }) {
            QCOMPARE(call("objectCastTo", array, classId), QVariant(classId));
            for (const int other :
                 { array, object("objectDereference", array), object("construct", 1, classId, array),
                   object("construct", 2, classId, array) })
            {
                call("objectFromInt64", other, Q_INT64_C(-1));
                call("objectFromString", other, u"0"_s);
                (void)call("objectCompare", array, other);
            }
            QCOMPARE(text(array), u"[x, y, z]"_s);
        }
    }

    void refusesContainersInThemselves()
    {
        const int outer = object("construct", 0, ArrayClass::registeredClass()->id());
        const int map = object("construct", 0, MapClass::registeredClass()->id());
        const int inner = object("construct", 0, ArrayClass::registeredClass()->id());
        const int key = handle(wrap(u"key"_s));
        call("invoke", outer, 1, map);
        call("invoke", outer, 1, key);
        call("invoke", map, 1, key, inner);
        QCOMPARE(lastError(), QString());
        for (const int each : { outer, map, inner, object("objectDereference", outer) }) {
            call("invoke", inner, 1, each);
            QCOMPARE(lastError(), u"A container cannot hold itself"_s);
        }
        call("invoke", map, 1, key, outer);
        QCOMPARE(lastError(), u"A container cannot hold itself"_s);
        QCOMPARE(text(object("getProperty", inner, 0)), u"0"_s);
    }

    void survivesFewerProperties()
    {
        const auto *plain = new Class("Plain", true);
        call("addPropertyDelegate", u"Plain"_s, QStringList { u"a"_s, u"b"_s, u"c"_s });
        QCOMPARE(plain->numProperties(), 3);
        call("addPropertyDelegate", u"Plain"_s, QStringList { u"a"_s });
        QCOMPARE(plain->property(2)->name(), u"c"_s);
    }

private:
    RecordingChannel *m_channel = nullptr;
};

QTEST_GUILESS_MAIN(tst_objects)
#include "tst_objects.moc"
