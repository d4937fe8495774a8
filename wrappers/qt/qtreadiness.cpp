#include "qtreadiness.h"

#include "qttoolkit.h"
#include "qtwindowtarget.h"

#include <algorithm>

namespace Vorkel {

namespace {

/// What moves has moved on after a frame.
constexpr int FrameMs = 16;
/// An older look says nothing of now.
constexpr int LookLastsMs = 1000;
/// A window that has not become active by then will not.
constexpr int ActivationMs = 300;
/// So many objects may be waited for in turns.
constexpr std::size_t MaxLooks = 8;

QString placeText(const QRect &area)
{
    return QStringLiteral("%1x%2 at (%3, %4)")
            .arg(area.width())
            .arg(area.height())
            .arg(area.x())
            .arg(area.y());
}

QString whyOutOfSight(const QtTarget &target)
{
    if (!target.visibleArea().isEmpty())
        return QString();
    return target.reveal()
            ? QStringLiteral("is being brought into sight")
            : QStringLiteral("has no part in sight: it covers %1").arg(placeText(target.area()));
}

} // namespace

QString QtReadiness::obstacle(const SharedPtr<Object> &object)
{
    if (!object || object->isNull())
        return QStringLiteral("it is gone");
    const std::unique_ptr<QtTarget> target = QtToolkits::target(object);
    if (!target)
        return QString();
    QString why = target->whyInvisible();
    if (why.isEmpty())
        why = target->whyDisabled();
    if (why.isEmpty())
        why = whyOutOfSight(*target);
    if (why.isEmpty())
        why = target->whyBlocked();
    if (why.isEmpty())
        why = whyInactive(target->window());
    if (why.isEmpty())
        why = whyMoving(object, target->area());
    return why.isEmpty() ? why : QStringLiteral("it ") + why;
}

/// A window that becomes active late closes what was opened in it meanwhile. Some never do.
QString QtReadiness::whyInactive(QWindow *window)
{
    const bool isAsked = m_activated == window && m_sinceActivated.elapsed() < LookLastsMs;
    if (isAsked && m_sinceActivated.elapsed() >= ActivationMs)
        return QString();
    if (!window || window->isActive() || (!isAsked && !QtWindows::activate(window)))
        return QString();
    if (!isAsked) {
        m_activated = window;
        m_sinceActivated.start();
    }
    return QStringLiteral("is in a window that is not active yet");
}

QString QtReadiness::whyMoving(const SharedPtr<Object> &object, const QRect &area)
{
    const auto isSame = [&](const Look &look) { return look.object->sameAs(object); };
    auto look = std::find_if(m_looks.begin(), m_looks.end(), isSame);
    const bool isKnown = look != m_looks.end() && look->seen.elapsed() < LookLastsMs;
    const QRect before = isKnown ? look->area : QRect();
    if (look == m_looks.end()) {
        if (m_looks.size() == MaxLooks)
            m_looks.pop_back();
        look = m_looks.insert(m_looks.begin(), Look { object, QRect(), {}, {} });
    }
    std::rotate(m_looks.begin(), look, look + 1);
    Look &latest = m_looks.front();
    latest.seen.start();
    if (before == area && latest.still.elapsed() >= FrameMs)
        return QString();
    if (before != area) {
        latest.area = area;
        latest.still.start();
    }
    return isKnown && before != area
            ? QStringLiteral("is moving: it was %1 and is %2 now").arg(placeText(before), placeText(area))
            : QStringLiteral("has not been seen in one place for a moment yet");
}

} // namespace Vorkel
