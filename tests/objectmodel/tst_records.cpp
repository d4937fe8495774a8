#include "toolkit.h"

#include "objectmodel/constructor.h"
#include "objectmodel/enum.h"
#include "objectmodel/inspector.h"
#include "objectmodel/method.h"
#include "objectmodel/namespace.h"
#include "objectmodel/primitives.h"
#include "objectmodel/property.h"
#include "objectmodel/screenvalues.h"

#include <QDataStream>
#include <QIODevice>
#include <QTest>

using namespace Vorkel;
using namespace Toolkit;

namespace {

template <typename Write>
QByteArray bytesOf(Write write)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_2_1);
    write(stream);
    return bytes;
}

QByteArray recordOf(const Serializable &record)
{
    return bytesOf([&](QDataStream &stream) { record.writeObject(stream); });
}

void readInto(Serializable *record, const QByteArray &bytes)
{
    QDataStream stream(bytes);
    stream.setVersion(QDataStream::Qt_2_1);
    record->readObject(stream);
}

// The pieces of which the expected bytes are made.
const QByteArray Null("ffffffff");
const QByteArray Int("00000006 0069006e0074 00000000");

} // namespace

class TestRecords : public QObject
{
    Q_OBJECT

private slots:
    void recordsHaveTheirForm()
    {
        const auto hex = [](const QByteArray &text) { return QByteArray::fromHex(text); };
        QCOMPARE(recordOf(ObjectAttribute(18, 3)), hex("00000012 00000003"));
        const QByteArray intArgument = Null + Int + "00000000 00000000" + Null + Null;
        QCOMPARE(recordOf(Argument(Inspector::self()->type(IntClassId))), hex(intArgument));
        const Argument withEnum(Inspector::self()->type(IntClassId), shapeClass()->enumerator(0));
        QCOMPARE(recordOf(withEnum),
                 hex(Null + Int + "00000000 00000000" + "0000000a 00530068006100700065"
                     + "0000000c 0043006f006c006f00750072"));
        QCOMPARE(recordOf(*shapeClass()->method(0)),
                 hex("0000000e 006d006500610073007500720065"
                     "0000000a 00530068006100700065"
                     + intArgument + "00000000 00000000 00000000" + Null));
        QCOMPARE(recordOf(*shapeClass()->property(0)),
                 hex("0000000a 00770069006400740068" + intArgument + "0000000a 00530068006100700065"
                     + "00000000 00000000 00000003"));
        QCOMPARE(recordOf(*Inspector::self()->globalNamespace()), hex("00000000" + Null + "ffffffff"));
    }

    void readersMirrorWriters()
    {
        Method method(nullptr, Argument(), QString(), Signature(), false, -1);
        readInto(&method, recordOf(*squareClass()->method(2)));
        QCOMPARE(method.toString(), squareClass()->method(2)->toString());
        Property property(nullptr, Argument(), QString(), 0, -1);
        readInto(&property, recordOf(*shapeClass()->property(0)));
        QCOMPARE(property.toString(), QStringLiteral("int width"));
        QCOMPARE(property.propertyClass(), shapeClass());
        Enum colours(shapeClass());
        readInto(&colours, recordOf(*shapeClass()->enumerator(0)));
        QCOMPARE(colours.count(), 3);
        QCOMPARE(colours.valueToKey(4, nullptr), QStringLiteral("Blue"));
    }

    void valuesTravelWithoutTheirTypes()
    {
        const SharedPtr<Object> from = newShape(77);
        const SharedPtr<Object> to = newShape(0);
        QCOMPARE(bytesOf([&](QDataStream &stream) { from->streamObject(stream); }),
                 QByteArray::fromHex("0000004d"));
        const SharedPtr<Object> text = wrap(QStringLiteral("hello"));
        const SharedPtr<Object> other = wrap(QStringLiteral("x"));
        readInto(other.get(), recordOf(*text));
        QCOMPARE(other->toString(), QStringLiteral("hello"));
        // The name of another class stops the reader.
        readInto(to.get(), recordOf(*text));
        QCOMPARE(shapeClass()->property(0)->get(to)->toInteger(), 0);
    }
};

QTEST_GUILESS_MAIN(TestRecords)
#include "tst_records.moc"
