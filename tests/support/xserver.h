#pragma once

#include <QProcess>

/// An X server of the test's own that shows its screens to nobody. It ends with the object, or with the test.
class XServer
{
public:
    ~XServer();

    /// Starts it with `screens`, each as WIDTHxHEIGHTxDEPTH, on a display that is free, and with more
    /// `options`. The display's name; null when there is no server to start.
    [[nodiscard]] QString start(const QStringList &screens = { QStringLiteral("1280x1024x24") },
                                const QStringList &options = {});
    [[nodiscard]] QString display() const { return m_display; }
    /// The environment of a program that is to show its windows there.
    [[nodiscard]] QProcessEnvironment environment() const;
    /// Ends it as a crash would: its clients lose their connection.
    void stop();

private:
    QProcess m_process;
    QString m_display;
};
