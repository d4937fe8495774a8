#pragma once

#include "session.h"

#include <QStringList>

namespace Vorkel::Runner {

/// What stands on the command line of one command.
struct Options
{
    SessionSettings session;
    bool json = false;
    int depth = -1; ///< how many levels of objects to look at; negative: all
    QStringList words; ///< between the options and `--`
    QStringList command; ///< behind `--`: the program and its arguments

    /// Why the line cannot be understood, empty when it can.
    QString error;
    /// The text to show instead of doing anything, empty when nothing asked for it.
    QString help;
};

/// The options that a command takes besides `--help`, or'ed.
enum OptionSet {
    NoOptions = 0,
    SessionOptions = 1, ///< where to listen, how long to wait, JSON
    DepthOption = 2
};

/// What one command takes.
struct CommandInfo
{
    const char *name;
    const char *summary;
    const char *wordsHelp; ///< null when it takes no words
    int minWords;
    int maxWords;
    const char *details;
    int options; ///< of `OptionSet`
};

/// Reads `arguments`, which stand behind the name of the command.
[[nodiscard]] Options readOptions(const CommandInfo &info, const QStringList &arguments);

} // namespace Vorkel::Runner
