#include "quellog/configuration.h"

#include <algorithm>

namespace halvex::quellog {

namespace {

constexpr char targetMark = '@';
constexpr char separator = ',';
constexpr std::string_view allCategories = "*";
constexpr std::string_view standardErrorTarget = "stderr";

// Not std::tolower, which follows the locale of the host program.
char lowered(char c) noexcept
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool equalInAnyCase(std::string_view left, std::string_view right) noexcept
{
    return std::ranges::equal(left, right, {}, lowered, lowered);
}

std::string_view trimmed(std::string_view text) noexcept
{
    constexpr std::string_view blanks = " \t";
    const auto first = text.find_first_not_of(blanks);
    if (first == text.npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// Cuts the part before the next `mark` off the front of `rest`, and the mark with it.
std::string_view takeUpTo(char mark, std::string_view &rest) noexcept
{
    const auto end = std::min(rest.find(mark), rest.size());
    const auto part = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return part;
}

} // namespace

Configuration Configuration::parse(std::string_view text)
{
    Configuration result;
    auto categories = takeUpTo(targetMark, text);
    while (!categories.empty()) {
        const auto category = trimmed(takeUpTo(separator, categories));
        if (!category.empty())
            result.m_categories.emplace_back(category);
    }
    if (text != standardErrorTarget)
        result.m_file = text;
    return result;
}

bool Configuration::listensTo(std::string_view category) const noexcept
{
    return std::ranges::any_of(m_categories, [category](const std::string &wanted) {
        return wanted == allCategories || equalInAnyCase(wanted, category);
    });
}

} // namespace halvex::quellog
