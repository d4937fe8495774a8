#include "commands.h"

#include <QCoreApplication>

#include <cstdio>

using namespace Vorkel::Runner;

namespace {

struct Command
{
    CommandInfo info;
    Failure (*run)(const Options &options);
};

constexpr char InfoDetails[] =
        "Prints its name, process id, memory, times, arguments and output so far, and how long it\n"
        "took to connect, to shake hands and to bring the hook up. Then ends it.\n";
constexpr char CallDetails[] =
        "A CALL is the name of a remote function, with its arguments as JSON in parentheses if it\n"
        "takes any: getPID, 'autInfo(\"environmentVariable\", \"HOME\")'. Prints each reply on a line of\n"
        "its own. 'send:' before the name sends a one-way message, which gets no reply. A function\n"
        "that the hook does not know gives null.\n";
constexpr char InjectDetails[] =
        "For other runners: they set VORKEL_RUNNERID, VORKEL_SERVERADDRESS, VORKEL_PORT and\n"
        "VORKEL_APPID, and the program connects to them. This command becomes the program.\n";
constexpr char TreeDetails[] =
        "Prints windows and what they are made of, a line each with name, class and the real name by\n"
        "which exactly this object is found, children indented below their parent. With an object\n"
        "map, symbols stand in place of the real names that it knows.\n";
constexpr char ClassesDetails[] =
        "Prints each class with its super class, constructors, properties, methods, events and enums.\n"
        "A class is announced when an object of it is first seen, so all objects are looked at before.\n";
constexpr char NamesDetails[] =
        "Prints an object map of what is on screen: a line for each object with a symbol, a tab and\n"
        "the real name. What an object map given by --map knows keeps its symbol.\n";
constexpr char FindDetails[] =
        "A NAME is real, {name='nameEdit' type='QLineEdit'}, hierarchical, MainWindow.nameEdit, or a\n"
        "symbol of the object map, :nameEdit_QLineEdit. Waits for the object to be there and prints its\n"
        "real name and its properties, or the whole reason why there is none.\n";
constexpr char GetDetails[] = "A NAME is one that 'vorkel find' takes.\n";
constexpr char SetDetails[] =
        "A NAME is one that 'vorkel find' takes. A VALUE is JSON; what is no JSON is taken as text.\n"
        "Prints the value before and the one after.\n";
constexpr char InvokeDetails[] =
        "A NAME is one that 'vorkel find' takes. A CALL is the name of a slot or invokable method, with\n"
        "its arguments as JSON in parentheses if it takes any: clear, 'setText(\"new\")'. Prints what it\n"
        "returns.\n";

constexpr char ScreenshotDetails[] =
        "A NAME is one that 'vorkel find' takes; without one it is the whole desktop. The format is that of\n"
        "the file's suffix.\n";
constexpr char TestDetails[] =
        "Runs the tests of each FILE, a script, and prints each step with its time, then how many passed.\n"
        "What scripts launch without naming it is the COMMAND. docs/scripting.md tells how to write them.\n";

constexpr int TreeOptions = SessionOptions | MapOption | DepthOption;
constexpr int NamesOptions = SessionOptions | MapOption | OutputOption | AuditOption;
constexpr int ObjectOptions = SessionOptions | MapOption | WaitOption;

// clang-format off
constexpr Command Commands[] = {
    { { "test",       "Runs test scripts that start Qt 6 programs and drive them.",                   "FILE...",             1, 9999, TestDetails,       TestOptions | CommandIsOptional }, testCommand       },
    { { "info",       "Starts a Qt 6 program with the hook inside and prints what the hook reports.", nullptr,               0, 0,    InfoDetails,       SessionOptions                  }, infoCommand       },
    { { "tree",       "Starts a Qt 6 program and prints its objects.",                                nullptr,               0, 0,    TreeDetails,       TreeOptions                     }, treeCommand       },
    { { "names",      "Starts a Qt 6 program and prints an object map of what is on screen.",         nullptr,               0, 0,    NamesDetails,      NamesOptions                    }, namesCommand      },
    { { "find",       "Starts a Qt 6 program and finds an object by its name.",                       "NAME",                1, 1,    FindDetails,       ObjectOptions                   }, findCommand       },
    { { "get",        "Starts a Qt 6 program and prints a property of an object.",                    "NAME PROPERTY",       2, 2,    GetDetails,        ObjectOptions                   }, getCommand        },
    { { "set",        "Starts a Qt 6 program and sets a property of an object.",                      "NAME PROPERTY VALUE", 3, 3,    SetDetails,        ObjectOptions                   }, setCommand        },
    { { "invoke",     "Starts a Qt 6 program and calls a slot or method of an object.",               "NAME CALL",           2, 2,    InvokeDetails,     ObjectOptions                   }, invokeCommand     },
    { { "screenshot", "Starts a Qt 6 program and takes a picture of an object of it.",                "[NAME]",              0, 1,    ScreenshotDetails, ObjectOptions | OutputOption    }, screenshotCommand },
    { { "classes",    "Starts a Qt 6 program and prints the classes of its objects.",                 nullptr,               0, 0,    ClassesDetails,    SessionOptions | DepthOption    }, classesCommand    },
    { { "call",       "Starts a Qt 6 program and calls remote functions of its hook.",                "CALL...",             1, 999,  CallDetails,       SessionOptions                  }, callCommand       },
    { { "inject",     "Runs a Qt 6 program with the hook inside, for a runner of your own.",          nullptr,               0, 0,    InjectDetails,     NoOptions                       }, injectCommand     },
};
// clang-format on

QString generalHelp()
{
    QString text = QStringLiteral("Makes Qt 6 programs testable from outside, without rebuilding them.\n\n"
                                  "Usage: vorkel COMMAND [options] -- PROGRAM [ARGUMENT...]\n\nCommands:\n");
    for (const Command &command : Commands) {
        text += QStringLiteral("  %1 %2\n")
                        .arg(QLatin1String(command.info.name), -10)
                        .arg(QLatin1String(command.info.summary));
    }
    text += QStringLiteral("\n'vorkel COMMAND --help' tells more about one of them.\n\nExit codes:\n");
    return text + exitCodeHelp();
}

int print(const QString &text)
{
    std::fputs(qUtf8Printable(text), stdout);
    return 0;
}

int fail(const Failure &failure)
{
    std::fprintf(stderr, "vorkel: %s\n", qUtf8Printable(failure.text));
    return static_cast<int>(failure.code);
}

int run(const Command &command, const QStringList &arguments)
{
    const Options options = readOptions(command.info, arguments);
    if (!options.help.isEmpty())
        return print(options.help);
    if (!options.error.isEmpty()) {
        return fail({ ExitCode::BadUsage,
                      QStringLiteral("%1. Try 'vorkel %2 --help'.")
                              .arg(options.error, QLatin1String(command.info.name)) });
    }
    const Failure failure = command.run(options);
    return failure.isFailure() ? fail(failure) : 0;
}

int runNamed(const QString &name, const QStringList &arguments)
{
    for (const Command &command : Commands) {
        if (name == QLatin1String(command.info.name))
            return run(command, arguments);
    }
    return fail({ ExitCode::BadUsage,
                  name.isEmpty()
                          ? QStringLiteral("a command is missing. Try 'vorkel --help'.")
                          : QStringLiteral("there is no command '%1'. Try 'vorkel --help'.").arg(name) });
}

} // namespace

int main(int argc, char *argv[])
{
    // Qt keeps to itself what it takes for options of its own, but they may be the program's.
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    const QCoreApplication application(argc, argv);
    const QString name = arguments.isEmpty() ? QString() : arguments.takeFirst();
    if (name == QLatin1String("--version"))
        return print(QStringLiteral("vorkel " VORKEL_VERSION "\n"));
    if (name != QLatin1String("--help") && name != QLatin1String("-h") && name != QLatin1String("help"))
        return runNamed(name, arguments);
    return arguments.isEmpty() ? print(generalHelp())
                               : runNamed(arguments.constFirst(), { QStringLiteral("--help") });
}
