#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include <sched.h>

/// What every benchmark needs: cores, slices, medians and a table.
namespace Bench {

/// The cores that this process may use, lowest first.
inline std::vector<int> cores()
{
    cpu_set_t set;
    CPU_ZERO(&set);
    ::sched_getaffinity(0, sizeof set, &set);
    std::vector<int> result;
    for (int core = 0; core < CPU_SETSIZE; ++core) {
        if (CPU_ISSET(core, &set))
            result.push_back(core);
    }
    return result;
}

/// Ties the calling thread, and what it starts from now on, to `core`.
inline void pinTo(int core)
{
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(core, &set);
    ::sched_setaffinity(0, sizeof set, &set);
}

/// Seconds that `work` takes.
inline double seconds(const std::function<void()> &work)
{
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    work();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

inline double median(std::vector<double> values)
{
    if (values.empty())
        return 0;
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// What one contender needed, round by round.
struct Samples
{
    std::vector<double> values;

    [[nodiscard]] double median() const { return Bench::median(values); }
    /// The median of this one's values over the other's of the same round: what disturbs the machine
    /// for longer than a slice disturbs both.
    [[nodiscard]] double ratioTo(const Samples &other) const
    {
        std::vector<double> ratios;
        for (std::size_t i = 0; i < values.size() && i < other.values.size(); ++i)
            ratios.push_back(values[i] / other.values[i]);
        return Bench::median(ratios);
    }
};

/// Gives every contender a slice in turn, `rounds` times, after one round that does not count.
/// A contender returns what its slice measured.
inline std::vector<Samples> alternate(int rounds, const std::vector<std::function<double()>> &contenders)
{
    std::vector<Samples> samples(contenders.size());
    for (int round = -1; round < rounds; ++round) {
        for (std::size_t i = 0; i < contenders.size(); ++i) {
            const double value = contenders[i]();
            if (round >= 0)
                samples[i].values.push_back(value);
        }
    }
    return samples;
}

inline std::string number(double value, int decimals)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

/// Rows of text in aligned columns, the first to the left, the others to the right.
class Table
{
public:
    explicit Table(std::vector<std::string> titles) { add(std::move(titles)); }

    void add(std::vector<std::string> row) { m_rows.push_back(std::move(row)); }

    void print() const
    {
        std::vector<int> widths;
        for (const auto &row : m_rows) {
            widths.resize(std::max(widths.size(), row.size()));
            for (std::size_t i = 0; i < row.size(); ++i)
                widths[i] = std::max(widths[i], static_cast<int>(row[i].size()));
        }
        for (const auto &row : m_rows) {
            for (std::size_t i = 0; i < row.size(); ++i)
                std::printf(i == 0 ? "%-*s" : "  %*s", widths[i], row[i].c_str());
            std::printf("\n");
        }
    }

private:
    std::vector<std::vector<std::string>> m_rows;
};

/// Tells in one line whether `value` keeps to `limit`; with `atLeast` it has to reach it.
inline void printTarget(const char *what, double value, double limit, int decimals, bool atLeast = false)
{
    const bool met = atLeast ? value >= limit : value <= limit;
    std::printf("%s: %.*f, target at %s %.*f: %s\n", what, decimals, value, atLeast ? "least" : "most",
                decimals, limit, met ? "met" : "MISSED");
}

} // namespace Bench
