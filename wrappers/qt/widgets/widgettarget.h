#pragma once

#include "qttarget.h"

#include <QPointer>
#include <QWidget>

namespace Vorkel {

/// What stands somewhere in a widget: the whole of it or a part, such as a row of a list.
class WidgetPartTarget : public QtTarget
{
public:
    [[nodiscard]] QRect area() const override;
    [[nodiscard]] QRect visibleArea() const override;
    [[nodiscard]] QWindow *window() const override;
    [[nodiscard]] QString whyInvisible() const override;
    [[nodiscard]] QString whyDisabled() const override;
    [[nodiscard]] QString whyBlocked() const override;
    [[nodiscard]] QImage picture() const override;

protected:
    /// `part` in the widget's own coordinates.
    WidgetPartTarget(QWidget *widget, const QRect &part)
        : m_widget(widget)
        , m_part(part)
    {
    }

    /// What of `part` of the widget is visible.
    [[nodiscard]] QRect visibleArea(QRect part) const;
    /// Null when it is shown nowhere.
    [[nodiscard]] QWidget *widget() const { return m_widget; }
    void setWidget(QWidget *widget) { m_widget = widget; }
    void setPart(const QRect &part) { m_part = part; }

private:
    QPointer<QWidget> m_widget;
    QRect m_part;
};

/// A widget. What is drawn beside a check box or a radio button belongs to it, yet takes no click, so they
/// are pressed where they do.
class WidgetTarget : public WidgetPartTarget
{
public:
    explicit WidgetTarget(QWidget *widget)
        : WidgetPartTarget(widget, widget->rect())
    {
    }

    [[nodiscard]] QPoint pressPoint() const override;
    /// Scrolls the areas that it stands in.
    bool reveal() const override;
};

} // namespace Vorkel
