#pragma once

#include "objectmodel/propertyvalue.h"

namespace Vorkel {

/// Whether `name` starts with "{" and ends with "}".
[[nodiscard]] VORKEL_EXPORT bool isMultiPropertyName(const QString &name);

/// The properties of `name`, of which the last one of a key counts; the white space around the name does
/// not. For a bad name the result is empty and `error`, unless it is null, says why. It should be empty
/// before, since some messages do not replace what is there.
///
/// Without `error`, a name nested in the name may end behind an operator, as in `{a={b=}}`.
[[nodiscard]] VORKEL_EXPORT PropertyMap parseNameByProperties(const QString &name, QString *error);

/// The one text that stands for names of these properties: sorted by key, with as few blanks as possible.
[[nodiscard]] VORKEL_EXPORT QString qualifiedNameFromProperties(const PropertyMap &properties);

/// Whether two names mean the same: by their properties where both are in braces, else by their texts.
/// A bad name in braces has no properties.
[[nodiscard]] VORKEL_EXPORT bool qualifiedNamesEqual(const QString &left, const QString &right);

/// The name of an object, as a text and as properties; each is made from the other when it is asked for.
///
/// A name in braces has properties: `{type='QPushButton' text?='Save*' window={title='Main'}}`. Any other
/// text is a hierarchical name, `MainWindow.okButton`, and has none.
class VORKEL_EXPORT ObjectName
{
public:
    /// A name without text and properties, which is not an error.
    ObjectName();
    /// An empty text is an error.
    explicit ObjectName(const QString &qualifiedName);
    explicit ObjectName(const PropertyMap &properties);

    [[nodiscard]] QString qualifiedName() const;
    /// Empty for a bad name.
    [[nodiscard]] PropertyMap properties() const;
    /// The empty text if the name does not speak of `key`.
    [[nodiscard]] PropertyValue property(const QString &key) const;
    void setProperty(const QString &key, const PropertyValue &value);
    void removeProperty(const QString &key);

    /// Why the text is no name; empty if it is one. Changes of properties do not make a bad name good.
    [[nodiscard]] QString errorMessage() const;
    [[nodiscard]] bool isValid() const;
    /// Whether it is a valid name in braces.
    [[nodiscard]] bool isMultiProperty() const;
    /// Whether there is no text, or, once the properties have been asked for, no property.
    [[nodiscard]] bool isEmpty() const;
    /// Which one of several equal objects is meant, counted from 1; -1 if the name does not say it well.
    [[nodiscard]] int occurrenceValue() const;

    /// Whether the texts are the same or both are names in braces of the same properties.
    friend VORKEL_EXPORT bool operator==(const ObjectName &left, const ObjectName &right);
    friend bool operator!=(const ObjectName &left, const ObjectName &right) { return !(left == right); }
    /// By text alone, so names may be equal of which one is less.
    friend bool operator<(const ObjectName &left, const ObjectName &right)
    {
        return left.text() < right.text();
    }

private:
    enum Flag : quint32 { TextIsCurrent = 1, MapIsCurrent = 2 };

    const QString &text() const;
    const PropertyMap &map() const;

    mutable QString m_qualifiedName;
    mutable PropertyMap m_properties;
    mutable quint32 m_flags;
    mutable QString m_error;
};

} // namespace Vorkel
