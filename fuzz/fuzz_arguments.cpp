#include "serverlib/argumentlist.h"
#include "serverlib/protocol.h"
#include "support/harness.h"
#include "support/input.h"

#include <QDataStream>
#include <QIODevice>

using Vorkel::ArgumentList;

namespace {

/// Qt reads texts and bit arrays in steps of up to 8 MiB, whatever length is announced.
constexpr qint64 StepBytes = 20 * 1024 * 1024;
/// The most that a value holds for each byte that it takes on the wire, growth of the lists included.
constexpr qint64 BytesPerByte = 64;

ArgumentList read(const QByteArray &bytes, QDataStream::Status *status)
{
    QDataStream stream(bytes);
    stream.setVersion(Vorkel::Protocol::StreamVersion);
    ArgumentList result = Vorkel::readArguments(stream);
    *status = stream.status();
    return result;
}

QByteArray write(const ArgumentList &arguments)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(Vorkel::Protocol::StreamVersion);
    Vorkel::writeArguments(stream, arguments);
    FUZZ_CHECK(stream.status() == QDataStream::Ok);
    return bytes;
}

} // namespace

/// The input is a list of arguments as it stands on the wire. What was read, written and read again is the
/// same, compared as bytes because not every number equals itself.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Harness::start();
    const QByteArray bytes = Input(data, size).rest();
    const Harness::MemoryPeak peak;
    QDataStream::Status status = QDataStream::Ok;
    const ArgumentList first = read(bytes, &status);
    FUZZ_CHECK(peak.bytes() <= StepBytes + BytesPerByte * bytes.size());
    FUZZ_CHECK(status == QDataStream::Ok || first.isEmpty());
    const QByteArray written = write(first);
    const ArgumentList second = read(written, &status);
    FUZZ_CHECK(status == QDataStream::Ok);
    FUZZ_CHECK(second.size() == first.size());
    FUZZ_CHECK(write(second) == written);
    return 0;
}
