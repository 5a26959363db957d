// Value helpers: digit counts, exchanges of values and memory blocks, the
// integer extremes, an exact comparator of doubles, and in-place edits of
// arrays.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

#include <tessar/frame.h>
#include <tessar/system.h>

namespace {

// Digits of 16-digit precision, of which tsUtil_numberOfDecimalsDigit
// counts the ones left after the integer digits.
constexpr int32_t kPrecisionDigits = 16;

// The floor of value as a 32-bit integer, saturated at the type's ends; a
// value that is not a number reads as 0.
int32_t floorToInt32(double value) noexcept
{
    const double below = std::floor(value);
    if (!(below == below)) return 0;
    if (below <= static_cast<double>(std::numeric_limits<int32_t>::min()))
        return std::numeric_limits<int32_t>::min();
    if (below >= static_cast<double>(std::numeric_limits<int32_t>::max()))
        return std::numeric_limits<int32_t>::max();
    return static_cast<int32_t>(below);
}

}  // namespace

int32_t tsUtil_numberOfDigit(int32_t value)
{
    if (value == 0) return 1;
    // floor(log10 |v|) + 1 digits, and one more for a minus sign. The
    // absolute value is taken as a double, where the most negative integer
    // has one.
    const double magnitude = std::fabs(static_cast<double>(value));
    const auto digits = static_cast<int32_t>(std::floor(std::log10(magnitude)));
    return digits + (value < 0 ? 2 : 1);
}

int32_t tsUtil_numberOfMantissaDigit(double value)
{
    return tsUtil_numberOfDigit(floorToInt32(value));
}

int32_t tsUtil_numberOfDecimalsDigit(double value)
{
    return kPrecisionDigits - tsUtil_numberOfMantissaDigit(value);
}

void tsUtil_swapDouble(double *a, double *b)
{
    std::swap(*a, *b);
}

void tsUtil_swapFloat(float *a, float *b)
{
    std::swap(*a, *b);
}

void tsUtil_swapInt(int32_t *a, int32_t *b)
{
    std::swap(*a, *b);
}

void tsUtil_swapLong(int32_t *a, int32_t *b)
{
    tsUtil_swapInt(a, b);
}

void tsUtil_swapMem(void *a, void *b, size_t size)
{
    // Exchanged byte by byte in place: for two separate blocks the same
    // result as a round trip through a buffer of size bytes, without an
    // allocation per exchange (tsUtil_reverseArray makes one per pair).
    auto *first = static_cast<unsigned char *>(a);
    std::swap_ranges(first, first + size, static_cast<unsigned char *>(b));
}

void tsUtil_swapBytesShortArray(int16_t *array, int32_t unused, int32_t count)
{
    (void)unused;
    // Only a count of exactly 1 swaps anything, and then only the first
    // value: with any other count the array is left as it is.
    if (count != 1) return;
    auto *bytes = reinterpret_cast<unsigned char *>(array);
    std::swap(bytes[0], bytes[1]);
}

int32_t tsUtil_getGreaterInteger(int32_t a, int32_t b)
{
    return std::max(a, b);
}

int32_t tsUtil_getSmallerInteger(int32_t a, int32_t b)
{
    return std::min(a, b);
}

int32_t tsUtil_compareDoubleByPointer(const void *a, const void *b)
{
    const double x = *static_cast<const double *>(a);
    const double y = *static_cast<const double *>(b);
    if (x > y) return 1;
    if (x == y) return 0;
    return -1;  // below, or an unordered pair
}

int32_t tsUtil_removeDuplicatesFromLongArray(int32_t *array, int32_t *count)
{
    if (array == nullptr || count == nullptr) return TESSAR_FAILURE;
    // Each value is kept when it is not among the ones kept before it:
    // first occurrences stay, in their order.
    int32_t kept = 0;
    for (int32_t i = 0; i < *count; ++i) {
        const int32_t value = array[i];
        if (std::find(array, array + kept, value) == array + kept) array[kept++] = value;
    }
    *count = kept;
    return 0;
}

void tsUtil_reverseArray(void *array, int32_t count, size_t elementSize)
{
    auto *bytes = static_cast<unsigned char *>(array);
    for (int32_t i = 0, j = count - 1; i < j; ++i, --j)
        tsUtil_swapMem(bytes + static_cast<size_t>(i) * elementSize,
                       bytes + static_cast<size_t>(j) * elementSize, elementSize);
}
