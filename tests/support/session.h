#pragma once

#include "support/childprocess.h"
#include "support/fakerunner.h"

#include <QMap>

/// The runner's end of the wire, which does what orders say, and a program that gets its hook preloaded, as a
/// process of its own.
class Session
{
public:
    using Variables = QMap<QString, QString>;

    FakeRunner runner;
    ChildProcess program;
    QStringList heard; ///< by the runner, as orders asked for it

    /// Starts the program, which is told where the runner is. A null value takes a variable away.
    void start(const Variables &changes = {},
               const QStringList &command = { built(QStringLiteral("coreprogram")), QStringLiteral("run") });
    /// Carries out "ORDER[=WORDS] ORDER[=WORDS]...", each of them a row in session.cpp. The one that failed;
    /// null when all went well.
    [[nodiscard]] QString carryOut(const QString &orders);

private:
    struct Order;

    [[nodiscard]] QByteArray message(Bytes::Type type, const QByteArray &words, int transId = 0) const;
    [[nodiscard]] bool shakeHands(const QByteArray &answer);
    [[nodiscard]] bool expect(const QByteArray &words);
    [[nodiscard]] bool call(const QByteArray &words);

    FUInt32 m_address = 0; // the program's, assigned by the handshake
    int m_lastCall = 0;
};
