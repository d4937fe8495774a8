#include "hook/autprocess.h"
#include "hook/hook.h"
#include "hook/wrapper.h"
#include "objectmodel/class.h"
#include "objectmodel/delegates.h"
#include "objectmodel/inspector.h"
#include "objectmodel/objectmap.h"
#include "objectmodel/objectname.h"
#include "serverlib/nullmessagechannel.h"

#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace Vorkel;

namespace {

const Class *buttonClass()
{
    static const auto *const instance = new Class("QtGUIObject", true);
    return instance;
}

/// One button, which is found by its text alone and named by text and type.
class ButtonDelegate : public ObjectHierarchyDelegate
{
public:
    explicit ButtonDelegate()
        : ObjectHierarchyDelegate(buttonClass()->className())
        , button(buttonClass()->wrap(this, ObjectAttribute()))
    {
    }

    [[nodiscard]] int numChildren(const SharedPtr<Object> &object) const override { return object ? 0 : 1; }
    [[nodiscard]] SharedPtr<Object> child(const SharedPtr<Object> &, int) const override { return button; }
    [[nodiscard]] SharedPtr<Object> childByName(const SharedPtr<Object> &, const QString &) const override
    {
        return nullptr;
    }
    [[nodiscard]] SharedPtr<Object> objectByQualifiedName(const SharedPtr<Object> &,
                                                          const ObjectName &name) const override
    {
        ++lookups;
        const PropertyMap demands = name.properties();
        for (auto demand = demands.begin(); demand != demands.end(); ++demand) {
            if (!demand->matches(demand.key() == u"text"_s ? u"OK"_s : u"Button"_s)) {
                Inspector::self()->setUnmatchedProperties(u"{text='OK'}"_s, { demand.key() });
                return nullptr;
            }
        }
        return name.isMultiProperty() ? button : nullptr;
    }
    [[nodiscard]] QString name(const SharedPtr<Object> &) const override { return u"button"_s; }
    [[nodiscard]] QString qualifiedName(const SharedPtr<Object> &) const override
    {
        return Hook::hook->namingScheme() == 0 ? u"{text='OK' type='Button'}"_s : u"button"_s;
    }
    [[nodiscard]] int wrapperType() const override { return 1; }

    SharedPtr<Object> button;
    mutable int lookups = 0;
};

class ButtonWrapper : public Wrapper
{
public:
    [[nodiscard]] QString name() const override { return u"Buttons"_s; }
    [[nodiscard]] bool ownsObject(const SharedPtr<Object> &object) const override
    {
        return object && object->isA(buttonClass());
    }
    [[nodiscard]] bool isObjectReady(const SharedPtr<Object> &) const override { return true; }
    void setSpying(bool) override {}
    void recordingStopped() override {}
    [[nodiscard]] bool possibleNameMatch(const PropertyMap &entry, const PropertyMap &) const override
    {
        return !entry.contains(u"never"_s);
    }
};

} // namespace

class tst_names : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_buttons = new ButtonDelegate; } // the registry keeps it
    void init()
    {
        m_wrapper = std::make_unique<ButtonWrapper>();
        m_hook = new Hook(new IPC(new NullMessageChannel, {}, nullptr, nullptr), Hook::NoRunner,
                          m_wrapper.get(), new AUTProcess, nullptr, 0);
    }
    void cleanup() { delete m_hook; }
    void reusesNames_data();
    void reusesNames();
    void searchesOnce();
    void convertsNames();
    void tellsWhatDidNotMatch();

private:
    QVariant call(const QString &name, const ArgumentList &arguments)
    {
        return m_hook->handleCall(1, name, arguments);
    }

    ButtonDelegate *m_buttons = nullptr;
    std::unique_ptr<ButtonWrapper> m_wrapper;
    Hook *m_hook = nullptr;
};

void tst_names::reusesNames_data()
{
    QTest::addColumn<QString>("map");
    QTest::addColumn<QString>("computed");
    QTest::addColumn<QString>("existing");
    const QString computed = u"{text='OK' type='Button'}"_s;
    // clang-format off
    QTest::newRow("empty map")    << u""_s                                        << computed    << u""_s;
    QTest::newRow("other order")  << u":b\t{type='Button'  text='OK'}\n"_s        << computed    << u"{type='Button'  text='OK'}"_s;
    QTest::newRow("leads there")  << u":a\t{text='Not'}\n:b\t{text?='O*'}\n"_s    << computed    << u"{text?='O*'}"_s;
    QTest::newRow("same first")   << u":a\t{text='OK'}\n:b\t{text='OK' type='Button'}\n"_s << computed << computed;
    QTest::newRow("ruled out")    << u":b\t{text='OK' never='Button'}\n"_s        << computed    << u""_s;
    QTest::newRow("hierarchical") << u":b\t{text='OK'}\n"_s                       << u"button"_s << u""_s;
    // clang-format on
}

void tst_names::reusesNames()
{
    QFETCH(QString, map);
    QFETCH(QString, computed);
    QFETCH(QString, existing);
    m_hook->handleSend(1, u"setObjectMap"_s, { map });
    for (int round = 0; round < 2; ++round)
        QCOMPARE(m_wrapper->getExistingRealName(m_buttons->button, computed), existing);
    // Looking entries up in vain is no failure.
    QVERIFY(Inspector::self()->unmatchedProperties().isEmpty());
    QCOMPARE(Inspector::self()->lastError(), QString());
    QCOMPARE(m_wrapper->getExistingRealName(nullptr, computed), QString());
}

void tst_names::searchesOnce()
{
    const QString computed = u"{text='OK' type='Button'}"_s;
    m_hook->handleSend(1, u"setObjectMap"_s, { u":a\t{text='Not'}\n"_s });
    QCOMPARE(m_wrapper->getExistingRealName(m_buttons->button, computed), QString());
    const int lookups = m_buttons->lookups;
    QCOMPARE(m_wrapper->getExistingRealName(m_buttons->button, computed), QString());
    QCOMPARE(m_buttons->lookups, lookups);
    // Until there is another map.
    m_hook->handleSend(1, u"setObjectMap"_s, { u":a\t{type='Button'}\n"_s });
    QCOMPARE(m_wrapper->getExistingRealName(m_buttons->button, computed), u"{type='Button'}"_s);
}

void tst_names::convertsNames()
{
    QSignalSpy schemes(m_hook, &Hook::namingSchemeChanged);
    QCOMPARE(call(u"convertName"_s, { u"{text='OK'}"_s, u"0"_s }), QVariant(u"{text='OK' type='Button'}"_s));
    QCOMPARE(call(u"convertName"_s, { u"{text='OK'}"_s, u"1"_s }), QVariant(u"{text='OK'}"_s));
    QCOMPARE(schemes.size(), 4);
    QCOMPARE(m_hook->namingScheme(), 0);
    // The wrapper has seen that the map does not know this one.
    call(u"addToObjectMap"_s, { u"{type='Button'}"_s, u":known"_s });
    QVERIFY(ObjectMap::self()->isModified());
    QCOMPARE(call(u"convertName"_s, { u":known"_s, u"0"_s }), QVariant(u"{text='OK' type='Button'}"_s));
    m_hook->handleSend(1, u"setObjectMap"_s, { ObjectMap::self()->toString() });
    QCOMPARE(call(u"convertName"_s, { u":known"_s, u"0"_s }), QVariant(u"{type='Button'}"_s));
    QCOMPARE(call(u"getLastError"_s, {}), QVariant(QString()));
    QCOMPARE(call(u"convertName"_s, { u"{text='No'}"_s, u"0"_s }), QVariant(u"{text='No'}"_s));
    QVERIFY(!call(u"getLastError"_s, {}).toString().isEmpty());
    m_hook->handleSend(1, u"namingScheme"_s, { 1 });
    QCOMPARE(m_hook->namingScheme(), 1);
}

void tst_names::tellsWhatDidNotMatch()
{
    QVERIFY(!call(u"objectFind"_s, { u"{text='No'}"_s }).isValid());
    const QVariantMap unmatched { { u"{text='OK'}"_s, QStringList(u"text"_s) } };
    QCOMPARE(call(u"getUnmatchedProperties"_s, {}).toMap(), unmatched);
    QVERIFY(call(u"getLastError"_s, {}).toString().contains(u"text for object name: '{text='OK'}'"_s));
    QVERIFY(call(u"getUnmatchedProperties"_s, {}).toMap().isEmpty());
}

QTEST_GUILESS_MAIN(tst_names)

#include "tst_names.moc"
