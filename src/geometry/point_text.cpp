// Point records read from text "y x [z]": y first, as point lists give the
// northing before the easting.
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#include <tessar/frame.h>
#include <tessar/point.h>
#include <tessar/text.h>

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;

// The text is cleaned in a copy (control characters to blanks, blanks
// trimmed at both ends), then cut at blanks; runs of blanks count as one.
int32_t readYXZ(dpoint3d &point, const char *text)
{
    std::string buffer(text);
    tsString_clean(buffer.data(), 1, 1, 1);
    char *save = nullptr;
    const char *y = strtok_r(buffer.data(), " ", &save);
    const char *x = y ? strtok_r(nullptr, " ", &save) : nullptr;
    if (!y || !x) return kFail;
    const char *z = strtok_r(nullptr, " ", &save);
    point = {std::atof(x), std::atof(y), z ? std::atof(z) : 0.0};
    return 0;
}

}  // namespace

int32_t tsPoint_setFromYXZString(dpoint3d *point, const char *text)
{
    if (!point || !text || text[0] == '\0') return kFail;
    try {
        return readYXZ(*point, text);
    } catch (const std::bad_alloc &) {
        return kFail;
    }
}
