#pragma once

#include "objectmodel/object.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QRect>
#include <QString>
#include <QWindow>

#include <vector>

namespace Vorkel {

/// Tells whether a person could use an object now: it is there, visible, enabled, in sight, nothing stands
/// over it, its window is the active one, and it does not move.
class QtReadiness
{
public:
    /// What is in the way, as a sentence about "it"; empty when nothing is. Objects that cannot be pointed
    /// at are ready as long as they are there.
    [[nodiscard]] QString obstacle(const SharedPtr<Object> &object);

private:
    /// Where an object was when it was looked at.
    struct Look
    {
        SharedPtr<Object> object;
        QRect area;
        QElapsedTimer still; // since it has been there
        QElapsedTimer seen; // since the last look
    };

    [[nodiscard]] QString whyInactive(QWindow *window);
    [[nodiscard]] QString whyMoving(const SharedPtr<Object> &object, const QRect &area);

    std::vector<Look> m_looks; // the latest first
    QPointer<QWindow> m_activated; // that was last asked to become active
    QElapsedTimer m_sinceActivated;
};

} // namespace Vorkel
