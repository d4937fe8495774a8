#include "drivenwindow.h"

#include "processes.h"

#include <cstdio>
#include <cstdlib>

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/mman.h>
#include <unistd.h>

namespace Bench {

using namespace Vorkel::Runner;

namespace {

constexpr int LimitMs = 10000;
constexpr QSize ScreenSize(1920, 1080);

DrivenPage *mapped(int memory)
{
    if (::ftruncate(memory, sizeof(DrivenPage)) != 0)
        fail("ftruncate");
    void *address = ::mmap(nullptr, sizeof(DrivenPage), PROT_READ | PROT_WRITE, MAP_SHARED, memory, 0);
    if (address == MAP_FAILED)
        fail("mmap");
    return static_cast<DrivenPage *>(address);
}

} // namespace

void require(const Failure &failure)
{
    if (!failure.isFailure())
        return;
    std::fprintf(stderr, "%s\n", qPrintable(failure.text));
    std::exit(1);
}

// The program inherits both descriptors.
DrivenWindow::DrivenWindow(const QStringList &arguments)
    : m_memory(::memfd_create("bench", 0))
    , m_events(::eventfd(0, EFD_SEMAPHORE))
    , m_page(mapped(m_memory))
{
    require(m_display.start(ScreenSize));
    LaunchSettings settings;
    settings.session.platform = QStringLiteral("xcb");
    settings.session.environment = { { QStringLiteral("DISPLAY"), m_display.name() },
                                     { QLatin1String(PageVariable), QString::number(m_memory) },
                                     { QLatin1String(EventsVariable), QString::number(m_events) } };
    m_program = std::make_shared<DrivenProgram>(settings, nullptr);
    require(m_program->launch(QStringList { QStringLiteral(BENCH_DRIVEN) } + arguments));
    while (!m_page->isShown)
        m_program->idle(1);
}

DrivenWindow::~DrivenWindow()
{
    m_program->end();
    ::munmap(m_page, sizeof *m_page);
    ::close(m_events);
    ::close(m_memory);
}

void DrivenWindow::awaitEvent()
{
    pollfd descriptor = { m_events, POLLIN, 0 };
    eventfd_t count = 0;
    if (::poll(&descriptor, 1, LimitMs) != 1 || ::eventfd_read(m_events, &count) != 0)
        fail("the program did not tell that its slot ran");
}

} // namespace Bench
