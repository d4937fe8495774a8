#include "qtwindowtarget.h"

#include "qtgeometry.h"
#include "qttoolkit.h"

#include <QGuiApplication>
#include <QScreen>

namespace Vorkel {

QRect QtWindowTarget::area() const
{
    return m_window && m_window->isVisible() ? QRect(QtPixels::start(m_window), m_window->size()) : QRect();
}

QRect QtWindowTarget::visibleArea() const
{
    return QtWindows::onScreen(m_window, area());
}

QString QtWindowTarget::whyInvisible() const
{
    return QtWindows::whyInvisible(m_window);
}

QString QtWindowTarget::whyBlocked() const
{
    return QtWindows::whyCovered(m_window, pressPoint());
}

QImage QtWindowTarget::picture() const
{
    return m_window ? QtToolkits::picture(m_window) : QImage();
}

namespace QtWindows {

QString describe(const QWindow *window)
{
    if (!window->title().isEmpty())
        return QStringLiteral("'%1'").arg(window->title());
    const QString name = window->objectName();
    return name.isEmpty() ? QString::fromLatin1(window->metaObject()->className())
                          : QStringLiteral("'%1'").arg(name);
}

QString whyInvisible(const QWindow *window)
{
    if (!window || !window->isVisible())
        return QStringLiteral("is not visible: its window is not shown");
    if (window->windowStates() & Qt::WindowMinimized)
        return QStringLiteral("is not visible: its window %1 is minimised").arg(describe(window));
    if (!window->isExposed())
        return QStringLiteral("is not visible: its window %1 is not drawn").arg(describe(window));
    return QString();
}

QRect onScreen(const QWindow *window, const QRect &area)
{
    QRect best;
    for (const QScreen *screen : QGuiApplication::screens()) {
        const QRect part = QtPixels::seenFrom(window, screen) & area;
        if (part.width() * part.height() > best.width() * best.height())
            best = part;
    }
    return best;
}

QWindow *blockerOf(QWindow *window)
{
    QWindow *modal = QGuiApplication::modalWindow();
    if (!modal || modal == window)
        return nullptr;
    for (const QWindow *at = window; at; at = at->transientParent() ? at->transientParent() : at->parent()) {
        if (at == modal)
            return nullptr;
    }
    const bool blocksAll = modal->modality() == Qt::ApplicationModal;
    for (const QWindow *at = modal->transientParent(); at && !blocksAll; at = at->transientParent()) {
        if (at == window)
            return modal;
    }
    return blocksAll ? modal : nullptr;
}

bool activate(QWindow *window)
{
    while (window && window->parent())
        window = window->parent();
    if (!window || window->isActive() || window->flags() & Qt::WindowDoesNotAcceptFocus)
        return false;
    const Qt::WindowType type = window->type();
    if (type == Qt::Popup || type == Qt::ToolTip)
        return false;
    window->requestActivate();
    return true;
}

QString whyCovered(QWindow *window, const QPoint &point)
{
    if (const QWindow *modal = blockerOf(window))
        return QStringLiteral("is blocked by the modal window %1").arg(describe(modal));
    const QPoint pixel = QtPixels::toNative(window, point);
    const QWindow *top = QGuiApplication::topLevelAt(QtPixels::fromNative(pixel));
    const QString where = QStringLiteral("at (%1, %2)").arg(point.x()).arg(point.y());
    if (!top)
        return QStringLiteral("is covered %1 by another program's window").arg(where);
    for (const QWindow *at = window; at; at = at->parent()) {
        if (at == top)
            return QString();
    }
    return QStringLiteral("is covered %1 by the window %2").arg(where, describe(top));
}

} // namespace QtWindows

} // namespace Vorkel
