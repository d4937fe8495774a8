#pragma once

#include "locator.h"

namespace Vorkel::Runner {

// Each is one step.

/// Chooses the entry that shows `text` in a combo box, list, table, tree or tab bar.
Failure select(const Locator &target, const QString &text);
/// Clicks on a check box, radio button, checkable group box or the like unless it is as wanted already, and
/// waits until it is.
Failure setChecked(const Locator &target, bool checked);
/// Chooses from menus by the texts of their entries: from the menu that is open, else from the menu bar.
Failure chooseFromMenu(const std::shared_ptr<DrivenProgram> &program, const QStringList &path);
/// The same from a menu or menu bar of the caller's choice.
Failure chooseFromMenu(const Locator &menu, const QStringList &path);

} // namespace Vorkel::Runner
