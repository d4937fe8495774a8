#include "widgetitemsearch.h"

#include "qtobjects.h"
#include "qtproperties.h"
#include "widgetitemclass.h"

#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QMenu>
#include <QMenuBar>
#include <QTabWidget>
#include <QToolBar>
#include <QToolButton>

namespace Vorkel::WidgetItemSearch {

namespace {

/// So many branches of a tree are looked into.
constexpr int MaxBranches = 10000;

/// What shows the items of `object`: for a combo box its list, for a button its menu.
QObject *holderOf(QObject *object)
{
    if (auto *combo = qobject_cast<QComboBox *>(object))
        return combo->view();
    if (auto *pages = qobject_cast<QTabWidget *>(object))
        return pages->tabBar();
    if (auto *button = qobject_cast<QToolButton *>(object))
        return button->menu();
    if (auto *action = qobject_cast<QAction *>(object))
        return action->menu<QMenu *>();
    return object;
}

SharedPtr<Object> holderOf(const SharedPtr<Object> &container)
{
    QObject *object = QtObjects::unwrap(container);
    QObject *holder = object ? holderOf(object) : nullptr;
    return holder && holder != object ? QtObjects::self()->wrap(holder) : container;
}

/// The entries that a person can tell apart.
QList<QAction *> entriesOf(const SharedPtr<Object> &holder)
{
    QObject *object = QtObjects::unwrap(holder);
    QList<QAction *> entries;
    if (!qobject_cast<QMenu *>(object) && !qobject_cast<QMenuBar *>(object)
        && !qobject_cast<QToolBar *>(object))
        return entries;
    for (QAction *action : static_cast<QWidget *>(object)->actions()) {
        if (!action->isSeparator())
            entries.append(action);
    }
    return entries;
}

/// Looks at all items of a branch before the branches below it.
std::unique_ptr<WidgetItem> findBelow(const WidgetItemSource &top, const QString &text)
{
    std::unique_ptr<WidgetItem> found;
    WidgetItems branches;
    const auto look = [&](std::unique_ptr<WidgetItem> item) {
        if (item->text() == text)
            found = std::move(item);
        else if (branches.size() < MaxBranches && item->column() == 0)
            branches.push_back(std::move(item));
        return !found;
    };
    top.walk(-1, -1, look);
    for (std::size_t i = 0; i < branches.size() && !found; ++i) {
        const std::unique_ptr<WidgetItem> branch = std::move(branches[i]);
        if (const auto below = itemSource(branch->widget(), branch.get()))
            below->walk(-1, -1, look);
    }
    return found;
}

} // namespace

SharedPtr<Object> byText(const SharedPtr<Object> &container, const QString &text)
{
    const SharedPtr<Object> holder = holderOf(container);
    for (QAction *action : entriesOf(holder)) {
        if (visibleText(action->text()) == text)
            return QtObjects::self()->wrap(action);
    }
    const std::unique_ptr<WidgetItemSource> source = WidgetItemClass::sourceOf(holder);
    std::unique_ptr<WidgetItem> item = source ? findBelow(*source, text) : nullptr;
    return item ? WidgetItemClass::wrapItem(std::move(item)) : nullptr;
}

SharedPtr<Object> byPlace(const SharedPtr<Object> &container, int row, int column)
{
    const SharedPtr<Object> holder = holderOf(container);
    const QList<QAction *> entries = entriesOf(holder);
    if (row < 0 || column < 0)
        return nullptr;
    if (!entries.isEmpty())
        return row < entries.size() ? QtObjects::self()->wrap(entries.at(row)) : nullptr;
    const std::unique_ptr<WidgetItemSource> source = WidgetItemClass::sourceOf(holder);
    std::unique_ptr<WidgetItem> item;
    if (source)
        source->walk(row, column, [&](std::unique_ptr<WidgetItem> each) {
            item = std::move(each);
            return false;
        });
    return item ? WidgetItemClass::wrapItem(std::move(item)) : nullptr;
}

} // namespace Vorkel::WidgetItemSearch
