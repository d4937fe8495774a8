#pragma once

#include <atomic>

/// What the driven program tells of itself, in memory that it shares with the benchmark.
struct DrivenPage
{
    static constexpr int ButtonCount = 64;
    /// So many characters in the line edit are told of, and taken out again.
    static constexpr int TextLength = 1000;

    struct Place
    {
        int x, y, width, height;
        friend bool operator==(const Place &, const Place &) = default;
    };

    std::atomic<bool> isShown;
    Place buttons[ButtonCount]; ///< on the screen
    Place line; ///< the line edit
};

/// The environment variables with the descriptors of the page, and of an eventfd that is written to when a
/// button's slot runs and when the text has its full length.
inline constexpr char PageVariable[] = "BENCH_PAGE";
inline constexpr char EventsVariable[] = "BENCH_EVENTS";
