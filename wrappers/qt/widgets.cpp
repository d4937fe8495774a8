// What the wrapper knows of Qt Widgets; loaded into programs that use them.

#include "qthierarchy.h"

#include <QApplication>
#include <QWidget>

namespace Vorkel {

namespace {

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
        return windows;
    }
};

} // namespace

} // namespace Vorkel

extern "C" VORKEL_EXPORT void vorkel_qt_add_toolkit(void (*add)(const Vorkel::QtToolkit *))
{
    static const auto *const toolkit = new Vorkel::WidgetToolkit;
    add(toolkit);
}
