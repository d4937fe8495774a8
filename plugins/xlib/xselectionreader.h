#pragma once

#include "xdisplay.h"

#include <memory>

namespace Vorkel {

/// The asking side of the clipboard.
class XSelectionReader
{
public:
    enum Outcome { Read, Refused, TooLate };

    explicit XSelectionReader(std::shared_ptr<XConnection> connection);
    ~XSelectionReader();

    /// Asks for what the clipboard holds as `target`.
    [[nodiscard]] Outcome read(const char *target);
    [[nodiscard]] const QByteArray &data() const { return m_data; }

private:
    [[nodiscard]] bool waitFor(_XEvent *event, const XConnection::EventFilter &wanted);
    [[nodiscard]] unsigned long takeProperty();
    [[nodiscard]] Outcome readPortions();
    void letApplicationAnswer();

    std::shared_ptr<XConnection> m_connection; // may outlive the plug-in while the application has its turn
    unsigned long m_window;
    unsigned long m_property;
    QByteArray m_data;
    int m_patienceMs;
};

} // namespace Vorkel
