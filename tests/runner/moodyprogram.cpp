#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QTimer>

#include <csignal>

#include <sys/socket.h>
#include <unistd.h>

// A program with all that makes life hard for who drives it.

class Moody : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QStringList words MEMBER m_words)
    Q_PROPERTY(QPoint spot MEMBER m_spot)

public:
    Moody()
        : m_label(new QLabel(QStringLiteral("early"), this))
    {
        m_label->setObjectName(QStringLiteral("label"));
    }

public slots:
    void hang() { ::raise(SIGSTOP); }
    void crash() { ::abort(); }
    void leave() { ::_exit(0); }
    void fail() { ::_exit(7); }
    /// Closes all sockets, the one to the runner among them.
    void hangUp()
    {
        for (int descriptor = 3; descriptor < 100; ++descriptor)
            ::shutdown(descriptor, SHUT_RDWR);
    }
    /// Answers only when the box is closed.
    int ask() { return QMessageBox::question(this, QStringLiteral("Sure?"), QStringLiteral("Are you?")); }
    /// Changes in a while.
    void changeSoon()
    {
        QTimer::singleShot(200, m_label, [this] { m_label->setText(QStringLiteral("late")); });
    }
    void appearSoon() { QTimer::singleShot(200, this, &Moody::appear); }
    int sum(int a, int b) { return a + b; }
    QObject *inner() { return m_label; }

private:
    void appear()
    {
        auto *edit = new QLineEdit(this);
        edit->setObjectName(QStringLiteral("newcomer"));
        edit->show();
    }

    QLabel *m_label;
    QStringList m_words { QStringLiteral("one"), QStringLiteral("two") };
    QPoint m_spot { 3, 4 };
};

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    Moody window;
    window.setObjectName(QStringLiteral("moody"));
    window.show();
    return QApplication::exec();
}

#include "moodyprogram.moc"
