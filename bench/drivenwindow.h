#pragma once

#include "drivenpage.h"

#include "driving/drivenprogram.h"
#include "driving/virtualdisplay.h"

#include <memory>

namespace Bench {

/// An X server of 1920 x 1080 that nobody else uses, and the driven program on it.
class DrivenWindow
{
public:
    /// Returns when the window has been painted.
    explicit DrivenWindow(const QStringList &arguments = {});
    ~DrivenWindow();
    DrivenWindow(const DrivenWindow &) = delete;
    DrivenWindow &operator=(const DrivenWindow &) = delete;

    [[nodiscard]] const QString &display() const { return m_display.name(); }
    [[nodiscard]] const std::shared_ptr<Vorkel::Runner::DrivenProgram> &program() const { return m_program; }
    /// What the program tells as it goes.
    [[nodiscard]] const DrivenPage &page() const { return *m_page; }
    /// Blocks until the program has told that a slot ran or the text is complete, once for each time.
    void awaitEvent();

private:
    Vorkel::Runner::VirtualDisplay m_display;
    int m_memory;
    int m_events;
    DrivenPage *m_page;
    std::shared_ptr<Vorkel::Runner::DrivenProgram> m_program;
};

/// Ends the benchmark with the reason, when there is one.
void require(const Vorkel::Runner::Failure &failure);

} // namespace Bench
