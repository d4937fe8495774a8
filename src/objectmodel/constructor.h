#pragma once

#include "objectmodel/object.h"
#include "objectmodel/signature.h"

namespace Vorkel {

class Class;

/// A way to make objects of a class.
class VORKEL_EXPORT Constructor : public Serializable
{
public:
    explicit Constructor(const Class *constructedClass);
    Constructor(const Class *constructedClass, const Signature &signature, int id);

    [[nodiscard]] const Class *constructedClass() const { return m_class; }
    [[nodiscard]] const Signature &signature() const { return m_signature; }
    [[nodiscard]] int id() const { return m_id; }

    SharedPtr<Object> construct(const ObjectList &arguments) const;
    [[nodiscard]] QString toString() const;

    void writeObject(QDataStream &stream) const override;
    void readObject(QDataStream &stream) override;

private:
    const Class *m_class;
    Signature m_signature;
    int m_id = -1;
};

} // namespace Vorkel
