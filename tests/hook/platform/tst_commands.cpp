#include "hook/platform/command.h"
#include "hook/platform/currentplatform.h"
#include "support/recordingnativeinterface.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using namespace Vorkel;

namespace {

using Deed = std::function<VoidResult(NativeInterface &)>;

RecordingNativeInterface *current = nullptr;

constexpr auto Left = MouseButton::LeftButton;
constexpr NativePoint There = NativePoint::at(3, 4);

} // namespace

Q_DECLARE_METATYPE(Deed)

NativeInterface *Vorkel::currentNativeInterface()
{
    return current;
}

class TestCommands : public QObject
{
    Q_OBJECT

private slots:
    void compositions_data();
    void compositions();
    void typing_data();
    void typing();
    void allRunAndTheFirstErrorIsKept();
    void theCurrentPlatformIsUsed();
};

void TestCommands::compositions_data()
{
    QTest::addColumn<Deed>("deed");
    QTest::addColumn<QString>("failing"); // the operation that does
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name, const char *failing, const QString &expected, const Deed &deed) {
        QTest::newRow(name) << deed << QString::fromLatin1(failing) << expected;
    };
    const Deed press = [](NativeInterface &native) { return native.pointerPress(Left, true, There, 2, 1); };
    const Deed twice = [](NativeInterface &native) { return native.doubleClick(Left, There, 0); };
    const Deed click = [](NativeInterface &native) { return native.pointerClick(Left, There); };
    const Deed drag = [](NativeInterface &native) {
        return native.pointerDragAndDrop(There, 5, -6, Left, 1);
    };
    const Deed roll = [](NativeInterface &native) { return native.wheelRoll(-120, 2); };

    // clang-format off
    row("press, modifiers fail", "press", u"pointerMove 3,4; pressReleaseModifiers 2 down; broken"_s, press);
    row("release where it is", "", u"pressReleaseModifiers 2 down; pointerButton 1 up nowhere 1; pressReleaseModifiers 2 up"_s,
        [](NativeInterface &native) { return native.pointerPress(Left, false, {}, 2, 1); });
    row("double click", "", u"pointerMove 3,4; pressReleaseModifiers 0 down; pointerButton 1 down 3,4 1; pressReleaseModifiers 0 down; "
        "pointerMove 3,4; pressReleaseModifiers 0 down; pointerButton 1 up 3,4 1; pressReleaseModifiers 0 up; "
        "pointerMove 3,4; pressReleaseModifiers 0 down; pointerButton 1 down 3,4 2; pressReleaseModifiers 0 down; "
        "pointerMove 3,4; pressReleaseModifiers 0 down; pointerButton 1 up 3,4 2; pressReleaseModifiers 0 up"_s, twice);
    row("double click, first release fails", "pointerButton 1 up", u"pointerMove 3,4; pressReleaseModifiers 0 down; pointerButton 1 down 3,4 1; pressReleaseModifiers 0 down; "
        "pointerMove 3,4; pressReleaseModifiers 0 down; pointerButton 1 up 3,4 1; pressReleaseModifiers 0 up; broken"_s, twice);
    row("click, move fails", "pointerMove", u"pointerMove 3,4; pointerButton 1 down 3,4 1; pointerButton 1 up 3,4 1; broken"_s, click);
    row("wheel, fails", "wheelRoll", u"pressReleaseModifiers 2 down; wheelRoll -120; pressReleaseModifiers 2 up; broken"_s, roll);
    row("drag", "", u"pointerDragAndDropBegin 3,4 1 9; pointerDragAndDropEnd 8,-2 1 1 drop"_s, drag);
    row("drag, start fails", "pointerDragAndDropBegin", u"pointerDragAndDropBegin 3,4 1 9; broken"_s, drag);
    row("tap, touch fails", "touch 0", u"pressReleaseModifiers 4 down; touch 0 3,4 0 0; touch 2 3,4 0 0; pressReleaseModifiers 4 up; broken"_s,
        [](NativeInterface &native) { return native.tap(There, 4); });
    // clang-format on
}

void TestCommands::compositions()
{
    QFETCH(Deed, deed);
    QFETCH(QString, failing);
    RecordingNativeInterface native;
    if (!failing.isEmpty())
        native.failures.insert(failing, u"broken"_s);
    const VoidResult result = deed(native);
    if (!result.isOk())
        native.heard << result.error();
    QTEST(native.heard.join(u"; "_s), "expected");
}

void TestCommands::typing_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("keys");
    QTest::addColumn<QString>("expected"); // + for down, - for up

    // clang-format off
    QTest::newRow("characters")             << u"hi"_s       << true  << u"+h -h +i -i"_s;
    QTest::newRow("beyond the basic plane") << u"\U0001F600"_s << false << u"+\U0001F600 -\U0001F600"_s;
    QTest::newRow("bracket")                << u"<"_s        << true  << u"+< -<"_s;
    QTest::newRow("empty brackets")         << u"<>"_s       << true  << u""_s;
    QTest::newRow("combination")            << u"<Ctrl+a>"_s << true  << u"+<Ctrl> +a -a -<Ctrl>"_s;
    QTest::newRow("combination as text")    << u"<F1>"_s     << false << u"+< -< +F -F +1 -1 +> ->"_s;
    QTest::newRow("letter first")           << u"<a+F1>"_s   << true  << u"+<a> +<F1> -<F1> -<a>"_s;
    QTest::newRow("plus as key")            << u"<Shift++>"_s << true << u"+<Shift> ++ -+ -<Shift>"_s;
    // clang-format on
}

void TestCommands::typing()
{
    QFETCH(QString, text);
    QFETCH(bool, keys);
    RecordingNativeInterface native;
    QVERIFY(TypeText(text, keys).executeWith(&native).isOk());
    QStringList shown;
    for (const QString &line : std::as_const(native.heard))
        shown << (line.endsWith(u" down") ? u'+' : u'-') + line.section(u' ', 1, 1);
    QTEST(shown.join(u' '), "expected");
}

void TestCommands::allRunAndTheFirstErrorIsKept()
{
    RecordingNativeInterface native;
    native.failures = { { u"pointerMove"_s, u"no move"_s }, { u"pointerButton"_s, u"no button"_s } };
    const QStringList click { u"pointerMove 7,8"_s, u"pointerButton 4 down 1"_s, u"pointerButton 4 up 1"_s };

    CommandQueue queue;
    queue.add(new MouseClick(7, 8, MouseButton::RightButton));
    QCOMPARE(queue.executeWith(&native).error(), u"no move"_s);
    QCOMPARE(native.heard, click);

    native.heard.clear();
    native.flushSuppressed = true;
    const std::list<SharedPtr<Command>> commands { SharedPtr<Command>(new MouseButtonPress(Left)),
                                                   SharedPtr<Command>(new KeyboardType(u'x', 2)) };
    QCOMPARE(executeCommands(commands, &native).error(), u"no button"_s);
    const QStringList expected { u"supressFlush on"_s, u"pointerButton 1 down 1"_s, u"supressFlush on"_s,
                                 u"supressFlush on"_s, u"typeCharacter x 2"_s,      u"supressFlush on"_s };
    QCOMPARE(native.heard, expected);
}

void TestCommands::theCurrentPlatformIsUsed()
{
    PressKey command(u"a"_s);
    command.execute();
    QCOMPARE(executeCommands({}).error(), u"Platform plugin not set"_s);

    RecordingNativeInterface native;
    current = &native;
    command.execute();
    QVERIFY(executeCommands({ SharedPtr<Command>(new ReleaseKey(u"a"_s)) }).isOk());
    current = nullptr;
    const QStringList expected { u"sendKeys a down"_s, u"supressFlush on"_s, u"sendKeys a up"_s,
                                 u"supressFlush off"_s };
    QCOMPARE(native.heard, expected);
}

QTEST_GUILESS_MAIN(TestCommands)

#include "tst_commands.moc"
