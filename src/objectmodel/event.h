#pragma once

#include "objectmodel/object.h"
#include "objectmodel/signature.h"

namespace Vorkel {

class Class;

/// Something that objects of a class can be told, or tell of.
class VORKEL_EXPORT Event : public Serializable
{
public:
    /// `flag` travels in the stream; what it means is the wrapper's matter.
    Event(const Class *eventClass, const QString &name, const Signature &signature, bool flag, int id);

    [[nodiscard]] const Class *eventClass() const { return m_class; }
    [[nodiscard]] const QString &name() const { return m_name; }
    [[nodiscard]] const Signature &signature() const { return m_signature; }
    [[nodiscard]] bool flag() const { return m_flag; }
    [[nodiscard]] int id() const { return m_id; }

    /// Offers the event to those who can deliver it.
    void sendEvent(const SharedPtr<Object> &object, const ObjectList &arguments) const;

    void writeObject(QDataStream &stream) const override;
    void readObject(QDataStream &stream) override;

private:
    const Class *m_class;
    QString m_name;
    Signature m_signature;
    bool m_flag;
    int m_id;
};

} // namespace Vorkel
