#include "testconsole.h"

#include <algorithm>
#include <cstdio>

namespace Vorkel::Runner {

namespace {

void print(const QString &text)
{
    std::fputs(qUtf8Printable(text + u'\n'), stdout);
    std::fflush(stdout);
}

QString indented(const QString &text)
{
    return QLatin1String("    ") + QString(text).replace(u'\n', QLatin1String("\n    "));
}

} // namespace

void TestConsole::testStarted(const QString &file, const QString &name)
{
    if (m_file != file)
        print(file);
    m_file = file;
    print(QStringLiteral("  %1").arg(name));
}

void TestConsole::stepEnded(const QString &text, qint64 elapsedMs, bool failed)
{
    print(QStringLiteral("    %1 %2 ms  %3")
                  .arg(failed ? QStringLiteral("FAIL") : QStringLiteral("  ok"))
                  .arg(elapsedMs, 6)
                  .arg(text));
}

void TestConsole::logged(const QString &text)
{
    print(indented(text));
}

void TestConsole::testEnded(const TestResult &result)
{
    m_results.append(result);
    static constexpr const char *Words[] = { "passed", "FAILED", "skipped" };
    print(QStringLiteral("  %1: %2 (%3 s)")
                  .arg(QLatin1String(Words[result.outcome]), result.name)
                  .arg(static_cast<double>(result.elapsedMs) / 1000.0, 0, 'f', 2));
    if (result.outcome != TestResult::Failed)
        return;
    print(indented(result.where.isEmpty() ? result.message
                                          : result.where + QLatin1String(": ") + result.message));
    if (!result.excerpt.isEmpty())
        print(indented(result.excerpt));
    for (const QString &file : result.evidence)
        print(indented(QStringLiteral("see %1").arg(file)));
}

qsizetype TestConsole::count(TestResult::Outcome outcome) const
{
    return std::count_if(m_results.begin(), m_results.end(),
                         [&](const TestResult &result) { return result.outcome == outcome; });
}

void TestConsole::summarise() const
{
    print(QStringLiteral("\n%1 passed, %2 failed, %3 skipped")
                  .arg(count(TestResult::Passed))
                  .arg(count(TestResult::Failed))
                  .arg(count(TestResult::Skipped)));
}

Failure TestConsole::verdict() const
{
    if (m_results.isEmpty())
        return { ExitCode::BadUsage, QStringLiteral("there was no test to run") };
    const qsizetype failed = count(TestResult::Failed);
    return failed == 0
            ? Failure()
            : Failure { ExitCode::TestsFailed,
                        QStringLiteral("%1 of %2 tests failed").arg(failed).arg(m_results.size()) };
}

} // namespace Vorkel::Runner
