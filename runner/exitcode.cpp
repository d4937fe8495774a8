#include "exitcode.h"

namespace Vorkel::Runner {

namespace {

struct Row
{
    ExitCode code;
    const char *meaning;
};

// clang-format off
constexpr Row Rows[] = {
    { ExitCode::Success,        "all went well" },
    { ExitCode::CallFailed,     "a call was answered with an error" },
    { ExitCode::BadUsage,       "the command line is not understood" },
    { ExitCode::CannotListen,   "the address or port cannot be listened on" },
    { ExitCode::NoProgram,      "the program does not exist or cannot be started" },
    { ExitCode::NoQtProgram,    "the program is no dynamically linked Qt 6 program" },
    { ExitCode::EndedEarly,     "the program ended before it connected" },
    { ExitCode::NeverConnected, "the program did not connect or answer in time" },
    { ExitCode::ConnectionLost, "the program ended or closed the connection meanwhile" },
    { ExitCode::TestsFailed,    "tests failed" },
    { ExitCode::Interrupted,    "interrupted" },
};
// clang-format on

} // namespace

QString exitCodeHelp()
{
    QString text;
    for (const Row &row : Rows)
        text += QStringLiteral("  %1  %2\n")
                        .arg(static_cast<int>(row.code), 3)
                        .arg(QLatin1String(row.meaning));
    return text;
}

} // namespace Vorkel::Runner
