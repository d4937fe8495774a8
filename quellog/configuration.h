#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace halvex::quellog {

/// What the user asked for: `CATEGORIES[@TARGET]`. Categories stand between commas, in any case; `*` is all
/// of them. The target is `stderr`, which is also the default, or the path of a file.
class Configuration
{
public:
    /// Every text is valid; one without a category is "off". Throws std::bad_alloc alone.
    [[nodiscard]] static Configuration parse(std::string_view text);

    [[nodiscard]] bool isOff() const noexcept { return m_categories.empty(); }
    [[nodiscard]] bool listensTo(std::string_view category) const noexcept;

    /// The file to append to, empty for the standard error stream.
    [[nodiscard]] const std::string &file() const noexcept { return m_file; }

private:
    std::vector<std::string> m_categories;
    std::string m_file;
};

} // namespace halvex::quellog
