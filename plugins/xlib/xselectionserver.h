#pragma once

#include "shared/functioncallresult.h"

#include <QByteArray>
#include <QElapsedTimer>

#include <vector>

union _XEvent;

namespace Vorkel {

class XConnection;

/// The owner's side of the clipboard, for texts: answers requests, in portions where a text is too long for
/// one.
class XSelectionServer
{
public:
    explicit XSelectionServer(XConnection *connection);

    /// Makes the text that of the clipboard.
    VoidResult own(const QByteArray &utf8, const QByteArray &latin1);
    [[nodiscard]] unsigned long window() const { return m_window; }
    /// Answers what has arrived.
    void serve();
    /// There are transfers under way.
    [[nodiscard]] bool isBusy() const { return !m_transfers.empty(); }

private:
    struct Transfer
    {
        unsigned long requestor;
        unsigned long property;
        unsigned long type;
        QByteArray rest;
        bool isOver;
        QElapsedTimer lastProgress;
    };

    [[nodiscard]] unsigned long serverTime();
    void answer(const _XEvent &request);
    [[nodiscard]] bool convert(unsigned long requestor, unsigned long target, unsigned long property);
    void send(unsigned long requestor, unsigned long property, unsigned long type, const QByteArray &data);
    void goOn(unsigned long requestor, unsigned long property);
    void forgetTransfers();
    [[nodiscard]] qsizetype portion() const;

    XConnection *m_connection;
    unsigned long m_window;
    unsigned long m_clipboard, m_targets, m_timestamp, m_utf8, m_text, m_plainText, m_incr;
    unsigned long m_ownedSince = 0; // in the server's time
    QByteArray m_utf8Text;
    QByteArray m_latin1Text;
    std::vector<Transfer> m_transfers;
};

} // namespace Vorkel
