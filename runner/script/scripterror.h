#pragma once

#include <QJSValue>
#include <QString>

namespace Vorkel::Runner {

/// What a script threw, and where.
struct ScriptError
{
    QString message;
    QString file {}; ///< as it is best shown; empty when it is not known
    int line = 0;
    int column = 0; ///< counted from 1; 0: not known
    QString excerpt {}; ///< the line of the script with a mark at the place

    /// "file:line:column", as far as it is known.
    [[nodiscard]] QString where() const;
};

/// The name under which the part of the script interface that is written in the script language stands in
/// stacks.
extern const QString PreludeName;

/// Reads what was thrown. The place is the one in the user's files nearest to the error.
[[nodiscard]] ScriptError scriptError(const QJSValue &thrown);

} // namespace Vorkel::Runner
