#pragma once

#include "fkit/export.h"

#include <QFile>
#include <QString>
#include <QStringList>

#include <memory>

namespace Vorkel {

/// Answers questions about the process that the library runs in. A toolkit or platform with other
/// means derives from it.
class VORKEL_EXPORT AUTProcess
{
public:
    /// Opens the files that `VORKEL_LOG_AUTSTDOUT_FILE` and `VORKEL_LOG_AUTSTDERR_FILE` name: where
    /// whoever started the process sends its output.
    AUTProcess();
    AUTProcess(const AUTProcess &) = delete;
    AUTProcess &operator=(const AUTProcess &) = delete;
    virtual ~AUTProcess();

    /// The file name of the program; empty when there are no arguments.
    [[nodiscard]] virtual QString name() const;
    [[nodiscard]] virtual QStringList arguments() const;
    /// When the process started, in milliseconds since the Unix epoch; 0 when unknown.
    [[nodiscard]] virtual quint64 startTime() const;
    /// Processor time used so far, in milliseconds; -1 when unknown.
    [[nodiscard]] virtual qint64 totalTime() const;
    [[nodiscard]] virtual int processId() const;
    [[nodiscard]] virtual QString workingDirectory() const;
    /// Resident memory in bytes; -1 when unknown.
    [[nodiscard]] virtual qint64 usedMemory() const;
    /// What the process has written since the last call; empty when its output goes to no file that
    /// is known here.
    [[nodiscard]] virtual QString readStdout() const;
    [[nodiscard]] virtual QString readStderr() const;
    /// The name of the operating system's kernel, "Unknown" when it is not.
    [[nodiscard]] virtual QString osName() const;
    [[nodiscard]] virtual QString environmentVariable(const QString &name);

    [[nodiscard]] static QString baseName(const QString &path);

protected:
    /// What has come to `file` since the last call, in the local encoding. A line is taken up to
    /// its first zero byte. Empty when `file` is null or not open.
    [[nodiscard]] QString readLog(QFile *file) const;

private:
    std::unique_ptr<QFile> m_stdoutLog;
    std::unique_ptr<QFile> m_stderrLog;
};

} // namespace Vorkel
