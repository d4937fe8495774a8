#pragma once

#include "fkit/export.h"

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QString>

#include <memory>

class QWindow;

namespace Vorkel {

/// Something of the application that a person can point at, as it is right now: a window, a control, a
/// row of a list, an entry of a menu. Geometry is in the coordinates of its window's position
/// (`QtPixels::start`).
class VORKEL_EXPORT QtTarget
{
public:
    QtTarget() = default;
    QtTarget(const QtTarget &) = delete;
    QtTarget &operator=(const QtTarget &) = delete;
    virtual ~QtTarget();

    /// The whole of it, also what cannot be seen. Empty when it is nowhere.
    [[nodiscard]] virtual QRect area() const = 0;
    /// What of it lies within its containers and the screen; other things may still stand over it.
    [[nodiscard]] virtual QRect visibleArea() const = 0;
    /// Where a person would press. Default: in the middle of what is visible.
    [[nodiscard]] virtual QPoint pressPoint() const { return visibleArea().center(); }
    /// The window that shows it; null when there is none.
    [[nodiscard]] virtual QWindow *window() const = 0;

    // What a person needs to use it, in the order in which it is asked. Each gives why it is not so, to be
    // read after "it ", and nothing when it is.

    [[nodiscard]] virtual QString whyInvisible() const = 0;
    [[nodiscard]] virtual QString whyDisabled() const = 0;
    /// What stands over it at its press point, or takes all input.
    [[nodiscard]] virtual QString whyBlocked() const = 0;

    /// Brings it into sight where its container shows a part of what it holds. Whether that was done.
    virtual bool reveal() const { return false; }
    [[nodiscard]] virtual QImage picture() const = 0;
};

} // namespace Vorkel
