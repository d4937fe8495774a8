#pragma once

#include <QProcessEnvironment>

namespace Vorkel::Runner {

/// Where the library is that brings the hook into a Qt program; empty when it is not installed
/// where it belongs, beside or in ../lib of this command.
[[nodiscard]] QString preloadLibrary();

/// `environment` with `library` preloaded before whatever is preloaded already.
[[nodiscard]] QProcessEnvironment withHook(QProcessEnvironment environment, const QString &library);

} // namespace Vorkel::Runner
