// A C++17 program that uses the installed library through find_package.
#include <tessar/tessar.h>

#include <cmath>
#include <cstdio>

int main()
{
    const dpoint2d p1{0.0, 0.0}, p2{3.0, 4.0};
    const double d = UTMAT_CalculerDistance2Pt(&p1, &p2);
    const bool ok = d == 5.0 && UTMAT_Egal(1.0, 1.00005, UTMAT_getCalculPrec()) == 1 &&
                    std::fabs(dc_2pi - 2.0 * dc_pi) == 0.0;
    std::printf("C++ consumer: distance %g, %s\n", d, ok ? "ok" : "WRONG");
    return ok ? 0 : 1;
}
