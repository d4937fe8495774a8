#pragma once

#include "fkit/export.h"
#include "objectmodel/object.h"

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <vector>

namespace Vorkel {

class Enum;
class Event;
class Namespace;

/// Delivers events to objects. Constructing one adds it to the registry.
class VORKEL_EXPORT SendEventDelegate
{
public:
    SendEventDelegate();
    SendEventDelegate(const SendEventDelegate &) = delete;
    SendEventDelegate &operator=(const SendEventDelegate &) = delete;
    virtual ~SendEventDelegate();

    /// Whether it took the event.
    virtual bool sendEvent(const Event *event, const SharedPtr<Object> &object,
                           const ObjectList &arguments) = 0;
};

/// What hook and wrappers ask of the registry. Unknown names and indexes give null and no error text.
class VORKEL_EXPORT InspectorInterface
{
public:
    InspectorInterface() = default;
    InspectorInterface(const InspectorInterface &) = delete;
    InspectorInterface &operator=(const InspectorInterface &) = delete;
    virtual ~InspectorInterface() = default;

    // The objects at the top

    [[nodiscard]] virtual int numObjects() const = 0;
    [[nodiscard]] virtual SharedPtr<Object> object(int index) const = 0;
    [[nodiscard]] virtual SharedPtr<Object> object(const QString &name) const = 0;
    [[nodiscard]] virtual ObjectList objects() const = 0;

    // Classes and namespaces, by number and by name

    [[nodiscard]] virtual int numClasses() const = 0;
    [[nodiscard]] virtual const Class *type(int id) const = 0;
    /// One "*" or "&" at the end does not count.
    [[nodiscard]] virtual const Class *type(const QString &name) const = 0;
    virtual int registerClass(const Class *entry) = 0;
    [[nodiscard]] virtual int numNamespaces() const = 0;
    [[nodiscard]] virtual Namespace *nameSpace(int id) const = 0;
    [[nodiscard]] virtual Namespace *nameSpace(const QString &name) const = 0;
    [[nodiscard]] virtual Namespace *nameSpaceFromFullyQualifiedName(const QString &name) const = 0;
    virtual int registerNamespace(Namespace *entry) = 0;

    // Values

    [[nodiscard]] virtual SharedPtr<Object> createPrimitive(int value) const = 0;
    [[nodiscard]] virtual SharedPtr<Object> createPrimitive(long long value) const = 0;
    [[nodiscard]] virtual SharedPtr<Object> createPrimitive(long value) const = 0;
    [[nodiscard]] virtual SharedPtr<Object> createPrimitive(bool value) const = 0;
    [[nodiscard]] virtual SharedPtr<Object> createPrimitive(double value) const = 0;
    [[nodiscard]] virtual SharedPtr<Object> createPrimitive(const char *utf8) const = 0;
    [[nodiscard]] virtual SharedPtr<Object> createPrimitive(const QStringList &texts) const = 0;
    [[nodiscard]] virtual SharedPtr<Object> createNull(const Class *ofClass) const = 0;
    [[nodiscard]] virtual SharedPtr<Object> voidObject() const = 0;

    /// Offers the event to the send-event delegates until one takes it.
    virtual void sendEvent(const Event *event, const SharedPtr<Object> &object,
                           const ObjectList &arguments) const;

    // Settings per class, by name

    virtual void addPropertyDelegate(const QString &className, const QStringList &properties) = 0;
    virtual void setUniqueProperty(const QString &className, const QString &property) = 0;
    virtual void setExtensionCode(const QString &code, const QString &language) = 0;
    virtual void setMouseTracking(const QString &className, bool on) = 0;
    virtual void setRecordMouseDrag(const QString &className, bool on) = 0;
    virtual void setAllowKeyEventCompression(const QString &className, bool on) = 0;
    virtual void enableEventCompression(const QString &className, bool on) = 0;
    virtual void setRecorderFilter(const QString &className, const QString &pattern) = 0;

    // Failures

    /// Keeps `text` as the reason of the last failure, for the runner to fetch.
    virtual void setError(const QString &text) = 0;
    /// The reason of the last failure. Reading it clears it.
    virtual QString lastError() = 0;
    /// The properties that did not match when an object was last looked for in vain, by candidate.
    [[nodiscard]] virtual QMap<QString, QStringList> unmatchedProperties() const = 0;

    /// Calls a function of the runner.
    virtual QVariant call(const QString &name, const QList<QVariant> &arguments) = 0;

    /// The enum `name`, with its class in front unless it is global; null when there is none.
    [[nodiscard]] const Enum *enumerator(const QString &name) const;
    void addSendEventDelegate(SendEventDelegate *delegate) { m_sendEventDelegates.push_back(delegate); }
    void removeSendEventDelegate(SendEventDelegate *delegate);

    /// Whether user input is to be recorded.
    [[nodiscard]] bool isEventRecording() const { return m_eventRecording; }
    void setEventRecording(bool on) { m_eventRecording = on; }

private:
    std::vector<SendEventDelegate *> m_sendEventDelegates;
    bool m_eventRecording = false;
};

} // namespace Vorkel
