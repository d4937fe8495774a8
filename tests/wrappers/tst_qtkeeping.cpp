#include "qtobjects.h"

#include "objectmodel/class.h"
#include "objectmodel/inspector.h"
#include "objectmodel/property.h"

#include <QTest>

#include <cstddef>
#include <memory>

using namespace Qt::StringLiterals;
using namespace Vorkel;

// QObjects as objects, in one process.

namespace {

/// An object with properties of the commonest types and of others.
class Things : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int number MEMBER m_number)
    Q_PROPERTY(bool truth MEMBER m_truth)
    Q_PROPERTY(double measure MEMBER m_measure)
    Q_PROPERTY(QString text MEMBER m_text)
    Q_PROPERTY(quint64 large MEMBER m_large)
    Q_PROPERTY(Colour colour MEMBER m_colour)
    Q_PROPERTY(QVariant anything MEMBER m_anything)

public:
    enum Colour { Red, Green, Blue };
    Q_ENUM(Colour)

private:
    int m_number = -7;
    bool m_truth = true;
    double m_measure = 0.5;
    QString m_text = u"Käse"_s;
    quint64 m_large = 1ULL << 40;
    Colour m_colour = Blue;
    QVariant m_anything = u"whatever"_s;
};

/// A place where one QObject after the other can stand.
class Place
{
public:
    QObject *make() { return new (m_bytes) QObject; }
    static void end(QObject *object) { object->~QObject(); }

private:
    alignas(QObject) std::byte m_bytes[sizeof(QObject)];
};

/// The text of a property; null when there is no value.
QString valueOf(const SharedPtr<Object> &object, const QString &property)
{
    const SharedPtr<Object> value = object->objectClass()->property(property)->get(object);
    return value ? value->toString() : QString();
}

} // namespace

class tst_qtkeeping : public QObject
{
    Q_OBJECT

private slots:
    void givesOneObjectForEach();
    void forgetsCasts();
    void readsProperties_data();
    void readsProperties();
    void losesWhatHasGone_data();
    void losesWhatHasGone();
    void startsAnewAtSameAddress_data();
    void startsAnewAtSameAddress();

private:
    static void addWaysToGo();
};

void tst_qtkeeping::givesOneObjectForEach()
{
    QObject a;
    QObject b;
    const SharedPtr<Object> first = QtObjects::self()->wrap(&a);
    QVERIFY(first == QtObjects::self()->wrap(&a));
    QVERIFY(!(first == QtObjects::self()->wrap(&b)));
    QCOMPARE(QtObjects::unwrap(first), &a);
}

/// What nobody holds comes back as what it is.
void tst_qtkeeping::forgetsCasts()
{
    Things things;
    SharedPtr<Object> object = QtObjects::self()->wrap(&things);
    QCOMPARE(object->castTo(object->objectClass()->super())->className(), u"QObject"_s);
    QCOMPARE(QtObjects::self()->wrap(&things)->className(), u"QObject"_s);
    object = nullptr;
    QCOMPARE(QtObjects::self()->wrap(&things)->className(), u"Things"_s);
}

void tst_qtkeeping::readsProperties_data()
{
    QTest::addColumn<QString>("value");
    QTest::newRow("number") << u"-7"_s;
    QTest::newRow("truth") << u"true"_s;
    QTest::newRow("measure") << u"0.5"_s;
    QTest::newRow("text") << u"Käse"_s;
    QTest::newRow("large") << u"1099511627776"_s;
    QTest::newRow("colour") << u"2"_s;
    QTest::newRow("anything") << u"whatever"_s;
}

void tst_qtkeeping::readsProperties()
{
    Things things;
    QTEST(valueOf(QtObjects::self()->wrap(&things), QString::fromLatin1(QTest::currentDataTag())), "value");
}

void tst_qtkeeping::addWaysToGo()
{
    QTest::addColumn<bool>("unheard");
    QTest::newRow("with a signal") << false;
    QTest::newRow("disconnected from everything") << true;
}

void tst_qtkeeping::losesWhatHasGone_data()
{
    addWaysToGo();
}

void tst_qtkeeping::losesWhatHasGone()
{
    QFETCH(const bool, unheard);
    auto object = std::make_unique<QObject>();
    object->setObjectName(u"it"_s);
    const SharedPtr<Object> wrapped = QtObjects::self()->wrap(object.get());
    QCOMPARE(valueOf(wrapped, u"objectName"_s), u"it"_s);
    if (unheard)
        object->disconnect();
    const Property *name = wrapped->objectClass()->property(u"objectName"_s);
    object.reset();
    QVERIFY(wrapped->isNull());
    QVERIFY(!QtObjects::unwrap(wrapped));
    QVERIFY(!name->get(wrapped));
    QCOMPARE(Inspector::self()->lastError(), u"Cannot access property objectName on null object reference"_s);
}

void tst_qtkeeping::startsAnewAtSameAddress_data()
{
    addWaysToGo();
}

void tst_qtkeeping::startsAnewAtSameAddress()
{
    QFETCH(const bool, unheard);
    Place place;
    QObject *object = place.make();
    const SharedPtr<Object> first = QtObjects::self()->wrap(object);
    if (unheard)
        object->disconnect();
    Place::end(object);

    object = place.make();
    object->setObjectName(u"second"_s);
    SharedPtr<Object> second = QtObjects::self()->wrap(object);
    QVERIFY(first->isNull());
    QCOMPARE(valueOf(second, u"objectName"_s), u"second"_s);
    // Also when nobody holds it meanwhile.
    second = nullptr;
    Place::end(object);

    object = place.make();
    second = QtObjects::self()->wrap(object);
    QVERIFY(!second->isNull());
    Place::end(object);
    QVERIFY(second->isNull());
    QCOMPARE(second->className(), u"Dead"_s);
}

QTEST_GUILESS_MAIN(tst_qtkeeping)
#include "tst_qtkeeping.moc"
