#pragma once

#include <QObject>
#include <QPointer>

namespace Vorkel {

/// Tells the hook of input that reaches the windows of the application, from when somebody first waits for
/// it.
class QtInputWatch : public QObject
{
    Q_OBJECT

public:
    /// Lives as long as the process.
    [[nodiscard]] static QtInputWatch *self();

    /// Watches the application object that is there, of which there may be several in turn.
    void start();

    bool eventFilter(QObject *receiver, QEvent *event) override;

signals:
    /// Some of it is about to be handled.
    void inputHandled();

private:
    QPointer<QObject> m_watched; // the application object
};

} // namespace Vorkel
