#pragma once

#include "remoteobjects.h"

#include <QStringList>

namespace Vorkel::Runner {

/// The real names of what a person sees of the program and can tell apart: no layouts, no inner parts of
/// controls, no cells of tables.
Failure readShownNames(RemoteObjects &objects, QStringList *names);

/// Why a name will not last, and what the program's developer can do about it.
struct NameFault
{
    QString realName;
    QString reason;
    QString help;
};

/// The faults of those of `realNames` that have one.
[[nodiscard]] QList<NameFault> findFaults(const QStringList &realNames);

} // namespace Vorkel::Runner
