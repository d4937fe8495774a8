#include "objectmodel/class.h"
#include "objectmodel/delegates.h"
#include "objectmodel/inspector.h"
#include "objectmodel/objectmap.h"
#include "objectmodel/objectname.h"

#include <QtTest>

#include <map>
#include <memory>

using namespace Qt::StringLiterals;
using namespace Vorkel;

namespace {

/// A thing of a tree, with properties.
struct Thing
{
    QString name;
    QMap<QString, QString> properties;
    std::vector<std::unique_ptr<Thing>> children;
    SharedPtr<Object> object;
};

const Class *thingClass()
{
    static const auto *const instance = new Class("QtGUIObject", true);
    return instance;
}

Thing *thingOf(const SharedPtr<Object> &object)
{
    return static_cast<Thing *>(object->data());
}

/// A toolkit of things; counts how often it is asked.
class ThingDelegate : public ObjectHierarchyDelegate
{
public:
    using ObjectHierarchyDelegate::ObjectHierarchyDelegate;

    [[nodiscard]] int numChildren(const SharedPtr<Object> &object) const override
    {
        return static_cast<int>(below(object).size());
    }
    [[nodiscard]] SharedPtr<Object> child(const SharedPtr<Object> &object, int index) const override
    {
        return below(object)[static_cast<std::size_t>(index)]->object;
    }
    [[nodiscard]] SharedPtr<Object> childByName(const SharedPtr<Object> &object,
                                                const QString &name) const override
    {
        for (const auto &thing : below(object)) {
            if (thing->name == name)
                return thing->object;
        }
        return nullptr;
    }
    [[nodiscard]] SharedPtr<Object> objectByQualifiedName(const SharedPtr<Object> &,
                                                          const ObjectName &name) const override
    {
        ++asked;
        if (!complaint.isEmpty())
            Inspector::self()->setError(complaint);
        for (const auto &thing : root.children) {
            QStringList unmet;
            const PropertyMap demands = name.properties();
            for (auto each = demands.begin(); each != demands.end(); ++each) {
                if (!each->matches(thing->properties.value(each.key())))
                    unmet.append(each.key());
            }
            if (name.isMultiProperty() && unmet.isEmpty())
                return thing->object;
            if (name.isMultiProperty())
                Inspector::self()->setUnmatchedProperties(
                        u"{name='%1'}"_s.arg(thing->name.chopped(thing->name.endsWith(u'\\'))), unmet);
        }
        return nullptr;
    }
    [[nodiscard]] QString name(const SharedPtr<Object> &object) const override
    {
        return thingOf(object)->name;
    }
    [[nodiscard]] QString qualifiedName(const SharedPtr<Object> &object) const override
    {
        return name(object);
    }
    [[nodiscard]] int wrapperType() const override { return 7; }

    Thing *add(Thing *parent, const QString &name, const QMap<QString, QString> &properties = {})
    {
        parent->children.push_back(std::make_unique<Thing>(Thing { name, properties, {}, nullptr }));
        Thing *thing = parent->children.back().get();
        thing->object = thingClass()->wrap(thing, ObjectAttribute());
        return thing;
    }

    Thing root;
    QString complaint;
    mutable int asked = 0;

private:
    [[nodiscard]] const std::vector<std::unique_ptr<Thing>> &below(const SharedPtr<Object> &object) const
    {
        return object ? thingOf(object)->children : root.children;
    }
};

} // namespace

class tst_lookup : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void finds_data();
    void finds();
    void explains_data();
    void explains();
    void keepsLastObject();
    void staysSilentWhileRecording();

private:
    ThingDelegate *m_things = nullptr; // the registry knows it as long as the process lives
    std::unique_ptr<ObjectMap> m_map;
};

void tst_lookup::initTestCase()
{
    new ThingDelegate(u"Vorkel::ToplevelWeb"_s); // has nothing
    // One of the names for the top, and the class of things.
    m_things = new ThingDelegate(thingClass()->className());
}

// a(x=1) > b > c ; "d.e\" ; f(x=2)
void tst_lookup::init()
{
    m_things->root.children.clear();
    m_things->complaint.clear();
    Thing *a = m_things->add(&m_things->root, u"a"_s, { { u"x"_s, u"1"_s }, { u"y"_s, u"1"_s } });
    m_things->add(m_things->add(a, u"b"_s), u"c"_s);
    m_things->add(&m_things->root, u"d.e\\"_s, { { u"x"_s, u"}.b"_s } });
    m_things->add(&m_things->root, u"f"_s, { { u"x"_s, u"2"_s }, { u"y"_s, u"2"_s } });
    m_map = std::make_unique<ObjectMap>(false);
    m_map->loadFromString(u":real\t{x='1'}\n:path\ta.b\n"_s);
    (void)Inspector::self()->findObject(u"nothing"_s);
    (void)Inspector::self()->lastError();
}

void tst_lookup::cleanup()
{
    m_map.reset();
    Inspector::self()->setEventRecording(false);
}

void tst_lookup::finds_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("found");
    // clang-format off
    QTest::newRow("path")             << u"a.b.c"_s        << u"c"_s;
    QTest::newRow("doubled dot")      << u"a..b."_s        << u"b"_s;
    QTest::newRow("escaped")          << u"d\\.e\\\\"_s    << u"d.e\\"_s;
    QTest::newRow("mixed")            << u"{x='1'}.b.c"_s  << u"c"_s;
    QTest::newRow("dot in a value")   << u"{x='}.b'}"_s    << u"d.e\\"_s;
    QTest::newRow("symbol")           << u":real"_s        << u"a"_s;
    QTest::newRow("symbol of a path") << u":path"_s        << u"b"_s;
    QTest::newRow("no such symbol")   << u":f"_s           << u"f"_s;
    // clang-format on
}

void tst_lookup::finds()
{
    QFETCH(QString, name);
    QFETCH(QString, found);
    Inspector::self()->setError(u"stale"_s);
    const SharedPtr<Object> object = Inspector::self()->findObject(name);
    QVERIFY2(object, qPrintable(Inspector::self()->lastError()));
    QCOMPARE(object->name(), found);
    QCOMPARE(Inspector::self()->lastError(), QString());
}

void tst_lookup::explains_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    // clang-format off
    QTest::newRow("empty")        << u""_s            << u"Empty Object Name passed to findObject!"_s;
    QTest::newRow("only dots")    << u".."_s          << u"Object '..' not found."_s;
    QTest::newRow("child")        << u"a.b.g.c"_s     << u"Object 'a.b.g.c' not found.\n    Could not find child 'g' under 'a.b'"_s;
    QTest::newRow("escaped")      << u"a.b\\.c"_s     << u"Object 'a.b\\.c' not found.\n    Could not find child 'b\\.c' under 'a'"_s;
    QTest::newRow("symbol")       << u":g"_s          << u"Object ':g' not found. Object name not found in Object Map."_s;
    QTest::newRow("mixed child")  << u"{x='1'}.g"_s   << u"Object '{x='1'}.g' not found.\n    Could not find child 'g' under 'a'"_s;
    QTest::newRow("mixed first")  << u"{x='3'}.g"_s   << u"Object '{x='3'}.g' not found: Object '{x='3'}' not found. Could not match properties:\n    x for object name: '{name='a'}'\n    x for object name: '{name='d.e'}'\n    x for object name: '{name='f'}'"_s;
    QTest::newRow("near misses")  << u"{x='2' y='1'}"_s << u"Object '{x='2' y='1'}' not found. Could not match properties:\n    x for object name: '{name='a'}'\n    x,y for object name: '{name='d.e'}'\n    y for object name: '{name='f'}'"_s;
    QTest::newRow("not mixed")    << u"{x='1'}.b}"_s  << u"Cannot find object with invalid object name: Error parsing"_s;
    QTest::newRow("bad brace")    << u"a}"_s          << u"Cannot find object with invalid object name: Hierarchical names must not start with '{' or end in '}': a}"_s;
    // clang-format on
}

void tst_lookup::explains()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    for (int round = 0; round < 2; ++round) { // the second time says no more than the first
        QVERIFY(!Inspector::self()->findObject(name));
        const bool hasUnmatched = text.contains(u"match properties"_s);
        QCOMPARE(!Inspector::self()->unmatchedProperties().isEmpty(), hasUnmatched);
    }
    const QString error = Inspector::self()->lastError();
    QVERIFY2(error == text || (text.endsWith(u"parsing"_s) && error.startsWith(text)), qPrintable(error));
    m_things->complaint = u"the toolkit sleeps"_s;
    if (text.startsWith(u"Object"_s)) {
        QVERIFY(!Inspector::self()->findObject(name));
        QVERIFY(Inspector::self()->lastError().contains(u"not found: the toolkit sleeps"_s));
    }
}

void tst_lookup::keepsLastObject()
{
    Inspector *inspector = Inspector::self();
    const SharedPtr<Object> a = inspector->findObject(u":real"_s);
    const int asked = m_things->asked;
    QVERIFY(inspector->findObject(u":real"_s) == a);
    QCOMPARE(m_things->asked, asked);
    (void)inspector->findObject(u"f"_s);
    QVERIFY(inspector->findObject(u":real"_s) == a);
    QCOMPARE(m_things->asked, asked + 2);
    // The symbol means something else now.
    m_map->add(ObjectName(u"{x='2'}"_s), u":real"_s);
    QCOMPARE(inspector->findObject(u":real"_s)->name(), u"f"_s);
    // What has died is not there any more.
    const SharedPtr<Object> f = inspector->findObject(u":real"_s);
    f->invalidate();
    m_things->root.children.pop_back();
    QVERIFY(!inspector->findObject(u":real"_s));
}

void tst_lookup::staysSilentWhileRecording()
{
    Inspector::self()->setEventRecording(true);
    QVERIFY(!Inspector::self()->findObject(u"{x='3'}"_s));
    QCOMPARE(Inspector::self()->lastError(), QString());
}

QTEST_GUILESS_MAIN(tst_lookup)

#include "tst_lookup.moc"
