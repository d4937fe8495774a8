#include "objectmodel/namereader_p.h"

namespace Vorkel {

namespace {

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t';
}

// clang-format off
constexpr QLatin1String WrongCharacterText("Parse error while parsing '%1': at column %2: expected %3, got %4\n");
constexpr QLatin1String UnexpectedEndText("Object name '%1' ended unexpectedly at column %2");
constexpr QLatin1String NestedEndText("Unexpected end of object name: %1. Parsing a nested object name starting at column %2 ended at column %3 which is unexpected.");
constexpr QLatin1String BackslashText("Object name %1 unexpectedly ends in backslash at column %2");
constexpr QLatin1String MoreToReadText("Error parsing object name %1 (trimmed: %2). Parsed %3 characters, but name still has %4 more to parse");
// clang-format on

} // namespace

NameReader::NameReader(QStringView text, Leniency leniency)
    : m_text(text)
    , m_leniency(leniency)
{
}

NameReader::Event NameReader::next()
{
    if (m_starts.isEmpty()) {
        if (isAtEnd())
            return fail(Reason::UnexpectedEnd);
        if (current() != u'{')
            return fail(Reason::WrongCharacter, QLatin1String("{"));
        m_starts.append(m_cursor++);
    }
    skipBlanks();
    if (isAtEnd())
        return fail(Reason::UnexpectedEnd);
    if (current() == u'}')
        return closeName();
    return readKey() ? readValue() : Event::Failure;
}

void NameReader::skipBlanks()
{
    while (!isAtEnd() && isBlank(current()))
        ++m_cursor;
}

/// Up to the operator, and past it. Whatever stands first belongs to the key.
bool NameReader::readKey()
{
    const qsizetype start = m_cursor++;
    m_keyHasBlanks = false;
    for (; !isAtEnd(); ++m_cursor) {
        const QChar c = current();
        if (isBlank(c)) {
            m_keyHasBlanks = true;
        } else if (c == u'=' || c == u'~' || c == u'?') {
            m_key = m_text.sliced(start, m_cursor - start);
            m_modifier = c == u'=' ? PropertyValue::Exact
                    : c == u'~'    ? PropertyValue::RegularExpression
                                   : PropertyValue::Wildcard;
            if (m_modifier != PropertyValue::Exact) {
                if (m_cursor + 1 >= m_text.size() || m_text[m_cursor + 1] != u'=') {
                    fail(Reason::WrongCharacter, QLatin1String("="));
                    return false;
                }
                ++m_cursor;
            }
            ++m_cursor;
            return true;
        }
    }
    fail(Reason::UnexpectedEnd);
    return false;
}

NameReader::Event NameReader::readValue()
{
    skipBlanks();
    if (isAtEnd())
        return fail(Reason::UnexpectedEnd);
    if (current() == u'\'')
        return readText();
    if (current() == u'{') {
        m_starts.append(m_cursor++);
        return Event::Nested;
    }
    if (current() == u'}' && m_leniency == Lenient && depth() > 1)
        return closeName();
    return fail(Reason::WrongCharacter, QLatin1String("either ' or { or whitespace"));
}

NameReader::Event NameReader::readText()
{
    const qsizetype start = ++m_cursor;
    m_valueHasEscapes = false;
    for (; !isAtEnd(); ++m_cursor) {
        if (current() == u'\'') {
            m_value = m_text.sliced(start, m_cursor - start);
            ++m_cursor;
            return Event::Property;
        }
        if (current() == u'\\') {
            if (m_cursor + 1 == m_text.size())
                return fail(Reason::BackslashAtEnd);
            m_valueHasEscapes = true;
            ++m_cursor;
        }
    }
    return fail(Reason::UnexpectedEnd);
}

NameReader::Event NameReader::closeName()
{
    if (depth() == 1) {
        const bool isLast = m_cursor + 1 == m_text.size();
        return isLast ? Event::End : fail(Reason::MoreToRead);
    }
    ++m_cursor;
    const qsizetype start = m_starts.last();
    m_starts.removeLast();
    m_nestedText = m_text.sliced(start, m_cursor - start);
    return Event::NestedEnd;
}

NameReader::Event NameReader::fail(Reason reason, QLatin1String expected)
{
    m_reason = reason;
    m_expected = expected;
    return Event::Failure;
}

QString NameReader::key() const
{
    QString key = m_key.toString();
    if (m_keyHasBlanks)
        key.removeIf(isBlank);
    return key;
}

QString NameReader::value() const
{
    if (!m_valueHasEscapes)
        return m_value.toString();
    QString value;
    value.reserve(m_value.size());
    for (qsizetype i = 0; i < m_value.size(); ++i) {
        if (m_value[i] == u'\\')
            ++i;
        value += m_value[i];
    }
    return value;
}

void NameReader::explainFailure(const QString &name, QString *error) const
{
    const QString text = m_text.toString();
    const QString column = QString::number(m_cursor);
    const bool isFirst = error->isEmpty();
    if (m_reason == Reason::WrongCharacter)
        *error = WrongCharacterText.arg(text, QString::number(m_cursor + 1), m_expected,
                                        QChar::fromLatin1(current().toLatin1()));
    else if (m_reason == Reason::UnexpectedEnd && isFirst)
        *error = UnexpectedEndText.arg(text, column);
    else if (m_reason == Reason::UnexpectedEnd && depth() > 1)
        *error = NestedEndText.arg(text, QString::number(m_starts.last()), column);
    else if (m_reason == Reason::BackslashAtEnd)
        *error = BackslashText.arg(text, column);
    else if (m_reason == Reason::MoreToRead && isFirst)
        *error = MoreToReadText.arg(name, text, column, QString::number(m_text.size() - m_cursor - 1));
}

} // namespace Vorkel
