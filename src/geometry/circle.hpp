// The quadratic solver that the constructions of tangent circles, parabolic
// arcs and interpolation triangles all stand on.
//
// Its tolerance on the discriminant is propagated from a relative error of
// 1e-12 on each coefficient, so a double root computed with rounding noise
// still comes out as one root; it does not follow the kernel's settings.
#pragma once

#include <cstdint>

namespace tessar::detail {

// The relative error taken on each coefficient of a quadratic.
inline constexpr double kCoefficientError = 1e-12;

// The real roots of a x x + b x + c = 0.
// - a null count sets 32768 and writes nothing; otherwise count = 0 first;
// - a = 0 exactly: one root -c / b, or none when b = 0 exactly as well;
// - a discriminant near 0 within the propagated tolerance: one root -b / 2a;
// - a positive one: two roots, the larger by magnitude first (computed
//   without cancellation), the other from the product of the roots c / a;
// - otherwise no real root: count 0 and no error.
// It does not clear the error word on entry; its comparisons leave it at 0.
void quadraticRoots(double a, double b, double c, double *out, std::int32_t *count) noexcept;

}  // namespace tessar::detail
