#include "objectmodel/primitivecell.h"

#include <algorithm>

namespace Vorkel {

namespace {

constexpr std::size_t LargestValue = 8;
constexpr std::size_t MinCell = 2 * LargestValue;

} // namespace

char *allocatePrimitive(std::size_t size)
{
    return new char[std::max(size, MinCell)]();
}

void freePrimitive(void *cell)
{
    delete[] static_cast<char *>(cell);
}

char *newPrimitiveText(const QByteArray &text)
{
    char *copy = allocatePrimitive(static_cast<std::size_t>(text.size()) + 1);
    std::memcpy(copy, text.constData(), static_cast<std::size_t>(text.size()));
    return copy;
}

} // namespace Vorkel
