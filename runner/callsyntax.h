#pragma once

#include "serverlib/argumentlist.h"
#include "shared/functioncallresult.h"

#include <QJsonValue>

namespace Vorkel::Runner {

/// A remote function with its arguments, as a person writes it: `name`, `name(JSON, ...)`, either
/// behind `send:` for a one-way message.
struct CallText
{
    QString name;
    ArgumentList arguments;
    bool isSend = false;
};

/// Reads `text`; the failure says what is wrong with it.
[[nodiscard]] FunctionCallResult<CallText> parseCall(const QString &text);

/// The value that a JSON value stands for on the wire: whole numbers become int where they fit,
/// lists of texts become string lists.
[[nodiscard]] QVariant fromJson(const QJsonValue &value);

/// A value from the wire as JSON; bytes become text when they are UTF-8, else base 64 behind
/// "base64:". What JSON has no form for becomes a text that describes it.
[[nodiscard]] QJsonValue toJson(const QVariant &value);

/// The same as JSON text on one line.
[[nodiscard]] QString toJsonText(const QVariant &value);

} // namespace Vorkel::Runner
