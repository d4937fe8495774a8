#include "quellog/line.h"

#include <array>
#include <cstdio>

#include <time.h>
#include <unistd.h>

namespace halvex::quellog {

namespace {

struct Escape
{
    char character;
    const char *text;
};

// clang-format off
constexpr Escape escapes[] = {
    {'\\', "\\\\"},
    {'\n', "\\n"},
    {'\r', "\\r"},
    {'\t', "\\t"},
};

constexpr const char *levelMarks[] = {
    "",            // Debug
    " [info]",     // Info
    " [warning]",  // Warning
    " [error]",    // Error
};
// clang-format on

static_assert(std::size(levelMarks) == static_cast<std::size_t>(TraceLevel::Error) + 1);

bool isControl(char c) noexcept
{
    const auto code = static_cast<unsigned char>(c);
    return code < 0x20 || code == 0x7f;
}

void appendEscaped(std::string &line, char c)
{
    constexpr std::string_view hexDigits = "0123456789abcdef";
    for (const Escape &escape : escapes) {
        if (escape.character == c) {
            line += escape.text;
            return;
        }
    }
    if (isControl(c)) {
        line += "\\x";
        line += hexDigits[static_cast<unsigned char>(c) >> 4];
        line += hexDigits[static_cast<unsigned char>(c) & 0x0f];
    } else {
        line += c;
    }
}

void appendQuoted(std::string &line, std::string_view text)
{
    line += '"';
    for (const char c : text) {
        if (c == '"')
            line += '\\';
        appendEscaped(line, c);
    }
    line += '"';
}

void appendStamp(std::string &line)
{
    timespec now = {};
    tm local = {};
    clock_gettime(CLOCK_REALTIME, &now);
    localtime_r(&now.tv_sec, &local);
    std::array<char, 64> stamp;
    const int length =
            std::snprintf(stamp.data(), stamp.size(), "%02d:%02d:%02d.%03d %ld ", local.tm_hour, local.tm_min,
                          local.tm_sec, static_cast<int>(now.tv_nsec / 1000000), static_cast<long>(getpid()));
    line.append(stamp.data(), static_cast<std::size_t>(length));
}

} // namespace

void appendEscaped(std::string &line, std::string_view text)
{
    for (const char c : text)
        appendEscaped(line, c);
}

std::string composeLine(const TracePoint &point, std::string_view message, const VariableSnapshot &snapshot)
{
    std::string line;
    appendStamp(line);
    line += point.category();
    line += levelMarks[static_cast<std::size_t>(point.level())];
    line += ' ';
    appendEscaped(line, message);
    for (const VariableValue &value : snapshot) {
        line += ' ';
        appendEscaped(line, value.name());
        line += '=';
        if (value.isString())
            appendQuoted(line, value.convertToString());
        else
            line += value.convertToString();
    }
    line += '\n';
    return line;
}

} // namespace halvex::quellog
