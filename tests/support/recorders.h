#pragma once

#include "serverlib/ipcresponsehandleriface.h"
#include "support/bytes.h"

#include <QStringList>

#include <functional>
#include <iostream>
#include <sstream>

/// Writes down what it hears, one text each: "send 1 name(values)".
class RecordingHandler : public Vorkel::IPCResponseHandlerIface
{
public:
    using ArgumentList = Vorkel::ArgumentList;
    using Listener = Vorkel::ResponseListener<ArgumentList>;

    QStringList heard;
    std::function<void(const QString &)> onCall; ///< done before a call is answered; the name is given
    bool keepsCalls = false; ///< calls are kept to be answered later, not answered with their arguments
    QList<Listener *> kept;
    bool takesCalls = false; ///< calls are taken as requests

    void handleSend(FUInt32 sender, const QString &name, const ArgumentList &arguments) override
    {
        note("send", sender, name, arguments);
    }
    void handleBroadcast(FUInt32 sender, const QString &name, const ArgumentList &arguments) override
    {
        note("broadcast", sender, name, arguments);
    }
    void handleCall(FUInt32 sender, const QString &name, const ArgumentList &arguments,
                    Listener *listener) override
    {
        note(keepsCalls ? "kept" : "call", sender, name, arguments);
        // Copied: what it does may be the end of whoever holds this handler.
        if (const auto deed = onCall)
            deed(name);
        if (keepsCalls)
            kept << listener;
        else
            listener->response(arguments);
    }
    bool callRequest(FUInt32 sender, FInt32, const QString &name, const ArgumentList &arguments) override
    {
        if (takesCalls)
            note("taken", sender, name, arguments);
        return takesCalls;
    }
    void handleError(const QString &text) override { heard << QStringLiteral("error ") + text; }
    void connectionClosed() override { heard << QStringLiteral("closed"); }

private:
    void note(const char *what, FUInt32 sender, const QString &name, const ArgumentList &arguments)
    {
        heard << QStringLiteral("%1 %2 %3(%4)")
                         .arg(QLatin1String(what))
                         .arg(sender)
                         .arg(name, Bytes::shown(arguments));
    }
};

/// Writes down every outcome: "ok VALUES" or "failed TEXT".
class RecordingListener : public Vorkel::ResponseListener<Vorkel::ArgumentList>
{
public:
    QStringList outcomes;
    std::function<void()> onResponse;

    void response(const Vorkel::FunctionCallResult<Vorkel::ArgumentList> &result) override
    {
        outcomes << (result.isOk() ? QStringLiteral("ok ") + Bytes::shown(result.value())
                                   : QStringLiteral("failed ") + result.error());
        if (const auto deed = onResponse)
            deed();
    }
};

/// Holds what goes to the standard log stream while it lives.
class LogCapture
{
public:
    LogCapture()
        : m_previous(std::clog.rdbuf(m_text.rdbuf()))
    {
    }
    ~LogCapture() { std::clog.rdbuf(m_previous); }
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    /// The lines since the last call.
    [[nodiscard]] QStringList takeLines()
    {
        const QString text = QString::fromStdString(m_text.str());
        m_text.str({});
        return text.isEmpty() ? QStringList() : text.chopped(1).split(u'\n');
    }

private:
    std::ostringstream m_text;
    std::streambuf *m_previous;
};
