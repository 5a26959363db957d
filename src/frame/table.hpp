// The capacity rule of MEM_ tables, shared by the table functions and the
// code that sizes tables ahead.
#pragma once

#include <cstdint>

namespace tessar::detail {

// The number of elements a table of n elements holds: exactly 1 for one
// element, otherwise n rounded up to a whole block of ten.
constexpr std::int32_t tableCapacity(std::int32_t n) noexcept
{
    if (n == 1) return 1;
    const std::int32_t q = n / 10;
    const std::int32_t r = n - 10 * q;
    return r >= 1 ? 10 * (q + 1) : n;
}

static_assert(tableCapacity(0) == 0 && tableCapacity(1) == 1 && tableCapacity(2) == 10);
static_assert(tableCapacity(10) == 10 && tableCapacity(11) == 20 && tableCapacity(20) == 20);

}  // namespace tessar::detail
