#pragma once

#include "session.h"

namespace Vorkel::Runner {

/// Tells on the standard error stream what a session waits for, once that takes more than a moment:
/// on a terminal as one line that is kept up to date, elsewhere as a line for each thing.
class Progress : public QObject
{
    Q_OBJECT

public:
    explicit Progress(Session *session);
    ~Progress() override;

private:
    void show(const QString &what, int elapsedMs);
    void erase();

    bool m_isTerminal;
    bool m_lineIsOpen = false;
    QString m_told;
};

} // namespace Vorkel::Runner
