#pragma once

#include "widgetitem.h"
#include "widgettarget.h"

namespace Vorkel {

/// A row, a tab, a column's head.
class ItemTarget : public WidgetPartTarget
{
public:
    /// `item` is there and outlives this.
    explicit ItemTarget(const WidgetItem &item)
        : WidgetPartTarget(item.surface(), item.area())
        , m_item(item)
    {
    }

    [[nodiscard]] QString whyDisabled() const override
    {
        return m_item.isEnabled() ? WidgetPartTarget::whyDisabled() : QStringLiteral("is disabled");
    }
    bool reveal() const override { return m_item.reveal(); }

private:
    const WidgetItem &m_item;
};

} // namespace Vorkel
