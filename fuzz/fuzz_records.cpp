#include "objectmodel/constructor.h"
#include "objectmodel/enum.h"
#include "objectmodel/event.h"
#include "objectmodel/inspector.h"
#include "objectmodel/method.h"
#include "objectmodel/primitives.h"
#include "objectmodel/property.h"
#include "objectmodel/toolkit.h"
#include "support/harness.h"
#include "support/input.h"

#include <QDataStream>
#include <QIODevice>

using namespace Vorkel;

namespace {

/// Qt reads texts in steps of up to 1 MiB, whatever length is announced.
constexpr qint64 StepBytes = 8 * 1024 * 1024;
/// The most that a record holds for each byte that it takes on the wire, growth of its lists included.
constexpr qint64 BytesPerByte = 64;

std::unique_ptr<Serializable> makeRecord(int kind)
{
    switch (kind) {
    case 0:
        return std::make_unique<ObjectAttribute>();
    case 1:
        return std::make_unique<Argument>();
    case 2:
        return std::make_unique<Signature>();
    case 3:
        return std::make_unique<Method>(nullptr, Argument(), QString(), Signature(), false, -1);
    case 4:
        return std::make_unique<Property>(nullptr, Argument(), QString(), 0, -1);
    case 5:
        return std::make_unique<Constructor>(Toolkit::shapeClass());
    case 6:
        return std::make_unique<Event>(Toolkit::shapeClass(), QString(), Signature(), false, -1);
    default:
        return std::make_unique<Enum>(Toolkit::shapeClass());
    }
}

QByteArray written(const Serializable &record)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_2_1);
    record.writeObject(stream);
    return bytes;
}

void readInto(Serializable *record, const QByteArray &bytes)
{
    QDataStream stream(bytes);
    stream.setVersion(QDataStream::Qt_2_1);
    record->readObject(stream);
}

/// What is done with records that came from somewhere.
void use(const Serializable &record)
{
    if (const auto *argument = dynamic_cast<const Argument *>(&record))
        (void)(argument->toString() + argument->toTypeString(true));
    if (const auto *signature = dynamic_cast<const Signature *>(&record)) {
        ObjectList converted;
        const ObjectList arguments(std::min<std::size_t>(static_cast<std::size_t>(signature->size()), 8),
                                   wrap(7));
        if (arguments.size() == static_cast<std::size_t>(signature->size()))
            (void)convertArguments(*signature, arguments, &converted);
    }
    if (const auto *method = dynamic_cast<const Method *>(&record))
        (void)method->toString();
    if (const auto *property = dynamic_cast<const Property *>(&record))
        (void)property->toString();
    if (const auto *constructor = dynamic_cast<const Constructor *>(&record))
        (void)constructor->toString();
    if (const auto *enumerator = dynamic_cast<const Enum *>(&record)) {
        FUZZ_CHECK(enumerator->key(enumerator->count()).isEmpty());
        (void)enumerator->valueToKey(enumerator->value(enumerator->count() / 2), nullptr);
        (void)enumerator->value(enumerator->key(0), nullptr);
        (void)enumerator->detectIsMask();
    }
}

} // namespace

/// The input is a record of the object model as it travels, behind a byte that says which. What was read and
/// written is read and written again as the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Harness::start();
    Input input(data, size);
    const int kind = input.below(8);
    const auto first = makeRecord(kind);
    const auto second = makeRecord(kind);
    const QByteArray bytes = input.rest();
    const Harness::MemoryPeak peak;
    readInto(first.get(), bytes);
    FUZZ_CHECK(peak.bytes() <= StepBytes + BytesPerByte * bytes.size());
    use(*first);
    const QByteArray once = written(*first);
    readInto(second.get(), once);
    FUZZ_CHECK(written(*second) == once);
    return 0;
}
