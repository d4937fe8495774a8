#include "objectmodel/class.h"
#include "objectmodel/constructor.h"
#include "objectmodel/containers.h"
#include "objectmodel/inspector.h"
#include "objectmodel/primitives.h"
#include "objectmodel/toolkit.h"
#include "support/harness.h"
#include "support/input.h"

#include <QDataStream>
#include <QIODevice>

using namespace Vorkel;

namespace {

/// Qt reads texts in steps of up to 1 MiB, whatever length is announced.
constexpr qint64 StepBytes = 8 * 1024 * 1024;
constexpr qint64 BytesPerByte = 64;

/// An object of one of the standard shapes; the same for the same numbers.
SharedPtr<Object> makeObject(int shape, int count)
{
    const Inspector *inspector = Inspector::self();
    switch (shape) {
    case 0:
        return inspector->createPrimitive(QStringList(count, QStringLiteral("text")));
    case 1:
        return wrap(QStringList(count, QStringLiteral("text")));
    case 2:
        return inspector->createPrimitive("text")->dereference();
    case 3:
        return Toolkit::newShape(count);
    case 4:
        return inspector->voidObject();
    default:
        const Class *ofClass = inspector->type(count);
        const Constructor *constructor = ofClass->constructor(0);
        const SharedPtr<Object> made =
                constructor && constructor->signature().isEmpty() ? constructor->construct({}) : nullptr;
        return made ? made : inspector->createNull(ofClass);
    }
}

QByteArray written(const Object &object, bool whole)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_2_1);
    whole ? object.writeObject(stream) : object.streamObject(stream);
    return bytes;
}

void readInto(Object *object, const QByteArray &bytes, bool whole)
{
    QDataStream stream(bytes);
    stream.setVersion(QDataStream::Qt_2_1);
    whole ? object->readObject(stream) : object->objectFromStream(stream);
}

} // namespace

/// The input is the value of an object as it travels, behind three bytes: the object's shape, a count, and
/// whether it comes with its type. What was read and written is read and written again as the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Harness::start();
    Input input(data, size);
    const int shape = input.below(6);
    const int count = input.below(16);
    const bool whole = input.below(2) != 0;
    const SharedPtr<Object> first = makeObject(shape, count);
    const SharedPtr<Object> second = makeObject(shape, count);
    const QByteArray bytes = input.rest();
    const Harness::MemoryPeak peak;
    readInto(first.get(), bytes, whole);
    FUZZ_CHECK(peak.bytes() <= StepBytes + BytesPerByte * bytes.size());
    const QByteArray once = written(*first, whole);
    readInto(second.get(), once, whole);
    FUZZ_CHECK(written(*second, whole) == once);
    (void)first->toString();
    (void)first->toDebugString();
    (void)first->compare(second);
    return 0;
}
