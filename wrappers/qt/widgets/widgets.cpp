// What the wrapper knows of Qt Widgets; loaded into programs that use them.

#include "actiontarget.h"
#include "itemtarget.h"
#include "qtfunctions.h"
#include "qtgeometry.h"
#include "qtobjects.h"
#include "qttoolkit.h"
#include "widgetitemnames.h"
#include "widgetitemsearch.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <tuple>

namespace Vorkel {

namespace {

const QWidget *asWidget(const QObject *object)
{
    return object->isWidgetType() ? static_cast<const QWidget *>(object) : nullptr;
}

bool isPopup(const QWidget *widget)
{
    const Qt::WindowType type = widget->windowType();
    return type == Qt::Popup || type == Qt::ToolTip || type == Qt::SplashScreen;
}

/// Qt keeps widgets in the order of their addresses, which no two runs share.
void sortForEveryRun(QObjectList *windows)
{
    const QWindowList created = QGuiApplication::allWindows();
    const auto rank = [&](const QObject *object) {
        const auto *widget = static_cast<const QWidget *>(object);
        const qsizetype place = created.indexOf(widget->windowHandle());
        return std::tuple(QByteArray(object->metaObject()->className()), object->objectName(),
                          widget->windowTitle(), place < 0 ? created.size() : place);
    };
    std::stable_sort(windows->begin(), windows->end(),
                     [&](const QObject *a, const QObject *b) { return rank(a) < rank(b); });
}

class WidgetToolkit : public QtToolkit
{
public:
    [[nodiscard]] QObjectList topLevels() const override
    {
        QObjectList windows;
        if (!qobject_cast<QApplication *>(QCoreApplication::instance()))
            return windows;
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            // Windows with a parent stand below it.
            if (!widget->parent())
                windows.append(widget);
        }
        sortForEveryRun(&windows);
        return windows;
    }

    [[nodiscard]] QObjectList associates(const QObject *object) const override
    {
        QObjectList found;
        if (const QWidget *widget = asWidget(object)) {
            for (QAction *action : widget->actions()) {
                if (!action->parent())
                    found.append(action);
            }
        }
        return found;
    }

    [[nodiscard]] bool isWindow(const QObject *object) const override
    {
        const QWidget *widget = asWidget(object);
        return widget && widget->isWindow() && !isPopup(widget);
    }

    [[nodiscard]] bool isVisible(const QObject *object) const override
    {
        if (const QWidget *widget = asWidget(object))
            return widget->isVisible();
        const auto *action = qobject_cast<const QAction *>(object);
        return action && action->isVisible();
    }

    [[nodiscard]] QObject *labelled(const QObject *object) const override
    {
        const auto *label = qobject_cast<const QLabel *>(object);
        return label ? label->buddy() : nullptr;
    }

    [[nodiscard]] bool isItemClass(const QString &className) const override
    {
        return std::any_of(std::begin(WidgetItemClass::Names), std::end(WidgetItemClass::Names),
                           [&](const char *name) { return className == QLatin1String(name); });
    }

    [[nodiscard]] std::unique_ptr<QtTarget> target(const SharedPtr<Object> &object) const override
    {
        if (const WidgetItem *item = WidgetItemClass::unwrapItem(object))
            return std::make_unique<ItemTarget>(*item);
        QObject *unwrapped = QtObjects::unwrap(object);
        if (auto *action = qobject_cast<QAction *>(unwrapped))
            return std::make_unique<ActionTarget>(action);
        auto *widget = qobject_cast<QWidget *>(unwrapped);
        return widget ? std::make_unique<WidgetTarget>(widget) : nullptr;
    }

    [[nodiscard]] QImage picture(QWindow *window) const override
    {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (widget->windowHandle() == window)
                return widget->grab().toImage();
        }
        return QImage();
    }

    // clang-format off
    [[nodiscard]] SharedPtr<Object> itemByText(const SharedPtr<Object> &container, const QString &text) const override { return WidgetItemSearch::byText(container, text); }
    [[nodiscard]] SharedPtr<Object> itemByPlace(const SharedPtr<Object> &container, int row, int column) const override { return WidgetItemSearch::byPlace(container, row, column); }
    [[nodiscard]] ObjectList visibleItems(const SharedPtr<Object> &container) const override { return WidgetItemHierarchy::visibleItems(container); }
    [[nodiscard]] SharedPtr<Object> findItem(const SharedPtr<Object> &container, const ObjectName &name) const override { return WidgetItemHierarchy::findItem(container, name); }
    // clang-format on
};

} // namespace

} // namespace Vorkel

/// The wrapper calls this once, having loaded the library.
extern "C" VORKEL_EXPORT void vorkel_qt_add_toolkit()
{
    // They live as long as the process.
    Vorkel::QtToolkits::add(new Vorkel::WidgetToolkit);
    for (const char *name : Vorkel::WidgetItemClass::Names) {
        new Vorkel::WidgetItemHierarchy(QString::fromLatin1(name));
        new Vorkel::QtGeometryDelegate(QString::fromLatin1(name));
        Vorkel::QtFunctions::registerFor(Vorkel::WidgetItemClass::classFor(name));
    }
}
