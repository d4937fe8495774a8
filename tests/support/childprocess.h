#pragma once

#include <QProcess>

/// A file of this build, by its path from the folder of the tests.
[[nodiscard]] QString built(const QString &path);

/// Whether the process has ended; one that nobody waits for stays as a zombie.
[[nodiscard]] bool isGone(qint64 pid);

/// How a process ended and what it wrote.
struct Outcome
{
    int code; ///< -1 when it did not end by itself
    QString out;
    QString err;
};

/// A process of ours that a test talks to by lines; it ends with the object.
class ChildProcess : public QProcess
{
    Q_OBJECT

public:
    ~ChildProcess() override;

    /// Starts `program` with `variables` and none of the caller's own that begin with VORKEL_.
    void launch(const QString &program, const QStringList &arguments, const QProcessEnvironment &variables);
    void say(const QByteArray &line);
    /// The rest of the next line on standard output that starts with `start`; earlier lines are dropped.
    /// A null array when the process ends or takes too long.
    [[nodiscard]] QByteArray line(const QByteArray &start);
    /// What came on the standard error stream since the last call.
    [[nodiscard]] QByteArrayList errorLines();
    /// Waits for the process to end by itself; its exit code, or -1.
    [[nodiscard]] int finish();
    /// The same, with what it wrote and nobody has read.
    [[nodiscard]] Outcome outcome();
};
