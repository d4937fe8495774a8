#include "xioerrors.h"

#include <algorithm>
#include <mutex>
#include <vector>

#include "xlibheaders.h"

namespace Vorkel {

namespace {

std::mutex mutex;
std::vector<Display *> connections;
XIOErrorHandler original = nullptr; // before all of us
XIOErrorHandler previous = nullptr; // before us, the last time

int onError(Display *display)
{
    // The one before us may have been told that we are the one before it.
    thread_local bool isInside = false;
    std::unique_lock lock(mutex);
    if (std::find(connections.begin(), connections.end(), display) != connections.end())
        return 0;
    const XIOErrorHandler next = isInside ? original : previous;
    lock.unlock();
    isInside = true;
    const int result = next(display);
    isInside = false;
    return result;
}

} // namespace

void XIoErrors::addConnection(_XDisplay *display)
{
    const std::lock_guard lock(mutex);
    connections.push_back(display);
}

void XIoErrors::removeConnection(_XDisplay *display)
{
    const std::lock_guard lock(mutex);
    std::erase(connections, display);
    if (!connections.empty())
        return;
    const XIOErrorHandler found = XSetIOErrorHandler(previous);
    if (found != onError)
        XSetIOErrorHandler(found);
}

void XIoErrors::watch()
{
    const std::lock_guard lock(mutex);
    const XIOErrorHandler found = XSetIOErrorHandler(onError);
    if (found == onError)
        return;
    previous = found;
    if (!original)
        original = found;
}

} // namespace Vorkel
