#pragma once

#include <QString>

namespace Vorkel::Runner {

/// How the command ended, for the shell.
enum class ExitCode {
    Success = 0,
    CallFailed = 1,
    BadUsage = 2,
    CannotListen = 3,
    NoProgram = 4,
    NoQtProgram = 5,
    EndedEarly = 6,
    NeverConnected = 7,
    ConnectionLost = 8,
    TestsFailed = 9,
    Interrupted = 130
};

/// Why the command could not do what was asked: the code for the shell, the text for a person.
struct Failure
{
    ExitCode code = ExitCode::Success;
    QString text;
    bool isFinal = false; ///< to try again is of no use

    [[nodiscard]] bool isFailure() const { return code != ExitCode::Success; }
};

/// The exit codes with their meanings, a line each, for the help.
[[nodiscard]] QString exitCodeHelp();

} // namespace Vorkel::Runner
