#pragma once

#include <QStringList>

namespace Vorkel::Runner {

/// What to append to an error about a misspelt name: "; did you mean 'text'?" with the one of
/// `candidates` that is spelled most like `name`. Empty when none comes near.
[[nodiscard]] QString suggestion(const QString &name, const QStringList &candidates);

} // namespace Vorkel::Runner
