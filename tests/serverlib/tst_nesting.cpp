#include "wire.h"

using namespace Qt::StringLiterals;
using Vorkel::TCPMessageChannel;

// Messages that arrive together, whose receivers run an event loop or wait for one message only.

class tst_nesting : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_runner = std::make_unique<FakeRunner>();
        m_channel = std::make_unique<TCPMessageChannel>(m_runner->connectedSocket());
        connect(m_channel.get(), &TCPMessageChannel::messageArrived, this, [this](const QByteArray &message) {
            m_heard << message.mid(TCPMessageChannel::MessagePrefixLength);
            if (const auto deed = std::exchange(m_onMessage, nullptr))
                deed();
        });
        m_heard.clear();
        QVERIFY(m_runner->write(Bytes::framed("1") + Bytes::framed("2") + Bytes::framed("3")));
    }

    void reachesEventLoopsInside()
    {
        bool inside = false;
        m_onMessage = [&] {
            QTRY_COMPARE(m_heard.size(), 3);
            inside = true;
        };
        QTRY_VERIFY(inside);
        QCOMPARE(m_heard, (QByteArrayList { "1", "2", "3" }));
    }

    void reachesEventLoopsAfterWait()
    {
        QCOMPARE(m_channel->waitForSingleMessage(-1).value().mid(4), "1");
        QCOMPARE(m_heard.size(), 1);
        QTRY_COMPARE(m_heard.size(), 3);
    }

    void isForgottenWithItsChannel()
    {
        m_onMessage = [this] { m_channel.reset(); };
        QTRY_VERIFY(!m_channel);
        QCoreApplication::processEvents();
        QCOMPARE(m_heard.size(), 1);
    }

private:
    std::unique_ptr<FakeRunner> m_runner;
    std::unique_ptr<TCPMessageChannel> m_channel;
    std::function<void()> m_onMessage;
    QByteArrayList m_heard;
};

QTEST_GUILESS_MAIN(tst_nesting)
#include "tst_nesting.moc"
