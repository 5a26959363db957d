// Globally unique identifiers: random version-4 generation from the
// kernel's random source, byte-wise comparison, and the braced 16-bit text
// form "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}" with its parser.
#include <sys/random.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <optional>

#include <tessar/system.h>

namespace {

// The platform's general failure status, as its bit pattern.
constexpr int32_t kGuidFailure = static_cast<int32_t>(0x80004005u);

constexpr std::size_t kGuidBytes = sizeof(tsGuid);
static_assert(kGuidBytes == 16, "a guid is 16 bytes");

// The braced text: 38 units, then the terminator.
constexpr std::size_t kTextLength = 38;
using GuidText = std::array<char16_t, kTextLength + 1>;

// Positions in the braced text: the braces and the four dashes.
constexpr std::size_t kOpenBrace = 0;
constexpr std::size_t kCloseBrace = 37;
constexpr std::array<std::size_t, 4> kDashes{9, 14, 19, 24};

bool readRandom(void *bytes, std::size_t count) noexcept
{
    auto *at = static_cast<unsigned char *>(bytes);
    while (count > 0) {
        const ssize_t got = getrandom(at, count, 0);
        if (got < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        at += got;
        count -= static_cast<std::size_t>(got);
    }
    return true;
}

// Writes value as digits upper-case hex digits.
char16_t *putHex(char16_t *out, unsigned long long value, int digits) noexcept
{
    constexpr char16_t kHex[] = u"0123456789ABCDEF";
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
        *out++ = kHex[(value >> shift) & 0xFu];
    return out;
}

GuidText bracedText(const tsGuid &guid) noexcept
{
    GuidText text{};
    char16_t *out = text.data();
    *out++ = u'{';
    out = putHex(out, guid.data1, 8);
    *out++ = u'-';
    out = putHex(out, guid.data2, 4);
    *out++ = u'-';
    out = putHex(out, guid.data3, 4);
    *out++ = u'-';
    for (std::size_t i = 0; i < 8; ++i) {
        if (i == 2) *out++ = u'-';
        out = putHex(out, guid.data4[i], 2);
    }
    *out++ = u'}';
    *out = u'\0';
    return text;
}

int hexValue(char16_t c) noexcept
{
    if (c >= u'0' && c <= u'9') return c - u'0';
    if (c >= u'A' && c <= u'F') return c - u'A' + 10;
    if (c >= u'a' && c <= u'f') return c - u'a' + 10;
    return -1;
}

// Reads the next digits hex digits of text from position at on.
std::optional<unsigned long long> readHex(const char16_t *text, std::size_t &at, int digits) noexcept
{
    unsigned long long value = 0;
    for (int i = 0; i < digits; ++i) {
        const int digit = hexValue(text[at++]);
        if (digit < 0) return std::nullopt;
        value = (value << 4) | static_cast<unsigned>(digit);
    }
    return value;
}

bool hasBracedShape(const char16_t *text) noexcept
{
    // The length is tested unit by unit, so that a shorter text is never
    // read past its terminator.
    for (std::size_t i = 0; i < kTextLength; ++i)
        if (text[i] == u'\0') return false;
    if (text[kTextLength] != u'\0') return false;
    if (text[kOpenBrace] != u'{' || text[kCloseBrace] != u'}') return false;
    for (const std::size_t dash : kDashes)
        if (text[dash] != u'-') return false;
    return true;
}

std::optional<tsGuid> parseBracedText(const char16_t *text) noexcept
{
    if (!hasBracedShape(text)) return std::nullopt;
    tsGuid guid{};
    std::size_t at = 1;
    const auto data1 = readHex(text, at, 8);
    ++at;
    const auto data2 = readHex(text, at, 4);
    ++at;
    const auto data3 = readHex(text, at, 4);
    ++at;
    if (!data1 || !data2 || !data3) return std::nullopt;
    guid.data1 = static_cast<uint32_t>(*data1);
    guid.data2 = static_cast<uint16_t>(*data2);
    guid.data3 = static_cast<uint16_t>(*data3);
    for (std::size_t i = 0; i < 8; ++i) {
        if (i == 2) ++at;  // the last dash
        const auto byte = readHex(text, at, 2);
        if (!byte) return std::nullopt;
        guid.data4[i] = static_cast<uint8_t>(*byte);
    }
    return guid;
}

}  // namespace

int32_t tsGuid_generate(tsGuid *guid)
{
    if (guid == nullptr) return kGuidFailure;
    tsGuid fresh;
    if (!readRandom(&fresh, kGuidBytes)) return kGuidFailure;
    // Version 4 (random) in the top nibble of data3, and the variant bits
    // 10 at the top of the first byte of data4.
    fresh.data3 = static_cast<uint16_t>((fresh.data3 & 0x0FFFu) | 0x4000u);
    fresh.data4[0] = static_cast<uint8_t>((fresh.data4[0] & 0x3Fu) | 0x80u);
    *guid = fresh;
    return 0;
}

int32_t tsGuid_compare(const tsGuid *a, const tsGuid *b)
{
    const int order = std::memcmp(a, b, kGuidBytes);
    return (order > 0) - (order < 0);
}

int32_t tsGuid_equal(const tsGuid *a, const tsGuid *b)
{
    return std::memcmp(a, b, kGuidBytes) == 0 ? 1 : 0;
}

int32_t tsGuid_fromString(tsGuid *guid, const char16_t *text)
{
    if (guid == nullptr || text == nullptr) return kGuidFailure;
    const std::optional<tsGuid> parsed = parseBracedText(text);
    if (!parsed) return kGuidFailure;
    *guid = *parsed;
    return 0;
}

int32_t tsGuid_toString(char16_t *buffer, const tsGuid *guid)
{
    const GuidText text = bracedText(*guid);
    std::memcpy(buffer, text.data(), sizeof text);
    return 0;
}

int32_t tsGuid_toStringNoBrackets(char16_t *buffer, const tsGuid *guid)
{
    // The braced text less its first and last units.
    GuidText text = bracedText(*guid);
    text[kCloseBrace] = u'\0';
    std::memcpy(buffer, text.data() + 1, (kTextLength - 1) * sizeof(char16_t));
    return 0;
}

int32_t tsGuid_clear(tsGuid *guid)
{
    if (guid != nullptr) std::memset(guid, 0, kGuidBytes);
    return 0;
}

int32_t tsGuid_isClear(const tsGuid *guid)
{
    static constexpr tsGuid kClear{};
    return std::memcmp(guid, &kClear, kGuidBytes) == 0 ? 1 : 0;
}

int32_t tsGuid_copy(tsGuid *destination, const tsGuid *source)
{
    if (destination != nullptr && source != nullptr) *destination = *source;
    return 0;
}
