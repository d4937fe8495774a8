#include "widgetitem.h"

#include "qtproperties.h"

#include <QAbstractItemView>
#include <QHeaderView>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QRegularExpression>
#include <QTabBar>
#include <QToolButton>

namespace Vorkel {

namespace {

/// What fits on a screen, even a large one.
constexpr std::size_t MaxVisible = 1000;
/// So many rows without a visible one are the hidden part of a tree.
constexpr int MaxHidden = 1000;
constexpr int MaxColumns = 1000;
/// Looking through a larger model would take the program's time.
constexpr int MaxItems = 100000;

/// The names that a tab bar gives its arrows.
const QRegularExpression ScrollArrows(QStringLiteral("^Scroll(Left|Right)Button$"));

// Rows and cells of lists, tables and trees

class ModelItem : public WidgetItem
{
public:
    ModelItem(QAbstractItemView *view, const QModelIndex &index)
        : m_view(view)
        , m_index(index)
    {
    }

    // clang-format off
    [[nodiscard]] QWidget *widget() const override { return m_index.isValid() ? m_view.data() : nullptr; }
    [[nodiscard]] const char *className() const override { return "ModelItem"; }
    [[nodiscard]] QString text() const override { return m_index.data().toString(); }
    [[nodiscard]] int row() const override { return m_index.row(); }
    [[nodiscard]] int column() const override { return m_index.column(); }
    [[nodiscard]] bool isSelected() const override { return m_view && m_view->selectionModel() && m_view->selectionModel()->isSelected(m_index); }
    [[nodiscard]] bool isEnabled() const override { return m_index.flags() & Qt::ItemIsEnabled; }
    [[nodiscard]] QString toolTip() const override { return m_index.data(Qt::ToolTipRole).toString(); }
    [[nodiscard]] QWidget *surface() const override { return m_view ? m_view->viewport() : nullptr; }
    [[nodiscard]] QRect area() const override { return m_view ? m_view->visualRect(m_index) : QRect(); }
    // clang-format on
    [[nodiscard]] bool isSame(const WidgetItem &other) const override
    {
        const auto *item = dynamic_cast<const ModelItem *>(&other);
        return item && item->m_view == m_view && item->m_index == m_index;
    }
    [[nodiscard]] std::unique_ptr<WidgetItem> parent() const override
    {
        const QModelIndex above = m_index.parent();
        if (!m_view || !above.isValid() || above == m_view->rootIndex())
            return nullptr;
        return std::make_unique<ModelItem>(m_view, above);
    }

    /// In the middle: pop-ups scroll on when the pointer is at their edges.
    bool reveal() const override
    {
        if (m_view)
            m_view->scrollTo(m_index, QAbstractItemView::PositionAtCenter);
        return surface() && area().intersects(surface()->rect());
    }

    [[nodiscard]] QModelIndex index() const { return m_index; }

private:
    QPointer<QAbstractItemView> m_view;
    QPersistentModelIndex m_index;
};

class ModelItems : public WidgetItemSource
{
public:
    ModelItems(QAbstractItemView *view, const QModelIndex &root)
        : m_view(view)
        , m_root(root)
    {
    }

    [[nodiscard]] WidgetItems visible() const override;
    void walk(int row, int column,
              const std::function<bool(std::unique_ptr<WidgetItem>)> &visit) const override;

private:
    [[nodiscard]] int firstVisibleRow() const;

    QAbstractItemView *m_view;
    QModelIndex m_root;
};

/// The row in this root that the top of the view shows, or the one of a child of it.
int ModelItems::firstVisibleRow() const
{
    for (QModelIndex at = m_view->indexAt(QPoint(1, 1)); at.isValid(); at = at.parent()) {
        if (at.parent() == m_root)
            return at.row();
    }
    return 0;
}

WidgetItems ModelItems::visible() const
{
    WidgetItems items;
    const QAbstractItemModel *model = m_view->model();
    if (!model || !m_view->isVisible())
        return items;
    const QRect shown = m_view->viewport()->rect();
    const int columns = std::min(model->columnCount(m_root), MaxColumns);
    const int rows = model->rowCount(m_root);
    int hidden = 0;
    for (int row = firstVisibleRow(); row < rows && items.size() < MaxVisible && hidden < MaxHidden; ++row) {
        const std::size_t before = items.size();
        bool isBelow = false;
        for (int column = 0; column < columns; ++column) {
            const QModelIndex index = model->index(row, column, m_root);
            const QRect place = m_view->visualRect(index);
            isBelow = isBelow || (place.isValid() && place.top() > shown.bottom());
            if (place.isValid() && place.intersects(shown))
                items.push_back(std::make_unique<ModelItem>(m_view, index));
        }
        hidden = items.size() == before ? hidden + 1 : 0;
        if (isBelow)
            break;
    }
    return items;
}

void ModelItems::walk(int row, int column,
                      const std::function<bool(std::unique_ptr<WidgetItem>)> &visit) const
{
    const QAbstractItemModel *model = m_view->model();
    if (!model)
        return;
    const int rows = model->rowCount(m_root);
    const int columns = std::min(model->columnCount(m_root), column < 0 ? MaxColumns : column + 1);
    const int endRow = row < 0 ? rows : std::min(rows, row + 1);
    int left = MaxItems;
    for (int atRow = std::max(row, 0); atRow < endRow; ++atRow) {
        for (int atColumn = std::max(column, 0); atColumn < columns; ++atColumn) {
            if (--left < 0
                || !visit(std::make_unique<ModelItem>(m_view, model->index(atRow, atColumn, m_root))))
                return;
        }
    }
}

// What is counted in one line: tabs, and the sections of a header

/// `Bar` is what they stand in, `Facts` says how to read one.
template <typename Bar, typename Facts>
class BarItem : public WidgetItem
{
public:
    BarItem(Bar *bar, int index)
        : m_bar(bar)
        , m_index(index)
    {
    }

    // clang-format off
    [[nodiscard]] QWidget *widget() const override { return m_bar && m_index < m_bar->count() ? m_bar.data() : nullptr; }
    [[nodiscard]] const char *className() const override { return Facts::ClassName; }
    [[nodiscard]] QString text() const override { return Facts::text(*m_bar, m_index); }
    [[nodiscard]] int row() const override { return m_index; }
    [[nodiscard]] bool isSelected() const override { return Facts::isSelected(*m_bar, m_index); }
    [[nodiscard]] bool isEnabled() const override { return Facts::isEnabled(*m_bar, m_index); }
    [[nodiscard]] QString toolTip() const override { return Facts::toolTip(*m_bar, m_index); }
    [[nodiscard]] QWidget *surface() const override { return m_bar ? Facts::surface(*m_bar) : nullptr; }
    [[nodiscard]] QRect area() const override { return m_bar ? Facts::area(*m_bar, m_index) : QRect(); }
    bool reveal() const override { return m_bar && Facts::reveal(*m_bar, m_index); }
    // clang-format on
    [[nodiscard]] bool isSame(const WidgetItem &other) const override
    {
        const auto *item = dynamic_cast<const BarItem *>(&other);
        return item && item->m_bar == m_bar && item->m_index == m_index;
    }

private:
    QPointer<Bar> m_bar;
    int m_index;
};

template <typename Bar, typename Facts>
class BarItems : public WidgetItemSource
{
public:
    explicit BarItems(Bar *bar)
        : m_bar(bar)
    {
    }

    [[nodiscard]] WidgetItems visible() const override
    {
        WidgetItems items;
        for (int i = 0; i < m_bar->count() && items.size() < MaxVisible && m_bar->isVisible(); ++i) {
            if (Facts::isVisible(*m_bar, i))
                items.push_back(std::make_unique<BarItem<Bar, Facts>>(m_bar, i));
        }
        return items;
    }

    void walk(int row, int, const std::function<bool(std::unique_ptr<WidgetItem>)> &visit) const override
    {
        const int count = std::min(m_bar->count(), row < 0 ? MaxItems : row + 1);
        for (int i = std::max(row, 0); i < count; ++i) {
            if (!visit(std::make_unique<BarItem<Bar, Facts>>(m_bar, i)))
                return;
        }
    }

private:
    Bar *m_bar;
};

// clang-format off
struct TabFacts
{
    static constexpr char ClassName[] = "TabItem";
    static QString text(const QTabBar &bar, int index) { return visibleText(bar.tabText(index)); }
    static bool isSelected(const QTabBar &bar, int index) { return bar.currentIndex() == index; }
    static bool isEnabled(const QTabBar &bar, int index) { return bar.isTabEnabled(index); }
    static bool isVisible(const QTabBar &bar, int index) { return bar.isTabVisible(index); }
    static QString toolTip(const QTabBar &bar, int index) { return bar.tabToolTip(index); }
    static QWidget *surface(QTabBar &bar) { return &bar; }
    static QRect area(const QTabBar &bar, int index);
    static bool reveal(const QTabBar &bar, int index);
};

struct SectionFacts
{
    static constexpr char ClassName[] = "HeaderItem";
    static QVariant data(const QHeaderView &bar, int index, int role) { return bar.model() ? bar.model()->headerData(index, bar.orientation(), role) : QVariant(); }
    static QString text(const QHeaderView &bar, int index) { return data(bar, index, Qt::DisplayRole).toString(); }
    static bool isSelected(const QHeaderView &bar, int index) { return bar.isSortIndicatorShown() && bar.sortIndicatorSection() == index; }
    static bool isEnabled(const QHeaderView &bar, int) { return bar.isEnabled(); }
    static bool isVisible(const QHeaderView &bar, int index) { return !bar.isSectionHidden(index) && bar.sectionViewportPosition(index) < (bar.orientation() == Qt::Horizontal ? bar.viewport()->width() : bar.viewport()->height()); }
    static QString toolTip(const QHeaderView &bar, int index) { return data(bar, index, Qt::ToolTipRole).toString(); }
    static QWidget *surface(QHeaderView &bar) { return bar.viewport(); }
    static QRect area(const QHeaderView &bar, int index);
    static bool reveal(const QHeaderView &bar, int index);
};
// clang-format on

/// What the arrows leave of it, with which the bar is scrolled when it is too short.
QRect TabFacts::area(const QTabBar &bar, int index)
{
    QRegion left(bar.tabRect(index) & bar.rect());
    const bool isHorizontal = bar.width() >= bar.height();
    for (const QToolButton *arrow : bar.findChildren<QToolButton *>(ScrollArrows, Qt::FindDirectChildrenOnly))
    {
        const QRect place = arrow->geometry();
        if (arrow->isVisible())
            left -= isHorizontal ? QRect(place.x(), 0, place.width(), bar.height())
                                 : QRect(0, place.y(), bar.width(), place.height());
    }
    return left.boundingRect();
}

/// As a person does: by the arrows, until enough of it is there to be pressed.
bool TabFacts::reveal(const QTabBar &bar, int index)
{
    const auto arrows = bar.findChildren<QToolButton *>(ScrollArrows, Qt::FindDirectChildrenOnly);
    for (QToolButton *arrow : arrows) {
        for (int i = 0; i < bar.count() && arrow->isVisible() && arrow->isEnabled(); ++i) {
            if (!area(bar, index).isEmpty())
                return true;
            arrow->click();
        }
    }
    return !area(bar, index).isEmpty();
}

QRect SectionFacts::area(const QHeaderView &bar, int index)
{
    const int at = bar.sectionViewportPosition(index);
    const int size = bar.sectionSize(index);
    return bar.orientation() == Qt::Horizontal ? QRect(at, 0, size, bar.viewport()->height())
                                               : QRect(0, at, bar.viewport()->width(), size);
}

/// A header goes along with the view that it heads.
bool SectionFacts::reveal(const QHeaderView &bar, int index)
{
    auto *view = qobject_cast<QAbstractItemView *>(bar.parentWidget());
    if (!view || !view->model() || bar.isSectionHidden(index))
        return false;
    const bool isHorizontal = bar.orientation() == Qt::Horizontal;
    view->scrollTo(isHorizontal ? view->model()->index(0, index) : view->model()->index(index, 0));
    return area(bar, index).intersects(bar.viewport()->rect());
}

} // namespace

std::unique_ptr<WidgetItemSource> itemSource(QWidget *widget, const WidgetItem *item)
{
    if (auto *tabs = qobject_cast<QTabBar *>(widget))
        return item ? nullptr : std::make_unique<BarItems<QTabBar, TabFacts>>(tabs);
    if (auto *header = qobject_cast<QHeaderView *>(widget))
        return item ? nullptr : std::make_unique<BarItems<QHeaderView, SectionFacts>>(header);
    auto *view = qobject_cast<QAbstractItemView *>(widget);
    if (!view)
        return nullptr;
    const auto *modelItem = dynamic_cast<const ModelItem *>(item);
    return std::make_unique<ModelItems>(view, modelItem ? modelItem->index() : view->rootIndex());
}

} // namespace Vorkel
