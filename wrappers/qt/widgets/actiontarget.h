#pragma once

#include "widgettarget.h"

class QAction;

namespace Vorkel {

/// An entry of a menu or menu bar, or a button of a tool bar, where it is shown now.
class ActionTarget : public WidgetPartTarget
{
public:
    explicit ActionTarget(QAction *action);

    [[nodiscard]] QString whyInvisible() const override;
    [[nodiscard]] QString whyDisabled() const override;

private:
    QPointer<QAction> m_action;
};

} // namespace Vorkel
