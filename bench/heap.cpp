// Takes the place of malloc and its kin in the program that it is linked into, and counts.

#include "heap.h"

#include <algorithm>
#include <atomic>

#include <malloc.h>

// The C library's own, under the names that it keeps for this.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *block, std::size_t size);
void __libc_free(void *block);
}
// NOLINTEND(bugprone-reserved-identifier)

namespace {

std::atomic<std::size_t> held = 0;
std::atomic<std::size_t> most = 0;

void *counted(void *block)
{
    const std::size_t now = held += block ? ::malloc_usable_size(block) : 0;
    most = std::max(most.load(), now);
    return block;
}

void uncount(void *block)
{
    held -= block ? ::malloc_usable_size(block) : 0;
}

} // namespace

extern "C" {

[[gnu::visibility("default")]] void *malloc(std::size_t size)
{
    return counted(__libc_malloc(size));
}

[[gnu::visibility("default")]] void *calloc(std::size_t count, std::size_t size)
{
    return counted(__libc_calloc(count, size));
}

[[gnu::visibility("default")]] void *realloc(void *block, std::size_t size)
{
    uncount(block);
    return counted(__libc_realloc(block, size));
}

[[gnu::visibility("default")]] void free(void *block)
{
    uncount(block);
    __libc_free(block);
}

} // extern "C"

namespace Bench {

std::size_t heapGrowth(const std::function<void()> &work)
{
    const std::size_t before = held;
    most = before;
    work();
    return most - before;
}

} // namespace Bench
