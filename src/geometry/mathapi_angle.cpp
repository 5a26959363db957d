// Angles of the ts layer: a direction is kept in [0, 2 pi).
#include <cmath>

#include <tessar/frame.h>
#include <tessar/mathapi.h>

double tsMath_normalizeAngle(double a)
{
    double r = std::fmod(a, dc_2pi);
    if (r < 0.0) r += dc_2pi;
    return r;
}
