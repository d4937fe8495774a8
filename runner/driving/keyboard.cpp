#include "keyboard.h"

#include "inputwatch.h"
#include "pointer.h"
#include "shownvalues.h"

#include <QSet>

namespace Vorkel::Runner {

namespace {

/// A request is answered when all of it is typed, so a long text goes in several; and a request can only have
/// as many characters that are not on the keyboard as this has spare keys.
constexpr qsizetype MostKeys = 500;
constexpr qsizetype MostRareKeys = 8;

/// The characters and named keys that `keys` stands for, in their own spelling.
QStringList eachKey(const QString &keys)
{
    QStringList list;
    for (qsizetype i = 0; i < keys.size();) {
        qsizetype length = keys.at(i).isHighSurrogate() ? 2 : 1;
        if (keys.at(i) == u'<') {
            // The key may be ">" or "<" itself.
            const qsizetype end = keys.indexOf(u'>', i + 2);
            length = (end < 0 ? keys.size() : end + 1) - i;
        }
        list.append(keys.mid(i, length));
        i += length;
    }
    return list;
}

Failure injectAtOnce(DrivenProgram &program, const QStringList &keys)
{
    return injectAndAwait(program, static_cast<int>(keys.size()), [&] {
        QVariant nothing;
        return program.objects().invokeGlobal(QStringLiteral("nativeType"), { keys.join(QString()) },
                                              &nothing);
    });
}

Failure inject(DrivenProgram &program, const QString &keys)
{
    QStringList next;
    QSet<QString> rare;
    for (const QString &key : eachKey(keys)) {
        if (next.size() == MostKeys || rare.size() == MostRareKeys) {
            if (const Failure failure = injectAtOnce(program, next); failure.isFailure())
                return failure;
            next.clear();
            rare.clear();
        }
        next.append(key);
        if (key.front().unicode() >= 128)
            rare.insert(key);
    }
    return next.isEmpty() ? Failure() : injectAtOnce(program, next);
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
