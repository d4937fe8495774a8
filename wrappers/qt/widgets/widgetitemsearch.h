#pragma once

#include "objectmodel/object.h"

namespace Vorkel {

/// Finds what a person would call an item of a control: rows, tabs, entries of combo boxes, menus and tool
/// bars. What has no own items to show is searched where it shows them. All give null when there is none.
namespace WidgetItemSearch {

/// The first item with that text, or one below an item, such as in a tree.
[[nodiscard]] SharedPtr<Object> byText(const SharedPtr<Object> &container, const QString &text);
/// Entries, tabs and the like count as rows; their column is not looked at.
[[nodiscard]] SharedPtr<Object> byPlace(const SharedPtr<Object> &container, int row, int column);

} // namespace WidgetItemSearch

} // namespace Vorkel
