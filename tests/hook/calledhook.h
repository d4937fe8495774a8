#pragma once

#include "hook/autprocess.h"
#include "hook/hook.h"
#include "hook/remotefunctions.h"
#include "objectmodel/inspector.h"
#include "support/recorders.h"

#include <memory>

/// A hook without a runner, whose remote functions a test calls in process.
class CalledHook
{
protected:
    /// The hook takes `channel`.
    void startHook(Vorkel::MessageChannel *channel)
    {
        using namespace Vorkel;
        m_log = std::make_unique<LogCapture>();
        m_hook = new Hook(new IPC(channel, ClientData(), nullptr, nullptr), Hook::NoRunner, nullptr,
                          new AUTProcess, nullptr, 0);
        (void)Inspector::self()->lastError();
    }

    void endHook()
    {
        delete std::exchange(m_hook, nullptr);
        m_log.reset();
    }

    QVariant callWith(const QByteArray &name, const Vorkel::ArgumentList &arguments)
    {
        const QString function = QString::fromLatin1(name);
        if (Vorkel::remoteFunction(function)->kind != Vorkel::FunctionKind::Send)
            return m_hook->handleCall(1, function, arguments);
        m_hook->handleSend(1, function, arguments);
        return QVariant();
    }
    template <typename... Values>
    QVariant call(const char *name, const Values &...values)
    {
        return callWith(name, Vorkel::ArgumentList { QVariant(values)... });
    }
    /// The id of the object that a call gives; 0 for none.
    template <typename... Values>
    int object(const char *name, const Values &...values)
    {
        return call(name, values...).toString().section(u',', 0, 0).toInt();
    }
    int handle(const Vorkel::SharedPtr<Vorkel::Object> &given)
    {
        return m_hook->objectToVariant(given).toString().section(u',', 0, 0).toInt();
    }
    /// Whether a reply holds nothing, whatever its type.
    static bool isNothing(const QVariant &reply)
    {
        return !reply.isValid() || reply == QVariant(false) || reply.toByteArray().isEmpty();
    }
    QString text(int id) { return call("objectToString", id).toString(); }
    QString lastError() { return call("getLastError").toString(); }
    QStringList lines() { return m_log->takeLines(); }

    std::unique_ptr<LogCapture> m_log;
    Vorkel::Hook *m_hook = nullptr;
};
