/*
 * Step: a transition curve. The road runs east along a straight, turns left
 * into a circular curve of radius 250 m through a clothoid of 80 m, and
 * follows the curve for 60 m. The step derives the clothoid's parameter,
 * deflection and shift, checks the length against the spiral-length formula,
 * and prints the centre line and the right edge (3.5 m out) every 20 m.
 */
#include <math.h>
#include <stdio.h>

#include <tessar/clothoid.h>
#include <tessar/frame.h>

#include "steps.h"

#define TS_STATION 60.0    /* tangent to spiral */
#define SPIRAL_LENGTH 80.0 /* spiral to curve at 140 */
#define ARC_LENGTH 60.0    /* end of the curve at 200 */
#define RADIUS 250.0
#define EDGE_OFFSET 3.5 /* the right edge, to the right of travel */
#define STEP 20.0

static int kernel_failed(const char *what)
{
    int32_t code = 0, detail = 0;
    UTMAT_GetErreur(&code, &detail);
    if (code != 0) printf("  %s failed (error %d)\n", what, (int)code);
    return code != 0;
}

static void print_station(double station, const char *element, double x, double y, double direction,
                          double ex, double ey)
{
    const int km = (int)(station / 1000.0);
    printf("  %d+%06.2f  %-8s  %9.3f %9.3f  %8.4f deg   edge %9.3f %9.3f\n", km, station - 1000.0 * km,
           element, x, y, direction / dc_piover180, ex, ey);
}

void step_transition(void)
{
    double A = 0.0, tau = 0.0, shift = 0.0;

    printf("Transition: straight, clothoid L = %.0f m, curve R = %.0f m (left)\n", SPIRAL_LENGTH, RADIUS);

    /* The clothoid's parameter from R and L (A^2 = R L), its deflection and
       the shift of the curve from the straight. */
    UTMAT_CalculerParametreClot(1, RADIUS, SPIRAL_LENGTH, &A);
    if (kernel_failed("parameter")) return;
    UTMAT_CalculerParametreClot(14, A, SPIRAL_LENGTH, &tau);
    if (kernel_failed("deflection")) return;
    UTMAT_CalculerParametreClot(17, A, SPIRAL_LENGTH, &shift);
    if (kernel_failed("shift")) return;
    printf("  A = %.3f m, deflection = %.5f rad, shift = %.4f m\n", A, tau, shift);

    /* The road heads east, azimuth pi/2; the clothoid turns it left by tau.
       Between a straight (radius 0: none) and the curve, the spiral length
       formula gives the same 80 m back. */
    printf("  spiral length from the deflection: %.3f m\n",
           tsMath_spiralLength(dc_piover2, dc_piover2 - tau, 0.0, RADIUS));

    /* The clothoid's own frame sits at the tangent-to-spiral point, x axis
       along the straight; its end point and tangent carry on into the arc,
       whose centre lies R to the left of that end. */
    dpoint2d end, tangent;
    UTMAT_CalculerPosPointArcClotAbscisse(A, SPIRAL_LENGTH, 0.0, &end, &tangent);
    if (kernel_failed("clothoid end")) return;
    const double cx = TS_STATION + end.x - RADIUS * tangent.y;
    const double cy = end.y + RADIUS * tangent.x;
    printf("  curve centre (%.3f, %.3f); its distance from the straight less R is the shift: %.4f m\n", cx,
           cy, cy - RADIUS);

    printf("  station   element           x         y   direction        right edge x, y\n");
    const double arcEnd = TS_STATION + SPIRAL_LENGTH + ARC_LENGTH;
    for (double station = 0.0; station <= arcEnd + 1e-9; station += STEP) {
        if (station <= TS_STATION) {
            print_station(station, "straight", station, 0.0, 0.0, station, -EDGE_OFFSET);
        } else if (station <= TS_STATION + SPIRAL_LENGTH) {
            const double s = station - TS_STATION;
            dpoint2d p, t, edge;
            UTMAT_CalculerPosPointArcClotAbscisse(A, s, 0.0, &p, &t);
            UTMAT_CalculerPosPointArcClotAbscisse(A, s, EDGE_OFFSET, &edge, NULL);
            if (kernel_failed("clothoid point")) return;
            print_station(station, "clothoid", TS_STATION + p.x, p.y, atan2(t.y, t.x), TS_STATION + edge.x,
                          edge.y);
        } else {
            /* On the arc the radial angle runs on from the clothoid's end. */
            const double along = station - TS_STATION - SPIRAL_LENGTH;
            const double direction = tau + along / RADIUS;
            const double ux = sin(direction), uy = -cos(direction); /* from the centre outwards */
            print_station(station, "curve", cx + RADIUS * ux, cy + RADIUS * uy, direction,
                          cx + (RADIUS + EDGE_OFFSET) * ux, cy + (RADIUS + EDGE_OFFSET) * uy);
        }
    }
}
