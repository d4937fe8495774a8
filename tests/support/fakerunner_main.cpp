#include "serverlib/ipchandshake.h"
#include "support/fakerunner.h"

#include <QByteArrayList>

#include <cstdio>

#include <unistd.h>

// The runner's end as a process: prints "port N", then carries out the orders it was given, one by one, and
// ends. What it hears it prints, one line each.

namespace {

FUInt32 aut = 0; // the address that the handshake assigned

void say(const QByteArray &line)
{
    std::printf("%s\n", line.constData());
    std::fflush(stdout);
}

// "NAME:ARGUMENT:...", where a decimal number is an int, 0x... a byte array and the rest a text.
QByteArray message(Bytes::Type type, const QByteArray &words, int transId = 0)
{
    QByteArrayList parts = words.split(':');
    const QString name = QString::fromUtf8(parts.takeFirst());
    Vorkel::ArgumentList arguments;
    for (const QByteArray &part : std::as_const(parts)) {
        bool isNumber = false;
        const int number = part.toInt(&isNumber);
        arguments << (isNumber                        ? QVariant(number)
                              : part.startsWith("0x") ? QVariant(QByteArray::fromHex(part.mid(2)))
                                                      : QVariant(QString::fromUtf8(part)));
    }
    return Bytes::message({ aut, type, 1, transId, 0 }, Bytes::invocation(name, arguments));
}

// Reads until a message is heard that holds `words`.
bool expect(FakeRunner &runner, const QByteArray &words)
{
    QByteArray line;
    do {
        const QByteArray bytes = runner.readMessage();
        if (bytes.isEmpty())
            return false;
        line = Bytes::told(bytes).toUtf8();
    } while (!line.contains(words));
    say(line);
    return true;
}

bool shakeHands(FakeRunner &runner, const QByteArray &answer)
{
    auto data = Vorkel::IPCHandshake::processHanshake(runner.readMessage()).value();
    say(QStringLiteral("announced %1 %2 %3 %4")
                .arg(data.id)
                .arg(data.runnerId)
                .arg(data.clientType)
                .arg(data.name)
                .toUtf8());
    aut = data.id = answer.isEmpty() ? data.id : answer.toUInt();
    return runner.write(Bytes::handshake(data) + Bytes::message({ 0xFFFFFFFF, Bytes::Ping }));
}

bool call(FakeRunner &runner, const QByteArray &words)
{
    static int lastCall = 0;
    return runner.write(message(Bytes::Call, words, ++lastCall))
            && expect(runner, " #" + QByteArray::number(lastCall) + " (");
}

bool flood(FakeRunner &runner, const QByteArray &words)
{
    while (runner.write(message(Bytes::Call, words))) {
    }
    return true;
}

// Whole messages, every other of which gets as far as the types and the bodies.
bool garbage(FakeRunner &runner, const QByteArray &count)
{
    const QByteArray noise = Bytes::noise(100000);
    for (int i = 0; i < count.toInt(); ++i) {
        const auto number = [&](int offset) { return static_cast<quint8>(noise.at(7 * i + offset)); };
        const QByteArray body = noise.mid(19 * i, number(0));
        const auto type = static_cast<FUInt32>(number(1)) % 4;
        if (!runner.write(i % 2 ? Bytes::framed(body) : Bytes::message({ aut, type, 1, i, number(2) }, body)))
            return false;
    }
    return true;
}

bool sit()
{
    say("sitting");
    char byte;
    while (::read(STDIN_FILENO, &byte, 1) > 0) {
    }
    return true;
}

struct Order
{
    const char *name;
    bool (*carryOut)(FakeRunner &runner, const QByteArray &words);
};

// clang-format off
constexpr Order Orders[] = {
    { "await",     [](FakeRunner &r, const QByteArray &w)  { return r.connection() ? r.awaitBytes(r.connection(), w.toInt()) : r.awaitConnection(); } },
    { "accept",    [](FakeRunner &r, const QByteArray &)   { return r.accept(); } },
    { "handshake", shakeHands },
    { "expect",    expect },
    { "send",      [](FakeRunner &r, const QByteArray &w)  { return r.write(message(Bytes::Send, w)); } },
    { "call",      call },
    { "half",      [](FakeRunner &r, const QByteArray &w)  { return r.write(message(Bytes::Call, w).chopped(9)); } },
    { "flood",     flood },
    { "raw",       [](FakeRunner &r, const QByteArray &w)  { return r.write(QByteArray::fromHex(w)); } },
    { "garbage",   garbage },
    { "slow",      [](FakeRunner &r, const QByteArray &)   { r.setSlow(true); return true; } },
    { "drain",     [](FakeRunner &r, const QByteArray &)   { return r.readToEnd(); } },
    { "reset",     [](FakeRunner &r, const QByteArray &)   { r.reset(); return true; } },
    { "sit",       [](FakeRunner &, const QByteArray &)    { return sit(); } },
};
// clang-format on

bool carryOut(FakeRunner &runner, const QByteArray &order)
{
    const qsizetype end = order.indexOf('=');
    const QByteArray name = end < 0 ? order : order.first(end);
    for (const Order &known : Orders) {
        if (name == known.name)
            return known.carryOut(runner, end < 0 ? QByteArray() : order.mid(end + 1));
    }
    return false;
}

} // namespace

int main(int argc, char *argv[])
{
    FakeRunner runner;
    say("port " + QByteArray::number(runner.port()));
    for (int i = 1; i < argc; ++i) {
        if (!carryOut(runner, argv[i])) {
            say(QByteArray("failed ") + argv[i]);
            return 1;
        }
    }
    return 0;
}
