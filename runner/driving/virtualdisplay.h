#pragma once

#include "exitcode.h"

#include <QProcess>
#include <QSize>

namespace Vorkel::Runner {

/// An X server without a screen, on a display that nobody else uses. It ends with this object, and also when
/// this process is killed.
class VirtualDisplay
{
public:
    VirtualDisplay() = default;
    ~VirtualDisplay();
    VirtualDisplay(const VirtualDisplay &) = delete;
    VirtualDisplay &operator=(const VirtualDisplay &) = delete;

    Failure start(const QSize &size);
    /// ":7", once it has been started.
    [[nodiscard]] const QString &name() const { return m_name; }
    [[nodiscard]] qint64 processId() const { return m_server.processId(); }

private:
    QProcess m_server;
    QString m_name;
};

} // namespace Vorkel::Runner
