#include "calledhook.h"
#include "objectmodel/class.h"
#include "objectmodel/classids.h"
#include "objectmodel/delegates.h"
#include "objectmodel/primitives.h"
#include "objectmodel/property.h"
#include "serverlib/nullmessagechannel.h"

#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;
using namespace Vorkel;

// What a runner sees of objects that refer to one another: trees, parts, circles.

namespace {

const ObjectAttribute HeldByPointer(ObjectAttribute::Pointer, 0);

/// A link of a chain. Links of one class refer to links of another, so that chains can close.
struct Link
{
    QByteArray text;
    Link *next = nullptr;
};

class LinkClass : public Class
{
public:
    explicit LinkClass(const char *name)
        : Class(name, true)
    {
        setDeclared({ .properties = 3 });
    }

    using Class::getProperty;
    SharedPtr<Object> getProperty(int id, void *object, const Class *) const override
    {
        if (const auto deed = std::exchange(onRead, nullptr))
            deed();
        const auto *link = static_cast<const Link *>(object);
        if (id == 0)
            return Vorkel::wrap(QString::fromUtf8(link->text));
        return id == 1 ? other->wrap(link->next, HeldByPointer) : Vorkel::wrap(7);
    }
    Property *createProperty(int index) const override
    {
        static const QString names[] = { u"text"_s, u"next"_s, u"shared"_s };
        const FUInt32 flags = ReadableProperty | (index == 2 ? FUInt32(StaticProperty) : 0);
        const Class *type = index == 1 ? other : Inspector::self()->type(StringClassId);
        return new Property(this, Argument(type, ObjectAttribute::Pointer), names[index], flags, index);
    }

    const Class *other = this;
    mutable std::function<void()> onRead;
};

/// Links at the top, each with the next one below it.
class LinkTree : public ObjectHierarchyDelegate
{
public:
    using ObjectHierarchyDelegate::ObjectHierarchyDelegate;

    int numChildren(const SharedPtr<Object> &object) const override { return below(object) ? 1 : 0; }
    SharedPtr<Object> child(const SharedPtr<Object> &object, int) const override
    {
        return Inspector::self()->type(u"Left"_s)->wrap(below(object), HeldByPointer);
    }
    SharedPtr<Object> childByName(const SharedPtr<Object> &object, const QString &wanted) const override
    {
        return below(object) && QString::fromUtf8(below(object)->text) == wanted ? child(object, 0) : nullptr;
    }
    QString name(const SharedPtr<Object> &object) const override
    {
        return QString::fromUtf8(static_cast<const Link *>(object->data())->text);
    }
    QString qualifiedName(const SharedPtr<Object> &object) const override { return u'/' + name(object); }
    int wrapperType() const override { return 1; }

    Link *top = nullptr;

private:
    Link *below(const SharedPtr<Object> &object) const
    {
        return object ? static_cast<Link *>(object->data())->next : top;
    }
};

} // namespace

class tst_components : public QObject, CalledHook
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // Classes and delegates live as long as the process.
        auto *right = new LinkClass("Right");
        m_left->other = right;
        right->other = m_left;
        new LinkTree(u"Left"_s);
    }

    void init() { startHook(new NullMessageChannel); }

    void cleanup()
    {
        endHook();
        m_tree->top = nullptr;
    }

    void walksTheTree()
    {
        QVERIFY(isNothing(call("objectByIndex", 0, 0)));
        QVERIFY(isNothing(call("objectByName", 0, u"upper"_s)));
        QCOMPARE(lines(),
                 (QStringList { u"Hook::objectByIndex: index out of range!"_s,
                                u"Hook::objectByName: invalid object name upper"_s }));
        Link lower { "lower" };
        Link upper { "upper", &lower };
        m_tree->top = &upper;
        QCOMPARE(call("numObjects", 0), QVariant(1));
        const int top = object("objectByName", 0, u"upper"_s);
        const int below = object("objectByIndex", top, 0);
        QCOMPARE(call("objectName", below), QVariant(u"lower"_s));
        QCOMPARE(call("qualifiedObjectName", top), QVariant(u"/upper"_s));
        QCOMPARE(call("numObjects", below), QVariant(0));
        QVERIFY(!call("objectByName", below, u"lower"_s).isValid());
        const QStringList all = call("objects", top).toStringList();
        QCOMPARE(all.size(), 1);
        QCOMPARE(call("objectCompare", all[0].section(u',', 0, 0), below), QVariant(true));
        QCOMPARE(call("objectCompare", object("parent", below), top), QVariant(true));
        QVERIFY(!call("parent", top).isValid());
        QVERIFY(lines().isEmpty());
        const int number = object("createPrimitive", u"int"_s, 1);
        QVERIFY(!call("parent", number).isValid());
        const QString line = u"Hook::parent: object with id %1 and type inthas no HierarchyDelegate"_s;
        QCOMPARE(lines(), QStringList { line.arg(number) });
    }

    void listsComponents()
    {
        Link lower;
        Link upper { "up", &lower };
        const auto list = [this](int id) { return QStringList(QString::number(id)); };
        QCOMPARE(call("fetchObjectComponents", list(handle(&upper))),
                 QVariant(QStringList { u"char#text=up"_s, u"Right#+next="_s, u"int#shared=7"_s }));
        QCOMPARE(call("fetchObjectComponents", list(handle(&lower))).toStringList().at(1),
                 u"Right#next=<null>"_s);
        const int plain = handle(wrap(u"plain"_s));
        QCOMPARE(call("fetchObjectComponents", list(plain)), QVariant(QStringList()));
        QCOMPARE(call("objectHasComponents", list(plain)), QVariant(false));
        QCOMPARE(call("objectHasComponents", list(handle(&lower))), QVariant(true));
    }

    void formatsValues()
    {
        // Each link is a level, and each level escapes what is below it anew.
        Link links[5];
        for (int i = 0; i < 4; ++i)
            links[i].next = &links[i + 1];
        links[0].text = "a\\\"\n\t\x01\xc3\xbc\xe4\xb8\xad";
        links[2].text = "\"";
        Link alone;
        Link above { {}, &links[0] };
        const int ids[] = { handle(&links[0]), object("createNull", u"Left"_s), 999999, handle(&alone) };
        const int pairs[] = { ids[0], 1, ids[1], 0, ids[2], 0, ids[0], 9, ids[0], 0, ids[3], 1, 5 };
        QStringList request;
        for (const int number : pairs)
            request << QString::number(number);
        const QStringList values {
            uR"({ text = , next = { text = \\\", next = { text = , next = ... } } })"_s,
            QString::fromUtf8(links[0].text), u"-"_s
        };
        QCOMPARE(call("fetchPropertyValuesAsString", request), QVariant(values));
        const QString start = u"Hook::handleCall: F_FetchPropertyValuesAsString: "_s;
        QCOMPARE(lines(),
                 (QStringList { start + u"Null object"_s, start + u"Invalid object"_s,
                                start + u"Invalid property"_s }));
        links[0].next = nullptr;
        const QStringList next { QString::number(handle(&above)), u"1"_s };
        QCOMPARE(call("fetchPropertyValuesAsString", next),
                 QVariant(QStringList(uR"({ text = a\\\"\n\t\x01\xfc\u4e2d, next =  })"_s)));
    }

    void endsInCircles()
    {
        Link links[4] = { { "a" }, { "b" }, { "a" }, { "b" } };
        for (int i = 0; i < 4; ++i)
            links[i].next = &links[i ^ 1];
        const int one = handle(&links[0]);
        const int other = handle(&links[2]);
        QCOMPARE(call("objectToDebugString", one),
                 QVariant(u"{ text = a : char[], next = { text = b : char[], next =  : Left, shared = 7 : "
                          u"int } "
                          ": Right, shared = 7 : int } : Left"_s));
        QCOMPARE(call("objectCompare", one, other), QVariant(true));
        links[3].text = "c";
        QCOMPARE(call("objectCompare", one, other), QVariant(false));
        // As bad as a circle is a chain that is too long.
        std::vector<Link> chain(100000);
        for (std::size_t i = 1; i < chain.size(); ++i)
            chain[i - 1].next = &chain[i];
        QVERIFY(!isNothing(call("objectToDebugString", handle(&chain[0]))));
        (void)call("objectCompare", handle(&chain[0]), handle(&chain[2]));
    }

    void survivesItsEnd_data()
    {
        QTest::addColumn<bool>("asTexts");
        for (const char *name : { "getProperty", "objectCompare", "objectToDebugString",
                                  "fetchObjectComponents", "fetchPropertyValuesAsString" })
            QTest::newRow(name) << QByteArray(name).startsWith("fetch");
    }

    // A property is read by the application's code, which may run an event loop in which the connection ends.
    void survivesItsEnd()
    {
        QFETCH(const bool, asTexts);
        Link link { "text" };
        Link other { "text" };
        const int id = handle(&link);
        m_left->onRead = [this] { delete std::exchange(m_hook, nullptr); };
        const QString name = QString::number(id);
        ArgumentList arguments { asTexts ? QVariant(QStringList { name, u"0"_s, name, u"1"_s }) : id };
        if (const QByteArray tag = QTest::currentDataTag(); !asTexts && tag != "objectToDebugString")
            arguments << (tag == "getProperty" ? 0 : handle(&other));
        (void)callWith(QTest::currentDataTag(), arguments);
        QVERIFY(!Hook::hook && !m_left->onRead);
    }

private:
    using CalledHook::handle;
    int handle(Link *link) { return handle(m_left->wrap(link, HeldByPointer)); }

    LinkClass *m_left = new LinkClass("Left");
    LinkTree *m_tree = new LinkTree(u"Vorkel::ToplevelQt"_s);
};

QTEST_GUILESS_MAIN(tst_components)
#include "tst_components.moc"
