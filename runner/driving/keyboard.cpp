#include "keyboard.h"

#include "inputwatch.h"
#include "pointer.h"
#include "shownvalues.h"

namespace Vorkel::Runner {

namespace {

Failure inject(DrivenProgram &program, const QString &keys)
{
    InputWatch watch(program);
    QVariant nothing;
    Failure failure = watch.begin();
    if (!failure.isFailure())
        failure = program.objects().invokeGlobal(QStringLiteral("nativeType"), { keys }, &nothing);
    return failure.isFailure() ? failure : watch.await(keyCount(keys));
}

Failure giveFocus(DrivenProgram &program, const ObjectHandle &object)
{
    const QString property = QStringLiteral("focus");
    const ClassRecord *record = nullptr;
    Failure failure = program.objects().classOf(object, &record);
    if (failure.isFailure())
        return failure;
    QVariant hasFocus;
    if (program.objects().classes().property(record, property))
        failure = program.objects().getProperty(object, property, &hasFocus);
    return failure.isFailure() || hasFocus.toBool() ? failure : clickOn(program, object);
}

template <typename Work>
Failure withFocus(const QString &what, const Locator &target, Work work)
{
    return target.program().step(what, [&] {
        ObjectHandle object;
        Failure failure = target.awaitReady(&object);
        if (!failure.isFailure())
            failure = giveFocus(target.program(), object);
        return failure.isFailure() ? failure : work(object);
    });
}

} // namespace

QString keysForText(const QString &text)
{
    QString keys;
    for (const QChar letter : text) {
        if (letter == u'<')
            keys += QLatin1String("<<>");
        else if (letter == u'\n')
            keys += QLatin1String("<Return>");
        else if (letter == u'\t')
            keys += QLatin1String("<Tab>");
        else
            keys += letter;
    }
    return keys;
}

int keyCount(const QString &keys)
{
    int count = 0;
    for (qsizetype i = 0; i < keys.size(); ++i) {
        if (keys.at(i).isLowSurrogate())
            continue;
        ++count;
        if (keys.at(i) == u'<') {
            // The key may be ">" or "<" itself.
            const qsizetype end = keys.indexOf(u'>', i + 2);
            i = end < 0 ? keys.size() : end;
        }
    }
    return count;
}

Failure typeText(const Locator &target, const QString &text)
{
    return withFocus(QStringLiteral("type '%1' into %2").arg(text, target.text()), target,
                     [&](const ObjectHandle &) { return inject(target.program(), keysForText(text)); });
}

Failure pressKeys(const Locator &target, const QString &keys)
{
    return withFocus(QStringLiteral("press %1 in %2").arg(keys, target.text()), target,
                     [&](const ObjectHandle &) { return inject(target.program(), keys); });
}

Failure pressKeys(DrivenProgram &program, const QString &keys)
{
    return program.step(QStringLiteral("press %1").arg(keys), [&] { return inject(program, keys); });
}

Failure fill(const Locator &target, const QString &text)
{
    const QString what = QStringLiteral("fill %1 with '%2'").arg(target.text(), text);
    return withFocus(what, target, [&](const ObjectHandle &object) {
        const QString keys = text.isEmpty() ? QStringLiteral("<Delete>") : keysForText(text);
        Failure failure = inject(target.program(), QStringLiteral("<Ctrl+a>"));
        if (!failure.isFailure())
            failure = inject(target.program(), keys);
        if (failure.isFailure())
            return failure;
        return target.program().retry([&] {
            bool hasText = false;
            QString shown;
            const Failure read = readTypedText(target.program().objects(), object, &hasText, &shown);
            if (read.isFailure() || !hasText || shown == text)
                return read;
            return Failure { ExitCode::CallFailed, QStringLiteral("it shows '%1' instead").arg(shown) };
        });
    });
}

} // namespace Vorkel::Runner
