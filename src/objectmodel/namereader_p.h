#pragma once

#include "objectmodel/propertyvalue.h"

#include <QStringView>
#include <QVarLengthArray>

namespace Vorkel {

/// Reads the properties of a multi-property name one after the other, those of names nested in it where
/// they stand. Takes time in proportion to the text, however deep it nests, and no stack.
class NameReader
{
public:
    enum class Event {
        Property, ///< A key and a text.
        Nested, ///< A key whose value is a name; that one's properties follow.
        NestedEnd, ///< The end of the innermost name, to be had from nestedText().
        End, ///< The end of the text.
        Failure, ///< Nothing follows.
    };
    enum Leniency {
        Strict,
        /// A nested name may end behind an operator, its last property without a value.
        Lenient,
    };

    /// Refers to `text`, which stays the caller's.
    explicit NameReader(QStringView text, Leniency leniency = Strict);

    /// Not to be called once it has given End or Failure.
    Event next();

    /// How many names the reader is in; 1 for properties of the outermost.
    [[nodiscard]] qsizetype depth() const { return m_starts.size(); }
    /// Of the last Property or Nested.
    [[nodiscard]] QString key() const;
    [[nodiscard]] PropertyValue::Modifiers modifier() const { return m_modifier; }
    /// Of the last Property, without its escapes.
    [[nodiscard]] QString value() const;
    /// Of the last NestedEnd, as written, braces included.
    [[nodiscard]] QStringView nestedText() const { return m_nestedText; }

    /// Says in `error` why reading failed. What `error` says already is kept or replaced, depending on the
    /// failure. `name` is what the text was part of.
    void explainFailure(const QString &name, QString *error) const;

private:
    enum class Reason { None, WrongCharacter, UnexpectedEnd, BackslashAtEnd, MoreToRead };

    [[nodiscard]] bool isAtEnd() const { return m_cursor >= m_text.size(); }
    [[nodiscard]] QChar current() const { return m_text[m_cursor]; }
    void skipBlanks();
    bool readKey();
    Event readValue();
    Event readText();
    Event closeName();
    Event fail(Reason reason, QLatin1String expected = QLatin1String());

    QStringView m_text;
    qsizetype m_cursor = 0;
    Leniency m_leniency;
    /// Where the names that the reader is in begin.
    QVarLengthArray<qsizetype, 8> m_starts;

    QStringView m_key;
    QStringView m_value;
    QStringView m_nestedText;
    PropertyValue::Modifiers m_modifier = PropertyValue::Exact;
    bool m_keyHasBlanks = false;
    bool m_valueHasEscapes = false;

    Reason m_reason = Reason::None;
    QLatin1String m_expected;
};

} // namespace Vorkel
