#include "objectmodel/datetime.h"

#include "objectmodel/namespace.h"
#include "objectmodel/recordclass.h"
#include "objectmodel/standardclasses.h"

#include <iomanip>
#include <iostream>

namespace Vorkel {

namespace {

// clang-format off
constexpr RecordField<DateTime> DateTimeFields[] = {
    { "year",   &DateTime::year   },
    { "month",  &DateTime::month  },
    { "day",    &DateTime::day    },
    { "hour",   &DateTime::hour   },
    { "minute", &DateTime::minute },
    { "second", &DateTime::second },
};
// clang-format on

class DateTimeObject : public Object
{
public:
    using Object::Object;

    [[nodiscard]] QString toString() const override
    {
        if (isNull())
            return Object::toString();
        const auto &value = *static_cast<const DateTime *>(data());
        QString text = QStringLiteral("%1/%2/%3").arg(value.year).arg(value.month).arg(value.day);
        if (value.hasTime())
            text += QStringLiteral(" %1:%2:%3").arg(value.hour).arg(value.minute).arg(value.second);
        return text;
    }
};

} // namespace

class DateTime_class : public RecordClass<DateTime>
{
public:
    explicit DateTime_class(Namespace *nameSpace)
        : RecordClass("DateTime", nameSpace, DateTimeFields, { 3, 6 }, "date")
    {
    }

    using RecordClass::construct;
    SharedPtr<Object> construct(int id, void **arguments) const override
    {
        if (id < 0 || id >= numConstructors())
            std::cerr << "Unknown DateTime constructor called:" << id << '\n';
        return RecordClass::construct(id, arguments);
    }

    [[nodiscard]] SharedPtr<Object> wrap(void *data, const ObjectAttribute &attribute) const override
    {
        return SharedPtr<Object>(new DateTimeObject(data, this, attribute));
    }

    [[nodiscard]] bool compare(const SharedPtr<Object> &a, const SharedPtr<Object> &b) const override
    {
        if (!a || !b || a->objectClass() != this || b->objectClass() != this || a->isNull() || b->isNull())
            return Class::compare(a, b);
        return equalDateTimes(unwrapRecord(a), unwrapRecord(b));
    }
};

namespace {

const DateTime_class *dateTimeClass = nullptr;

} // namespace

void registerDateTimeClass(Namespace *nameSpace)
{
    dateTimeClass = new DateTime_class(nameSpace);
}

const Class *objectModelDateTimeClass()
{
    (void)Inspector::self();
    return dateTimeClass;
}

bool equalDateTimes(const DateTime &a, const DateTime &b)
{
    const auto atMidnight = [](DateTime value) {
        if (!value.hasTime())
            value.hour = value.minute = value.second = 0;
        return value;
    };
    return atMidnight(a) == atMidnight(b);
}

SharedPtr<Object> wrapDateTime(const DateTime &value)
{
    (void)Inspector::self();
    return dateTimeClass->wrapRecord(value);
}

DateTime unwrapDateTime(const SharedPtr<Object> &object)
{
    return DateTime_class::unwrapRecord(object);
}

std::ostream &operator<<(std::ostream &stream, const DateTime &value)
{
    const char fill = stream.fill('0');
    for (const RecordField<DateTime> &field : DateTimeFields) {
        const bool isFirst = field.field == &DateTime::year;
        stream << (isFirst ? "" : "/") << std::setw(isFirst ? 4 : 2) << value.*field.field;
    }
    stream.fill(fill);
    return stream;
}

std::istream &operator>>(std::istream &stream, DateTime &value)
{
    for (const RecordField<DateTime> &field : DateTimeFields) {
        char separator = 0;
        if (field.field != &DateTime::year)
            stream >> separator;
        stream >> value.*field.field;
    }
    return stream;
}

} // namespace Vorkel
