#pragma once

#include "support/childprocess.h"

#include <QTest>

/// An application with a hook and the runner that it connects to, both as processes.
struct Session
{
    using Variables = QMap<QString, QString>;

    ChildProcess runner;
    ChildProcess aut;
    QString port = QStringLiteral("1");

    /// Starts the runner, which carries out `orders`.
    void startRunner(const QStringList &orders)
    {
        runner.launch(QStringLiteral(FAKERUNNER_PROGRAM), orders, {});
        port = QString::fromLatin1(runner.line("port "));
        QVERIFY(!port.isEmpty());
    }

    /// Starts the application for that runner; a null value takes a variable away.
    void startAut(const Variables &changes = {})
    {
        QProcessEnvironment variables;
        variables.insert(QStringLiteral("VORKEL_RUNNERID"), QStringLiteral("7"));
        variables.insert(QStringLiteral("VORKEL_APPID"), QStringLiteral("9"));
        variables.insert(QStringLiteral("VORKEL_RECORD"), QStringLiteral("0"));
        variables.insert(QStringLiteral("VORKEL_PORT"), port);
        for (auto change = changes.begin(); change != changes.end(); ++change)
            change->isNull() ? variables.remove(change.key()) : variables.insert(change.key(), *change);
        aut.launch(QStringLiteral(AUT_PROGRAM), {}, variables);
    }

    void killRunner()
    {
        runner.kill();
        QVERIFY(runner.waitForFinished());
    }

    [[nodiscard]] bool hookIs(const QByteArray &state)
    {
        aut.say("status");
        return aut.line("status hook=") == state;
    }

    /// The hook stays or goes. The application runs on and costs nothing: its event loop wakes up for its own
    /// timer only. It ends when told to, and well.
    void verifyLife(const QByteArray &hookState)
    {
        QTRY_VERIFY_WITH_TIMEOUT(hookIs(hookState), 30000);
        aut.say("rest");
        const QByteArrayList numbers = aut.line("rested ").split(' ');
        QCOMPARE(numbers.size(), 3);
        const auto number = [&](int i) { return numbers.at(i).mid(numbers.at(i).indexOf('=') + 1).toInt(); };
        QVERIFY2(number(1) < 4 * number(0) && number(2) < 10 * number(0), numbers.join(' ').constData());
        QVERIFY(hookIs(hookState));
        aut.say("quit");
        QCOMPARE(aut.finish(), 0);
    }
};
