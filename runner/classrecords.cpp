#include "classrecords.h"

#include <QDataStream>

#include <algorithm>

namespace Vorkel::Runner {

namespace {

constexpr auto RecordVersion = QDataStream::Qt_2_1;

enum AttributeFlag : FUInt32 { Reference = 1, Pointer = 2, Const = 4, ConstValue = 8, Array = 16 };

/// Reads records from a program: what it says is not believed further than it goes.
class Reader
{
public:
    explicit Reader(const QByteArray &bytes)
        : m_stream(bytes)
    {
        m_stream.setVersion(RecordVersion);
    }

    [[nodiscard]] bool atEnd() const { return m_stream.atEnd(); }
    [[nodiscard]] bool isOk() const { return m_stream.status() == QDataStream::Ok; }

    int number()
    {
        qint32 value = 0;
        m_stream >> value;
        return value;
    }

    QString text()
    {
        QString value;
        m_stream >> value;
        return value;
    }

    template <typename Read>
    auto list(int count, Read read)
    {
        QList<decltype(read())> items;
        for (int i = 0; i < count && isOk(); ++i)
            items.append(read());
        return items;
    }

    ArgumentRecord argument()
    {
        ArgumentRecord record;
        record.name = text();
        record.className = text();
        (void)number(); // namespace
        record.flags = static_cast<FUInt32>(number());
        record.arraySize = number();
        record.enumClassName = text();
        record.enumName = text();
        return record;
    }

    QList<ArgumentRecord> signature()
    {
        return list(number(), [this] { return argument(); });
    }

    MethodRecord method()
    {
        MethodRecord record;
        record.name = text();
        (void)text(); // class
        record.result = argument();
        record.id = number();
        record.isStatic = number() != 0;
        record.arguments = signature();
        (void)text(); // deprecation
        return record;
    }

    PropertyRecord property()
    {
        PropertyRecord record;
        record.name = text();
        record.type = argument();
        (void)text(); // class
        (void)number(); // namespace
        record.id = number();
        record.flags = static_cast<FUInt32>(number());
        return record;
    }

    EnumRecord enumeration()
    {
        EnumRecord record;
        record.name = text();
        (void)number(); // id
        (void)text(); // class
        const int count = number();
        record.isMask = number() != 0;
        record.items = list(count, [this] {
            const QString key = text();
            return std::pair(key, number());
        });
        return record;
    }

    QList<ArgumentRecord> constructor()
    {
        (void)text(); // class
        (void)number(); // id
        return signature();
    }

    MethodRecord event()
    {
        MethodRecord record;
        record.name = text();
        (void)text(); // class
        record.id = number();
        (void)number(); // flag
        record.arguments = signature();
        return record;
    }

    ClassRecord classRecord()
    {
        ClassRecord record;
        record.id = number();
        record.name = text();
        (void)number(); // namespace
        (void)number(); // flags
        record.superName = text();
        (void)number(); // namespace of the super class
        const int constructors = number();
        const int methods = number();
        const int properties = number();
        const int events = number();
        const int enums = number();
        record.enums = list(enums, [this] { return enumeration(); });
        record.methods = list(methods, [this] { return method(); });
        record.properties = list(properties, [this] { return property(); });
        record.constructors = list(constructors, [this] { return constructor(); });
        record.events = list(events, [this] { return event(); });
        (void)list(number(), [this] { return text() + text(); }); // interfaces
        return record;
    }

private:
    QDataStream m_stream;
};

} // namespace

FunctionCallResult<ClassRecords> ClassRecords::parse(const QByteArray &bytes)
{
    Reader reader(bytes);
    ClassRecords records;
    while (!reader.atEnd()) {
        ClassRecord record = reader.classRecord();
        if (!reader.isOk()) {
            return FunctionCallResult<ClassRecords>::failure(
                    QStringLiteral("the program's class number %1 (%2) cannot be read")
                            .arg(records.m_classes.size())
                            .arg(record.name));
        }
        records.m_classes.push_back(std::move(record));
    }
    return records;
}

void ClassRecords::append(const QByteArray &bytes)
{
    Reader reader(bytes);
    while (!reader.atEnd()) {
        ClassRecord record = reader.classRecord();
        if (!reader.isOk())
            return;
        if (record.id == static_cast<int>(m_classes.size()))
            m_classes.push_back(std::move(record));
    }
}

const ClassRecord *ClassRecords::byId(int id) const
{
    return id >= 0 && static_cast<size_t>(id) < m_classes.size() ? &m_classes[static_cast<size_t>(id)]
                                                                 : nullptr;
}

const ClassRecord *ClassRecords::byName(const QString &name) const
{
    for (const ClassRecord &record : m_classes) {
        if (record.name == name)
            return &record;
    }
    return nullptr;
}

/// The class and those above it. A program's records may name each other in a circle.
QList<const ClassRecord *> ClassRecords::lineage(const ClassRecord *of) const
{
    QList<const ClassRecord *> found;
    for (const ClassRecord *at = of; at && !found.contains(at); at = byName(at->superName))
        found.append(at);
    return found;
}

bool ClassRecords::inherits(const ClassRecord *of, const QString &name) const
{
    const QList<const ClassRecord *> all = lineage(of);
    return std::any_of(all.begin(), all.end(), [&](const ClassRecord *at) { return at->name == name; });
}

const PropertyRecord *ClassRecords::property(const ClassRecord *of, const QString &name) const
{
    for (const ClassRecord *at : lineage(of)) {
        for (const PropertyRecord &record : at->properties) {
            if (record.name == name)
                return &record;
        }
    }
    return nullptr;
}

QList<const MethodRecord *> ClassRecords::methods(const ClassRecord *of, const QString &name) const
{
    QList<const MethodRecord *> found;
    for (const ClassRecord *at : lineage(of)) {
        for (const MethodRecord &record : at->methods) {
            if (record.name == name)
                found.append(&record);
        }
    }
    return found;
}

const EnumRecord *ClassRecords::enumOf(const ArgumentRecord &type) const
{
    return type.enumName.isEmpty() ? nullptr : enumNamed(type.enumClassName, type.enumName);
}

const EnumRecord *ClassRecords::enumNamed(const QString &scope, const QString &name) const
{
    const ClassRecord *holder = byName(scope);
    if (!holder)
        return nullptr;
    for (const EnumRecord &record : holder->enums) {
        if (record.name == name)
            return &record;
    }
    return nullptr;
}

QStringList ClassRecords::propertyNames(const ClassRecord *of) const
{
    QStringList names;
    for (const ClassRecord *at : lineage(of)) {
        for (const PropertyRecord &record : at->properties)
            names.append(record.name);
    }
    return names;
}

QStringList ClassRecords::methodNames(const ClassRecord *of) const
{
    QStringList names;
    for (const ClassRecord *at : lineage(of)) {
        for (const MethodRecord &record : at->methods)
            names.append(record.name);
    }
    return names;
}

namespace {

QString arrayMark(const ArgumentRecord &argument)
{
    if (!(argument.flags & Array))
        return QString();
    return argument.arraySize > 0 ? QStringLiteral(" [%1]").arg(argument.arraySize) : QStringLiteral(" []");
}

QString typeText(const ArgumentRecord &argument, bool withEnum)
{
    QString text = argument.className;
    if (withEnum && !argument.enumName.isEmpty())
        text += QLatin1String("::") + argument.enumName;
    if (argument.flags & Const)
        text.prepend(QLatin1String("const "));
    if (argument.flags & Reference)
        text += u'&';
    if (argument.flags & Pointer)
        text += u'*';
    if (argument.flags & ConstValue)
        text += QLatin1String(" const");
    return text + arrayMark(argument);
}

} // namespace

QString toText(const ArgumentRecord &argument)
{
    QString text;
    if (argument.flags & Const)
        text += QLatin1String("const ");
    if (argument.enumName.isEmpty())
        text += argument.className;
    else
        text += argument.enumClassName + QLatin1String("::") + argument.enumName;
    if (argument.flags & Reference)
        text += QLatin1String(" &");
    if (argument.flags & Pointer)
        text += QLatin1String(" *");
    text += arrayMark(argument);
    if (argument.flags & ConstValue)
        text += QLatin1String(" const");
    return argument.name.isEmpty() ? text : text + u' ' + argument.name;
}

QString toText(const QList<ArgumentRecord> &signature)
{
    QStringList texts;
    for (const ArgumentRecord &argument : signature)
        texts.append(toText(argument));
    return u'(' + texts.join(QLatin1String(", ")) + u')';
}

QString toText(const MethodRecord &method)
{
    return typeText(method.result, true) + u' ' + method.name + toText(method.arguments);
}

QString toText(const PropertyRecord &property)
{
    return typeText(property.type, false) + u' ' + property.name;
}

QString toText(const EnumRecord &record, int value)
{
    QStringList keys;
    int left = value;
    for (const auto &[key, each] : record.items) {
        if (each == value)
            return key;
        if (record.isMask && each != 0 && (left & each) == each) {
            keys.append(key);
            left &= ~each;
        }
    }
    return left == 0 && !keys.isEmpty() ? keys.join(u'|') : QString::number(value);
}

} // namespace Vorkel::Runner
