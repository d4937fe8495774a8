#pragma once

#include <cstddef>
#include <functional>

namespace Bench {

/// How far the heap of this process grows, in bytes, while `work` runs: the largest it was less what
/// it was before. Counts every block that malloc gives out, with what it is rounded up to.
[[nodiscard]] std::size_t heapGrowth(const std::function<void()> &work);

} // namespace Bench
