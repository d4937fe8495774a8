#include "choosing.h"

#include "pointer.h"

#include <algorithm>

namespace Vorkel::Runner {

namespace {

const QString OpenMenu = QStringLiteral("{type='QMenu' visible='true'}");
const QString MenuBar = QStringLiteral("{type='QMenuBar' visible='true'}");

/// Farther in than the frame of any menu.
constexpr int MenuEdge = 4;

Failure refused(const QString &text)
{
    return { ExitCode::CallFailed, text };
}

Failure awaitItem(DrivenProgram &program, const ObjectHandle &container, const QString &text,
                  ObjectHandle *item)
{
    return program.retry([&] {
        const Failure found = program.objects().readyItem(container, text, item);
        return found.isFailure() ? found : program.objects().checkReady(*item);
    });
}

/// Clicks on the item once it is ready.
Failure clickItem(DrivenProgram &program, const ObjectHandle &container, const QString &text)
{
    ObjectHandle item;
    const Failure failure = awaitItem(program, container, text, &item);
    return failure.isFailure() ? failure : clickOn(program, item);
}

/// To the entry's edge. As long as the pointer stays close to where it opened its list, a combo box takes
/// what is released there for the end of that press.
Failure leaveForItem(DrivenProgram &program, const ObjectHandle &box, const QString &text)
{
    QRect place;
    ObjectHandle item;
    Failure failure = awaitItem(program, box, text, &item);
    if (!failure.isFailure())
        failure = program.objects().bounds(item, &place);
    const QPoint edge(MenuEdge, place.height() / 2);
    return failure.isFailure() ? failure : program.objects().pointer(item, { PointerAction::Move, edge });
}

/// A combo box shows its entries when it is pressed.
Failure selectInComboBox(DrivenProgram &program, const ObjectHandle &box, const QString &text)
{
    const QString property = QStringLiteral("currentText");
    QString current;
    Failure failure = program.objects().getProperty(box, property, &current);
    if (failure.isFailure() || current == text)
        return failure;
    failure = clickOn(program, box);
    if (!failure.isFailure())
        failure = leaveForItem(program, box, text);
    if (!failure.isFailure())
        failure = clickItem(program, box, text);
    if (failure.isFailure())
        return failure;
    return program.retry([&] {
        const Failure read = program.objects().getProperty(box, property, &current);
        return read.isFailure() || current == text ? read
                                                   : refused(QStringLiteral("it shows '%1'").arg(current));
    });
}

/// The menu that a path starts in.
Failure firstMenu(const std::shared_ptr<DrivenProgram> &program, ObjectHandle *menu)
{
    return program->retry([&] {
        const Failure failure = Locator(program, OpenMenu).look(menu);
        return failure.code == ExitCode::CallFailed ? Locator(program, MenuBar).look(menu) : failure;
    });
}

/// The menu that opened for the entry `text`.
Failure openedMenu(const std::shared_ptr<DrivenProgram> &program, const QString &text, ObjectHandle *menu)
{
    QString quoted = text;
    quoted.replace(u'\\', QLatin1String("\\\\")).replace(u'\'', QLatin1String("\\'"));
    const Locator opened(program, QStringLiteral("{type='QMenu' visible='true' title='%1'}").arg(quoted));
    return opened.await(menu);
}

/// Moves into a menu that opened for what is at `from`, straight down or sideways: on a slant the pointer
/// would cross the neighbours, which open their own. Gives where it is then.
Failure enterMenu(RemoteObjects &objects, const ObjectHandle &menu, const QPoint &from, QPoint *at)
{
    QRect place;
    if (const Failure failure = objects.bounds(menu, &place); failure.isFailure())
        return failure;
    const QRect inside = place.marginsRemoved({ MenuEdge, MenuEdge, MenuEdge, MenuEdge });
    *at = QPoint(std::clamp(from.x(), inside.left(), std::max(inside.left(), inside.right())),
                 std::clamp(from.y(), inside.top(), std::max(inside.top(), inside.bottom())));
    return objects.pointer(menu, { PointerAction::Move, *at - place.topLeft() });
}

Failure walkMenus(const std::shared_ptr<DrivenProgram> &program, ObjectHandle menu, const QStringList &path)
{
    RemoteObjects &objects = program->objects();
    std::optional<QPoint> pointer; // where it is, once it is in a menu of ours
    for (qsizetype i = 0; i < path.size(); ++i) {
        QRect place;
        ObjectHandle item;
        ClickSettings settings;
        Failure failure = awaitItem(*program, menu, path.at(i), &item);
        if (!failure.isFailure())
            failure = objects.bounds(item, &place);
        if (pointer)
            settings.at = QPoint(pointer->x() - place.x(), place.height() / 2);
        if (!failure.isFailure())
            failure = clickOn(*program, item, settings);
        if (!failure.isFailure() && i + 1 < path.size())
            failure = openedMenu(program, path.at(i), &menu);
        if (!failure.isFailure() && i + 1 < path.size())
            failure = enterMenu(objects, menu, settings.at ? place.topLeft() + *settings.at : place.center(),
                                &pointer.emplace());
        if (failure.isFailure())
            return failure;
    }
    return {};
}

QString menuText(const QStringList &path)
{
    return QStringLiteral("choose %1").arg(path.join(QLatin1String(" > ")));
}

} // namespace

Failure select(const Locator &target, const QString &text)
{
    DrivenProgram &program = target.program();
    return program.step(QStringLiteral("select '%1' in %2").arg(text, target.text()), [&] {
        ObjectHandle object;
        const ClassRecord *record = nullptr;
        Failure failure = target.awaitReady(&object);
        if (!failure.isFailure())
            failure = program.objects().classOf(object, &record);
        if (failure.isFailure())
            return failure;
        return program.objects().classes().inherits(record, QStringLiteral("QComboBox"))
                ? selectInComboBox(program, object, text)
                : clickItem(program, object, text);
    });
}

Failure setChecked(const Locator &target, bool checked)
{
    DrivenProgram &program = target.program();
    const QString what = checked ? QStringLiteral("check %1") : QStringLiteral("uncheck %1");
    return program.step(what.arg(target.text()), [&] {
        ObjectHandle object;
        QVariant value;
        const auto read = [&] {
            return program.objects().getProperty(object, QStringLiteral("checked"), &value);
        };
        Failure failure = target.awaitReady(&object);
        if (!failure.isFailure())
            failure = read();
        if (failure.isFailure() || value.toBool() == checked)
            return failure;
        if (failure = clickOn(program, object); failure.isFailure())
            return failure;
        return program.retry([&] {
            const Failure again = read();
            return again.isFailure() || value.toBool() == checked
                    ? again
                    : refused(QStringLiteral("a click did not change it"));
        });
    });
}

Failure chooseFromMenu(const std::shared_ptr<DrivenProgram> &program, const QStringList &path)
{
    return program->step(menuText(path), [&] {
        ObjectHandle menu;
        const Failure failure = firstMenu(program, &menu);
        return failure.isFailure() ? failure : walkMenus(program, menu, path);
    });
}

Failure chooseFromMenu(const Locator &menu, const QStringList &path)
{
    return menu.program().step(menuText(path) + QStringLiteral(" in ") + menu.text(), [&] {
        ObjectHandle object;
        const Failure failure = menu.awaitReady(&object);
        return failure.isFailure() ? failure : walkMenus(menu.sharedProgram(), object, path);
    });
}

} // namespace Vorkel::Runner
