#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace halvex::quellog {

/// Where lines go: the standard error stream or a file. A value; it never closes its descriptor, since a
/// process reports until its very end.
class Sink
{
public:
    [[nodiscard]] static Sink standardError() noexcept;

    /// Opens `path` for appending and creates it if need be. If that fails, says so on the standard error
    /// stream, once, and returns nothing. Does not wait for the reader of a named pipe.
    [[nodiscard]] static std::optional<Sink> openFile(const std::string &path);

    /// Hands `line` to the system in one piece, so that lines of several writers do not mix (in a pipe,
    /// that holds up to PIPE_BUF bytes). Errors drop the line. Changes errno.
    void write(std::string_view line) const noexcept;

private:
    explicit Sink(int descriptor) noexcept;

    [[nodiscard]] bool isStillOurs() const noexcept;

    int m_descriptor;
    dev_t m_device = 0;
    ino_t m_inode = 0;
};

} // namespace halvex::quellog
