#pragma once

#include "session.h"

#include <QSize>
#include <QStringList>

namespace Vorkel::Runner {

/// What stands on the command line of one command.
struct Options
{
    SessionSettings session;
    bool json = false;
    int depth = -1; ///< how many levels of objects to look at; negative: all
    int waitMs = 5000; ///< for an object that is not there yet
    QString mapFile; ///< the object map to use; empty: none
    QString outputFile; ///< where to write; empty: the standard output
    bool audit = false;
    int stepLimitMs = 10000; ///< for each step of a test
    QString junitFile; ///< where to write the results as XML; empty: nowhere
    QString evidenceFolder; ///< where to keep what failures leave behind
    QString filter; ///< a regular expression for the names of tests
    QSize displaySize; ///< of an X server to start for the run; empty: none
    bool isPlatformGiven = false;
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
    DepthOption = 2,
    MapOption = 4, ///< an object map
    WaitOption = 8, ///< how long to wait for an object
    OutputOption = 16, ///< where to write
    AuditOption = 32, ///< whether to judge names
    TestOptions = 64, ///< what to run, where, and what to leave behind
    CommandIsOptional = 128 ///< there may be no program behind `--`
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
