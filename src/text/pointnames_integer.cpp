// Integers read out of typed text: the first run of digits, a range
// "low - high", and the sorting of comma-separated tokens into numbers and
// texts.
#include <array>
#include <cstdio>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include <tessar/frame.h>
#include <tessar/pointnames.h>
#include <tessar/text.h>
#include <tessar/tokens.h>

#include "text/strings.hpp"

using namespace tessar::detail;

namespace {

// The text is read in a buffer of 544 bytes.
constexpr std::size_t kIntegerBufferLength = 544;

constexpr const char *kTokenDelimiters = ",";
constexpr const char *kTokenGroups = "\"\"";
constexpr char kListComma = ',';

// One output of tsString_extractIntegerAndStringExpressions, built by
// appending tokens each followed by a comma.
class TokenOutput
{
  public:
    explicit TokenOutput(char *text) noexcept : text_(text) {}

    void add(const char *token, bool quoted) noexcept
    {
        if (quoted) text_[length_++] = kQuote;
        const std::size_t n = std::strlen(token);
        std::memcpy(text_ + length_, token, n);
        length_ += n;
        if (quoted) text_[length_++] = kQuote;
        text_[length_++] = kListComma;
        text_[length_] = '\0';
    }

    // The comma behind the last token goes.
    void dropLastComma() noexcept
    {
        if (length_ > 0) text_[--length_] = '\0';
    }

  private:
    char *text_;
    std::size_t length_ = 0;
};

}  // namespace

int32_t tsString_extractInteger(int32_t *result, const char *text)
{
    if (result == nullptr) return TESSAR_FAILURE;
    *result = 0;
    if (text == nullptr) return TESSAR_FAILURE;
    std::array<char, kIntegerBufferLength> buffer;
    const std::size_t length = strnlen(text, kIntegerBufferLength - 1);
    // Every non-digit becomes a blank, the minus sign too, so the scan finds
    // the first run of digits as an unsigned value.
    for (std::size_t i = 0; i < length; ++i)
        buffer[i] = isDecimalDigit(text[i]) ? text[i] : kBlank;
    buffer[length] = '\0';
    int value = 0;
    if (std::sscanf(buffer.data(), "%d", &value) == 1) *result = value;
    return 0;
}

int32_t tsString_extractIntegerRange(const char *text, int32_t *low, int32_t *high)
{
    if (text == nullptr || *text == '\0') return TESSAR_FAILURE;
    try {
        std::string copy(text);
        (void)tsString_clean(copy.data(), 1, 1, 1);
        int first = 0;
        int second = 0;
        // A minus sign in first place is the sign of a single value.
        const char *dash = std::strchr(copy.c_str(), '-');
        if (dash == nullptr || (dash == copy.c_str() && std::strchr(dash + 1, '-') == nullptr)) {
            (void)std::sscanf(copy.c_str(), "%d", &first);
            second = first;
        } else {
            (void)std::sscanf(copy.c_str(), " %d - %d ", &first, &second);
        }
        if (low != nullptr) *low = first;
        if (high != nullptr) *high = second;
        return 0;
    } catch (const std::bad_alloc &) {
        return TESSAR_FAILURE;
    }
}

int32_t tsString_extractIntegerAndStringExpressions(char *numbers, char *strings, void *unused, char *input)
{
    (void)unused;
    if (numbers != nullptr) *numbers = '\0';
    if (strings != nullptr) *strings = '\0';
    if (numbers == nullptr || strings == nullptr || input == nullptr || *input == '\0') return TESSAR_FAILURE;
    try {
        // Room for every token the input can hold; callers keep to 100.
        const std::size_t room = std::strlen(input) + 1;
        std::vector<char *> tokens(room);
        std::vector<char> introducers(room);
        std::vector<int32_t> groupFlags(room);
        int32_t count = 0;
        if (tsString_parseTokenGroups(input, kTokenDelimiters, kTokenGroups, &count, tokens.data(),
                                      introducers.data(), groupFlags.data()) != 0)
            return TESSAR_FAILURE;

        TokenOutput numeric(numbers);
        TokenOutput text(strings);
        for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
            const char *token = tokens[i];
            if (groupFlags[i] != 0)
                text.add(token, true);
            else if (tsString_isNumeric(token) != 0)
                numeric.add(token, false);
            else
                text.add(token, false);
        }
        numeric.dropLastComma();
        text.dropLastComma();
        return 0;
    } catch (const std::bad_alloc &) {
        return TESSAR_FAILURE;
    }
}
