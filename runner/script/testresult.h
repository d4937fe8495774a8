#pragma once

#include <QString>
#include <QStringList>

namespace Vorkel::Runner {

/// How one test of a script went.
struct TestResult
{
    enum Outcome { Passed, Failed, Skipped };

    QString file;
    QString name;
    Outcome outcome = Passed;
    qint64 elapsedMs = 0;
    QString message {}; ///< why it failed
    QString where {}; ///< "file:line:column", as far as it is known
    QString excerpt {}; ///< the line of the script with a mark at the place
    QStringList evidence {}; ///< files that show what was there
    QStringList steps {}; ///< what was done, and what the script wrote in its log
};

/// Hears how the tests are going.
class TestListener
{
public:
    virtual ~TestListener() = default;
    virtual void testStarted(const QString &file, const QString &name) = 0;
    virtual void stepEnded(const QString &text, qint64 elapsedMs, bool failed) = 0;
    virtual void logged(const QString &text) = 0;
    virtual void testEnded(const TestResult &result) = 0;
};

} // namespace Vorkel::Runner
