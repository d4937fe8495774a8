#include "qtdrags.h"

#include <QGuiApplication>
#include <QScopedValueRollback>

#include <private/qdnd_p.h>
#include <private/qguiapplication_p.h>
#include <private/qsimpledrag_p.h>
#include <qpa/qplatformintegration.h>

namespace Vorkel {

namespace {

/// Is asked for nothing but its drag.
class DragIntegration : public QPlatformIntegration
{
public:
    [[nodiscard]] QPlatformDrag *drag() const override
    {
        static auto *const instance = new QSimpleDrag;
        return instance;
    }
    [[nodiscard]] QPlatformWindow *createPlatformWindow(QWindow *) const override { return nullptr; }
    [[nodiscard]] QPlatformBackingStore *createPlatformBackingStore(QWindow *) const override
    {
        return nullptr;
    }
    [[nodiscard]] QAbstractEventDispatcher *createEventDispatcher() const override { return nullptr; }
};

} // namespace

void QtDrags::provide()
{
    if (QGuiApplication::platformName() != QLatin1String("offscreen"))
        return;
    // Qt asks the platform once, when its manager of drags is made.
    DragIntegration integration;
    const QScopedValueRollback<QPlatformIntegration *> replaced(QGuiApplicationPrivate::platform_integration,
                                                                &integration);
    QDragManager::self();
}

} // namespace Vorkel
