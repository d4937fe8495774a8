#include "actiontarget.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <QToolButton>

namespace Vorkel {

namespace {

struct Shown
{
    QWidget *widget = nullptr;
    QRect part;
};

/// Where `holder`, one of the widgets that hold the action, shows it.
Shown shownBy(QWidget *holder, QAction *action)
{
    if (auto *menu = qobject_cast<QMenu *>(holder))
        return { menu, menu->actionGeometry(action) };
    if (auto *bar = qobject_cast<QMenuBar *>(holder))
        return { bar, bar->actionGeometry(action) };
    if (auto *bar = qobject_cast<QToolBar *>(holder)) {
        QWidget *button = bar->widgetForAction(action);
        return button ? Shown { button, button->rect() } : Shown();
    }
    auto *button = qobject_cast<QToolButton *>(holder);
    return button && button->defaultAction() == action ? Shown { button, button->rect() } : Shown();
}

/// A menu that is open lies above all else that may show the action too.
Shown placeOf(QAction *action)
{
    Shown found;
    for (QObject *holder : action->associatedObjects()) {
        const Shown shown =
                holder->isWidgetType() ? shownBy(static_cast<QWidget *>(holder), action) : Shown();
        if (!shown.widget || !shown.widget->isVisible())
            continue;
        if (qobject_cast<QMenu *>(shown.widget))
            return shown;
        if (!found.widget)
            found = shown;
    }
    return found;
}

} // namespace

ActionTarget::ActionTarget(QAction *action)
    : WidgetPartTarget(nullptr, QRect())
    , m_action(action)
{
    const Shown shown = placeOf(action);
    setWidget(shown.widget);
    setPart(shown.part);
}

QString ActionTarget::whyInvisible() const
{
    if (m_action && !m_action->isVisible())
        return QStringLiteral("is not visible: the program hides it");
    if (!widget())
        return QStringLiteral("is not visible: no menu or tool bar that holds it is open");
    return WidgetPartTarget::whyInvisible();
}

QString ActionTarget::whyDisabled() const
{
    return m_action && !m_action->isEnabled() ? QStringLiteral("is disabled") : QString();
}

} // namespace Vorkel
