#pragma once

#include "fkit/export.h"

#include <QString>

namespace Vorkel {

/// What the hook asks of the registry.
class VORKEL_EXPORT InspectorInterface
{
public:
    InspectorInterface() = default;
    InspectorInterface(const InspectorInterface &) = delete;
    InspectorInterface &operator=(const InspectorInterface &) = delete;
    virtual ~InspectorInterface() = default;

    /// Keeps `text` as the reason of the last failure, for the runner to fetch.
    virtual void setError(const QString &text) = 0;
    /// The reason of the last failure. Reading it clears it.
    virtual QString lastError() = 0;

    /// Whether user input is to be recorded.
    [[nodiscard]] bool isEventRecording() const { return m_eventRecording; }
    void setEventRecording(bool on) { m_eventRecording = on; }

private:
    bool m_eventRecording = false;
};

} // namespace Vorkel
