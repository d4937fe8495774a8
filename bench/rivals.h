#pragma once

#include <memory>
#include <vector>

namespace Bench {

/// Another library's way to call a function of another process that returns a number.
///
/// Making one starts the other process, so that comes before this process makes any Qt object;
/// `connect` comes after there is an application object.
class Rival
{
public:
    virtual ~Rival() = default;

    [[nodiscard]] virtual const char *name() const = 0;
    virtual void connect() = 0;
    /// One call, waiting for the reply.
    virtual void call() = 0;
};

/// Through a source and a replica over TCP, made by Qt's compiler for such interfaces.
std::unique_ptr<Rival> makeRemoteObjects();
/// Between two processes that are connected to each other.
std::unique_ptr<Rival> makePeerToPeerDBus();
/// Through a daemon of our own.
std::unique_ptr<Rival> makeBusDBus();

} // namespace Bench
