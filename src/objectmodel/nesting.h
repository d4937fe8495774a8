#pragma once

#include <algorithm>
#include <array>
#include <vector>

namespace Vorkel {

/// One step of a walk through values that refer to each other, for as long as it is on the stack.
///
/// Values may refer to each other in circles and in many ways, and a property may make a new value each
/// time it is read. So a walk must end where it comes to what it is in the midst of, at some depth, and
/// after so many steps.
class Nesting
{
public:
    /// Tells values, or pairs of them, apart: their class and their data. A value and its first part may lie
    /// at the same address.
    using Place = std::array<const void *, 3>;

    struct Walk
    {
        std::vector<Place> path;
        int steps = 0;
    };

    Nesting(Walk *walk, const Place &place)
        : m_walk(walk)
        , m_isRepeated(std::find(walk->path.begin(), walk->path.end(), place) != walk->path.end())
    {
        walk->steps = walk->path.empty() ? 1 : walk->steps + 1;
        walk->path.push_back(place);
    }
    ~Nesting() { m_walk->path.pop_back(); }
    Nesting(const Nesting &) = delete;
    Nesting &operator=(const Nesting &) = delete;

    [[nodiscard]] bool isRepeated() const { return m_isRepeated; }
    [[nodiscard]] bool isTooLong() const
    {
        return m_walk->path.size() > MaxDepth || m_walk->steps > MaxSteps;
    }

private:
    static constexpr std::size_t MaxDepth = 32;
    static constexpr int MaxSteps = 2000;

    Walk *m_walk;
    bool m_isRepeated;
};

} // namespace Vorkel
