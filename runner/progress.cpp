#include "progress.h"

#include <cstdio>
#include <utility>

#include <unistd.h>

namespace Vorkel::Runner {

namespace {

constexpr int QuietMs = 1000;
constexpr char EraseLine[] = "\r\x1b[K";

} // namespace

Progress::Progress(Session *session)
    : m_isTerminal(::isatty(STDERR_FILENO))
{
    connect(session, &Session::waiting, this, &Progress::show);
    connect(session, &Session::waited, this, &Progress::erase);
}

Progress::~Progress()
{
    erase();
}

void Progress::erase()
{
    if (std::exchange(m_lineIsOpen, false))
        std::fputs(EraseLine, stderr);
}

void Progress::show(const QString &what, int elapsedMs)
{
    if (elapsedMs < QuietMs)
        return;
    if (m_isTerminal) {
        std::fprintf(stderr, "%svorkel: waiting for %s, %d s", EraseLine, qUtf8Printable(what),
                     elapsedMs / 1000);
        m_lineIsOpen = true;
    } else if (m_told != what) {
        std::fprintf(stderr, "vorkel: waiting for %s\n", qUtf8Printable(what));
        m_told = what;
    }
}

} // namespace Vorkel::Runner
