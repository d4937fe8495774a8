#include "objectmodel/enum.h"

#include "objectmodel/class.h"

#include <cstdio>

namespace Vorkel {

Enum::Enum(const Class *enumClass)
    : m_class(enumClass)
{
}

Enum::Enum(const Class *enumClass, const QString &name, const Item *items, int id)
    : m_class(enumClass)
    , m_name(name)
    , m_items(items)
    , m_id(id)
{
    while (m_items && m_items[m_count].key)
        ++m_count;
    m_isMask = detectIsMask();
}

Enum::Enum(const Class *enumClass, const Enum *other)
    : m_class(enumClass)
    , m_name(other->m_name)
    , m_items(other->m_items)
    , m_count(other->m_count)
    , m_id(other->m_id)
{
    m_isMask = detectIsMask();
}

Enum::~Enum() = default;

QString Enum::key(int index) const
{
    return index >= 0 && index < m_count ? QString::fromUtf8(m_items[index].key) : QString();
}

int Enum::value(int index) const
{
    return index >= 0 && index < m_count ? m_items[index].value : -1;
}

int Enum::value(const QString &key, bool *ok) const
{
    const QByteArray wanted = key.toUtf8();
    for (int i = 0; i < m_count; ++i) {
        if (wanted == m_items[i].key) {
            if (ok)
                *ok = true;
            return m_items[i].value;
        }
    }
    if (ok)
        *ok = false;
    return -1;
}

QString Enum::valueToKey(int value, bool *ok) const
{
    for (int i = 0; i < m_count; ++i) {
        if (m_items[i].value == value) {
            if (ok)
                *ok = true;
            return key(i);
        }
    }
    std::fprintf(stderr, "Could not find value %d in enum %s\n", value, qUtf8Printable(m_name));
    if (ok)
        *ok = false;
    return QString();
}

bool Enum::detectIsMask() const
{
    int seen = 0;
    for (int i = 0; i < m_count; ++i) {
        if (seen & m_items[i].value)
            return false;
        seen |= m_items[i].value;
    }
    return true;
}

} // namespace Vorkel
