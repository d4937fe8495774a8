#pragma once

#include "fkit/export.h"

#include <QByteArray>
#include <QHash>
#include <QMetaProperty>
#include <QObject>
#include <QString>

#include <optional>

namespace Vorkel {

/// What a person sees of the text on a control: without the marks for shortcuts and changes.
[[nodiscard]] VORKEL_EXPORT QString visibleText(QString text);

/// The property of a class whose text stands on its objects for the user to read, such as the text of a
/// button; null when there is none. What the user types himself is no caption.
[[nodiscard]] const char *captionProperty(const QMetaObject *metaObject);

/// Reads one property of many objects as text, by its name; looks it up once for each class.
class QtPropertyReader
{
public:
    explicit QtPropertyReader(const QString &property)
        : m_property(property.toUtf8())
    {
    }

    /// Captions come as they are seen. Nothing when the object has no such property.
    [[nodiscard]] std::optional<QString> read(const QObject *object);

private:
    /// Where a class has the property.
    struct Slot
    {
        QMetaProperty property; // invalid where there is none
        bool isText = false; // its type is QString
        bool isCaption = false;
    };

    [[nodiscard]] const Slot &slotIn(const QMetaObject *metaObject);

    QByteArray m_property;
    QHash<const QMetaObject *, Slot> m_slots;
    const QMetaObject *m_lastMetaObject = nullptr;
    Slot m_lastSlot;
};

} // namespace Vorkel
