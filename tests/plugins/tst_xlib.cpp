#include "support/childprocess.h"
#include "support/xserver.h"

#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

namespace {

using Orders = QStringList; // the words of each are between spaces; "_" stands for a space

const QString textWindow = u"A_window_of_its_own,_für_Tests"_s;

/// The program with the plug-in inside.
class Program : public ChildProcess
{
public:
    void launchOn(const XServer &server, const QString &platform = u"xcb"_s)
    {
        auto environment = server.environment();
        environment.insert(u"QT_QPA_PLATFORM"_s, platform);
        environment.insert(u"VORKEL_PREFIX"_s, built(u".."_s));
        environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
        launch(built(u"xlibprogram"_s), {}, environment);
    }

    /// What it answers to the order.
    [[nodiscard]] QString tell(const QString &order)
    {
        say(QString(order).replace(u' ', u'\t').replace(u'_', u' ').toUtf8());
        return QString::fromUtf8(line("answer "));
    }

    /// What its window has got to know since the last call; `moves` says how often the pointer moved in it.
    [[nodiscard]] QString events(int *moves = nullptr)
    {
        if (tell(u"keys <F12>"_s) != u"ok"_s)
            return u"no marker"_s;
        const QString events = QString::fromUtf8(line("events "));
        const int count = line("moves ").toInt();
        if (moves)
            *moves = count;
        return events;
    }
};

[[nodiscard]] QByteArray output(const XServer &server, const QString &command)
{
    QProcess process;
    process.setProcessEnvironment(server.environment());
    process.startCommand(command);
    process.waitForFinished();
    return process.readAllStandardOutput();
}

} // namespace

/// The plug-in for X11 in a real program on a real server: what the program's window gets to know of the
/// input, what others find in the clipboard, what the pictures show, and that nothing of it hurts the
/// program.
class tst_xlib : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void input_data();
    void input();
    void usesSpareKeysAgain();
    void passesWhatLiesBetween();
    void typesIntoNamedWindow();
    void knowsKeys();
    void putsKeyboardBack();
    void passesClipboard_data();
    void passesClipboard();
    void refusesSilentOwner();
    void outlivesAsker();
    void takesPictures_data();
    void takesPictures();
    void needsDisplay();
    void outlivesServer();

private:
    XServer m_server;
    Program m_program;
};

void tst_xlib::initTestCase()
{
    QVERIFY(!m_server.start().isNull());
    m_program.launchOn(m_server);
    QVERIFY(!m_program.line("focused").isNull());
}

void tst_xlib::input_data()
{
    QTest::addColumn<QString>("layout");
    QTest::addColumn<Orders>("orders");
    QTest::addColumn<QString>("expected");

    const auto typed = [](const char *name, const char *layout, const QString &text, const QString &seen) {
        QTest::newRow(name) << QString::fromLatin1(layout) << Orders { u"type "_s + text } << seen;
    };
    const auto done = [](const char *name, const Orders &orders, const char *seen) {
        QTest::newRow(name) << u"us"_s << orders << QString::fromUtf8(seen);
    };
    // clang-format off
    typed("letters of both cases", "us", u"aB!z"_s, u"a B ! z"_s);
    typed("what the layout lacks", "us", u"éÉ€Яя"_s, u"é É € Я я"_s);
    typed("beyond the basic plane", "us", u"a😀b"_s, u"a 😀 b"_s);
    typed("the third level", "de", u"@ß€{"_s, u"@ ß € {"_s);
    typed("another group", "us,ru", u"aЯb"_s, u"a Я b"_s);
    typed("line ends", "us", u"x\u001by"_s, u"x <Esc> y"_s);
    done("modifiers", { u"keys <Ctrl+Shift+a>x<Alt+F4>"_s }, "<Ctrl+Shift+A> x <Alt+F4>");
    done("keys by name", { u"keys <Return><PageUp><NumPadAdd><Shift+Tab>"_s }, "<Return> <PgUp> <Num++> <Shift+Backtab>");
    done("capitals with the lock on", { u"keys <CapsLock>aBé<CapsLock>a"_s }, "<CapsLock> a B é <CapsLock> a");
    done("a key that does not exist", { u"keys <Ctrl+Nonsense>"_s, u"held 2"_s, u"keys a"_s }, "a");
    done("a modifier held by hand", { u"down <Shift>"_s, u"down a"_s, u"up a"_s, u"up <Shift>"_s, u"type a"_s }, "A a");
    done("modifiers of a character", { u"type s 2"_s }, "<Ctrl+S>");
    done("strokes", { u"stroke Q"_s, u"stroke é"_s }, "Q é");
    done("every button", { u"click 1 150 100 1"_s, u"click 2 150 100 1"_s, u"click 4 150 100 1"_s, u"click 64 150 100 1"_s, u"click 128 150 100 1"_s, u"click 16 160 100 1"_s, u"click 32 160 100 1"_s },
         "press:1@50,50 release:1@50,50 press:4@50,50 release:4@50,50 press:2@50,50 release:2@50,50 press:8@50,50 release:8@50,50 press:16@50,50 release:16@50,50 press:1@60,50 release:1@60,50 press:2@60,50 release:2@60,50");
    done("two clicks", { u"click 1 150 100 1"_s, u"click 1 150 100 1"_s }, "press:1@50,50 release:1@50,50 press:1@50,50 release:1@50,50");
    done("a double click, and one more", { u"double 1 150 100"_s, u"click 1 150 100 1"_s }, "press:1@50,50 release:1@50,50 press:1@50,50 double:1@50,50 release:1@50,50 press:1@50,50 release:1@50,50");
    done("a click with a modifier", { u"click 1 150 100 1 2"_s, u"click 1 150 100 1"_s }, "Ctrl+press:1@50,50 Ctrl+release:1@50,50 press:1@50,50 release:1@50,50");
    done("the wheel", { u"move 150 100"_s, u"wheel 240"_s, u"wheel -120"_s, u"wheel 60"_s, u"wheel 60"_s }, "wheel 120 wheel 120 wheel -120 wheel 120");
    done("a drag", { u"drag 1 110 60 100 0 2"_s },
         "press:1@10,10 drag:0@11,10 drag:0@13,10 drag:0@15,10 drag:0@17,10 drag:0@19,10 Ctrl+drag:0@37,10 Ctrl+drag:0@55,10 Ctrl+drag:0@73,10 Ctrl+drag:0@91,10 Ctrl+drag:0@110,10 Ctrl+release:1@110,10");
    // clang-format on
}

void tst_xlib::input()
{
    QFETCH(const QString, layout);
    QFETCH(const Orders, orders);
    (void)output(m_server, u"setxkbmap "_s + layout);
    QCOMPARE(m_program.tell(u"warp 700 600"_s), u"ok"_s);
    (void)m_program.events();
    for (const QString &order : orders)
        (void)m_program.tell(order);
    QTEST(m_program.events(), "expected");
}

/// There are fewer keys than characters: a key may change its meaning when the program has read it, and not
/// before.
void tst_xlib::usesSpareKeysAgain()
{
    (void)output(m_server, u"setxkbmap us"_s);
    (void)m_program.events();
    constexpr int Amount = 15;
    for (int first = 0x4e00; first < 0x4e00 + 10 * Amount; first += Amount) {
        QStringList text;
        for (int i = 0; i < Amount; ++i)
            text << QString(QChar(first + i));
        QCOMPARE(m_program.tell(u"type "_s + text.join(QString())), u"ok"_s);
        QCOMPARE(m_program.events(), text.join(u' '));
    }
    QString tooMuch;
    for (int i = 0; i < 300; ++i)
        tooMuch += QChar(0x5e00 + i);
    const QString refusal = m_program.tell(u"type "_s + tooMuch);
    QVERIFY2(refusal.startsWith(u"The keyboard layout has no key free for 'U5"), qUtf8Printable(refusal));
    const QString typed = m_program.events().remove(u' ');
    QVERIFY(typed.size() >= Amount);
    QCOMPARE(typed, tooMuch.left(typed.size()));
}

void tst_xlib::passesWhatLiesBetween()
{
    int moves = 0;
    QCOMPARE(m_program.tell(u"warp 50 200"_s), u"ok"_s);
    (void)m_program.events();
    QCOMPARE(m_program.tell(u"move 600 200"_s), u"ok"_s);
    (void)m_program.events(&moves);
    QVERIFY2(moves >= 2, QByteArray::number(moves).constData());
    QCOMPARE(m_program.tell(u"warp 60 200"_s), u"ok"_s);
    (void)m_program.events(&moves);
    QCOMPARE(moves, 0);
    QCOMPARE(m_program.tell(u"where"_s), u"60,200"_s);
}

void tst_xlib::typesIntoNamedWindow()
{
    Program other;
    other.launchOn(m_server);
    QVERIFY(!other.line("focused").isNull());
    QCOMPARE(other.tell(u"window Nobody text"_s), u"There is no window named 'Nobody'"_s);
    QCOMPARE(m_program.tell(u"window %1 hé!"_s.arg(textWindow)), u"ok"_s);
    // Both have that name; what was shown last lies on top.
    QCOMPARE(other.events(), u"h é !"_s);
    other.kill();
    QVERIFY(other.waitForFinished());
    QCOMPARE(m_program.tell(u"window %1 x"_s.arg(textWindow)), u"ok"_s);
    QCOMPARE(m_program.events(), u"x"_s);
}

void tst_xlib::knowsKeys()
{
    for (const char *name : { "Ctrl", "NumPad7", "WinRight", "F12", "XF86AudioMute" })
        QCOMPARE(m_program.tell(u"valid "_s + QLatin1String(name)), u"1"_s);
    for (const char *name : { "ctrl", "a", "Nonsense" })
        QCOMPARE(m_program.tell(u"valid "_s + QLatin1String(name)), u"0"_s);
    QVERIFY(m_program.tell(u"extra"_s).contains(u"XF86AudioMute"_s));
    QCOMPARE(m_program.tell(u"hold 3 1"_s), u"ok"_s);
    QCOMPARE(m_program.tell(u"held 2"_s) + m_program.tell(u"held 1"_s) + m_program.tell(u"held 4"_s),
             u"110"_s);
    QCOMPARE(m_program.tell(u"hold 3 0"_s), u"ok"_s);
    QCOMPARE(m_program.tell(u"held 2"_s), u"0"_s);
    QCOMPARE(m_program.tell(u"touch 150 100"_s), u"An X server offers no way to touch its screen"_s);
}

void tst_xlib::putsKeyboardBack()
{
    XServer server;
    QVERIFY(!server.start().isNull());
    const QString command = u"xkbcomp -xkb %1 -"_s.arg(server.display());
    const QByteArray before = output(server, command);
    QVERIFY(before.contains("xkb_symbols"));
    Program program;
    program.launchOn(server);
    QVERIFY(!program.line("focused").isNull());
    QCOMPARE(program.tell(u"type é€Я😀"_s), u"ok"_s);
    QCOMPARE(program.tell(u"down <Shift>"_s), u"ok"_s);
    QVERIFY(output(server, command) != before);
    QCOMPARE(program.tell(u"end"_s), u"ok"_s);
    QCOMPARE(output(server, command), before);
    QCOMPARE(program.tell(u"connect"_s), u"xlib"_s);
    QCOMPARE(program.tell(u"held 1"_s), u"0"_s);
}

void tst_xlib::passesClipboard_data()
{
    QTest::addColumn<QString>("write");
    QTest::addColumn<QString>("read");
    QTest::addColumn<bool>("sameProgram");
    const auto add = [](const char *name, const char *write, const char *read, bool same) {
        QTest::newRow(name) << QString::fromLatin1(write) << QString::fromLatin1(read) << same;
    };
    add("from us to another program", "set", "ownget", false);
    add("from another program to us", "ownset", "get", false);
    add("from us to our program", "set", "ownget", true);
    add("from our program to us", "ownset", "get", true);
    add("from us to us", "set", "get", true);
    add("between two of us", "set", "get", false);
}

void tst_xlib::passesClipboard()
{
    QFETCH(const QString, write);
    QFETCH(const QString, read);
    QFETCH(const bool, sameProgram);
    Program other;
    if (!sameProgram) {
        other.launchOn(m_server);
        QVERIFY(!other.line("focused").isNull());
    }
    Program &writer = read == u"get"_s && !sameProgram ? other : m_program;
    Program &reader = sameProgram || &writer == &other ? m_program : other;
    for (const QString &text : { u"Grüße,_мир_😀"_s, u"0123456789é*300000"_s, QString() }) {
        QCOMPARE(writer.tell(write + u' ' + text), u"ok"_s);
        // Qt keeps what it has read until it hears of a new owner.
        QTRY_COMPARE(reader.tell(read), reader.tell(u"summary "_s + text));
    }
}

void tst_xlib::refusesSilentOwner()
{
    Program other;
    other.launchOn(m_server);
    QVERIFY(!other.line("focused").isNull());
    QCOMPARE(other.tell(u"ownset text"_s), u"ok"_s);
    QTRY_COMPARE(m_program.tell(u"get"_s), u"text"_s);
    const auto pid = static_cast<pid_t>(other.processId());
    QCOMPARE(::kill(pid, SIGSTOP), 0);
    const QString answer = m_program.tell(u"get"_s);
    ::kill(pid, SIGCONT);
    QCOMPARE(answer, u"The program that owns the clipboard does not hand it over in time"_s);
    QTRY_COMPARE(m_program.tell(u"get"_s), u"text"_s);
}

void tst_xlib::outlivesAsker()
{
    Program owner, asker;
    owner.launchOn(m_server, u"offscreen"_s); // without Qt's own watch over errors of X
    asker.launchOn(m_server);
    QVERIFY(!asker.line("focused").isNull());
    QCOMPARE(owner.tell(u"set 0123456789*300000"_s), u"ok"_s);
    // The answer goes to a window that is no more.
    const auto pid = static_cast<pid_t>(owner.processId());
    QCOMPARE(::kill(pid, SIGSTOP), 0);
    asker.say("ownget");
    (void)output(m_server, u"xkbcomp -xkb %1 -"_s.arg(m_server.display())); // time for the question to leave
    asker.kill();
    const bool isOver = asker.waitForFinished();
    ::kill(pid, SIGCONT);
    QVERIFY(isOver);
    QCOMPARE(owner.tell(u"set text"_s), u"ok"_s);
    QTRY_COMPARE(m_program.tell(u"ownget"_s), u"text"_s);
}

void tst_xlib::takesPictures_data()
{
    QTest::addColumn<QString>("screen");
    QTest::addColumn<QStringList>("options");
    QTest::newRow("24 bits") << u"640x480x24"_s << QStringList();
    QTest::newRow("16 bits") << u"640x480x16"_s << QStringList();
    QTest::newRow("30 bits") << u"640x480x30"_s << QStringList();
    QTest::newRow("without shared memory")
            << u"640x480x24"_s << QStringList { u"-extension"_s, u"MIT-SHM"_s };
}

void tst_xlib::takesPictures()
{
    QFETCH(const QString, screen);
    QFETCH(const QStringList, options);
    XServer server;
    QVERIFY(!server.start({ screen }, options).isNull());
    Program program;
    program.launchOn(server);
    QVERIFY(!program.line("focused").isNull());
    // clang-format off
    QTRY_COMPARE(program.tell(u"shot 0 0 -1 -1 99 50 100 50 299 60 300 349 500 60"_s), u"640x480 0,0 #000000 #ff0000 #ff0000 #0000ff #000000"_s);
    QCOMPARE(program.tell(u"shot 298 60 4 3 1 0 2 2"_s), u"4x3 -298,-60 #ff0000 #0000ff"_s);
    QCOMPARE(program.tell(u"shot -10 340 320 200 9 0 110 9 110 10 309 199"_s), u"320x200 10,-340 #000000 #ff0000 #000000 #000000"_s);
    QCOMPARE(program.tell(u"shot 0 0 0 5"_s), u"There is no picture of 0 by 5 pixels"_s);
    // clang-format on
}

void tst_xlib::needsDisplay()
{
    XServer gone;
    const QString name = gone.start();
    gone.stop();
    Program program;
    program.launchOn(m_server, u"offscreen"_s);
    QCOMPARE(program.tell(u"connect "_s + name), u"null"_s);
    QCOMPARE(program.tell(u"move 1 1"_s), u"Cannot connect to the X display '%1'"_s.arg(name));
}

void tst_xlib::outlivesServer()
{
    XServer server;
    QVERIFY(!server.start().isNull());
    Program program;
    program.launchOn(server, u"offscreen"_s);
    QCOMPARE(program.tell(u"set text"_s), u"ok"_s);
    QCOMPARE(program.tell(u"type é"_s), u"ok"_s);
    QCOMPARE(program.tell(u"down <Shift>"_s), u"ok"_s);
    const QString lost = u"The connection to the X display '%1' is lost"_s.arg(server.display());
    server.stop();
    for (const char *order : { "move 5 5", "click 1 5 5 1", "wheel 120", "type a", "type я", "hold 1 1",
                               "where", "shot 0 0 9 9", "get", "set again", "window Name text", "extra" })
    {
        const QString answer = program.tell(QString::fromUtf8(order));
        if (QByteArray(order) != "extra" && QByteArray(order) != "where")
            QCOMPARE(answer, lost);
    }
    QCOMPARE(program.tell(u"end"_s), u"ok"_s);
    program.say("quit");
    QCOMPARE(program.finish(), 0);
}

QTEST_GUILESS_MAIN(tst_xlib)
#include "tst_xlib.moc"
