#pragma once

#include <QList>

#include <cstdint>

using FInt32 = std::int32_t;
using FUInt32 = std::uint32_t;

template <typename T>
using FList = QList<T>;
template <typename T>
using FVector = QList<T>;
