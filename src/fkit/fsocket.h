#pragma once

#include "fkit/export.h"
#include "fkit/fhostaddress.h"

enum class SocketOperation;

/// An IPv4 stream socket.
///
/// The first failure of a socket stays its `error()` until it is closed; calls that fail later do
/// not overwrite it. The object owns its descriptor and closes it when it is destroyed.
class VORKEL_EXPORT FSocket
{
public:
    enum Error {
        NoError = 0,
        NetworkFailure = 1,
        InvalidSocket = 2,
        Impossible = 3,
        HostNotFound = 4,
        ConnectionRefused = 5,
        AlreadyBound = 6,
        NoResources = 7,
        Inaccessible = 8,
        UnknownError = 9
    };

    enum SocketOption { ReceiveBufferSize = 0, SendBufferSize = 1, AddressReuse = 2, PendingError = 6 };

    /// Opens a new socket, closed on exec; a failure only shows in `error()`.
    FSocket();
    /// Takes over `descriptor`.
    explicit FSocket(int descriptor);
    ~FSocket();
    FSocket(const FSocket &) = delete;
    FSocket &operator=(const FSocket &) = delete;

    [[nodiscard]] bool isValid() const { return m_descriptor != -1; }
    [[nodiscard]] bool isOpen() const { return isValid(); }
    [[nodiscard]] bool isWriteable() const { return isValid(); }
    [[nodiscard]] int descriptor() const { return m_descriptor; }
    /// True when the descriptor came from outside.
    [[nodiscard]] bool isAdopted() const { return m_adopted; }
    [[nodiscard]] quint16 localPort() const { return m_localPort; }
    [[nodiscard]] quint16 peerPort() const { return m_peerPort; }
    [[nodiscard]] FHostAddress localAddress() const { return m_localAddress; }
    [[nodiscard]] FHostAddress peerAddress() const { return m_peerAddress; }
    [[nodiscard]] Error error() const { return m_error; }
    /// The system's text for the stored failure, "Unknown Error" when there is none.
    [[nodiscard]] QString errorString() const;

    /// The value of a socket option; -1 for an option that is not supported or cannot be read.
    [[nodiscard]] int option(int which);
    void setSocketOption(int level, int name, const void *value, unsigned length);
    [[nodiscard]] int sendBufferSize() { return option(SendBufferSize); }
    [[nodiscard]] int receiveBufferSize() { return option(ReceiveBufferSize); }
    /// Buffer sizes are in bytes.
    void setSendBufferSize(int size);
    void setReceiveBufferSize(int size);
    /// Time-outs are in milliseconds; 0 waits without limit.
    void setSendTimeout(int ms);
    void setReceiveTimeout(int ms);
    void setTcpNoDelay(bool on);
    void setAddressReusable(bool on);
    [[nodiscard]] bool isBlocking() const;
    void setBlocking(bool on);

    [[nodiscard]] bool bind(const FHostAddress &address, quint16 port);
    [[nodiscard]] bool listen(int backlog);
    /// A connection that waits at a listening socket, as a new descriptor that the caller owns;
    /// -1 when there is none.
    [[nodiscard]] int accept();
    /// Connects; with `block` the call waits for the outcome whatever mode the socket is in.
    [[nodiscard]] bool connectToHost(const FHostAddress &address, quint16 port, bool block);
    /// Resolves `host`, then connects and waits for the outcome.
    [[nodiscard]] bool connectToHost(const QString &host, quint16 port);
    /// Fetches the outcome of a connect that did not block.
    void finishNonBlockingConnect();

    /// Ends the sending direction.
    void shutdown();
    /// Reads up to `length` bytes. 0: the peer closed, and the socket is now closed too. -1: a
    /// failure, or nothing to read on a socket that does not block.
    [[nodiscard]] int readBlock(char *buffer, int length);
    /// Writes up to `length` bytes; the result is as for `readBlock`. One call writes a bounded
    /// piece, so the caller goes on with the rest. With `moreFollows` the system may keep what is
    /// written for a moment, to send it together with what is written next.
    [[nodiscard]] int writeBlock(const char *buffer, int length, bool moreFollows = false);
    /// Bytes that can be read without blocking; 0 also at the end of the stream, -1 on failure.
    [[nodiscard]] int bytesAvailable() const;
    /// Waits up to `ms` milliseconds (negative: without limit) for something to read, and returns
    /// `bytesAvailable()`. A result of 0 with `*timedOut` false means that the peer has closed.
    [[nodiscard]] int waitForMore(int ms, bool *timedOut);
    /// Drops what arrives until the peer closes, for at most `ms` milliseconds. True when a read met
    /// the end of the stream; false when the wait ended in any other way.
    bool waitForDisconnected(int ms);
    /// Closes the descriptor and forgets the stored failure.
    void close();

private:
    void getConnectionParameters();
    void store(SocketOperation operation, int systemError);
    int transferFailed();

    int m_descriptor = -1;
    Error m_error = NoError;
    int m_systemError = 0;
    int m_writePiece = 0; // how much one write takes at most; 0 until the buffer's size has been asked for
    quint16 m_localPort = 0;
    FHostAddress m_localAddress;
    quint16 m_peerPort = 0;
    FHostAddress m_peerAddress;
    bool m_adopted = false;
};
