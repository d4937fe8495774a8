#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>

/// The bytes of one execution, taken from the front. Past the end everything reads as zero or empty, so a
/// target needs no checks of its own.
class Input
{
public:
    Input(const std::uint8_t *data, std::size_t size)
        : m_data(reinterpret_cast<const char *>(data))
        , m_left(static_cast<qsizetype>(size))
    {
    }

    [[nodiscard]] bool isEmpty() const { return m_left == 0; }
    [[nodiscard]] qsizetype size() const { return m_left; }

    std::uint8_t byte() { return m_left > 0 ? static_cast<std::uint8_t>(*advance(1)) : std::uint8_t(0); }
    /// A number below `limit`, which is 1 to 256.
    int below(int limit) { return byte() % limit; }
    std::uint16_t word()
    {
        const int high = byte();
        return static_cast<std::uint16_t>(high << 8 | byte());
    }
    /// The next `count` bytes, fewer where the input ends.
    QByteArray bytes(qsizetype count)
    {
        const qsizetype taken = qMin(count, m_left);
        return QByteArray(advance(taken), taken);
    }
    QByteArray rest() { return bytes(m_left); }

private:
    const char *advance(qsizetype count)
    {
        const char *start = m_data;
        m_data += count;
        m_left -= count;
        return start;
    }

    const char *m_data;
    qsizetype m_left;
};
