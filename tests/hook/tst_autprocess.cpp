#include "hook/autprocess.h"
#include "hook/processstat.h"

#include <QDateTime>
#include <QTemporaryFile>
#include <QTest>

using namespace Qt::StringLiterals;
using Vorkel::AUTProcess;

class tst_autprocess : public QObject
{
    Q_OBJECT

private slots:
    void tellsFacts();
    void readsProcFiles();
    void readsLogs_data();
    void readsLogs();
};

void tst_autprocess::tellsFacts()
{
    AUTProcess process;
    QVERIFY(process.usedMemory() > 1 << 20 && process.usedMemory() % 1024 == 0);
    const quint64 start = process.startTime();
    QVERIFY(start > 1500000000000ULL && start <= quint64(QDateTime::currentMSecsSinceEpoch()) + 2000);
    QCOMPARE(AUTProcess().startTime(), start);
    qputenv("VORKEL_TST_\xc3\xa4", "w\xc3\xa4rt");
    QCOMPARE(process.environmentVariable(u"VORKEL_TST_\u00e4"_s), u"w\u00e4rt"_s);
    QCOMPARE(process.environmentVariable(u"VORKEL_TST_UNSET"_s), QString());
}

void tst_autprocess::readsProcFiles()
{
    using Vorkel::ProcessStat::field;
    using Vorkel::ProcessStat::residentBytes;
    QCOMPARE(field("12 (app) S 1 2 18446744073709551\n", 5), 18446744073709551ULL);
    QCOMPARE(field("12 (my (odd) app) 7 8) S 1 2 3\n", 3), 1ULL);
    for (const char *bad : { "12 (app) S -1", "12 (app) S", "12 13 14 15 16", "" })
        QVERIFY2(!field(bad, 3), bad);
    QCOMPARE(residentBytes("Name:\tkB\nVmPeak: 9 kB\nVmRSS:\t  1234 kB\nVmData: 5 kB\n"), 1263616);
    QCOMPARE(residentBytes("VmRSS: 8388608 kB"), 8589934592);
    for (const char *bad : { "VmPeak: 9 kB\n", "VmSize: 1 kB\nVmRSS: 1234\n", "VmRSS: many kB\n" })
        QVERIFY2(!residentBytes(bad), bad);
}

void tst_autprocess::readsLogs_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("text");
    const QByteArray longLine(10000, 'x');
    QTest::newRow("lines") << QByteArray("one\ntw\xc3\xb6") << u"one\ntw\u00f6"_s;
    QTest::newRow("zero byte") << QByteArray("a\0b\nc\n", 6) << u"ac\n"_s;
    QTest::newRow("long line") << longLine + "\nend" << QString::fromLatin1(longLine + "\nend");
    // A line that long comes in pieces, each of which ends at its zero byte.
    QTest::newRow("zero byte in long line") << QByteArray(4000, 'x') + '\0' + QByteArray(200, 'y')
                                            << QString(4000, u'x') + QString(106, u'y');
}

// What the file holds already, then only what has come since.
void tst_autprocess::readsLogs()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, text);
    const char *variables[] = { "VORKEL_LOG_AUTSTDOUT_FILE", "VORKEL_LOG_AUTSTDERR_FILE" };
    for (const bool isStdout : { true, false }) {
        QTemporaryFile file;
        QVERIFY(file.open());
        qputenv(variables[isStdout ? 0 : 1], file.fileName().toUtf8());
        qputenv(variables[isStdout ? 1 : 0], isStdout ? "/nowhere/to/be/found" : "");
        const AUTProcess process;
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(isStdout ? process.readStdout() : process.readStderr(), QString());
            file.write(content);
            file.flush();
            QCOMPARE(isStdout ? process.readStdout() : process.readStderr(), text);
        }
        QCOMPARE(isStdout ? process.readStderr() : process.readStdout(), QString());
    }
}

QTEST_GUILESS_MAIN(tst_autprocess)
#include "tst_autprocess.moc"
