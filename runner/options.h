#pragma once

#include "session.h"

#include <QStringList>

namespace Vorkel::Runner {

/// What stands on the command line of one command.
struct Options
{
    SessionSettings session;
    bool json = false;
    QStringList words; ///< between the options and `--`
    QStringList command; ///< behind `--`: the program and its arguments

    /// Why the line cannot be understood, empty when it can.
    QString error;
    /// The text to show instead of doing anything, empty when nothing asked for it.
    QString help;
};

/// What one command takes.
struct CommandInfo
{
    const char *name;
    const char *summary;
    const char *wordsHelp; ///< null when it takes no words
    const char *details;
    bool usesSession;
};

/// Reads `arguments`, which stand behind the name of the command.
[[nodiscard]] Options readOptions(const CommandInfo &info, const QStringList &arguments);

} // namespace Vorkel::Runner
