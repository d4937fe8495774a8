#pragma once

#include "shared/functioncallresult.h"

#include <QByteArray>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace Vorkel {

class XConnection;
class XSelectionServer;

/// Owns the clipboard of an X server and hands its text to who asks, on a thread and a connection of its own.
/// Thread-safe.
class XClipboardThread
{
public:
    /// `display` is the name of the display.
    explicit XClipboardThread(const QByteArray &display);
    /// Gives the clipboard up.
    ~XClipboardThread();

    /// Takes the clipboard; the text can be had when this returns.
    VoidResult setText(const QString &text);
    /// The text, if `window` is the one that owns the clipboard for it.
    [[nodiscard]] std::optional<QString> textOf(unsigned long window);

private:
    VoidResult start();
    void run(std::shared_ptr<XConnection> connection);
    void takeOrders(XSelectionServer *server);
    void wake() const;

    const QByteArray m_display;
    std::thread m_thread;
    int m_wake; // an eventfd
    std::mutex m_mutex;
    std::condition_variable m_done;
    // Under the mutex:
    std::optional<QString> m_order;
    VoidResult m_result;
    QString m_text;
    unsigned long m_window = 0;
    bool m_stop = false;
};

} // namespace Vorkel
