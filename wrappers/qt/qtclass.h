#pragma once

#include "objectmodel/class.h"
#include "objectmodel/enum.h"
#include "objectmodel/signature.h"

#include <QMetaObject>

#include <deque>

namespace Vorkel {

/// The class for one meta-object: properties, invokable methods and slots, signals as events, enums.
class QtClass : public Class
{
public:
    /// `metaObject` lives as long as the process.
    explicit QtClass(const QMetaObject *metaObject);

    [[nodiscard]] const QMetaObject *metaObject() const { return m_metaObject; }

    using Class::getProperty;
    using Class::invoke;
    using Class::setProperty;
    void initSuperClass() override;
    [[nodiscard]] Method *createMethod(int index) const override;
    [[nodiscard]] Property *createProperty(int index) const override;
    [[nodiscard]] Event *createEvent(int index) const override;
    [[nodiscard]] Enum *createEnum(int index) const override;
    SharedPtr<Object> getProperty(int id, void *object, const Class *type) const override;
    bool setProperty(int id, const SharedPtr<Object> &object, const SharedPtr<Object> &value,
                     const Property *property) const override;
    SharedPtr<Object> invoke(int id, const SharedPtr<Object> &object, const ObjectList &arguments,
                             const Method *method) const override;

private:
    [[nodiscard]] QMetaProperty metaProperty(int id) const;
    [[nodiscard]] Signature signatureOf(const QMetaMethod &method) const;

    const QMetaObject *m_metaObject;
    std::vector<int> m_methods; // indexes in the meta-object
    std::vector<int> m_signals;
    mutable std::deque<std::vector<Enum::Item>> m_enumItems; // what the enums refer to
};

} // namespace Vorkel
