/*
 * Step 1: two road centre lines staked out from surveyed points. Where do
 * they cross, how far is a manhole from each, and what does the kernel say
 * when a line is asked for through one point twice?
 */
#include <stdio.h>

#include <tessar/frame.h>
#include <tessar/vector.h>

#include "steps.h"

static void print_point(const char *label, const dpoint2d *p)
{
    printf("  %-28s E %12.3f  N %12.3f\n", label, p->x, p->y);
}

void step_survey_lines(void)
{
    /* Four pegs in a local grid, metres: two on the main road, two on the side road. */
    const dpoint2d main_a = {1000.000, 2000.000}, main_b = {1250.000, 2100.000};
    const dpoint2d side_a = {1120.000, 1900.000}, side_b = {1080.000, 2210.000};
    const dpoint2d manhole = {1105.250, 2080.400};
    UTMAT_Droite main_road, side_road;
    dpoint2d crossing, foot;
    int32_t count = 0, code = 0, detail = 0;
    double offset_main = 0.0, offset_side = 0.0;

    printf("Survey lines\n");
    print_point("main road peg A", &main_a);
    print_point("main road peg B", &main_b);
    print_point("side road peg A", &side_a);
    print_point("side road peg B", &side_b);

    UTMAT_CalculerDroite2Pt(&main_a, &main_b, &main_road);
    UTMAT_CalculerDroite2Pt(&side_a, &side_b, &side_road);
    UTMAT_CalculerIntersection2Droite(&main_road, &side_road, &crossing, &count);
    UTMAT_GetErreur(&code, &detail);
    if (code == 0 && count == 1) print_point("crossing of the two roads", &crossing);

    /* Offsets are positive to the right of the direction of travel. */
    UTMAT_CalculerDeportPtDroite(&main_road, &manhole, &offset_main);
    UTMAT_CalculerDeportPtDroite(&side_road, &manhole, &offset_side);
    UTMAT_ProjeterPtSurDroite(&main_road, &manhole, &foot);
    print_point("manhole", &manhole);
    printf("  offset from main road        %+10.3f m (%s)\n", offset_main,
           offset_main > 0 ? "right" : "left");
    printf("  offset from side road        %+10.3f m (%s)\n", offset_side,
           offset_side > 0 ? "right" : "left");
    print_point("foot on the main road", &foot);
    printf("  chainage of the foot from A  %10.3f m\n", UTMAT_CalculerDistance2Pt(&main_a, &foot));

    /* A line through one point twice has no direction: the kernel reports it. */
    UTMAT_CalculerDroite2Pt(&main_a, &main_a, &main_road);
    UTMAT_GetErreur(&code, &detail);
    printf("  line through one peg twice   error word %d (%s)\n\n", (int)code,
           code == TESSAR_FAILURE ? "refused" : "accepted");
}
