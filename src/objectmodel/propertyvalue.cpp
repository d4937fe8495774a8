#include "objectmodel/propertyvalue.h"

#include "objectmodel/objectmap.h"
#include "shared/trace.h"

namespace Vorkel {

namespace {

/// In front of a pattern. PCRE, which counts the steps anew for each position, would allow ten times as many
/// by itself, and 20 GiB.
constexpr QLatin1String Limits("(*LIMIT_MATCH=1000000)(*LIMIT_HEAP=65536)");

class WildcardConversion
{
public:
    explicit WildcardConversion(QStringView wildcard)
        : m_rest(wildcard)
    {
    }

    QString pattern()
    {
        while (!m_rest.isEmpty()) {
            const QChar c = take();
            if (c == u'\\')
                convertBackslash();
            else if (m_isEscaped)
                convertEscaped(c);
            else
                convert(c);
        }
        return m_pattern;
    }

private:
    QChar take()
    {
        const QChar c = m_rest.front();
        m_rest = m_rest.sliced(1);
        return c;
    }

    bool takeIf(QChar expected)
    {
        if (m_rest.isEmpty() || m_rest.front() != expected)
            return false;
        m_pattern += take();
        return true;
    }

    void convertBackslash()
    {
        if (m_isEscaped)
            m_pattern += QLatin1String("\\\\");
        m_isEscaped = true;
        if (m_rest.isEmpty())
            m_pattern += QLatin1String("\\\\");
    }

    void convertEscaped(QChar c)
    {
        m_isEscaped = false;
        if (QStringView(u"*?[]").contains(c)) {
            m_pattern += u'\\';
            m_pattern += c;
        } else {
            m_pattern += QLatin1String("\\\\");
            appendPlain(c);
        }
    }

    void convert(QChar c)
    {
        if (c == u'*')
            m_pattern += QLatin1String(".*");
        else if (c == u'?')
            m_pattern += u'.';
        else if (c == u'[')
            convertSet();
        else
            appendPlain(c);
    }

    void appendPlain(QChar c)
    {
        // These mean something in a pattern and nothing in a wildcard.
        if (QStringView(u"$()+.^{|}").contains(c))
            m_pattern += u'\\';
        m_pattern += c;
    }

    void convertSet()
    {
        m_pattern += u'[';
        takeIf(u'^');
        takeIf(u']');
        while (!m_rest.isEmpty()) {
            const QChar c = take();
            m_pattern += c;
            if (c == u']')
                return;
            if (c == u'\\' && !m_rest.isEmpty())
                m_pattern += take();
        }
    }

    QStringView m_rest;
    QString m_pattern;
    bool m_isEscaped = false;
};

} // namespace

PropertyValue::PropertyValue(const QString &value, Modifiers modifier, Type type)
    : m_value(value)
    , m_modifier(modifier)
    , m_type(type)
{
    if (modifier == RegularExpression)
        m_expression.emplace(Limits + value);
    else if (modifier == Wildcard)
        m_expression.emplace(Limits + wildcardToPattern(value));
}

QLatin1String PropertyValue::operatorText(Modifiers modifier)
{
    constexpr QLatin1String texts[] = { QLatin1String("="), QLatin1String("~="), QLatin1String("?=") };
    return modifier >= Exact && modifier <= Wildcard ? texts[modifier] : QLatin1String();
}

QString PropertyValue::wildcardToPattern(const QString &wildcard)
{
    return WildcardConversion(wildcard).pattern();
}

bool PropertyValue::matches(const QString &candidate) const
{
    if (!m_expression)
        return m_modifier == Exact && matchesExactly(candidate);
    // Qt would print a warning.
    if (!m_expression->isValid())
        return false;
    const QRegularExpressionMatch match = m_expression->match(candidate);
    if (!match.isValid())
        VORKEL_TRACE("Inspector", "Pattern given up", { "pattern", m_value });
    return match.hasMatch();
}

bool PropertyValue::matchesExactly(const QString &candidate) const
{
    if (m_value == candidate)
        return true;
    if (m_type == NestedName)
        return ObjectMap::resolve(m_value) == ObjectMap::resolve(candidate);
    if (!m_value.startsWith(u':'))
        return false;
    if (!candidate.startsWith(u':') && !ObjectMap::isMultiPropertyName(candidate))
        return false;
    const ObjectMap *map = ObjectMap::self();
    if (!map)
        return false;
    const auto named = map->symbolicNames().constFind(m_value);
    return named != map->symbolicNames().cend() && *named == map->objectName(candidate);
}

} // namespace Vorkel
