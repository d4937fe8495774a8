#include "toolkit.h"

#include "objectmodel/enum.h"
#include "objectmodel/globalobject.h"
#include "objectmodel/inspector.h"
#include "objectmodel/namespace.h"
#include "objectmodel/primitives.h"
#include "objectmodel/property.h"

#include <QTest>

using namespace Vorkel;
using namespace Toolkit;

class TestMembers : public QObject
{
    Q_OBJECT

private slots:
    void membersAreMadeWhenLookedAt()
    {
        // Registered as such, by whoever runs first.
        QCOMPARE(shapeClass()->membersCreated, 0);
        QCOMPARE(squareClass()->numMethods(), 3);
        QCOMPARE(shapeClass()->membersCreated, 0);
        QCOMPARE(shapeClass()->method(0)->toString(), QStringLiteral("int measure()"));
        QCOMPARE(shapeClass()->membersCreated, 2);
    }

    void membersAreNumberedThroughTheHierarchy()
    {
        QCOMPARE(squareClass()->method(2)->toString(), QStringLiteral("int area(int scale)"));
        QCOMPARE(squareClass()->method(2)->id(), 2);
        QCOMPARE(squareClass()->method(1), shapeClass()->method(1));
        QVERIFY(!squareClass()->method(3) && !squareClass()->method(-1));
        QCOMPARE(squareClass()->property(QStringLiteral("width")), shapeClass()->property(0));
        QCOMPARE(squareClass()->inheritanceDepth(shapeClass()), 1);
        QCOMPARE(shapeClass()->inheritanceDepth(squareClass()), -1);
    }

    void overloadsAreChosenByArguments()
    {
        const SharedPtr<Object> square = newShape(3, squareClass());
        const MethodList measure = squareClass()->methods(QStringLiteral("measure"));
        bool ok = false;
        QCOMPARE(measure.invoke(square, {}, &ok)->toInteger(), 3);
        QCOMPARE(measure.invoke(square, { wrap(4) }, &ok)->toInteger(), 7);
        // Converted on the way.
        QCOMPARE(measure.invoke(square, { Inspector::self()->createPrimitive(2.9) }, &ok)->toInteger(), 5);
        QVERIFY(ok);
        QVERIFY(!MethodList().invoke(square, {}, &ok));
        QCOMPARE(Inspector::self()->lastError(), QStringLiteral("Function not available"));
        QCOMPARE(squareClass()->methods(QStringLiteral("area")).invoke(square, { wrap(2) }, &ok)->toInteger(),
                 18);
    }

    void nullAndDeadObjectsAreRefused()
    {
        Shape shape;
        const SharedPtr<Object> dead = shapeClass()->wrap(&shape, ObjectAttribute());
        dead->invalidate();
        QCOMPARE(dead->className(), QStringLiteral("Dead"));
        for (const SharedPtr<Object> &object : { shapeClass()->createNull(), dead }) {
            QVERIFY(!shapeClass()->method(0)->invoke(object, {}));
            QCOMPARE(Inspector::self()->lastError(),
                     QStringLiteral("Cannot invoke member function measure() on null object reference"));
            QVERIFY(!shapeClass()->property(0)->get(object));
            QCOMPARE(Inspector::self()->lastError(),
                     QStringLiteral("Cannot access property width on null object reference"));
            QVERIFY(!shapeClass()->property(0)->set(object, wrap(1)));
        }
    }

    void wrongCountsAndTypesAreRefused()
    {
        const SharedPtr<Object> shape = newShape(1);
        QVERIFY(!shapeClass()->method(1)->invoke(shape, {}));
        QVERIFY(!shapeClass()->property(0)->set(shape, newShape(2)));
        QVERIFY(shapeClass()->property(0)->set(shape, Inspector::self()->createPrimitive(5.5)));
        QCOMPARE(shapeClass()->property(0)->get(shape)->toInteger(), 5);
        QVERIFY(!shapeClass()->construct({ wrap(QStringLiteral("x")) }));
        QCOMPARE(shapeClass()->construct({ wrap(8) })->objectClass(), shapeClass());
    }

    void castsStayInTheirLine()
    {
        const SharedPtr<Object> square = newShape(1, squareClass());
        QCOMPARE(square->castTo(shapeClass())->objectClass(), shapeClass());
        QCOMPARE(square->castTo(squareClass())->objectClass(), squareClass());
        QCOMPARE(square->castTo(Inspector::self()->type(IntClassId))->objectClass(), squareClass());
        QCOMPARE(square->castTo(nullptr)->objectClass(), squareClass());
    }

    void nullAndDeadObjectsAreShown()
    {
        QVERIFY(shapeClass()->createNull()->compare(shapeClass()->createNull()));
        QCOMPARE(Object::zombie()->toDebugString(), QStringLiteral("0 : Dead"));
    }

    void enumsKnowWhetherTheyAreMasks()
    {
        const Enum *colour = squareClass()->enumerator(QStringLiteral("Colour"));
        QVERIFY(colour && colour->isMask());
        QCOMPARE(Inspector::self()->enumerator(QStringLiteral("Shape::Colour")), colour);
        const Enum::Item overlapping[] = {
            { "A", 1 }, { "B", 2 }, { "C", 3 }, { "Again", 2 }, { nullptr, 0 }
        };
        const Enum plain(shapeClass(), QStringLiteral("Plain"), overlapping, 0);
        QVERIFY(!plain.isMask());
        QCOMPARE(plain.valueToKey(2, nullptr), QStringLiteral("B"));
        bool ok = true;
        QCOMPARE(plain.value(QStringLiteral("D"), &ok), -1);
        QVERIFY(!ok);
    }

    void typeNamesGetOneSpelling()
    {
        const char *const spellings[][2] = {
            { "int", "int" },
            { "*Foo", "Foo*" },
            { "const QString&", "const QString&" },
            { "Map<const A*,List<B, C>>", "Map<const A*,List<B, C>>" },
            { "*", "*" },
            { "const", "const " },
        };
        for (const auto &[given, expected] : spellings)
            QCOMPARE(shapeClass()->realType(QString::fromLatin1(given)), QString::fromLatin1(expected));
    }

    void globalFunctionsCanBeReplaced()
    {
        GlobalClass *global = Inspector::self()->globalClass();
        const Argument number(Inspector::self()->type(IntClassId));
        const auto method = [&](GlobalMethod::ListCaller caller) {
            return std::make_unique<GlobalMethod>(caller, number, QStringLiteral("answer"),
                                                  Signature { number });
        };
        const int before = global->numMethods();
        global->addMethod(method(+[](const ObjectList &, const Class *) { return wrap(1); }));
        const auto replaced =
                global->injectMethod(method(+[](const ObjectList &, const Class *) { return wrap(2); }));
        QVERIFY(replaced);
        QCOMPARE(global->numMethods(), before + 1);
        bool ok = false;
        QCOMPARE(global->methods(QStringLiteral("answer")).invoke(nullptr, { wrap(0) }, &ok)->toInteger(), 2);
        QVERIFY(!global->invoke(-1, nullptr, {}, nullptr) && !global->invoke(999, nullptr, {}, nullptr));
    }

    void delegatesServeSubclasses()
    {
        struct Texts : ConversionDelegate
        {
            Texts(const QString &className, const QString &gives)
                : ConversionDelegate(className)
                , text(gives)
            {
            }
            int capabilities() const override { return CanString; }
            QString toString(const SharedPtr<Object> &) const override { return text; }
            QString text;
        };
        const SharedPtr<Object> square = newShape(1, squareClass());
        QCOMPARE(square->toString(), QString());
        const Texts forShape(QStringLiteral("Shape"), QStringLiteral("a shape"));
        QCOMPARE(square->toString(), QStringLiteral("a shape"));
        const Texts forSquare(QStringLiteral("Square"), QStringLiteral("a square"));
        QCOMPARE(square->toString(), QStringLiteral("a square"));
        QCOMPARE(forSquare.super(), &forShape);
    }

    void namespacesQualifyNames()
    {
        Namespace *global = Inspector::self()->globalNamespace();
        auto *outer = new Namespace(global, QStringLiteral("A"));
        auto *inner = new Namespace(outer, QStringLiteral("B"));
        QCOMPARE(outer->fullyQualifiedName(), QStringLiteral("A"));
        QCOMPARE(inner->fullyQualifiedName(), QStringLiteral("A::B"));
        QCOMPARE(Inspector::self()->nameSpaceFromFullyQualifiedName(QStringLiteral("A::B")), inner);
        QVERIFY(!Inspector::self()->nameSpaceFromFullyQualifiedName(QStringLiteral("A::C")));
    }

    void settingsHaveTheirDefaults()
    {
        Inspector *inspector = Inspector::self();
        const QString name = QStringLiteral("Shape");
        QVERIFY(!inspector->hasMouseTracking(name) && inspector->hasRecordMouseDrag(name));
        QCOMPARE(inspector->isKeyEventCompressionAllowed(name), -1);
        inspector->setRecorderFilter(name, QStringLiteral("but*"));
        QVERIFY(inspector->matchRecordFilter(name, QStringLiteral("button")));
        QVERIFY(!inspector->matchRecordFilter(name, QStringLiteral("a button")));
        inspector->setUnmatchedProperties(name, { QStringLiteral("a"), QStringLiteral("b") });
        inspector->setUnmatchedProperties(name, { QStringLiteral("c") });
        inspector->setUnmatchedProperties(name, { QStringLiteral("d"), QStringLiteral("e") });
        QCOMPARE(inspector->unmatchedProperties().value(name), QStringList { QStringLiteral("c") });
        QVERIFY(!inspector->call(QStringLiteral("f"), {}).isValid());
        QVERIFY(inspector->lastError().startsWith(QLatin1String("Cannot make remote calls")));
    }
};

QTEST_GUILESS_MAIN(TestMembers)
#include "tst_members.moc"
