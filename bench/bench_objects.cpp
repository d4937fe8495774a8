// What it costs to read a property of a widget through a real program with the hook inside: two calls,
// beside two calls of the smallest function that there is. All on one core, a slice each in turn, the
// client the same few bytes written and read.

#include "blockingrunner.h"
#include "measure.h"
#include "processes.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QIODevice>
#include <QtEndian>

#include <array>

#include <sys/socket.h>

namespace {

using namespace Bench;

constexpr int Rounds = 300;
constexpr int PairsPerSlice = 50;
constexpr double Limit = 1.15;
constexpr quint32 CallType = 1;
constexpr quint32 SendType = 3;

/// The bytes of a message to the program, as the protocol has them.
QByteArray message(quint32 type, const QString &function, const QVariantList &arguments)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_3_3);
    stream << quint32(0) << quint32(BlockingRunner::Program) << type << quint32(1) << qint32(7) << quint32(0)
           << function << quint32(arguments.size());
    for (const QVariant &argument : arguments)
        stream << argument;
    qToBigEndian(static_cast<quint32>(bytes.size()), bytes.data());
    return bytes;
}

/// Sends a call, and gives where its reply ends in `buffer`.
template <std::size_t Size>
const char *exchange(int descriptor, const QByteArray &call, std::array<char, Size> &buffer)
{
    sendAll(descriptor, call.constData(), static_cast<std::size_t>(call.size()));
    std::size_t length = 0;
    do {
        const ssize_t count = ::recv(descriptor, buffer.data() + length, buffer.size() - length, 0);
        if (count <= 0)
            fail("receive");
        length += static_cast<std::size_t>(count);
    } while (length < 4 || length < qFromBigEndian<quint32>(buffer.data()));
    return buffer.data() + length;
}

/// The object number in the handle that a reply ends with: digits in UTF-16, behind their length.
int objectIn(const char *handle)
{
    int number = 0;
    for (handle += 1; *handle != ','; handle += 2)
        number = number * 10 + (*handle - '0');
    return number;
}

/// Where the text of a reply that holds a single one begins: header, count, type, length.
constexpr std::size_t ReplyText = 24 + 4 + 4 + 4;

/// A property of an object, read over and over.
class Reading
{
public:
    Reading(int descriptor, int object, int property)
        : m_descriptor(descriptor)
        , m_getProperty(message(CallType, QStringLiteral("getProperty"), { object, property }))
        , m_objectToString(message(CallType, QStringLiteral("objectToString"), { 0 }))
        , m_destroyed(message(SendType, QStringLiteral("remoteObjectDestroyed"), { 0 }))
    {
    }

    /// Microseconds for a value and its text; handles are given back meanwhile or afterwards.
    double slice(bool givingBack)
    {
        std::array<char, 4096> buffer;
        std::vector<int> values;
        const double time = seconds([&] {
            for (int i = 0; i < PairsPerSlice; ++i) {
                exchange(m_descriptor, m_getProperty, buffer);
                const int value = objectIn(buffer.data() + ReplyText);
                setLast(m_objectToString, value);
                exchange(m_descriptor, m_objectToString, buffer);
                if (givingBack)
                    giveBack(value);
                else
                    values.push_back(value);
            }
        });
        for (const int value : values)
            giveBack(value);
        return time / PairsPerSlice * 1e6;
    }

private:
    static void setLast(QByteArray &bytes, int number)
    {
        qToBigEndian(number, bytes.data() + bytes.size() - sizeof number);
    }

    void giveBack(int value)
    {
        setLast(m_destroyed, value);
        sendAll(m_descriptor, m_destroyed.constData(), static_cast<std::size_t>(m_destroyed.size()));
    }

    int m_descriptor;
    QByteArray m_getProperty;
    QByteArray m_objectToString;
    QByteArray m_destroyed;
};

/// Microseconds for two calls of the function that does least.
double bareSlice(int descriptor)
{
    static const QByteArray call = message(CallType, QStringLiteral("getPID"), {});
    std::array<char, 4096> buffer;
    return seconds([&] {
               for (int i = 0; i < 2 * PairsPerSlice; ++i)
                   exchange(descriptor, call, buffer);
           })
            / PairsPerSlice * 1e6;
}

/// The index of a property among those of an object.
int propertyIndex(BlockingRunner &runner, int object, const QString &name)
{
    const QStringList request { QString::number(object) };
    const QStringList lines =
            runner.call(QStringLiteral("fetchObjectComponents"), { request }).toStringList();
    for (int i = 0; i < lines.size(); ++i) {
        if (lines.at(i).section(u'#', 1).remove(u'+').startsWith(name + u'='))
            return i;
    }
    std::fprintf(stderr, "the window has no %s\n", qPrintable(name));
    std::exit(1);
}

} // namespace

int main(int argc, char *argv[])
{
    pinTo(cores().back());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "*.warning=false");
    const QCoreApplication application(argc, argv);
    HookedProgram program({ BENCH_EXAMPLE });
    BlockingRunner &runner = program.runner();
    const int descriptor = runner.descriptor();
    const QStringList top = runner.call(QStringLiteral("objects"), { 0 }).toStringList();
    const int window = top.value(0).section(u',', 0, 0).toInt();

    const char *names[] = { "windowTitle", "width", "geometry" };
    std::vector<Reading> readings;
    for (const char *name : names)
        readings.emplace_back(descriptor, window, propertyIndex(runner, window, QLatin1String(name)));
    std::vector<std::string> labels = { "two bare calls" };
    std::vector<std::function<double()>> slices = { [&] { return bareSlice(descriptor); } };
    for (std::size_t i = 0; i < readings.size(); ++i) {
        labels.push_back(std::string(names[i]) + " as text");
        slices.push_back([&, i] { return readings[i].slice(false); });
    }
    labels.push_back(labels[1] + ", handle given back");
    slices.push_back([&] { return readings[0].slice(true); });

    const std::vector<Samples> samples = alternate(Rounds, slices);
    Table table({ "two calls", "us", "x bare" });
    for (std::size_t i = 0; i < samples.size(); ++i)
        table.add({ labels[i], number(samples[i].median(), 1), number(samples[i].ratioTo(samples[0]), 3) });
    table.print();
    printTarget("a text of a widget over two bare calls", samples[1].ratioTo(samples[0]), Limit, 3);
    return 0;
}
