#include "serverlib/asyncipc.h"
#include "serverlib/ipchandshake.h"
#include "support/endpoints.h"
#include "support/messagescript.h"

#include <QBitArray>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRect>
#include <QtEndian>

#include <cstdio>
#include <functional>

using namespace Vorkel;

namespace {

using Messages = QList<QByteArray>;

class NobodyHears : public ResponseListener<ArgumentList>
{
public:
    void response(const FunctionCallResult<ArgumentList> &) override {}
};

QString seedFolder;

void writeSeed(const char *target, const QByteArray &name, const QByteArray &bytes)
{
    const QString folder = seedFolder + QLatin1Char('/') + QLatin1String(target);
    QFile file(folder + QLatin1Char('/') + QLatin1String(name));
    if (!QDir().mkpath(folder) || !file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("Cannot write %s", qPrintable(file.fileName()));
}

QByteArray word(qsizetype value)
{
    QByteArray bytes(2, '\0');
    qToBigEndian(static_cast<quint16>(value), bytes.data());
    return bytes;
}

QByteArray bytesOf(std::initializer_list<int> values)
{
    QByteArray bytes;
    for (const int value : values)
        bytes.append(static_cast<char>(value));
    return bytes;
}

/// What leaves the near end of a line while `act` uses it.
Messages sentBy(const std::function<void(Line &)> &act)
{
    Line line;
    Messages sent;
    QObject::connect(line.far.get(), &AsyncMessageChannel::messageArrived, line.far.get(),
                     [&](const QByteArray &message) { sent.append(message); });
    act(line);
    return sent;
}

Messages sentByPeer(const std::function<void(AsyncIPC &)> &act)
{
    return sentBy([&](Line &line) {
        AsyncIPC ipc(line.near.release(), { MessageScript::PeerId, 0, 0, QString() }, nullptr, nullptr);
        act(ipc);
    });
}

/// The same message in pieces of at most `length` bytes of body.
Messages recut(const QByteArray &message, qsizetype length)
{
    Protocol::Header header = Protocol::readHeader(message.constData());
    const QByteArray body = message.mid(Protocol::HeaderLength);
    const FUInt32 lastFlags = header.flags;
    Messages pieces;
    for (qsizetype offset = 0; offset < body.size(); offset += length) {
        const bool isLast = offset + length >= body.size();
        header.flags = isLast ? lastFlags : lastFlags | Protocol::MoreChunks;
        pieces.append(wholeMessage(header, body.mid(offset, length)));
    }
    return pieces;
}

Messages interleaved(const Messages &one, const Messages &other)
{
    Messages result;
    for (qsizetype i = 0; i < qMax(one.size(), other.size()); ++i)
        result += one.mid(i, 1) + other.mid(i, 1);
    return result;
}

QByteArray largeText()
{
    QByteArray text;
    for (int i = 0; text.size() <= Protocol::ChunkLength; ++i)
        text += QByteArray::number(i % 97 * 7919) + ' ';
    return text;
}

/// What really goes over a connection, by name.
QMap<QByteArray, Messages> traffic()
{
    const FUInt32 own = MessageScript::OwnId;
    const ClientData data { own, 1, 4, QStringLiteral("application") };
    const auto refusal = FunctionCallResult<ClientData>::failure(QStringLiteral("Unknown runner"));
    const ArgumentList small { QVariant(QStringLiteral("name")), QVariant(42), QVariant(true) };
    NobodyHears nobody;
    QMap<QByteArray, Messages> result;
    result["handshake"] =
            sentBy([&](Line &line) { (void)IPCHandshake::sendHandshake(line.near.get(), data); });
    result["refusal"] =
            sentBy([&](Line &line) { (void)IPCHandshake::sendHandshake(line.near.get(), refusal); });
    result["call"] = sentByPeer(
            [&](AsyncIPC &ipc) { (void)ipc.asyncCall(own, QStringLiteral("getPID"), {}, &nobody); });
    result["send"] = sentByPeer([&](AsyncIPC &ipc) { ipc.send(own, QStringLiteral("initDone"), small); });
    result["broadcast"] = sentByPeer([&](AsyncIPC &ipc) {
        ipc.send(Protocol::BroadcastAddress, QStringLiteral("setRunnerId"), small);
    });
    result["reply"] = sentByPeer([&](AsyncIPC &ipc) { ipc.callReply(own, 1, small); });
    result["errorreply"] = sentByPeer([&](AsyncIPC &ipc) {
        ipc.callReply(own, 1, FunctionCallResult<ArgumentList>::failure(QStringLiteral("Unknown object")));
    });
    const Messages deflated = sentByPeer([&](AsyncIPC &ipc) {
        (void)ipc.asyncCall(own, QStringLiteral("setData"), { QVariant(largeText()) }, &nobody);
    });
    result["deflated"] = deflated;
    result["chunks"] = recut(deflated.first(), deflated.first().size() / 4);
    result["interleaved"] = interleaved(result["chunks"], recut(result["send"].first(), 16));
    return result;
}

/// Streams for `fuzz_framing`, each behind another plan.
void writeFraming(const QMap<QByteArray, Messages> &all)
{
    const QByteArray plans[] = {
        QByteArray(1, '\xF8'), // all of it at once
        QByteArray(63, '\x09'), // by the notifier, byte by byte
        QByteArray(40, '\x2A') + '\x05' + QByteArray(2, '\x02'), // waits for five at a time, then the end
        bytesOf({ 0x80, 0x07, 0x0E, 0x80, 0x03, 0x1E, 0x82, 0x44, 0x80, 0x26, 0x80, 0x0F }), // a bit of all
    };
    int next = 0;
    for (auto entry = all.cbegin(); entry != all.cend(); ++entry) {
        QByteArray stream;
        for (QByteArray message : entry.value()) {
            qToBigEndian(static_cast<quint32>(message.size()), message.data());
            stream += message;
        }
        const QByteArray &plan = plans[next++ % std::size(plans)];
        writeSeed("fuzz_framing", entry.key(), stream + plan + bytesOf({ int(plan.size()) }));
    }
}

void writeHandshakes(const QMap<QByteArray, Messages> &all)
{
    for (const char *name : { "handshake", "refusal" }) {
        const QByteArray body = all[name].first().mid(AsyncMessageChannel::MessagePrefixLength);
        writeSeed("fuzz_handshake", QByteArray(name) + "_heard_connecting", '\0' + body);
        writeSeed("fuzz_handshake", QByteArray(name) + "_heard_accepting", '\1' + body);
    }
}

template <typename Table>
int indexIn(const Table &table, FUInt32 value)
{
    return static_cast<int>(std::find(std::begin(table), std::end(table), value) - std::begin(table));
}

QByteArray deliverySteps(const Messages &messages)
{
    QByteArray script;
    for (const QByteArray &message : messages) {
        const Protocol::Header header = Protocol::readHeader(message.constData());
        const QByteArray body = message.mid(Protocol::HeaderLength);
        script += bytesOf({ MessageScript::Deliver, indexIn(MessageScript::Addresses, header.destination),
                            indexIn(MessageScript::Types, header.type),
                            indexIn(MessageScript::Addresses, header.sender), header.transId & 0xFF,
                            static_cast<int>(header.flags) })
                + word(body.size()) + body;
    }
    return script;
}

void writeScripts(const QMap<QByteArray, Messages> &all)
{
    using namespace MessageScript;
    for (const char *name : { "call", "send", "broadcast", "deflated", "chunks", "interleaved" })
        writeSeed("fuzz_messages", name, deliverySteps(all[name]) + bytesOf({ Answer, Answer }));
    // clang-format off
    const QMap<QByteArray, QByteArray> scripts {
        { "reply",      bytesOf({ OwnCall, 0, Claim }) + deliverySteps(all["reply"]) },
        { "errorreply", bytesOf({ OwnCall, 0, Hold }) + deliverySteps(all["errorreply"]) },
        { "timeout",    bytesOf({ OwnCall, 1, Hold, FireTimer, 0, Answer, AnswerHeld, 1 }) },
        { "cancelled",  bytesOf({ OwnCall, 1, Claim, CancelCall, 0, AnswerHeld, 1 }) },
        { "nested",     bytesOf({ PeerCall, 2, CallAndAnswer, 2, CallAndAnswer, 2, Answer, Answer }) },
        { "closed",     bytesOf({ OwnCall, 1, Hold, ChannelCloses, 0, Answer, OwnCall, 0 }) },
        { "destroyed",  bytesOf({ OwnCall, 1, Hold, PeerCall, 2, DestroyAndAnswer, 0, Answer }) },
        { "large",      bytesOf({ OwnCall, 1, AnswerWith, NoiseDetail, PeerSend, FirstLargeDetail }) },
    };
    // clang-format on
    for (auto script = scripts.cbegin(); script != scripts.cend(); ++script)
        writeSeed("fuzz_messages", script.key(), script.value());
}

void writeInflates(const QMap<QByteArray, Messages> &all)
{
    enum { RawStream, MutatedStream };
    enum { None, ChangeByte, CutShort, Drop, Duplicate, Swap };
    const int call = 0;
    QByteArray pieces;
    const Messages chunks = all["chunks"];
    for (const QByteArray &chunk : chunks.first(chunks.size() - 1))
        pieces += word(chunk.size() - Protocol::HeaderLength) + chunk.mid(Protocol::HeaderLength);
    pieces += chunks.last().mid(Protocol::HeaderLength);
    writeSeed("fuzz_inflate", "call", bytesOf({ RawStream, call, Protocol::Compressed }) + pieces);
    writeSeed("fuzz_inflate", "send", bytesOf({ RawStream, 2, Protocol::Compressed }) + pieces);
    const QByteArray whole = all["deflated"].first().mid(Protocol::HeaderLength);
    writeSeed("fuzz_inflate", "one_piece",
              bytesOf({ RawStream, call, Protocol::Compressed }) + word(0) + whole);
    writeSeed("fuzz_inflate", "plain",
              bytesOf({ RawStream, call, 0 }) + all["call"].first().mid(Protocol::HeaderLength));
    const QByteArray pattern = "a text that comes back and back";
    writeSeed("fuzz_inflate", "unharmed", bytesOf({ MutatedStream, None, 0, 0, 0 }) + pattern);
    writeSeed("fuzz_inflate", "changed", bytesOf({ MutatedStream, ChangeByte, 0, 40, 1 }) + pattern);
    writeSeed("fuzz_inflate", "cut", bytesOf({ MutatedStream, CutShort, 0, 30, 0 }) + pattern);
    writeSeed("fuzz_inflate", "noise",
              bytesOf({ MutatedStream, Drop, 0, 1, 0 }) + whole + QByteArray(whole).replace('a', 'b'));
}

QByteArray argumentBytes(const ArgumentList &arguments)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(Protocol::StreamVersion);
    writeArguments(stream, arguments);
    return bytes;
}

void writeArgumentLists()
{
    const QString text = QStringLiteral("text");
    const QVariantList numbers { 1, 2u, 3.5, true, qlonglong(-4), qulonglong(5) };
    const QVariantMap map { { text, numbers }, { QString(), QVariantMap() } };
    const QDate date(2024, 2, 29);
    const QTime time(12, 30);
    const QDateTime moment(date, time, Qt::UTC);
    QVariant deep;
    for (int i = 0; i < MaxArgumentDepth; ++i)
        deep = QVariantList { deep };
    // clang-format off
    const QMap<QByteArray, ArgumentList> lists {
        { "empty",   {} },
        { "invalid", { QVariant() } },
        { "texts",   { QVariant(QString()), QVariant(QLatin1String("")), QVariant(text) } },
        { "numbers", { numbers[0], numbers[1], numbers[2], numbers[3], numbers[4], numbers[5] } },
        { "shapes",  { QVariant(QRect(1, 2, 3, 4)), QVariant(QSize(5, 6)), QVariant(QPoint(7, 8)) } },
        { "times",   { QVariant(date), QVariant(time), QVariant(moment) } },
        { "bytes",   { QVariant(QByteArray("bytes")), QVariant(QBitArray(11, true)) } },
        { "lists",   { QVariant(QStringList { text, text }), QVariant(numbers) } },
        { "maps",    { QVariant(map) } },
        { "deep",    { deep } },
    };
    // clang-format on
    for (auto list = lists.cbegin(); list != lists.cend(); ++list)
        writeSeed("fuzz_arguments", list.key(), argumentBytes(list.value()));
}

void writeNames()
{
    const auto nested = [](int depth) {
        return QByteArray("{a=").repeated(depth) + "{}" + QByteArray("}").repeated(depth);
    };
    // clang-format off
    const QMap<QByteArray, QByteArray> names {
        { "properties",   "{type='QPushButton' text='OK' visible='1' occurrence='2'}" },
        { "operators",    "{a='x' b~='^x+$' c?='x*[^]a\\]]?'}" },
        { "blanks",       " { na\tme = 'x'b ?='y' } " },
        { "escapes",      "{a='it\\'s' b='\\\\' \xe2\x82\xac='\xf0\x9f\x98\x80'}" },
        { "odd_keys",     "{=='1' ~='2' '='3' {='4' >}='5'}" },
        { "nested",       "{text='OK' window~={title='Main' window={name='unnamed'}} buddy={text='L'}}" },
        { "deep",         nested(20) },
        { "repeated_key", "{a={} a='1' a={b={}}}" },
        { "lenient",      "{a={b=} c='1'}" },
        { "no_value",     "{a=}" },
        { "no_quote",     "{a={b={c='}}}" },
        { "half_operator", "{a~'x'}" },
        { "more_behind",  "{a='x'}}" },
        { "hierarchical", "a\\.b.c" },
    };
    // clang-format on
    for (auto name = names.cbegin(); name != names.cend(); ++name)
        writeSeed("fuzz_objectname", name.key(), '\x06' + name.value());
    const QString wide = QString::fromUtf8(names["escapes"]);
    writeSeed("fuzz_objectname", "utf16",
              '\x07' + QByteArray(reinterpret_cast<const char *>(wide.utf16()), wide.size() * 2));
}

void writeMaps()
{
    // clang-format off
    const QMap<QByteArray, QByteArray> maps {
        { "references",  ":W\t{title='Main' type='QWidget'}\n:W.OK_B\t{text='OK' type='B' window=':W'}\n" },
        { "nested",      ":W\t{title='Main'}\n:B\t{text='OK' window={title='Main'} buddy={text='L'}}\n" },
        { "old",         ":W\t{caption='M'}\n:new\t{window=':W'}\n:old\t{windowCaption='M'}\n" },
        { "hierarchical", ":a\ta\\b\n:b\ta\\\\b\n:c\ta.b\\.c\n" },
        { "escapes",     ":\\t\\n\\r\\\\\t{a='\\t\\x\\\\'}\n" },
        { "equal",       ":a\t{a='1' b='2'}\n:b\t{b='2'  a='1'}\n:c\t{a='1' b='2'}\n" },
        { "numbers",     ":x_\tx\n:x__2\ty\n:z\t{text={text='x'} buddy={text='x'}}\n" },
        { "circle",      ":A\t{buddy=':B'}\n:B\t{buddy=':A'}\n:C\t{window=':A' a={buddy=':B'}}\n" },
        { "format",      ":x_\t{text='\xe2\x80\x8ex'}\n:y\t{buddy={text='\xe2\x80\x8fx'}}\n" },
        { "lines",       "\n#\n:a\n\t\n:a\t}\r\n:b\t{a\n:c\t{\n" },
    };
    // clang-format on
    for (auto map = maps.cbegin(); map != maps.cend(); ++map)
        writeSeed("fuzz_objectmap", map.key(), map.value());
}

} // namespace

/// Writes the seeds of all targets below the folder that it is given.
int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("usage: makeseeds FOLDER\n", stderr);
        return 2;
    }
    seedFolder = QString::fromLocal8Bit(argv[1]);
    const QMap<QByteArray, Messages> all = traffic();
    writeFraming(all);
    writeHandshakes(all);
    writeScripts(all);
    writeInflates(all);
    writeArgumentLists();
    writeNames();
    writeMaps();
    return 0;
}
