#pragma once

#include "exitcode.h"

#include "script/testresult.h"

namespace Vorkel::Runner {

/// Prints how tests are going on the standard output: a line for each step, then what failed.
class TestConsole : public TestListener
{
public:
    void testStarted(const QString &file, const QString &name) override;
    void stepEnded(const QString &text, qint64 elapsedMs, bool failed) override;
    void logged(const QString &text) override;
    void testEnded(const TestResult &result) override;

    /// Prints the counts.
    void summarise() const;
    [[nodiscard]] const QList<TestResult> &results() const { return m_results; }
    /// Fails when a test did, or when there was none.
    [[nodiscard]] Failure verdict() const;

private:
    [[nodiscard]] qsizetype count(TestResult::Outcome outcome) const;

    QList<TestResult> m_results;
    QString m_file;
};

} // namespace Vorkel::Runner
