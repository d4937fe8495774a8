#include "shared/trace.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <limits>
#include <thread>
#include <vector>

#include <errno.h>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

// The configuration is read once per process, so every case runs in a child process: this very program,
// called with the name of one of the deeds below.

namespace {

constexpr int threadCount = 4;
constexpr int linesPerThread = 250;

int reportCategories()
{
    VORKEL_TRACE("Hook", "from hook");
    VORKEL_TRACE("IPC", "from ipc");
    VORKEL_TRACE("namereuse", "from names");
    return 0;
}

int reportLevels()
{
    VORKEL_TRACE("Hook", u"gr\u00fc\u00dfe\nzwei"_s, { "count", 7 }, { "func", std::string("ping") });
    VORKEL_TRACE_AT(Warning, "Hook", std::string("late"));
    return 0;
}

int reportValues()
{
    enum class Kind : quint8 { Second = 2 };
    const char *nothing = nullptr;
    VORKEL_TRACE("Hook", "limits", { "i", qint8(-128) }, { "l", std::numeric_limits<long long>::min() },
                 { "u", std::numeric_limits<unsigned long long>::max() });
    VORKEL_TRACE("Hook", "numbers", { "d", 0.1 }, { "f", 0.5f }, { "b", true }, { "k", Kind::Second });
    VORKEL_TRACE("Hook", "texts", { "q", u"\u20ac \"x\""_s }, { "c", "a\\b" }, { "n", nothing },
                 { "s", std::string("1\r\n\t\0\x1b\x7f", 7) }, { "v", QStringView(u"view").first(2) },
                 { "y", QByteArray("bytes") });
    return 0;
}

int leaveErrnoAlone()
{
    for (int visit = 0; visit < 2; ++visit) {
        errno = ERANGE;
        VORKEL_TRACE("Hook", "errno", { "value", (errno = EPERM) });
        if (errno != ERANGE)
            return 1;
    }
    return 0;
}

// With nobody listening, evaluating the value would give away that it was not left alone.
int leaveValuesAlone()
{
    int evaluations = 0;
    for (int visit = 0; visit < 3; ++visit)
        VORKEL_TRACE("Hook", "lazy", { "value", ++evaluations });
    return evaluations;
}

int breakStandardError()
{
    int ends[2];
    if (pipe(ends) != 0 || dup2(ends[1], STDERR_FILENO) < 0)
        return 1;
    close(ends[0]);
    close(ends[1]);
    VORKEL_TRACE("Hook", "nobody reads this");
    return 0;
}

// A program that turns itself into a daemon closes what it does not know, and opens files of its own.
int takeOverDescriptors()
{
    VORKEL_TRACE("Hook", "before");
    for (int descriptor = STDERR_FILENO + 1; descriptor < 100; ++descriptor)
        close(descriptor);
    const int own = open("own", O_RDWR | O_CREAT, 0600);
    for (int descriptor = own + 1; descriptor < 100; ++descriptor)
        dup2(own, descriptor);
    VORKEL_TRACE("Hook", "after");
    return lseek(own, 0, SEEK_END) == 0 ? 0 : 1;
}

int reportFromThreads()
{
    const auto work = [] {
        for (int i = 0; i < linesPerThread; ++i)
            VORKEL_TRACE("Hook", "crowd", { "i", i }, { "pad", QString(100 + i, u'p') });
    };
    std::vector<std::jthread> threads;
    for (int i = 0; i < threadCount; ++i)
        threads.emplace_back(work);
    return 0;
}

struct LateReporter
{
    bool armed = false;
    ~LateReporter()
    {
        if (armed)
            VORKEL_TRACE("Hook", "static destructor");
    }
} lateReporter;

int reportAtExit()
{
    lateReporter.armed = true;
    VORKEL_TRACE("Hook", "running");
    std::atexit([] { VORKEL_TRACE("Hook", "exit handler"); });
    return 0;
}

struct Deed
{
    const char *name;
    int (*run)();
};

// clang-format off
constexpr Deed deeds[] = {
    {"categories",  reportCategories},
    {"levels",      reportLevels},
    {"values",      reportValues},
    {"errno",       leaveErrnoAlone},
    {"laziness",    leaveValuesAlone},
    {"pipe",        breakStandardError},
    {"descriptors", takeOverDescriptors},
    {"threads",     reportFromThreads},
    {"exit",        reportAtExit},
};
// clang-format on

/// This program in another process.
class Child : public QProcess
{
public:
    Child(const QTemporaryDir &folder, const char *deed, const QString &configuration)
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"VORKEL_TRACE"_s, configuration);
        setProcessEnvironment(environment);
        setWorkingDirectory(folder.path());
        start(QCoreApplication::applicationFilePath(), { u"--deed"_s, QString::fromLatin1(deed) });
    }

    // What it writes on its standard error stream, once it has ended well.
    QByteArray output()
    {
        const bool ended = waitForFinished() && exitStatus() == NormalExit && exitCode() == 0;
        return ended ? readAllStandardError() : "failed: " + readAllStandardError();
    }
};

// The messages alone, without stamp and category.
QByteArrayList messages(const QByteArray &output)
{
    QByteArrayList result;
    for (const QByteArray &line : output.split('\n')) {
        if (!line.isEmpty())
            result << line.split(' ').mid(3).join(' ');
    }
    return result;
}

} // namespace

class tst_quellog : public QObject
{
    Q_OBJECT

private slots:
    void reports_data();
    void reports();
    void writesLine();
    void appendsToFile();
    void keepsLinesOfProcessesWhole();
    void tellsOnceThatFileCannotBeOpened();

private:
    QByteArray fileContent(const QString &name) const
    {
        QFile file(m_folder.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    const QTemporaryDir m_folder;
};

void tst_quellog::reports_data()
{
    QTest::addColumn<QByteArray>("deed");
    QTest::addColumn<QString>("configuration");
    QTest::addColumn<QByteArrayList>("expected");
    const auto row = [](const char *name, const char *deed, const QString &configuration,
                        const QByteArrayList &expected) {
        QTest::newRow(name) << QByteArray(deed) << configuration << expected;
    };
    const QByteArrayList two { "from hook", "from ipc" };
    // clang-format off
    row("no category",          "categories", u" , ,"_s, {});
    row("target alone",         "categories", u"@stderr"_s, {});
    row("all in a list",        "categories", u"Nothing,*"_s, {"from hook", "from ipc", "from names"});
    row("any case, blanks",     "categories", u" hook, ipc ,"_s, two);
    row("parts of a name",      "categories", u"Hoo,ook,Hook2,*I,NAMEREUSE"_s, {"from names"});
    row("explicit target",      "categories", u"Hook,IPC@stderr"_s, two);
    row("lazily",               "laziness", u"IPC"_s, {});
    row("errno kept",           "errno", u"Hook"_s, {"errno value=1", "errno value=1"});
    row("to a broken pipe",     "pipe", u"Hook"_s, {});
    row("until the very end",   "exit", u"Hook"_s, {"running", "exit handler", "static destructor"});
    row("values",               "values", u"Hook"_s, {
        "limits i=-128 l=-9223372036854775808 u=18446744073709551615",
        "numbers d=0.1 f=0.5 b=true k=2",
        "texts q=\"\xe2\x82\xac \\\"x\\\"\" c=\"a\\\\b\" n=\"\" s=\"1\\r\\n\\t\\x00\\x1b\\x7f\" v=\"vi\" "
        "y=\"bytes\"",
    });
    // clang-format on
}

void tst_quellog::reports()
{
    QFETCH(const QByteArray, deed);
    QFETCH(const QString, configuration);
    QTEST(messages(Child(m_folder, deed.constData(), configuration).output()), "expected");
}

void tst_quellog::writesLine()
{
    Child child(m_folder, "levels", u"Hook"_s);
    const qint64 id = child.processId();
    const QString output = QString::fromUtf8(child.output());
    const QString expected = u"\\A\\d\\d:\\d\\d:\\d\\d\\.\\d{3} %1 Hook gr\u00fc\u00dfe\\\\nzwei count=7 "
                             "func=\"ping\"\\n[\\d:.]{12} %1 Hook \\[warning\\] late\\n\\z"_s.arg(id);
    QVERIFY2(QRegularExpression(expected).match(output).hasMatch(), qPrintable(output));
}

void tst_quellog::appendsToFile()
{
    for (int i = 0; i < 2; ++i)
        QCOMPARE(Child(m_folder, "descriptors", u"Hook@trace@1"_s).output(), QByteArray());
    QCOMPARE(messages(fileContent(u"trace@1"_s)), (QByteArrayList { "before", "before" }));
}

void tst_quellog::keepsLinesOfProcessesWhole()
{
    Child first(m_folder, "threads", u"*@shared"_s), second(m_folder, "threads", u"*@shared"_s);
    QCOMPARE(first.output() + second.output(), QByteArray());
    static const QRegularExpression whole(u"^crowd i=(\\d+) pad=\"(p+)\"$"_s);
    const QByteArrayList lines = messages(fileContent(u"shared"_s));
    QCOMPARE(lines.size(), 2 * threadCount * linesPerThread);
    for (const QByteArray &line : lines) {
        const auto match = whole.match(QString::fromUtf8(line));
        QVERIFY2(match.hasMatch(), line.constData());
        QCOMPARE(match.capturedLength(2), 100 + match.captured(1).toInt());
    }
}

void tst_quellog::tellsOnceThatFileCannotBeOpened()
{
    QCOMPARE(Child(m_folder, "threads", u"Hook@missing/trace"_s).output(),
             "VORKEL_TRACE: cannot open \"missing/trace\" for appending: "
             "No such file or directory; tracing is off\n");
}

int main(int argc, char *argv[])
{
    for (const Deed &deed : deeds) {
        if (argc == 3 && std::string_view(argv[2]) == deed.name)
            return deed.run();
    }
    QCoreApplication application(argc, argv);
    tst_quellog test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_quellog.moc"
