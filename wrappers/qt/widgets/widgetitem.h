#pragma once

#include "objectmodel/object.h"
#include "objectmodel/objectname.h"

#include <QRect>
#include <QString>
#include <QVariant>

#include <functional>
#include <memory>
#include <vector>

class QWidget;

namespace Vorkel {

/// Something in a widget that a user can point at and that is no QObject: a row, a tab, a column's head.
class WidgetItem
{
public:
    virtual ~WidgetItem() = default;

    /// Null once the item is gone.
    [[nodiscard]] virtual QWidget *widget() const = 0;
    /// The class under which it is known.
    [[nodiscard]] virtual const char *className() const = 0;
    [[nodiscard]] virtual QString text() const = 0;
    /// Where it stands among its kind in what it stands in.
    [[nodiscard]] virtual int row() const = 0;
    /// -1 where there are no columns.
    [[nodiscard]] virtual int column() const { return -1; }
    [[nodiscard]] virtual bool isSelected() const = 0;
    [[nodiscard]] virtual bool isEnabled() const = 0;
    [[nodiscard]] virtual QString toolTip() const = 0;
    [[nodiscard]] virtual bool isSame(const WidgetItem &other) const = 0;

    /// The widget that shows it, and where on that. An empty area when it cannot be seen.
    [[nodiscard]] virtual QWidget *surface() const = 0;
    [[nodiscard]] virtual QRect area() const = 0;
    /// Scrolls and opens what it stands in until it can be seen; whether it can then.
    virtual bool reveal() const = 0;

    /// The item that it stands in; null when that is the widget.
    [[nodiscard]] virtual std::unique_ptr<WidgetItem> parent() const { return nullptr; }
};

using WidgetItems = std::vector<std::unique_ptr<WidgetItem>>;

/// The items of one widget, or of one of its items.
class WidgetItemSource
{
public:
    virtual ~WidgetItemSource() = default;

    /// Those that can be seen now, not many.
    [[nodiscard]] virtual WidgetItems visible() const = 0;
    /// Calls `visit(item)` with each until it gives false. With `row` and `column` not negative only with
    /// those there.
    virtual void walk(int row, int column,
                      const std::function<bool(std::unique_ptr<WidgetItem> item)> &visit) const = 0;
};

/// The source for `widget`, or for `item` of it where that is not null; null when it has no items.
[[nodiscard]] std::unique_ptr<WidgetItemSource> itemSource(QWidget *widget, const WidgetItem *item);

} // namespace Vorkel
