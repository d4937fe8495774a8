#pragma once

#include "serverlib/argumentlist.h"
#include "shared/responselistener.h"

#include <QObject>
#include <QTimer>

namespace Vorkel {

/// A call that is answered when the application has handled its input, with how much of it there was.
class InputWait : public QObject
{
    Q_OBJECT

public:
    /// Waits for `count` of it, as long as none comes for `quietMs`.
    InputWait(ResponseListener<ArgumentList> *call, int count, int quietMs, QObject *parent);
    /// Answers, too, if nothing else did.
    ~InputWait() override;

    /// Some of it is being handled.
    void note();

private:
    void answer();

    ResponseListener<ArgumentList> *m_call; // null once it is answered
    int m_count;
    int m_seen = 0;
    QTimer m_quiet;
};

} // namespace Vorkel
