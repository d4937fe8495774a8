#pragma once

#include "objectmodel/inspectorinterface.h"

namespace Vorkel {

/// The registry of the process.
class VORKEL_EXPORT Inspector : public InspectorInterface
{
public:
    /// The one instance; it lives as long as the process.
    [[nodiscard]] static Inspector *self();

    void setError(const QString &text) override;
    QString lastError() override;

private:
    Inspector() = default;

    QString m_lastError;
};

} // namespace Vorkel
