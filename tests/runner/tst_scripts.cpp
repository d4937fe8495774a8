#include "support/childprocess.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

#include <csignal>

#include <unistd.h>

using namespace Qt::StringLiterals;

// Test scripts, run by the command as a real process on real programs.

namespace {

/// The X server that `parent` has started; 0 when there is none.
pid_t displayServerOf(qint64 parent)
{
    for (const QString &entry : QDir(u"/proc"_s).entryList(QDir::Dirs)) {
        QFile stat(u"/proc/%1/stat"_s.arg(entry));
        if (entry.toInt() <= 0 || !stat.open(QIODevice::ReadOnly))
            continue;
        const QByteArrayList parts = stat.readAll().split(' ');
        if (parts.value(1) == "(Xvfb)" && parts.value(3).toLongLong() == parent)
            return entry.toInt();
    }
    return 0;
}

bool matches(const QString &pattern, const QString &text)
{
    return QRegularExpression(pattern, QRegularExpression::DotMatchesEverythingOption).match(text).hasMatch();
}

} // namespace

class tst_scripts : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void drives_data();
    void drives();
    void saysWhatWentWrong_data();
    void saysWhatWentWrong();
    void placesErrors_data();
    void placesErrors();
    void goesOnAfterFailures();
    void keepsEvidence();
    void writesJunit();
    void refuses_data();
    void refuses();
    void leavesNothingBehind_data();
    void leavesNothingBehind();

private:
    QString write(const QString &name, const QString &text) const;
    Outcome run(const QStringList &words) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    const QString m_moody = built(u"moodyprogram"_s);
};

void tst_scripts::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

QString tst_scripts::write(const QString &name, const QString &text) const
{
    QFile file(m_folder->filePath(name));
    const bool isOpen = file.open(QIODevice::WriteOnly);
    Q_ASSERT(isOpen);
    file.write(text.toUtf8());
    return file.fileName();
}

/// Runs `vorkel test` with the moody program as the one to launch.
Outcome tst_scripts::run(const QStringList &words) const
{
    ChildProcess process;
    process.setWorkingDirectory(m_folder->path());
    process.launch(built(u"../bin/vorkel"_s),
                   QStringList { u"test"_s } + words + QStringList { u"--"_s, m_moody }, {});
    return process.outcome();
}

void tst_scripts::drives_data()
{
    QTest::addColumn<QString>("script");
    const auto row = [](const char *name, const QString &script) { QTest::newRow(name) << script; };
    row("properties come as values", uR"(const app = launch();
            const moody = app.find({ name: 'moody' });
            expect(moody.get('words')).toEqual(['one', 'two']);
            expect(moody.get('visible')).toBe(true);
            expect(moody.get('x') + 1).toBeGreaterThan(0);
            expect(moody.get('windowModality')).toBe('NonModal');
            expect(moody.get('spot')).toEqual({ x: 3, y: 4 });
            moody.set('spot', { y: 9 });
            expect(moody).toHaveProperty('spot', { x: 3, y: 9 });
            moody.set('windowTitle', "it's \\ new");
            expect(app.find({ windowTitle: "it's \\ new", type: /^Mood/ })).toExist();)"_s);
    row("methods give values and objects", uR"(const app = launch();
            const moody = app.find({ name: 'moody' });
            expect(moody.call('sum', 2, 3)).toBe(5);
            expect(moody.call('inner').get('text')).toBe('early');
            expect(app.enumValue('QFrame::Shape', 'HLine')).toBe(4);)"_s);
    row("expectations wait", uR"(const app = launch();
            const label = app.find({ name: 'moody' }).find({ type: 'QLabel' });
            app.find({ name: 'moody' }).call('changeSoon');
            expect(label).toHaveText('late');
            expect(label).not.toHaveText('early');
            expect(app.find({ name: 'newcomer' })).not.toExist();
            app.find({ name: 'moody' }).call('appearSoon');
            app.find({ name: 'newcomer' }).waitFor();
            app.find({ name: 'newcomer' }).call('hide');
            app.find({ name: 'newcomer' }).waitUntilGone();
            expect(app.find({ name: 'newcomer' })).not.toBeVisible();
            expect(app.find({ name: 'newcomer' })).toExist();
            expect(app.find({ type: 'QLabel' })).toHaveCount(1);
            expect(app.find({ type: 'QDial' })).toHaveCount(0);)"_s);
    row("a call that opens a dialog lets the next one in", uR"(const app = launch();
            app.find({ name: 'moody' }).call('ask');
            const box = app.find({ type: 'QMessageBox' });
            expect(box).toHaveProperty('text', 'Are you?');
            box.call('reject');
            box.waitUntilGone();)"_s);
    row("several programs", uR"(const one = launch();
            const two = launch({ env: { LANG: 'C' } });
            one.find({ name: 'moody' }).set('windowTitle', 'one');
            expect(two.find({ name: 'moody' })).not.toHaveProperty('windowTitle', 'one');
            one.quit();
            expect(one).not.toBeRunning();
            expect(one.isRunning).toBe(false);
            expect(two).toBeRunning();)"_s);
    row("a program may end well", uR"(const app = launch();
            try { app.find({ name: 'moody' }).call('leave'); } catch (ended) { log(ended.message); }
            expect(app).not.toBeRunning();)"_s);
    row("values", uR"(expect({ a: [1, 'x'] }).toEqual({ a: [1, 'x'] });
            expect({ a: 1 }).not.toEqual({ a: 1, b: 2 });
            expect([1, [2]]).toContain([2]);
            expect('text').toMatch(/^te/);
            expect(0.5).toBeLessThan(1);
            let calls = 0;
            expect(waitUntil(() => ++calls === 3 && 'done')).toBe('done');)"_s);
}

void tst_scripts::drives()
{
    QFETCH(const QString, script);
    const Outcome outcome = run({ write(u"t.js"_s, u"test('it', () => {\n"_s + script + u"});"_s) });
    QVERIFY2(outcome.code == 0, qPrintable(outcome.out + outcome.err));
}

void tst_scripts::saysWhatWentWrong_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("message");
    const auto row = [](const char *line, const QString &message) {
        QTest::newRow(line) << QString::fromLatin1(line) << message;
    };
    // clang-format off
    row("moody.call('hang')",                          u"call hang of {name='moody'}: 'moodyprogram' does not answer .waited 1 s in vain"_s);
    row("moody.call('crash')",                         u"call crash of {name='moody'}: 'moodyprogram' was ended by signal 6"_s);
    row("moody.call('fail')",                          u"'moodyprogram' ended with code 7"_s);
    row("moody.call('hangUp')",                        u"'moodyprogram' closed the connection"_s);
    row("app.quit(); moody.get('x')",                  u"get x of {name='moody'}: 'moodyprogram' ended with code 0"_s);
    row("expect(moody).toHaveProperty('x', -9)",       u"expected: x -9\n +actual:   \\d+\n +.tried for 1 s."_s);
    row("expect(moody).not.toExist()",                 u"expected: not an object\n +actual:   an object"_s);
    row("expect(app.find({name: 'mood'})).toExist()",  u"expected: an object\n +actual:   Object '{name='mood'}' not found"_s);
    row("expect(app).not.toBeRunning()",               u"expect moodyprogram to have ended: it runs\n"_s);
    row("moody.get('windowTitel')",                    u"has no property 'windowTitel'; did you mean 'windowTitle'"_s);
    row("moody.call('sun', 1, 2)",                     u"has no method 'sun'; did you mean 'sum'"_s);
    row("app.call('nonsense')",                        u"the program has no global function 'nonsense'"_s);
    row("app.find({name: 'label'}).exists(); app.enumValue('QFrame::Shape', 'HLin')", u"Shape has no key 'HLin'; did you mean 'HLine'"_s);
    row("launch('/nowhere')",                          u"launch /nowhere: cannot start '/nowhere': No such file"_s);
    row("launch({ speed: 3 })",                        u"launch has no option 'speed'"_s);
    row("moody.click({ buton: 'left' })",              u"there is no option 'buton'"_s);
    row("waitUntil(() => 0, { timeout: 50 })",         u"wait until a condition holds: it did not within 0.05 s"_s);
    row("expect([1]).toContain(2)",                    u"expected: containing 2\n +actual:   \\[1\\]"_s);
    // clang-format on
}

void tst_scripts::saysWhatWentWrong()
{
    QFETCH(const QString, line);
    QFETCH(const QString, message);
    const QString script =
            u"test('it', () => {\n const app = launch(); const moody = app.find({name: 'moody'});\n %1;\n});"
            "test('next', () => { launch().quit(); });"_s;
    const Outcome outcome = run({ u"--timeout"_s, u"1"_s, write(u"t.js"_s, script.arg(line)) });
    QVERIFY2(matches(QString(message).replace(u'{', u"\\{"_s), outcome.out),
             qPrintable(outcome.out + outcome.err));
    QVERIFY2(matches(u"t.js:3:\\d+: "_s, outcome.out), qPrintable(outcome.out));
    // The next test has a program of its own.
    QVERIFY2(outcome.out.contains(u"1 passed, 1 failed, 0 skipped"_s), qPrintable(outcome.out));
    QCOMPARE(outcome.code, 9);
}

void tst_scripts::placesErrors_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("place");
    const auto row = [](const char *name, const QString &script, const QString &place) {
        QTest::newRow(name) << script << place;
    };
    // clang-format off
    row("syntax",             u"let a = 1;\nlet b = ;\n"_s,                                    u"t.js:2:9: SyntaxError"_s);
    row("syntax in a module", u"import { x } from './other.js';\nexport let b = 1;\nx x\n"_s,  u"t.js:3:3: SyntaxError"_s);
    row("no such import",     u"import { y } from './other.js';\n"_s,                          u"t.js:1:1: ReferenceError"_s);
    row("unknown name",       u"test('it', () => {\n\tlog(nope);\n});"_s,                      u"t.js:2:6: ReferenceError"_s);
    row("unknown member",     u"test('it', () => { expect(1).toBee(1); });"_s,                 u"t.js:1:30: TypeError"_s);
    row("failed expectation", u"test('it', () => {\n  expect(1)\n    .toBe(2);\n});"_s,         u"t.js:3:6: expect 2"_s);
    row("thrown",             u"test('it', () => {\n  throw new Error('pah');\n});"_s,         u"t.js:2:3: pah"_s);
    row("in another file",    u"import { x } from './other.js';\ntest('it', () => x());"_s,    u"other.js:2:13: expect 2"_s);
    // clang-format on
}

void tst_scripts::placesErrors()
{
    QFETCH(const QString, script);
    QFETCH(const QString, place);
    write(u"other.js"_s, u"export function x() {\n  expect(1).toBe(2);\n}\n"_s);
    const Outcome outcome = run({ write(u"t.js"_s, script) });
    QCOMPARE(outcome.code, 9);
    QVERIFY2(outcome.out.contains(place), qPrintable(outcome.out));
}

void tst_scripts::goesOnAfterFailures()
{
    const QString script = uR"(let order = [];
        beforeEach(() => order.push('before'));
        afterEach(() => order.push('after'));
        test('one', () => { throw new Error('one'); });
        test.skip('two', () => { throw new Error('two'); });
        test('three', () => expect(order).toEqual(['before', 'after', 'before']));)"_s;
    const Outcome outcome = run({ write(u"t.js"_s, script), write(u"broken.js"_s, u"}"_s) });
    QVERIFY2(outcome.out.contains(u"1 passed, 2 failed, 1 skipped"_s), qPrintable(outcome.out));
    const Outcome filtered = run({ u"--filter"_s, u"^th"_s, write(u"t.js"_s, script) });
    QVERIFY2(filtered.out.contains(u"0 passed, 1 failed, 0 skipped"_s), qPrintable(filtered.out));
}

void tst_scripts::keepsEvidence()
{
    const QString script = uR"(test('a/b', () => { launch(); expect(1).toBe(2); });)"_s;
    QCOMPARE(run({ u"--evidence"_s, u"kept"_s, write(u"t.js"_s, script) }).code, 9);
    const auto read = [&](const QString &name) {
        QFile file(m_folder->filePath(u"kept/t/a_b/"_s + name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    QVERIFY(read(u"message.txt"_s)
                    .contains("t.js:1:41\nexpect 2:\n  expected: 2\n  actual:   1\n  1 | test("));
    QVERIFY(read(u"screenshot.png"_s).startsWith("\x89PNG"));
    QVERIFY(read(u"objects.txt"_s).contains("label : QLabel  {name='label' type='QLabel' window={"));
}

void tst_scripts::writesJunit()
{
    const QString script = uR"(test('good <&>', () => log('said ', '\u0001'));
        test('bad', () => expect('<a>').toBe('b'));
        test.skip('later', () => {});)"_s;
    QCOMPARE(run({ u"--junit"_s, u"out/junit.xml"_s, write(u"t.js"_s, script) }).code, 9);
    QFile file(m_folder->filePath(u"out/junit.xml"_s));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&file);
    QStringList seen;
    while (!xml.atEnd()) {
        xml.readNext();
        const auto attribute = [&](const QString &name) { return xml.attributes().value(name).toString(); };
        if (xml.isStartElement())
            seen << xml.name().toString() + u' ' + attribute(u"name"_s) + attribute(u"message"_s);
        if (xml.isStartElement() && xml.name() == u"testsuites"_s)
            QCOMPARE(attribute(u"tests"_s) + attribute(u"failures"_s) + attribute(u"skipped"_s), u"311"_s);
    }
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
    const QStringList expected { u"testsuites "_s,       u"testsuite "_s + m_folder->filePath(u"t.js"_s),
                                 u"testcase good <&>"_s, u"system-out "_s,
                                 u"testcase bad"_s,      u"failure expect 'b':"_s,
                                 u"system-out "_s,       u"testcase later"_s,
                                 u"skipped "_s };
    QCOMPARE(seen, expected);
}

void tst_scripts::refuses_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QString>("message");
    const auto row = [](const char *words, const QString &message) {
        QTest::newRow(words) << QString::fromLatin1(words).split(u' ', Qt::SkipEmptyParts) << message;
    };
    // clang-format off
    row("",                       u"'test' takes FILE... before '--'"_s);
    row("nowhere.js",             u"there is no script 'nowhere.js'"_s);
    row("--filter ( t.js",        u"--filter: missing closing parenthesis"_s);
    row("--filter none t.js",     u"there was no test to run"_s);
    row("--xvfb=0x3 t.js",        u"--xvfb takes a size like 1280x1024, not '0x3'"_s);
    row("--junit /proc/no/x t.js", u"cannot write '/proc/no/x'"_s);
    // clang-format on
}

void tst_scripts::refuses()
{
    QFETCH(const QStringList, words);
    QFETCH(const QString, message);
    write(u"t.js"_s, u"test('it', () => {});"_s);
    const Outcome outcome = run(words);
    QCOMPARE(outcome.code, 2);
    QVERIFY2(outcome.err.contains(message), qPrintable(outcome.err));
}

void tst_scripts::leavesNothingBehind_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<int>("signal");
    QTest::addColumn<int>("code");
    // clang-format off
    QTest::newRow("ends")                << u"expect(1).toBe(2);"_s << 0       << 9;
    QTest::newRow("loops, interrupted")  << u"for (;;) ;"_s         << SIGINT  << 130;
    QTest::newRow("waits, terminated")   << u"waitUntil(() => 0);"_s << SIGTERM << 130;
    QTest::newRow("hangs, interrupted")  << u"app.find({name: 'moody'}).call('hang');"_s << SIGINT << 130;
    QTest::newRow("killed")              << u"for (;;) ;"_s         << SIGKILL << -1;
    // clang-format on
}

void tst_scripts::leavesNothingBehind()
{
    QFETCH(const QString, script);
    QFETCH(const int, signal);
    ChildProcess process;
    const QString text =
            u"test('it', () => { const app = launch('%1'); log('pid', app.remote('getPID')); log('display', app.remote('autInfo', 'environmentVariable', 'DISPLAY')); %2 });"_s;
    const QString path = write(u"t.js"_s, text.arg(m_moody, script));
    process.launch(built(u"../bin/vorkel"_s),
                   { u"test"_s, u"--xvfb=300x200"_s, u"--platform"_s, u"offscreen"_s, u"--evidence"_s,
                     m_folder->filePath(u"kept"_s), path },
                   {});
    const pid_t program = process.line("    pid ").toInt();
    const QByteArray display = process.line("    display ");
    QVERIFY(program > 0 && !isGone(program));
    QVERIFY2(display.startsWith(':'), display.constData());
    const pid_t server = displayServerOf(process.processId());
    QVERIFY(server > 0 && !isGone(server));
    if (signal != 0)
        ::kill(static_cast<pid_t>(process.processId()), signal);
    QTEST(process.finish(), "code");
    QTRY_VERIFY_WITH_TIMEOUT(isGone(program), 20000);
    QTRY_VERIFY_WITH_TIMEOUT(isGone(server), 20000);
}

QTEST_GUILESS_MAIN(tst_scripts)
#include "tst_scripts.moc"
