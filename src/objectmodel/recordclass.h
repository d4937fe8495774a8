#pragma once

#include "objectmodel/class.h"
#include "objectmodel/constructor.h"
#include "objectmodel/inspector.h"
#include "objectmodel/property.h"

#include <span>

namespace Vorkel {

/// A field of a record, as scripts see it.
template <typename Record>
struct RecordField
{
    const char *name;
    FInt32 Record::*field;
};

/// The class of a plain record of numbers: every field is a property, and it is constructed from
/// nothing, from so many leading fields as `fieldCounts` says, or from another record, in this order.
template <typename Record>
class RecordClass : public Class
{
public:
    using Fields = std::span<const RecordField<Record>>;

    RecordClass(const char *name, Namespace *nameSpace, Fields fields, std::vector<int> fieldCounts,
                const char *copyArgument)
        : Class(name, nameSpace, true)
        , m_fields(fields)
        , m_fieldCounts(std::move(fieldCounts))
        , m_copyArgument(copyArgument)
    {
        setDeclared({ .constructors = static_cast<int>(m_fieldCounts.size()) + 2,
                      .properties = static_cast<int>(m_fields.size()) });
    }

    using Class::construct;
    using Class::getProperty;
    using Class::setProperty;

    SharedPtr<Object> construct(int id, void **arguments) const override
    {
        const int copyId = static_cast<int>(m_fieldCounts.size()) + 1;
        if (id < 0 || id > copyId)
            return nullptr;
        Record record;
        if (id == copyId) {
            if (!arguments[0])
                return nullptr;
            record = *static_cast<const Record *>(arguments[0]);
        } else if (id > 0) {
            const auto count = static_cast<std::size_t>(m_fieldCounts[static_cast<std::size_t>(id) - 1]);
            for (std::size_t i = 0; i < count; ++i)
                record.*m_fields[i].field = arguments[i] ? *static_cast<const int *>(arguments[i]) : 0;
        }
        return wrapRecord(record);
    }

    [[nodiscard]] SharedPtr<Object> wrapRecord(const Record &record) const
    {
        SharedPtr<Object> object = wrap(new Record(record), ObjectAttribute());
        object->setOwnsData(true);
        return object;
    }

    [[nodiscard]] static Record unwrapRecord(const SharedPtr<Object> &object)
    {
        return object && object->data() ? *static_cast<const Record *>(object->data()) : Record();
    }

    SharedPtr<Object> getProperty(int id, void *object, const Class *) const override
    {
        const auto *field = fieldAt(id);
        return field && object
                ? Inspector::self()->createPrimitive(static_cast<Record *>(object)->*field->field)
                : nullptr;
    }

    bool setProperty(int id, void *object, void *value) const override
    {
        const auto *field = fieldAt(id);
        if (!field || !object || !value)
            return false;
        static_cast<Record *>(object)->*field->field = *static_cast<const int *>(value);
        return true;
    }

    void deleteObjectData(void *data, const ObjectAttribute &) const override
    {
        delete static_cast<Record *>(data);
    }

    [[nodiscard]] Constructor *createConstructor(int index) const override
    {
        Signature signature;
        if (index == static_cast<int>(m_fieldCounts.size()) + 1) {
            signature.append(Argument(QString::fromLatin1(m_copyArgument), this));
        } else if (index > 0) {
            const auto count = static_cast<std::size_t>(m_fieldCounts[static_cast<std::size_t>(index) - 1]);
            for (const RecordField<Record> &field : m_fields.first(count))
                signature.append(
                        Argument(QString::fromLatin1(field.name), Inspector::self()->type(IntClassId)));
        }
        return new Constructor(this, signature, index);
    }

    [[nodiscard]] Property *createProperty(int index) const override
    {
        const auto *field = fieldAt(index);
        return field
                ? new Property(this, Argument(Inspector::self()->type(IntClassId)),
                               QString::fromLatin1(field->name), ReadableProperty | WritableProperty, index)
                : nullptr;
    }

private:
    [[nodiscard]] const RecordField<Record> *fieldAt(int id) const
    {
        const int own = id - superClassOffset(PropertyOffset);
        return own >= 0 && own < static_cast<int>(m_fields.size()) ? &m_fields[static_cast<std::size_t>(own)]
                                                                   : nullptr;
    }

    Fields m_fields;
    std::vector<int> m_fieldCounts;
    const char *m_copyArgument;
};

} // namespace Vorkel
