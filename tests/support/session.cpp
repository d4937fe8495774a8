#include "support/session.h"

#include "serverlib/ipchandshake.h"

#include <algorithm>

using namespace Qt::StringLiterals;

struct Session::Order
{
    const char *name;
    bool (*carryOut)(Session &session, const QByteArray &words);
};

void Session::start(const Variables &changes, const QStringList &command)
{
    Variables variables { { u"LD_PRELOAD"_s, built(u"../lib/libvorkelqtpreload.so"_s) },
                          { u"VORKEL_RUNNERID"_s, u"7"_s },
                          { u"VORKEL_APPID"_s, u"9"_s },
                          { u"VORKEL_RECORD"_s, u"0"_s },
                          { u"VORKEL_PORT"_s, QString::number(runner.port()) } };
    variables.insert(changes);
    QProcessEnvironment environment;
    for (auto variable = variables.cbegin(); variable != variables.cend(); ++variable) {
        if (!variable->isNull())
            environment.insert(variable.key(), *variable);
    }
    program.launch(command.first(), command.mid(1), environment);
}

QString Session::carryOut(const QString &orders)
{
    // Words of "call", "half" and "send" are "NAME:ARGUMENT:...".
    // clang-format off
    static constexpr Order Orders[] = {
        { "await",     [](Session &s, const QByteArray &w) { return s.runner.connection() ? s.runner.awaitBytes(s.runner.connection(), w.toInt()) : s.runner.awaitConnection(); } },
        { "accept",    [](Session &s, const QByteArray &)  { return s.runner.accept(); } },
        { "handshake", [](Session &s, const QByteArray &w) { return s.shakeHands(w); } },
        { "expect",    [](Session &s, const QByteArray &w) { return s.expect(w); } },
        { "send",      [](Session &s, const QByteArray &w) { return s.runner.write(s.message(Bytes::Send, w)); } },
        { "call",      [](Session &s, const QByteArray &w) { return s.call(w); } },
        { "half",      [](Session &s, const QByteArray &w) { return s.runner.write(s.message(Bytes::Call, w).chopped(9)); } },
        { "raw",       [](Session &s, const QByteArray &w) { return s.runner.write(QByteArray::fromHex(w)); } },
        { "slow",      [](Session &s, const QByteArray &)  { s.runner.setSlow(true); return true; } },
        { "drain",     [](Session &s, const QByteArray &)  { return s.runner.readToEnd(); } },
        { "reset",     [](Session &s, const QByteArray &)  { s.runner.reset(); return true; } },
        { "close",     [](Session &s, const QByteArray &)  { s.runner.refuse(); s.runner.close(); return true; } },
    };
    // clang-format on
    for (const QString &order : orders.split(u' ')) {
        const QByteArray name = order.section(u'=', 0, 0).toUtf8();
        const auto *known = std::ranges::find_if(Orders, [&](const Order &row) { return row.name == name; });
        if (known == std::end(Orders) || !known->carryOut(*this, order.section(u'=', 1).toUtf8()))
            return order;
    }
    return QString();
}

QByteArray Session::message(Bytes::Type type, const QByteArray &words, int transId) const
{
    const QStringList parts = QString::fromUtf8(words).split(u':');
    Vorkel::ArgumentList arguments;
    for (const QString &part : parts.mid(1))
        arguments << part;
    return Bytes::message({ m_address, type, 1, transId, 0 }, Bytes::invocation(parts.first(), arguments));
}

bool Session::shakeHands(const QByteArray &answer)
{
    auto data = Vorkel::IPCHandshake::processHanshake(runner.readMessage()).value();
    const QString text = u"announced %1 %2 %3 %4"_s;
    heard << text.arg(data.id).arg(data.runnerId).arg(data.clientType).arg(data.name);
    m_address = data.id = answer.isEmpty() ? data.id : answer.toUInt();
    return runner.write(Bytes::handshake(data) + Bytes::message({ 0xFFFFFFFF, Bytes::Ping }));
}

/// Reads until a message is heard that holds `words`.
bool Session::expect(const QByteArray &words)
{
    QString line;
    do
        line = Bytes::told(runner.readMessage());
    while (line != u"end"_s && !line.contains(QString::fromUtf8(words)));
    heard << line;
    return line != u"end"_s;
}

bool Session::call(const QByteArray &words)
{
    ++m_lastCall;
    return runner.write(message(Bytes::Call, words, m_lastCall))
            && expect(" #" + QByteArray::number(m_lastCall) + " (");
}
