// Shared steps of angle and direction text: the flags, the pieces of an angle
// and their assembly with labels, and the widening of 8-bit text for the
// value parser (also used by the station entries).
#pragma once

#include <cstddef>
#include <cstdint>

namespace tessar::detail {

// Flags of the angle and direction formats, a mask.
enum AngleFlag : int32_t {
    kFlagTruncate = 2,        // cut decimals instead of rounding
    kFlagPad = 4,             // zero-pad degrees to the degree width, minutes and seconds to 2
    kFlagKeepFullCircle = 8,  // keep an angle above 2 pi as it is
    kFlagNoFieldBlank = 16,   // no blank between the fields of the angle
    kFlagNoLetterBlank = 32,  // no blank between the quadrant letters and the angle
    kFlagPlus = 64,           // "+" before a positive angle
};

inline bool hasFlag(int32_t flags, AngleFlag flag) noexcept
{
    return (flags & flag) != 0;
}

// Angle modes.
enum AngleMode : int32_t {
    kDecimalDegrees = 1,
    kDegreesMinutes = 2,  // degrees and decimal minutes
    kDegreesMinutesSeconds = 3,
    kGrads = 4,
    kRadians = 5,
};

// Degree widths: three digits, two in a bearing, which never exceeds 90.
inline constexpr int32_t kDegreeWidth = 3;
inline constexpr int32_t kBearingDegreeWidth = 2;

// A piece holds the number core's text (up to 263 bytes), its padding zeros
// and a plus sign.
inline constexpr std::size_t kPieceBytes = 300;
inline constexpr std::size_t kLabelBytes = 256;
// The assembled angle: three pieces, four labels and the separators.
inline constexpr std::size_t kAngleTextBytes = 2048;

// The three pieces of an angle, empty until filled: in modes 1, 4 and 5 the
// value is in first; mode 2 has minutes, degrees; mode 3 seconds, minutes,
// degrees.
struct AnglePieces {
    char first[kPieceBytes] = "";
    char second[kPieceBytes] = "";
    char third[kPieceBytes] = "";
};

// Label formats of an angle; each may be null.
struct AngleLabels {
    const char *degree = nullptr;
    const char *minutes = nullptr;
    const char *seconds = nullptr;
    const char *grad = nullptr;
};

// Writes the angle text of the pieces with their labels into text, the
// fields separated by a blank unless noBlank. Returns false, with text left
// as it was, in mode 5 and in modes outside 1 to 5.
bool assembleAngle(char *text, const AnglePieces &pieces, int32_t mode, const AngleLabels &labels,
                   bool noBlank) noexcept;

// The value parser reads 16-bit text: at most 255 bytes of text, each byte
// one unit (so 0xB0 stays the degree sign). Null stays null.
inline constexpr std::size_t kWideUnits = 256;
inline const char16_t *widenText(char16_t (&wide)[kWideUnits], const char *text) noexcept
{
    if (text == nullptr) return nullptr;
    std::size_t i = 0;
    for (; i < kWideUnits - 1 && text[i] != '\0'; ++i)
        wide[i] = static_cast<char16_t>(static_cast<unsigned char>(text[i]));
    wide[i] = 0;
    return wide;
}

}  // namespace tessar::detail
