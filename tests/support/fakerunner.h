#pragma once

#include "fkit/fsocket.h"
#include "support/bytes.h"

#include <memory>

/// The runner's end of a connection on loopback, byte by byte, so that it can do everything wrong that a
/// peer can do wrong. What waits for the other side does so for half a minute at most.
class FakeRunner
{
public:
    /// Listens on a port that the system picks.
    FakeRunner();

    [[nodiscard]] quint16 port() const { return m_port; }
    /// The accepted connection; null when there is none.
    [[nodiscard]] FSocket *connection() const { return m_connection.get(); }
    /// The same, from now on the caller's.
    [[nodiscard]] FSocket *takeConnection() { return m_connection.release(); }

    /// Stops listening: the next to connect is refused.
    void refuse() { m_listener.close(); }
    /// Waits until somebody has connected, without accepting.
    [[nodiscard]] bool awaitConnection();
    [[nodiscard]] bool accept();
    /// A socket of the caller's, connected to this runner.
    [[nodiscard]] FSocket *connectedSocket();

    /// From now on every byte leaves on its own.
    void setSlow(bool on) { m_slow = on; }
    bool write(const QByteArray &bytes);
    /// `count` bytes; fewer when the peer has ended.
    [[nodiscard]] QByteArray read(qsizetype count);
    /// The next whole message with its prefix; empty when the peer has ended.
    [[nodiscard]] QByteArray readMessage();
    /// Reads until the peer ends.
    [[nodiscard]] bool readToEnd();

    /// The connection ends as when a process dies, or as when a host does; or the peer can still send.
    void close() { m_connection.reset(); }
    void reset();
    void halfClose() { m_connection->shutdown(); }

    /// Waits until `count` bytes can be read from `socket`.
    [[nodiscard]] static bool awaitBytes(FSocket *socket, qsizetype count);

private:
    FSocket m_listener;
    std::unique_ptr<FSocket> m_connection;
    quint16 m_port;
    bool m_slow = false;
};
