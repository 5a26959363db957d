// Collinearity tests over point arrays, by the directions seen from the
// first point.
#include <cmath>
#include <cstddef>
#include <new>
#include <vector>

#include <tessar/frame.h>
#include <tessar/point.h>

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;

// The directions from the first point to every later point that is not on
// it within the tolerance, in array order. Directions lie in [0, 2 pi) and
// are compared as they are, so two either side of 0 look a turn apart.
std::vector<double> directionsFromFirst(int32_t n, const dpoint3d *array, double tolerance)
{
    std::vector<double> directions;
    if (n < 2) return directions;
    directions.reserve(static_cast<std::size_t>(n - 1));
    for (int32_t i = 1; i < n; ++i) {
        if (tsPoint_nearEqual2d(&array[0], &array[i], tolerance)) continue;
        directions.push_back(tsPoint_direction2d(&array[0], &array[i]));
    }
    return directions;
}

// Neighbouring directions must agree within the tolerance, or, when
// opposite directions are allowed, differ by pi within it. The tolerance
// serves as an angle here, as it served as a distance above.
int32_t checkColinear(int32_t n, const dpoint3d *array, double tolerance, uint8_t *result, bool allowOpposite)
{
    if (!array) return kFail;
    *result = 1;
    try {
        const std::vector<double> directions = directionsFromFirst(n, array, tolerance);
        for (std::size_t i = 1; i < directions.size(); ++i) {
            const double e = std::fabs(directions[i] - directions[i - 1]);
            if (e >= tolerance && (!allowOpposite || std::fabs(e - dc_pi) >= tolerance)) *result = 0;
        }
    } catch (const std::bad_alloc &) {
        return kFail;
    }
    return 0;
}

}  // namespace

int32_t tsPoint_checkForColinear2D(int32_t n, const dpoint3d *array, double tolerance, uint8_t *result)
{
    return checkColinear(n, array, tolerance, result, true);
}

int32_t tsPoint_checkForColinear2DInSameDir(int32_t n, const dpoint3d *array, double tolerance,
                                            uint8_t *result)
{
    return checkColinear(n, array, tolerance, result, false);
}
