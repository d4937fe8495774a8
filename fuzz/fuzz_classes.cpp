#include "classrecords.h"
#include "support/harness.h"
#include "support/input.h"

using namespace Vorkel::Runner;

namespace {

/// Qt reads texts in steps of up to 1 MiB, whatever length is announced.
constexpr qint64 StepBytes = 8 * 1024 * 1024;
/// The most that a record holds for each byte that it takes on the wire, growth of its lists included.
constexpr qint64 BytesPerByte = 64;

} // namespace

/// The input is what a program says of its classes. Memory stays within a multiple of it, and however the
/// classes refer to each other, every question about them has an end.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Harness::start();
    const QByteArray bytes = Input(data, size).rest();
    const Harness::MemoryPeak peak;
    const auto parsed = ClassRecords::parse(bytes);
    FUZZ_CHECK(peak.bytes() <= StepBytes + BytesPerByte * bytes.size());
    const ClassRecords &records = parsed.value();
    FUZZ_CHECK(parsed.isOk() || records.classes().empty());
    for (const ClassRecord &record : records.classes()) {
        const QStringList properties = records.propertyNames(&record);
        const QStringList methods = records.methodNames(&record);
        for (const PropertyRecord &property : record.properties) {
            FUZZ_CHECK(properties.contains(property.name) && records.property(&record, property.name));
            if (const EnumRecord *enumerator = records.enumOf(property.type))
                (void)toText(*enumerator, property.id);
            (void)toText(property);
        }
        for (const MethodRecord &method : record.methods) {
            FUZZ_CHECK(methods.contains(method.name) && !records.methods(&record, method.name).isEmpty());
            (void)toText(method);
        }
    }
    return 0;
}
