#include "expectations.h"

#include "shownvalues.h"

namespace Vorkel::Runner {

namespace {

constexpr int MostCounted = 1000;

/// What one look at the object gave.
struct Sight
{
    bool holds = false;
    bool isThere = true;
    QString actual; ///< in place of what was expected
};

struct Row
{
    Expectation::Kind kind;
    const char *expected; ///< for a person; %1 is the expected value
    const char *property; ///< the one that has to be true; null when that is not how it is seen
    bool mayBeAbsent; ///< whether an object that is not there is as expected when negated
};

// clang-format off
constexpr Row Rows[] = {
    { Expectation::Exists,      "an object",        nullptr,   true  },
    { Expectation::IsVisible,   "visible",          "visible", true  },
    { Expectation::IsEnabled,   "enabled",          "enabled", false },
    { Expectation::IsChecked,   "checked",          "checked", false },
    { Expectation::HasFocus,    "the focus",        "focus",   false },
    { Expectation::IsReady,     "ready",            nullptr,   true  },
    { Expectation::HasText,     "the text %1",      nullptr,   false },
    { Expectation::HasProperty, "%1",               nullptr,   false },
    { Expectation::HasCount,    "%1 objects",       nullptr,   true  },
};
// clang-format on

const Row &rowOf(Expectation::Kind kind)
{
    return Rows[kind];
}

bool inOrder()
{
    for (int i = 0; i < static_cast<int>(std::size(Rows)); ++i) {
        if (Rows[i].kind != i)
            return false;
    }
    return true;
}

Failure seeValue(RemoteObjects &objects, const ObjectHandle &object, const QString &property,
                 const QVariant &expected, Sight *sight)
{
    QVariant value;
    const Failure failure = objects.getProperty(object, property, &value);
    sight->holds = valuesMatch(expected, value);
    sight->actual = valueText(value);
    return failure;
}

/// An item of a list has no visibility of its own: it is shown where it is there.
Failure seeState(RemoteObjects &objects, const ObjectHandle &object, const QString &property, Sight *sight)
{
    const ClassRecord *record = nullptr;
    if (const Failure failure = objects.classOf(object, &record); failure.isFailure())
        return failure;
    if (property != QLatin1String("visible") || objects.classes().property(record, property))
        return seeValue(objects, object, property, true, sight);
    sight->holds = true;
    sight->actual = property;
    return {};
}

Failure seeText(RemoteObjects &objects, const ObjectHandle &object, const QVariant &expected, Sight *sight)
{
    bool hasText = false;
    QString text;
    const Failure failure = readShownText(objects, object, &hasText, &text);
    sight->holds = hasText && valuesMatch(expected, text);
    sight->actual = hasText ? valueText(text) : QStringLiteral("an object without a text");
    return failure;
}

Failure seeReady(RemoteObjects &objects, const ObjectHandle &object, Sight *sight)
{
    const Failure failure = objects.checkReady(object);
    sight->holds = !failure.isFailure();
    sight->actual = failure.isFailure() ? failure.text : QStringLiteral("ready");
    return failure.code == ExitCode::CallFailed ? Failure() : failure;
}

Failure see(const Locator &target, const Expectation &wanted, Sight *sight)
{
    RemoteObjects &objects = target.program().objects();
    *sight = {};
    if (wanted.kind == Expectation::HasCount) {
        int count = 0;
        const Failure failure = target.count(MostCounted, &count);
        sight->holds = count == wanted.expected.toInt();
        sight->actual = QString::number(count);
        return failure;
    }
    ObjectHandle object;
    const Failure found = target.look(&object);
    if (found.code == ExitCode::CallFailed) {
        sight->isThere = false;
        sight->actual = found.text;
        return {};
    }
    if (found.isFailure())
        return found;
    if (const char *property = rowOf(wanted.kind).property)
        return seeState(objects, object, QLatin1String(property), sight);
    switch (wanted.kind) {
    case Expectation::IsReady:
        return seeReady(objects, object, sight);
    case Expectation::HasText:
        return seeText(objects, object, wanted.expected, sight);
    case Expectation::HasProperty:
        return seeValue(objects, object, wanted.property, wanted.expected, sight);
    default:
        sight->holds = true;
        sight->actual = QStringLiteral("an object");
        return {};
    }
}

QString expectedText(const Expectation &wanted)
{
    QString text = QLatin1String(rowOf(wanted.kind).expected);
    if (text.contains(QLatin1String("%1")))
        text = text.arg(valueText(wanted.expected));
    if (wanted.kind == Expectation::HasProperty)
        text = QStringLiteral("%1 %2").arg(wanted.property, text);
    return wanted.isNegated ? QLatin1String("not ") + text : text;
}

} // namespace

Failure expectThat(const Locator &target, const Expectation &wanted, int limitMs)
{
    Q_ASSERT(inOrder());
    const QString expected = expectedText(wanted);
    const QString what = QStringLiteral("expect %1: %2").arg(target.text(), expected);
    DrivenProgram &program = target.program();
    const auto work = [&] {
        return program.retry([&] {
            Sight sight;
            if (const Failure failure = see(target, wanted, &sight); failure.isFailure())
                return failure;
            const bool mayBeAbsent = wanted.isNegated && rowOf(wanted.kind).mayBeAbsent;
            if (sight.isThere ? sight.holds != wanted.isNegated : mayBeAbsent)
                return Failure();
            return Failure { ExitCode::CallFailed,
                             QStringLiteral("\n  expected: %1\n  actual:   %2").arg(expected, sight.actual) };
        });
    };
    return program.step(what, work, limitMs);
}

Failure expectRunning(DrivenProgram &program, bool isNegated)
{
    const QString what =
            isNegated ? QStringLiteral("expect %1 to have ended") : QStringLiteral("expect %1 to run");
    return program.watch(what.arg(program.name()), [&] { return program.isRunning() != isNegated; });
}

} // namespace Vorkel::Runner
