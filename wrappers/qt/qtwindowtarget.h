#pragma once

#include "qttarget.h"

#include <QPointer>
#include <QWindow>

namespace Vorkel {

/// A window as a whole.
class QtWindowTarget : public QtTarget
{
public:
    explicit QtWindowTarget(QWindow *window)
        : m_window(window)
    {
    }

    [[nodiscard]] QRect area() const override;
    [[nodiscard]] QRect visibleArea() const override;
    [[nodiscard]] QWindow *window() const override { return m_window; }
    [[nodiscard]] QString whyInvisible() const override;
    [[nodiscard]] QString whyDisabled() const override { return QString(); }
    [[nodiscard]] QString whyBlocked() const override;
    [[nodiscard]] QImage picture() const override;

private:
    QPointer<QWindow> m_window;
};

/// What all targets say of the windows that they stand in.
namespace QtWindows {

/// The window's title in quotes, else its name or class, to be named in a message.
[[nodiscard]] VORKEL_EXPORT QString describe(const QWindow *window);
/// Whether the window is hidden, minimised or not drawn yet, as `QtTarget::whyInvisible`.
[[nodiscard]] VORKEL_EXPORT QString whyInvisible(const QWindow *window);
/// What of `area` lies on a screen, on the one that shows most of it; empty when nothing does.
[[nodiscard]] VORKEL_EXPORT QRect onScreen(const QWindow *window, const QRect &area);
/// The modal window that takes the input of `window`; null when there is none.
[[nodiscard]] VORKEL_EXPORT QWindow *blockerOf(QWindow *window);
/// Asks that the window that `window` stands in takes the keyboard. Whether that is still to come: pop-ups
/// and the like never take it.
VORKEL_EXPORT bool activate(QWindow *window);
/// Whether another window, of this program or another, lies over `window` at `point`.
[[nodiscard]] VORKEL_EXPORT QString whyCovered(QWindow *window, const QPoint &point);

} // namespace QtWindows

} // namespace Vorkel
