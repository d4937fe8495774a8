#include "runningprogram.h"
#include "support/childprocess.h"

#include <QImage>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace Vorkel::Runner;

// A program that brings a wrapper for its own toolkit.

namespace {

const QString program = u"vorkel-forms-example"_s;

} // namespace

class tst_forms : public QObject
{
    Q_OBJECT

private slots:
    void obeysTheCommand_data();
    void obeysTheCommand();
    void showsItsOwnClassesOnly();
    void convertsElements();
    void survivesItsElements();
    void refusesWithReason();
    void survivesWrongCasts();
    void survivesNulls();
    void tellsWhatIsReady();
    void showsItself();
};

void tst_forms::obeysTheCommand_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QString>("out");
    QTest::addColumn<QString>("err");
    const auto row = [](const char *name, const QStringList &words, const QString &out,
                        const QString &err = {}) { QTest::newRow(name) << words << out << err; };
    // clang-format off
    row("tree",              { u"tree"_s },
        u"shopping : Element  shopping\n  item : Field  shopping.item\n  add : Button  shopping.add\n  list : Element  shopping.list\n"
        "    bread : Element  shopping.list.bread\n    milk : Element  shopping.list.milk\n"_s);
    row("by hand",           { u"get"_s, u"shopping.list.milk"_s, u"text"_s },                  u"Milk\n"_s);
    row("inherited",         { u"set"_s, u"shopping.item"_s, u"text"_s, u"Käse"_s },            u" -> Käse\n"_s);
    row("of a subclass",     { u"set"_s, u"shopping.item"_s, u"maxLength"_s, u"3"_s },          u"20 -> 3\n"_s);
    row("a record",          { u"get"_s, u"shopping.list.milk"_s, u"place"_s },                 u"{ line = 5 : int, column = 4 : int } : Place\n"_s);
    row("by two methods",    { u"set"_s, u"shopping.add"_s, u"enabled"_s, u"false"_s },         u"true -> false\n"_s);
    row("by rows",           { u"invoke"_s, u"shopping.add"_s, u"enabled"_s },                  u"true\n"_s);
    row("with an argument",  { u"invoke"_s, u"shopping.add"_s, u"setEnabled(false)"_s },        u""_s);
    row("of nothing",        { u"invoke"_s, u"shopping.list.milk"_s, u"remove"_s },             u""_s);
    row("not writable",      { u"set"_s, u"shopping.item"_s, u"name"_s, u"x"_s },               u""_s, u"property 'name' of Field is read-only"_s);
    row("not acceptable",    { u"set"_s, u"shopping.item"_s, u"text"_s, u"a bit more than fits"_s + u'!' }, u""_s, u"'a bit more than fits!' is too long for item"_s);
    row("negative",          { u"set"_s, u"shopping.item"_s, u"maxLength"_s, u"-4"_s },         u""_s, u"A field has no such length"_s);
    row("no such object",    { u"get"_s, u"--wait"_s, u"0"_s, u"shopping.list.mil"_s, u"text"_s }, u""_s, u"Object 'shopping.list.mil' not found.\n    Could not find child 'mil' under 'shopping.list'"_s);
    // clang-format on
}

void tst_forms::obeysTheCommand()
{
    QFETCH(const QStringList, words);
    QFETCH(const QString, err);
    ChildProcess process;
    process.launch(builtProgram(u"vorkel"_s), words + QStringList { u"--"_s, builtProgram(program) }, {});
    QCOMPARE(process.finish(), err.isEmpty() ? 0 : 1);
    QTEST(QString::fromUtf8(process.readAllStandardOutput()), "out");
    QCOMPARE(QString::fromUtf8(process.readAllStandardError()),
             err.isEmpty() ? QString() : u"vorkel: %1\n"_s.arg(err));
}

void tst_forms::showsItsOwnClassesOnly()
{
    RunningProgram forms;
    QVERIFY(forms.start(program));
    QVERIFY(forms.objects().classes().byName(u"Button"_s));
    QVERIFY(!forms.objects().classes().byName(u"QObject"_s));
}

void tst_forms::convertsElements()
{
    RunningProgram forms;
    QVERIFY(forms.start(program));
    const ObjectHandle item = forms.find(u"shopping.item"_s);
    (void)forms.call(u"objectFromString"_s, { item.id, u"Salt"_s });
    QCOMPARE(forms.call(u"objectToString"_s, { item.id }), u"Salt"_s);
}

void tst_forms::survivesItsElements()
{
    RunningProgram forms;
    QVERIFY(forms.start(program));
    const QString path = u"shopping.list.milk"_s;
    const ObjectHandle milk = forms.find(path);
    QCOMPARE(forms.find(path).id, milk.id);
    const QString text = u"%1,%2"_s.arg(milk.id).arg(milk.classId);
    QCOMPARE(forms.call(u"objectDereference"_s, { milk.id }), text);
    QCOMPARE(forms.refusal(milk, u"remove"_s), QString());
    QCOMPARE(forms.call(u"objectIsNull"_s, { milk.id }), true);
    QString value;
    QCOMPARE(forms.objects().getProperty(milk, u"text"_s, &value).text,
             u"property 'text' of Element has no value"_s);
    QCOMPARE(forms.find(path).id, 0);

    // What comes in its place is another.
    const ObjectHandle item = forms.find(u"shopping.item"_s);
    const ObjectHandle add = forms.find(u"shopping.add"_s);
    QCOMPARE(forms.objects().setProperty(item, u"text"_s, u"Milk"_s).text, QString());
    QCOMPARE(forms.refusal(add, u"press"_s), QString());
    QVERIFY(forms.find(path).id != 0);
    QVERIFY(forms.find(path).id != milk.id);
    QCOMPARE(forms.call(u"objectIsNull"_s, { milk.id }), true);
}

void tst_forms::refusesWithReason()
{
    RunningProgram forms;
    QVERIFY(forms.start(program));
    const ObjectHandle add = forms.find(u"shopping.add"_s);
    QCOMPARE(forms.refusal(add, u"setEnabled"_s, { false }), QString());
    const QString refusal = forms.refusal(add, u"press"_s);
    QVERIFY2(refusal.endsWith(u"void press(): add is not enabled"_s), qPrintable(refusal));
    // A runner need not care whether a property can be written.
    const QString text = forms.call(u"createPrimitive"_s, { u"char*"_s, u"x"_s }).toString();
    const ClassRecord *element = forms.objects().classes().byName(u"Element"_s);
    const int name = forms.objects().classes().property(element, u"name"_s)->id;
    const int value = text.section(u',', 0, 0).toInt();
    QCOMPARE(forms.call(u"setProperty"_s, { add.id, name, value }), false);
    QCOMPARE(forms.call(u"getLastError"_s, {}), u"Only the text of add can be set"_s);
}

void tst_forms::survivesWrongCasts()
{
    RunningProgram forms;
    QVERIFY(forms.start(program));
    const ObjectHandle bread = forms.find(u"shopping.list.bread"_s);
    const ClassRecord *field = forms.objects().classes().byName(u"Field"_s);
    QVERIFY(bread.id != 0 && field);
    QCOMPARE(forms.call(u"objectCastTo"_s, { bread.id, field->id }), bread.classId);
    QCOMPARE(forms.call(u"objectToString"_s, { bread.id }), u"Bread"_s);
}

void tst_forms::survivesNulls()
{
    RunningProgram forms;
    QVERIFY(forms.start(program));
    const int null = forms.call(u"createNull"_s, { u"Element"_s }).toString().section(u',', 0, 0).toInt();
    QVERIFY(null > 0);
    QCOMPARE(forms.call(u"numObjects"_s, { null }), 0);
    QCOMPARE(forms.call(u"objectByIndex"_s, { null, 0 }), QVariant());
    QCOMPARE(forms.call(u"parent"_s, { null }), QVariant());
    QCOMPARE(forms.call(u"objectName"_s, { null }), QVariant());
    QCOMPARE(forms.call(u"qualifiedObjectName"_s, { null }).toString(), QString());
    QCOMPARE(forms.call(u"objectToString"_s, { null }), u"<null>"_s);
    (void)forms.call(u"objectFromString"_s, { null, u"x"_s });
    QVERIFY(forms.find(u"shopping"_s).id != 0);
}

void tst_forms::tellsWhatIsReady()
{
    RunningProgram forms;
    QVERIFY(forms.start(program));
    const QString add = u"shopping.add"_s;
    const QString list = u"shopping.list"_s;
    QVERIFY(forms.call(u"objectReady"_s, { add }).isValid());
    QCOMPARE(forms.refusal(forms.find(add), u"setEnabled"_s, { false }), QString());
    QVERIFY(!forms.call(u"objectReady"_s, { add }).isValid());
    QCOMPARE(forms.call(u"getLastError"_s, {}), u"Object 'shopping.add' not ready: it is not enabled"_s);
    const QVariant milk = forms.call(u"objectFind"_s, { u"shopping.list.milk"_s });
    QCOMPARE(forms.call(u"getObjectItemIfReady"_s, { list, u"Milk"_s }), milk);
    QCOMPARE(forms.call(u"getObjectItemByRowColIfReady"_s, { list, 1, 0 }), milk);
    QVERIFY(!forms.call(u"getObjectItemByRowColIfReady"_s, { list, -1, 0 }).isValid());
    QCOMPARE(forms.call(u"getLastError"_s, {}), u"it has no '-1/0'"_s);
    const int null = forms.call(u"createNull"_s, { u"Element"_s }).toString().section(u',', 0, 0).toInt();
    QVERIFY(!forms.call(u"getObjectItemIfReady2"_s, { null, u"Milk"_s }).isValid());
}

void tst_forms::showsItself()
{
    RunningProgram forms;
    QVERIFY(forms.start(program));
    const int list = forms.find(u"shopping.list"_s).id;
    const QVariantMap picture = forms.call(u"grabObjectScreenshot"_s, { list, 0, 1 }).toMap();
    // "To buy:" begins behind two blanks, in line 3.
    QCOMPARE(QImage::fromData(qUncompress(picture.value(u"image"_s).toByteArray())).size(), QSize(7, 1));
    const QString bounds = forms.call(u"objectGlobalBounds"_s, { list }).toString();
    QCOMPARE(forms.call(u"objectToDebugString"_s, { bounds.section(u',', 0, 0).toInt() }),
             u"{ x = 2 : int, y = 3 : int, width = 7 : int, height = 1 : int } : ScreenRectangle"_s);
    QVERIFY(!forms.call(u"mousePress"_s, { list, 1, 0, 0, 0, 0, true, true }).toBool());
    QCOMPARE(forms.call(u"getLastError"_s, {}), u"Platform plugin not set"_s);
}

QTEST_GUILESS_MAIN(tst_forms)
#include "tst_forms.moc"
