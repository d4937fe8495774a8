// What the wrapper knows of Qt Widgets; loaded into programs that use them.

#include "qttoolkit.h"
#include "widgetitemnames.h"

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

    // clang-format off
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
    for (const char *name : Vorkel::WidgetItemClass::Names)
        new Vorkel::WidgetItemHierarchy(QString::fromLatin1(name));
}
