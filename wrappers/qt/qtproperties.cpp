#include "qtproperties.h"

#include "qtreading.h"
#include "qtvalues.h"

namespace Vorkel {

namespace {

struct Caption
{
    const char *className;
    const char *property;
};

// clang-format off
constexpr Caption Captions[] = {
    { "QAbstractButton", "text"        },
    { "QLabel",          "text"        },
    { "QAction",         "text"        },
    { "QMenu",           "title"       },
    { "QGroupBox",       "title"       },
    { "QDockWidget",     "windowTitle" },
    { "QMdiSubWindow",   "windowTitle" },
    { "QToolBar",        "windowTitle" },
    { "QWizardPage",     "title"       },
    { "QHeaderView",     "orientation" },
    { "QScrollBar",      "orientation" },
    { "QSlider",         "orientation" },
    { "QSplitter",       "orientation" },
};
// clang-format on

bool inherits(const QMetaObject *metaObject, const char *className)
{
    for (; metaObject; metaObject = metaObject->superClass()) {
        if (qstrcmp(metaObject->className(), className) == 0)
            return true;
    }
    return false;
}

/// Enums by their keys.
QString textOf(const QVariant &value, const QMetaEnum &metaEnum)
{
    if (value.typeId() == QMetaType::QString)
        return value.toString();
    if (metaEnum.isValid()) {
        const QByteArray keys = metaEnum.valueToKeys(value.toInt());
        if (!keys.isEmpty())
            return QString::fromLatin1(keys);
    }
    const SharedPtr<Object> object = QtValues::toObject(value);
    return object ? object->toString() : QString();
}

} // namespace

QString visibleText(QString text)
{
    // Menu entries carry their shortcut behind a tab, window titles a place for the mark of changes.
    if (const qsizetype tab = text.indexOf(u'\t'); tab >= 0)
        text.truncate(tab);
    if (const qsizetype mark = text.indexOf(QLatin1String("[*]")); mark >= 0)
        text.remove(mark, 3);
    for (qsizetype i = text.indexOf(u'&'); i >= 0; i = text.indexOf(u'&', i + 1))
        text.remove(i, 1);
    return text;
}

const char *captionProperty(const QMetaObject *metaObject)
{
    for (const Caption &caption : Captions) {
        if (inherits(metaObject, caption.className))
            return caption.property;
    }
    return nullptr;
}

const QtPropertyReader::Slot &QtPropertyReader::slotIn(const QMetaObject *metaObject)
{
    if (metaObject == m_lastMetaObject)
        return m_lastSlot;
    auto entry = m_slots.constFind(metaObject);
    if (entry == m_slots.constEnd()) {
        const bool isCaption = m_property == "windowTitle"
                || qstrcmp(m_property.constData(), captionProperty(metaObject)) == 0;
        const QMetaProperty property =
                metaObject->property(metaObject->indexOfProperty(m_property.constData()));
        entry = m_slots.insert(metaObject, { property, property.typeId() == QMetaType::QString, isCaption });
    }
    m_lastMetaObject = metaObject;
    m_lastSlot = *entry;
    return m_lastSlot;
}

std::optional<QString> QtPropertyReader::read(const QObject *object)
{
    const Slot &slot = slotIn(object->metaObject());
    if (slot.isText) {
        QVariant instead;
        const auto read = readExactly<QString>(slot.property, object, &instead);
        const QString text = read ? *read : instead.toString();
        return slot.isCaption ? visibleText(text) : text;
    }
    QVariant value;
    if (slot.property.isValid())
        value = slot.property.read(object);
    else if (!object->dynamicPropertyNames().isEmpty())
        value = object->property(m_property.constData());
    return value.isValid() ? std::optional(textOf(value, slot.property.enumerator())) : std::nullopt;
}

} // namespace Vorkel
