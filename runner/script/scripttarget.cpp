#include "scripttarget.h"

#include "driving/choosing.h"
#include "driving/expectations.h"
#include "driving/keyboard.h"
#include "driving/pointer.h"
#include "driving/screenshots.h"
#include "driving/shownvalues.h"

#include <algorithm>

namespace Vorkel::Runner {

namespace {

constexpr int MostCounted = 10000;

struct NamedNumber
{
    const char *name;
    int number;
};

// clang-format off
constexpr NamedNumber Buttons[] = { { "left", 1 }, { "middle", 2 }, { "right", 4 }, { "back", 64 }, { "forward", 128 } };
constexpr NamedNumber Modifiers[] = { { "Ctrl", 128 }, { "Shift", 256 }, { "Alt", 512 }, { "Meta", 2048 } };
constexpr NamedNumber Matchers[] = {
    { "Exist",        Expectation::Exists      },
    { "BeVisible",    Expectation::IsVisible   },
    { "BeEnabled",    Expectation::IsEnabled   },
    { "BeChecked",    Expectation::IsChecked   },
    { "HaveFocus",    Expectation::HasFocus    },
    { "BeReady",      Expectation::IsReady     },
    { "HaveText",     Expectation::HasText     },
    { "HaveProperty", Expectation::HasProperty },
    { "HaveCount",    Expectation::HasCount    },
};
// clang-format on

template <typename Rows>
const NamedNumber *find(const Rows &rows, const QString &name)
{
    const auto *row = std::find_if(std::begin(rows), std::end(rows), [&](const NamedNumber &each) {
        return name.compare(QLatin1String(each.name), Qt::CaseInsensitive) == 0;
    });
    return row == std::end(rows) ? nullptr : row;
}

Failure wrongOption(const QString &text)
{
    return { ExitCode::CallFailed, text };
}

Failure readPoint(const QVariantMap &options, std::optional<QPoint> *at)
{
    const bool hasX = options.contains(QStringLiteral("x"));
    if (hasX != options.contains(QStringLiteral("y")))
        return wrongOption(QStringLiteral("x and y belong together"));
    if (hasX)
        *at = QPoint(options.value(QStringLiteral("x")).toInt(), options.value(QStringLiteral("y")).toInt());
    return {};
}

Failure readClick(const QVariantMap &options, ClickSettings *settings)
{
    if (const QString name = options.value(QStringLiteral("button")).toString(); !name.isEmpty()) {
        const NamedNumber *button = find(Buttons, name);
        if (!button)
            return wrongOption(QStringLiteral("there is no button '%1'").arg(name));
        settings->button = button->number;
    }
    for (const QString &name : options.value(QStringLiteral("modifiers")).toStringList()) {
        const NamedNumber *modifier = find(Modifiers, name);
        if (!modifier)
            return wrongOption(QStringLiteral("there is no modifier '%1'").arg(name));
        settings->modifiers |= modifier->number;
    }
    return readPoint(options, &settings->at);
}

template <typename Action>
Failure withClick(const QVariantMap &options, Action action)
{
    ClickSettings settings;
    const Failure failure = readClick(options, &settings);
    return failure.isFailure() ? failure : action(settings);
}

} // namespace

/// Does `work` with the object as one step, once it is there.
template <typename Work>
bool ScriptTarget::withObject(const QString &what, Work work) const
{
    return succeeded(m_locator.program().step(what.arg(m_locator.text()), [&] {
        ObjectHandle object;
        const Failure failure = m_locator.await(&object);
        return failure.isFailure() ? failure : work(m_locator.program().objects(), object);
    }));
}

Failure ScriptTarget::handle(QVariant *handle) const
{
    return m_locator.program().step(QStringLiteral("find %1").arg(m_locator.text()), [&] {
        ObjectHandle object;
        const Failure failure = m_locator.await(&object);
        *handle = QVariant::fromValue(object);
        return failure;
    });
}

QJSValue ScriptTarget::below(const QString &name) const
{
    return given(new ScriptTarget(m_locator.below(name)));
}

QJSValue ScriptTarget::itemNamed(const QString &text) const
{
    return given(new ScriptTarget(m_locator.item(text)));
}

QJSValue ScriptTarget::itemAt(int row, int column) const
{
    return given(new ScriptTarget(m_locator.item(row, column)));
}

QString ScriptTarget::name() const
{
    QString name;
    withObject(QStringLiteral("name of %1"), [&](RemoteObjects &objects, const ObjectHandle &object) {
        return objects.realName(object, &name);
    });
    return name;
}

void ScriptTarget::click(const QVariantMap &options) const
{
    succeeded(withClick(options, [&](const auto &settings) { return Runner::click(m_locator, settings); }));
}

void ScriptTarget::doubleClick(const QVariantMap &options) const
{
    succeeded(withClick(options,
                        [&](const auto &settings) { return Runner::doubleClick(m_locator, settings); }));
}

void ScriptTarget::tap(const QVariantMap &options) const
{
    succeeded(withClick(options, [&](const auto &settings) { return Runner::tap(m_locator, settings); }));
}

void ScriptTarget::hover(const QVariantMap &options) const
{
    succeeded(
            withClick(options, [&](const auto &settings) { return Runner::hover(m_locator, settings.at); }));
}

void ScriptTarget::wheel(int notches) const
{
    succeeded(turnWheel(m_locator, notches));
}

void ScriptTarget::dragTo(QObject *other, const QVariantMap &options) const
{
    const auto *target = qobject_cast<ScriptTarget *>(other);
    succeeded(withClick(options, [&](const ClickSettings &settings) {
        return target ? drag(m_locator, target->m_locator, settings)
                      : wrongOption(QStringLiteral("dragTo takes a locator"));
    }));
}

void ScriptTarget::type(const QString &text) const
{
    succeeded(typeText(m_locator, text));
}

void ScriptTarget::press(const QString &keys) const
{
    succeeded(pressKeys(m_locator, keys));
}

void ScriptTarget::fill(const QString &text) const
{
    succeeded(Runner::fill(m_locator, text));
}

void ScriptTarget::select(const QString &text) const
{
    succeeded(Runner::select(m_locator, text));
}

void ScriptTarget::setChecked(bool checked) const
{
    succeeded(Runner::setChecked(m_locator, checked));
}

void ScriptTarget::menu(const QStringList &path) const
{
    succeeded(chooseFromMenu(m_locator, path));
}

QJSValue ScriptTarget::get(const QString &property) const
{
    QVariant value;
    const QString what = QStringLiteral("get %1 of %2").arg(property);
    withObject(what, [&](RemoteObjects &objects, const ObjectHandle &object) {
        return objects.getProperty(object, property, &value);
    });
    return toScript(m_locator.sharedProgram(), value);
}

void ScriptTarget::set(const QString &property, const QVariant &value) const
{
    QVariant wanted;
    if (!succeeded(fromScript(value, &wanted)))
        return;
    const QString what = QStringLiteral("set %1 of %3 to %2").arg(property, valueText(wanted));
    withObject(what, [&](RemoteObjects &objects, const ObjectHandle &object) {
        return objects.setProperty(object, property, wanted);
    });
}

QJSValue ScriptTarget::call(const QString &method, const QVariantList &arguments) const
{
    QVariantList values;
    if (!succeeded(fromScript(arguments, &values)))
        return {};
    QVariant result;
    const QString what = QStringLiteral("call %1 of %2").arg(method);
    withObject(what, [&](RemoteObjects &objects, const ObjectHandle &object) {
        return objects.invoke(object, method, values, &result);
    });
    return toScript(m_locator.sharedProgram(), result);
}

QJSValue ScriptTarget::shownText() const
{
    bool hasText = false;
    QString text;
    withObject(QStringLiteral("text of %1"), [&](RemoteObjects &objects, const ObjectHandle &object) {
        return readShownText(objects, object, &hasText, &text);
    });
    return hasText ? QJSValue(text) : QJSValue(QJSValue::NullValue);
}

bool ScriptTarget::exists() const
{
    bool found = false;
    succeeded(m_locator.program().step(QStringLiteral("look for %1").arg(m_locator.text()), [&] {
        ObjectHandle object;
        const Failure failure = m_locator.look(&object);
        found = !failure.isFailure();
        return failure.code == ExitCode::CallFailed ? Failure() : failure;
    }));
    return found;
}

int ScriptTarget::count() const
{
    int count = 0;
    succeeded(m_locator.program().step(QStringLiteral("count %1").arg(m_locator.text()),
                                       [&] { return m_locator.count(MostCounted, &count); }));
    return count;
}

QJSValue ScriptTarget::bounds() const
{
    QRect bounds;
    withObject(QStringLiteral("bounds of %1"), [&](RemoteObjects &objects, const ObjectHandle &object) {
        return objects.bounds(object, &bounds);
    });
    return toScript(m_locator.sharedProgram(),
                    QVariantMap { { QStringLiteral("x"), bounds.x() },
                                  { QStringLiteral("y"), bounds.y() },
                                  { QStringLiteral("width"), bounds.width() },
                                  { QStringLiteral("height"), bounds.height() } });
}

void ScriptTarget::screenshot(const QString &path) const
{
    QImage image;
    if (succeeded(takeScreenshot(m_locator, &image)))
        succeeded(saveImage(image, path));
}

void ScriptTarget::expect(const QString &kind, bool isNegated, const QVariant &expected,
                          const QString &property, int limitMs) const
{
    const NamedNumber *matcher = find(Matchers, kind);
    Q_ASSERT(matcher);
    Expectation expectation { static_cast<Expectation::Kind>(matcher->number), isNegated, {}, property };
    if (succeeded(fromScript(expected, &expectation.expected)))
        succeeded(expectThat(m_locator, expectation, limitMs));
}

} // namespace Vorkel::Runner
