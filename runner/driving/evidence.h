#pragma once

#include "drivenprogram.h"

namespace Vorkel::Runner {

/// Keeps in `folder` what tells why a step failed: the message, and of each program that still answers a
/// picture of its desktop and its objects. Best effort, within seconds. The files that were written.
QStringList keepEvidence(const QString &folder, const QString &message,
                         const QList<std::shared_ptr<DrivenProgram>> &programs);

/// The objects of a program, a line each with name, class and real name, children indented.
Failure readTreeText(DrivenProgram &program, QString *text);

} // namespace Vorkel::Runner
