#pragma once

#include "fkit/export.h"

#include <QObject>
#include <QPointer>

class QCoreApplication;

namespace Vorkel {

/// Tells whether what was read from the application's objects still holds, without asking again.
///
/// As long as no event reaches any object but the hook's own, and nobody calls `disturb`, nothing has
/// changed. Events are only watched from a question to the first of them, so that an application that
/// nobody asks about does not pay.
class VORKEL_EXPORT QtStillness : public QObject
{
    Q_OBJECT

public:
    [[nodiscard]] static QtStillness *self();

    /// A number that stays the same as long as nothing happens.
    [[nodiscard]] quint64 epoch();
    /// Something was changed on the runner's behalf.
    void disturb();

    bool eventFilter(QObject *receiver, QEvent *event) override;

private:
    QPointer<QCoreApplication> m_watched; // null while nobody cares
    quint64 m_epoch = 0;
    int m_loopLevel = -1;
};

} // namespace Vorkel
