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
    /// The one object for the QObject, whatever the attribute.
    [[nodiscard]] SharedPtr<Object> wrap(void *data, const ObjectAttribute &attribute) const override;
    [[nodiscard]] Method *createMethod(int index) const override;
    [[nodiscard]] Property *createProperty(int index) const override;
    [[nodiscard]] Event *createEvent(int index) const override;
    [[nodiscard]] Enum *createEnum(int index) const override;
    SharedPtr<Object> getProperty(const SharedPtr<Object> &object, const Property *property) const override;
    bool setProperty(int id, const SharedPtr<Object> &object, const SharedPtr<Object> &value,
                     const Property *property) const override;
    SharedPtr<Object> invoke(int id, const SharedPtr<Object> &object, const ObjectList &arguments,
                             const Method *method) const override;

private:
    [[nodiscard]] QObject *usable(const SharedPtr<Object> &object, const QString &member) const;
    [[nodiscard]] QMetaProperty metaProperty(int id) const;
    [[nodiscard]] Signature signatureOf(const QMetaMethod &method) const;

    const QMetaObject *m_metaObject;
    std::vector<int> m_methods; // indexes in the meta-object
    std::vector<int> m_signals;
    mutable std::deque<std::vector<Enum::Item>> m_enumItems; // what the enums refer to
};

} // namespace Vorkel
