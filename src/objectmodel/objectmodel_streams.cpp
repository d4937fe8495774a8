// How the records of the object model travel: fields in order, each reader below its writer.

#include "objectmodel/class_p.h"
#include "objectmodel/inspector.h"
#include "objectmodel/interface.h"
#include "objectmodel/namespace.h"

#include <QDataStream>
#include <QStringDecoder>

namespace Vorkel {

namespace {

constexpr int NoNamespace = 0;
constexpr int NoParent = -1;

QString nameOf(const Class *of)
{
    return of ? of->className() : QString();
}

int namespaceOf(const Class *of)
{
    return of && of->nameSpace() ? of->nameSpace()->id() : NoNamespace;
}

const Class *findClass(int namespaceId, const QString &name)
{
    const Namespace *nameSpace = Inspector::self()->nameSpace(namespaceId);
    return nameSpace ? nameSpace->getClass(name) : nullptr;
}

template <typename T>
T read(QDataStream &stream)
{
    T value = {};
    stream >> value;
    return value;
}

int readInt(QDataStream &stream)
{
    return read<qint32>(stream);
}

} // namespace

void ObjectAttribute::writeObject(QDataStream &stream) const
{
    stream << static_cast<qint32>(m_flags);
    stream << static_cast<qint32>(m_arraySize);
}

void ObjectAttribute::readObject(QDataStream &stream)
{
    m_flags = static_cast<FUInt32>(readInt(stream));
    m_arraySize = readInt(stream);
}

void Argument::writeObject(QDataStream &stream) const
{
    stream << m_name;
    stream << nameOf(m_class);
    stream << qint32(namespaceOf(m_class));
    m_attribute.writeObject(stream);
    stream << nameOf(m_enumerator ? m_enumerator->enumClass() : nullptr);
    stream << (m_enumerator ? m_enumerator->name() : QString());
}

void Argument::readObject(QDataStream &stream)
{
    m_name = read<QString>(stream);
    const auto className = read<QString>(stream);
    const int namespaceId = readInt(stream);
    m_class = findClass(namespaceId, className);
    m_attribute.readObject(stream);
    const auto enumClassName = read<QString>(stream);
    const auto enumName = read<QString>(stream);
    const Class *enumClass = enumClassName.isEmpty() ? nullptr : Inspector::self()->type(enumClassName);
    m_enumerator = enumClass ? enumClass->enumerator(enumName) : nullptr;
}

void Signature::writeObject(QDataStream &stream) const
{
    stream << qint32(size());
    for (const Argument &argument : *this)
        argument.writeObject(stream);
}

void Signature::readObject(QDataStream &stream)
{
    clear();
    const int count = readInt(stream);
    for (int i = 0; i < count && stream.status() == QDataStream::Ok; ++i)
        emplaceBack().readObject(stream);
}

void Method::writeObject(QDataStream &stream) const
{
    stream << m_name;
    stream << nameOf(m_class);
    m_returnArgument.writeObject(stream);
    stream << qint32(m_id);
    stream << qint32(m_isStatic);
    m_signature.writeObject(stream);
    stream << m_deprecationMessage;
}

void Method::readObject(QDataStream &stream)
{
    m_name = read<QString>(stream);
    (void)read<QString>(stream);
    m_returnArgument.readObject(stream);
    m_id = readInt(stream);
    m_isStatic = readInt(stream) != 0;
    m_signature.readObject(stream);
    m_deprecationMessage = read<QString>(stream);
}

void Property::writeObject(QDataStream &stream) const
{
    stream << name();
    type().writeObject(stream);
    stream << nameOf(propertyClass());
    stream << qint32(namespaceOf(propertyClass()));
    stream << qint32(m_id);
    stream << static_cast<qint32>(flags());
}

void Property::readObject(QDataStream &stream)
{
    m_declaration = nullptr;
    m_name = read<QString>(stream);
    m_type.readObject(stream);
    const auto className = read<QString>(stream);
    const int namespaceId = readInt(stream);
    m_class = findClass(namespaceId, className);
    m_id = readInt(stream);
    m_flags = static_cast<FUInt32>(readInt(stream));
}

void Constructor::writeObject(QDataStream &stream) const
{
    stream << nameOf(m_class);
    stream << qint32(m_id);
    m_signature.writeObject(stream);
}

void Constructor::readObject(QDataStream &stream)
{
    (void)read<QString>(stream);
    m_id = readInt(stream);
    m_signature.readObject(stream);
}

namespace {

/// `QString::fromUtf8` takes a byte order mark for the sign of an encoding and drops it.
QString wholeText(const char *utf8)
{
    QStringDecoder decode(QStringDecoder::Utf8, QStringConverter::Flag::ConvertInitialBom);
    return decode(utf8);
}

} // namespace

void Enum::writeObject(QDataStream &stream) const
{
    stream << m_name;
    stream << qint32(m_id);
    stream << nameOf(m_class);
    stream << qint32(m_count);
    stream << qint32(m_isMask);
    for (int i = 0; i < m_count; ++i) {
        stream << wholeText(m_items[i].key);
        stream << qint32(m_items[i].value);
    }
}

void Enum::readObject(QDataStream &stream)
{
    m_name = read<QString>(stream);
    m_id = readInt(stream);
    (void)read<QString>(stream);
    const int count = readInt(stream);
    m_isMask = readInt(stream) != 0;
    m_ownKeys.clear();
    m_ownItems.clear();
    for (int i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        m_ownKeys.push_back(read<QString>(stream).toUtf8());
        m_ownItems.push_back({ nullptr, readInt(stream) });
    }
    // The keys stay where they are from here on.
    for (std::size_t i = 0; i < m_ownKeys.size(); ++i)
        m_ownItems[i].key = m_ownKeys[i].constData();
    m_count = static_cast<int>(m_ownItems.size());
    m_ownItems.push_back({ nullptr, 0 });
    m_items = m_ownItems.data();
}

void Event::writeObject(QDataStream &stream) const
{
    stream << m_name;
    stream << nameOf(m_class);
    stream << qint32(m_id);
    stream << qint32(m_flag);
    m_signature.writeObject(stream);
}

void Event::readObject(QDataStream &stream)
{
    m_name = read<QString>(stream);
    (void)read<QString>(stream);
    m_id = readInt(stream);
    m_flag = readInt(stream) != 0;
    m_signature.readObject(stream);
}

void Namespace::writeObject(QDataStream &stream) const
{
    stream << qint32(m_id);
    stream << m_name;
    stream << qint32(m_parent ? m_parent->id() : NoParent);
}

void Namespace::readObject(QDataStream &stream)
{
    m_id = readInt(stream);
    m_name = read<QString>(stream);
    const int parentId = readInt(stream);
    m_parent = parentId == NoParent ? nullptr : Inspector::self()->nameSpace(parentId);
    if (m_parent)
        m_parent->registerNamespace(this);
    (void)Inspector::self()->registerNamespace(this);
}

void Class::writeObject(QDataStream &stream) const
{
    const Class *above = super();
    const int firstProperty = superClassOffset(PropertyOffset);
    const int firstEvent = superClassOffset(EventOffset);
    const int firstMethod = superClassOffset(MethodOffset);
    const int firstEnum = superClassOffset(EnumOffset);
    const int properties = numProperties() - firstProperty;
    const int events = numEvents() - firstEvent;
    const auto writeAll = [&stream](int first, int count, auto member) {
        for (int i = first; i < first + count; ++i) {
            if (const auto *record = member(i))
                record->writeObject(stream);
        }
    };

    stream << qint32(d->id);
    stream << d->name;
    stream << qint32(namespaceOf(this));
    stream << static_cast<qint32>(d->flags);
    stream << nameOf(above);
    stream << qint32(namespaceOf(above));
    stream << qint32(d->declared.constructors);
    stream << qint32(d->declared.methods);
    stream << qint32(properties);
    stream << qint32(events);
    stream << qint32(d->declared.enums);
    writeAll(firstEnum, d->declared.enums, [this](int i) { return enumerator(i); });
    writeAll(firstMethod, d->declared.methods, [this](int i) { return method(i); });
    writeAll(firstProperty, properties, [this](int i) { return property(i); });
    writeAll(0, d->declared.constructors, [this](int i) { return constructor(i); });
    writeAll(firstEvent, events, [this](int i) { return event(i); });
    stream << qint32(interfaces().size());
    for (auto entry = interfaces().begin(); entry != interfaces().end(); ++entry) {
        stream << entry.key();
        stream << nameOf(entry.value());
    }
}

void Class::readObject(QDataStream &) {}

} // namespace Vorkel
