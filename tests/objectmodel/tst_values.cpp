#include "objectmodel/classids.h"
#include "objectmodel/containers.h"
#include "objectmodel/datetime.h"
#include "objectmodel/inspector.h"
#include "objectmodel/method.h"
#include "objectmodel/namespace.h"
#include "objectmodel/primitives.h"
#include "objectmodel/screenvalues.h"

#include <QTest>

#include <sstream>

using namespace Vorkel;

namespace {

SharedPtr<Object> text(const QString &value)
{
    return wrap(value);
}

SharedPtr<Object> callFirst(const SharedPtr<Object> &object, const char *name, const ObjectList &arguments)
{
    return object->objectClass()->methods(QString::fromLatin1(name)).constFirst()->invoke(object, arguments);
}

} // namespace

class TestValues : public QObject
{
    Q_OBJECT

private slots:
    void classesHaveFixedNumbers()
    {
        const char *names[] = { "short",  "int",   "long", "bool",      "char",
                                "double", "int64", "void", "undefined", "Vorkel::Global" };
        for (int id = 0; id < 10; ++id)
            QCOMPARE(Inspector::self()->type(id)->className(), QString::fromLatin1(names[id]));
        QVERIFY(!Inspector::self()->type(-1));
        QVERIFY(!Inspector::self()->type(Inspector::self()->numClasses()));
        QCOMPARE(Inspector::self()->type(QStringLiteral("int*")), Inspector::self()->type(IntClassId));
        QVERIFY(!Inspector::self()->type(QStringLiteral("int**")));
    }

    void textsBecomeNumbers()
    {
        for (const auto &[given, integer, truth] :
             { std::tuple("12", 12, true), std::tuple("0", 0, false), std::tuple("2147483648", 0, false),
               std::tuple("TRUE", 0, true), std::tuple("yes", 0, false) })
        {
            const SharedPtr<Object> number = wrap(99);
            number->fromString(QString::fromLatin1(given));
            QCOMPARE(number->toInteger(), integer);
            QCOMPARE(text(QString::fromLatin1(given))->toInteger(), integer);
            QCOMPARE(text(QString::fromLatin1(given))->toBoolean(), truth);
        }
    }

    void recastingChangesOnlyTheClass()
    {
        const int primitives[] = { ShortClassId,  IntClassId,    LongClassId, BoolClassId,
                                   StringClassId, DoubleClassId, Int64ClassId };
        for (const int from : primitives) {
            for (const int to : primitives) {
                const SharedPtr<Object> object = Inspector::self()->type(from)->construct({});
                QVERIFY(object);
                QCOMPARE(object->castTo(Inspector::self()->type(to)).get(), object.get());
                QCOMPARE(object->objectClass()->id(), to);
                // Whatever they give, they stay within the object's memory.
                (void)object->toString();
                (void)object->toDouble();
                object->fromInt64(-1);
                object->fromString(QStringLiteral("a text that is longer than a number"));
                (void)object->objectClass()->compare(object, wrap(1));
            }
        }
    }

    void stringsAreEqualByText()
    {
        QVERIFY(text(QStringLiteral("a"))->sameAs(text(QStringLiteral("a"))));
        QVERIFY(!text(QStringLiteral("a"))->compare(text(QStringLiteral("b"))));
        const SharedPtr<Object> null = Inspector::self()->createNull(Inspector::self()->type(StringClassId));
        QVERIFY(!null->compare(text(QString())));
        QCOMPARE(null->toString(), QStringLiteral("<null>"));
    }

    void arraysSayWhatIsWrong()
    {
        const SharedPtr<Object> array =
                ArrayClass::createRemoteObject({ wrap(1), text(QStringLiteral("two")) });
        QCOMPARE(callFirst(array, "at", { wrap(1) })->toString(), QStringLiteral("two"));
        QVERIFY(!callFirst(array, "at", { wrap(-1) }));
        QCOMPARE(Inspector::self()->lastError(), QStringLiteral("Negative index not supported"));
        QVERIFY(!callFirst(array, "at", { wrap(2) }));
        QCOMPARE(Inspector::self()->lastError(), QStringLiteral("Out of bounds access: index: 2, size: 2"));
        QCOMPARE(Inspector::self()->lastError(), QString());
        QCOMPARE(ArrayClass::unwrapRemoteObject(array).size(), std::size_t(2));
        QVERIFY(!ArrayClass::wrapObject({})->isNull());
    }

    void mapsKeepKeysInOrder()
    {
        const SharedPtr<Object> map = MapClass::createRemoteObject(
                { { QStringLiteral("b"), wrap(2) }, { QStringLiteral("a"), wrap(1) } });
        callFirst(map, "insert", { text(QStringLiteral("b")), wrap(3) });
        const MapClass::Items items = MapClass::unwrapRemoteObject(map);
        QCOMPARE(items.size(), std::size_t(2));
        QCOMPARE(items.begin()->first, QStringLiteral("a"));
        QCOMPARE(items.at(QStringLiteral("b"))->toInteger(), 3);
        QVERIFY(!callFirst(map, "at", { text(QStringLiteral("c")) }));
        QCOMPARE(Inspector::self()->lastError(), QStringLiteral("Map key not found"));
    }

    void datesWithoutATimeAreMidnight()
    {
        const SharedPtr<Object> day = wrapDateTime({ 2024, 1, 5 });
        const SharedPtr<Object> midnight = wrapDateTime({ 2024, 1, 5, 0, 0, 0 });
        QVERIFY(day->compare(midnight) && midnight->compare(day));
        QVERIFY(!day->compare(wrapDateTime({ 2024, 1, 5, 0, 0, 1 })));
        QCOMPARE(day->toString(), QStringLiteral("2024/1/5"));
        std::stringstream stream;
        stream << DateTime { 2024, 1, 5, 7, 8, 9 };
        QCOMPARE(stream.str(), std::string("2024/01/05/07/08/09"));
        DateTime read;
        stream >> read;
        QVERIFY((read == DateTime { 2024, 1, 5, 7, 8, 9 }));
    }

    void rectanglesHaveACentre()
    {
        const SharedPtr<Object> rectangle = wrapScreenRectangle({ 10, 20, 5, 5 });
        QVERIFY((unwrapScreenPoint(callFirst(rectangle, "center", {})) == ScreenPoint { 12, 22 }));
        QVERIFY((ScreenRectangle { 10, 20, -1, 5 }.center() == ScreenPoint { 0, 0 }));
        QCOMPARE(rectangle->objectClass()->fullyQualifiedClassName(),
                 QStringLiteral("UiTypes::ScreenRectangle"));
        const SharedPtr<Object> remote = createRemoteScreenRectangle(QRect(1, 2, 3, 4));
        QCOMPARE(unwrapRemoteScreenRectangleAsQRect(remote), QRect(1, 2, 3, 4));
        QVERIFY(remote->compare(wrapScreenRectangle({ 1, 2, 3, 4 })));
    }
};

QTEST_GUILESS_MAIN(TestValues)
#include "tst_values.moc"
