#include "hook/platform/keysequence.h"

namespace Vorkel {

namespace {

using ParseResult = FunctionCallResult<QList<QStringList>>;

/// Reads one combination, from its opening bracket on.
class CombinationReader
{
public:
    CombinationReader(const QString &text, qsizetype opening)
        : m_text(text)
        , m_start(opening + 1)
    {
    }

    /// False when no bracket closes it.
    [[nodiscard]] bool read()
    {
        // The first character inside is part of a key, whatever it is; so is the first after a separator.
        qsizetype from = m_start + 1;
        if (!findEnd(from))
            return false;
        for (qsizetype plus = nextPlus(from); plus >= 0; plus = nextPlus(from)) {
            takeKey(plus);
            from = plus + 2;
            if (m_start >= m_end && !findEnd(from))
                return false;
        }
        takeKey(m_end);
        return true;
    }

    [[nodiscard]] const QStringList &keys() const { return m_keys; }
    [[nodiscard]] qsizetype next() const { return m_start; }

private:
    [[nodiscard]] bool findEnd(qsizetype from)
    {
        m_end = m_text.indexOf(u'>', from);
        return m_end >= 0;
    }

    /// The separator before the end; negative when there is none.
    [[nodiscard]] qsizetype nextPlus(qsizetype from) const { return m_text.first(m_end).indexOf(u'+', from); }

    void takeKey(qsizetype end)
    {
        m_keys << m_text.sliced(m_start, end - m_start).toString();
        m_start = end + 1;
    }

    QStringView m_text;
    qsizetype m_start;
    qsizetype m_end = 0;
    QStringList m_keys;
};

} // namespace

qsizetype characterLength(const QString &text, qsizetype index)
{
    const bool isPair = text.at(index).isHighSurrogate() && index + 1 < text.size()
            && text.at(index + 1).isLowSurrogate();
    return isPair ? 2 : 1;
}

ParseResult parseKeyEvents(const QString &text)
{
    QList<QStringList> events;
    for (qsizetype i = 0; i < text.size();) {
        if (text.at(i) != u'<') {
            const qsizetype length = characterLength(text, i);
            events << QStringList { text.mid(i, length) };
            i += length;
            continue;
        }
        CombinationReader combination(text, i);
        if (!combination.read())
            return ParseResult::failure(QStringLiteral("Unterminated key combination: ") + text.mid(i));
        events << combination.keys();
        i = combination.next();
    }
    return events;
}

} // namespace Vorkel
