#include "hook/inputwait.h"

#include <algorithm>
#include <utility>

namespace Vorkel {

InputWait::InputWait(ResponseListener<ArgumentList> *call, int count, int quietMs, QObject *parent)
    : QObject(parent)
    , m_call(call)
    , m_count(count)
{
    m_quiet.setSingleShot(true);
    m_quiet.callOnTimeout(this, &InputWait::answer);
    m_quiet.start(std::max(quietMs, 0));
}

InputWait::~InputWait()
{
    answer();
}

// Queued, so the answer leaves behind the handling; or from within, where that runs an event loop, as for a
// dialog.
void InputWait::note()
{
    if (++m_seen < m_count)
        m_quiet.start();
    else
        QMetaObject::invokeMethod(this, &InputWait::answer, Qt::QueuedConnection);
}

void InputWait::answer()
{
    if (!m_call)
        return;
    std::exchange(m_call, nullptr)->response(ArgumentList { m_seen });
    deleteLater();
}

} // namespace Vorkel
