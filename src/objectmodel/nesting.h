#pragma once

#include <algorithm>
#include <utility>
#include <vector>

namespace Vorkel {

/// One step of a walk through values that refer to each other, for as long as it is on the stack.
///
/// Values may refer to each other in circles, and a property may make a new value each time it is read.
/// So a walk must end where it comes to what it is in the midst of, and at some depth.
class Nesting
{
public:
    /// Tells values apart.
    using Place = std::pair<const void *, const void *>;
    using Path = std::vector<Place>;

    /// `path` holds the steps so far.
    Nesting(Path *path, const Place &place)
        : m_path(path)
        , m_isRepeated(std::find(path->begin(), path->end(), place) != path->end())
    {
        m_path->push_back(place);
    }
    ~Nesting() { m_path->pop_back(); }
    Nesting(const Nesting &) = delete;
    Nesting &operator=(const Nesting &) = delete;

    [[nodiscard]] bool isRepeated() const { return m_isRepeated; }
    [[nodiscard]] bool isTooDeep() const { return m_path->size() > MaxDepth; }

private:
    static constexpr std::size_t MaxDepth = 32;

    Path *m_path;
    bool m_isRepeated;
};

} // namespace Vorkel
