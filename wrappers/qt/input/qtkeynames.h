#pragma once

#include <QString>

#include <Qt>
#include <optional>

namespace Vorkel {

/// A key as Qt's key events describe it.
struct QtKey
{
    int key = 0; ///< of Qt::Key
    QString text; ///< what it writes
    Qt::KeyboardModifiers modifiers; ///< that come with it
};

/// The key of that name or that one character; nothing when there is none.
[[nodiscard]] std::optional<QtKey> qtKey(const QString &name);
/// The modifier that the key is; none for others.
[[nodiscard]] Qt::KeyboardModifier qtModifierOf(int key);

} // namespace Vorkel
