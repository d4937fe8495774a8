#pragma once

#include "driving/drivenprogram.h"

#include <QJSValue>

namespace Vorkel::Runner {

/// What scripts see: the failures of its operations become exceptions of theirs.
class ScriptObject : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

protected:
    /// Throws the failure into the script, if it is one; whether it is none.
    bool succeeded(const Failure &failure) const;
    /// Hands an object over to the script.
    [[nodiscard]] QJSValue given(QObject *object) const;
    /// A value of a program for the script; an object becomes a `ScriptTarget`.
    [[nodiscard]] QJSValue toScript(const std::shared_ptr<DrivenProgram> &program,
                                    const QVariant &value) const;
    /// A value of the script for a program: a `ScriptTarget` becomes a handle.
    Failure fromScript(const QVariant &value, QVariant *result) const;
    Failure fromScript(const QVariantList &values, QVariantList *result) const;
};

} // namespace Vorkel::Runner
