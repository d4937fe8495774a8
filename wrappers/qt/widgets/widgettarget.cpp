#include "widgettarget.h"

#include "qtgeometry.h"
#include "qtwindowtarget.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QRadioButton>
#include <QScrollArea>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QStyleOptionGroupBox>

namespace Vorkel {

namespace {

QString describe(const QWidget *widget)
{
    const QString type = QString::fromLatin1(widget->metaObject()->className());
    const QString title = widget->isWindow() ? widget->windowTitle() : QString();
    const QString name = widget->objectName().isEmpty() ? title : widget->objectName();
    return name.isEmpty() ? QStringLiteral("a ") + type : QStringLiteral("'%1' (%2)").arg(name, type);
}

/// `part` of the widget in the coordinates of its window's position.
QRect placed(const QWidget *widget, const QRect &part)
{
    const QWidget *window = widget->window();
    return part.translated(widget->mapTo(window, QPoint(0, 0)) + QtPixels::start(window->windowHandle()));
}

bool isPopup(const QWidget *widget)
{
    return widget->windowType() == Qt::Popup;
}

/// The widget of the window that a click at `point` reaches.
QWidget *hitBy(QWidget *window, const QPoint &point)
{
    QWidget *child = window->childAt(point - QtPixels::start(window->windowHandle()));
    return child ? child : window;
}

template <typename Button, typename Option>
QRect clickRect(const Button *button, QStyle::SubElement element)
{
    Option option;
    option.initFrom(button);
    option.text = button->text();
    option.icon = button->icon();
    option.iconSize = button->iconSize();
    return button->style()->subElementRect(element, &option, button);
}

QRect checkRect(const QGroupBox *box)
{
    QStyleOptionGroupBox option;
    option.initFrom(box);
    option.text = box->title();
    option.subControls = QStyle::SC_GroupBoxCheckBox | QStyle::SC_GroupBoxLabel;
    return box->style()->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxCheckBox, box);
}

QRect arrowRect(const QComboBox *box)
{
    QStyleOptionComboBox option;
    option.initFrom(box);
    option.editable = true;
    return box->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxArrow, box);
}

/// The part of a control that does what a click on it is meant to do; empty when all of it does.
QRect effectivePart(const QWidget *widget)
{
    if (const auto *check = qobject_cast<const QCheckBox *>(widget))
        return clickRect<QCheckBox, QStyleOptionButton>(check, QStyle::SE_CheckBoxClickRect);
    if (const auto *radio = qobject_cast<const QRadioButton *>(widget))
        return clickRect<QRadioButton, QStyleOptionButton>(radio, QStyle::SE_RadioButtonClickRect);
    if (const auto *group = qobject_cast<const QGroupBox *>(widget); group && group->isCheckable())
        return checkRect(group);
    if (const auto *combo = qobject_cast<const QComboBox *>(widget); combo && combo->isEditable())
        return arrowRect(combo);
    return QRect();
}

} // namespace

QRect WidgetPartTarget::area() const
{
    return m_widget && m_widget->isVisible() && !m_part.isEmpty() ? placed(m_widget, m_part) : QRect();
}

QRect WidgetPartTarget::visibleArea() const
{
    return visibleArea(m_part);
}

QRect WidgetPartTarget::visibleArea(QRect part) const
{
    if (!m_widget || !m_widget->isVisible())
        return QRect();
    part &= m_widget->rect();
    const QWidget *at = m_widget;
    for (; !at->isWindow() && at->parentWidget(); at = at->parentWidget())
        part = part.translated(at->pos()) & at->parentWidget()->rect();
    return part.isEmpty() ? QRect() : QtWindows::onScreen(window(), placed(at, part));
}

QWindow *WidgetPartTarget::window() const
{
    return m_widget ? m_widget->window()->windowHandle() : nullptr;
}

QString WidgetPartTarget::whyInvisible() const
{
    if (!m_widget)
        return QStringLiteral("is not visible: nothing shows it");
    for (const QWidget *at = m_widget; at && !m_widget->isVisible(); at = at->parentWidget()) {
        if (at->isHidden())
            return QStringLiteral("is not visible: %1 is hidden").arg(describe(at));
    }
    return m_widget->rect().isEmpty() ? QStringLiteral("is not visible: it has no extent")
                                      : QtWindows::whyInvisible(window());
}

QString WidgetPartTarget::whyDisabled() const
{
    if (m_widget->isEnabled())
        return QString();
    const QWidget *at = m_widget;
    while (!at->isWindow() && at->parentWidget() && !at->parentWidget()->isEnabled())
        at = at->parentWidget();
    return at == m_widget ? QStringLiteral("is disabled")
                          : QStringLiteral("is disabled, as is %1").arg(describe(at));
}

QString WidgetPartTarget::whyBlocked() const
{
    const QWidget *popup = QApplication::activePopupWidget();
    if (popup && !isPopup(m_widget->window()))
        return QStringLiteral("is blocked by the open %1").arg(describe(popup));
    const QPoint point = pressPoint();
    if (const QString covered = QtWindows::whyCovered(window(), point); !covered.isEmpty())
        return covered;
    const QWidget *hit = hitBy(m_widget->window(), point);
    if (hit == m_widget || m_widget->isAncestorOf(hit))
        return QString();
    const QString where = QStringLiteral("at (%1, %2)").arg(point.x()).arg(point.y());
    return hit->isAncestorOf(m_widget)
            ? QStringLiteral("lets clicks through %1 to %2").arg(where, describe(hit))
            : QStringLiteral("is covered %1 by %2").arg(where, describe(hit));
}

QImage WidgetPartTarget::picture() const
{
    return m_widget ? m_widget->grab(m_part).toImage() : QImage();
}

QPoint WidgetTarget::pressPoint() const
{
    const QRect effective = widget() ? visibleArea(effectivePart(widget())) : QRect();
    return effective.isEmpty() ? visibleArea().center() : effective.center();
}

bool WidgetTarget::reveal() const
{
    for (QWidget *at = widget()->parentWidget(); at && !at->isWindow(); at = at->parentWidget()) {
        if (auto *scroller = qobject_cast<QScrollArea *>(at))
            scroller->ensureWidgetVisible(widget());
    }
    return !visibleArea().isEmpty();
}

} // namespace Vorkel
