/*
 * Step: a GNSS receiver on the road site gives ellipsoidal heights h, but the
 * road is designed in orthometric heights H (above the geoid). The geoid
 * model gives the undulation N at the point, and H = h - N.
 *
 * The example writes its own small regional grid (5 x 5 nodes, 0.25 deg
 * apart) to a temporary directory under the name of the first file of the
 * "g2003" family, finds it by the family search, and reads N at a peg.
 */
#define _POSIX_C_SOURCE 200809L

#include <math.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <tessar/conversion.h>
#include <tessar/geoid.h>

#include "steps.h"

/* Writes the grid in the file layout (little-endian, as on this host). */
static int write_grid(const char *path)
{
    const double south = 46.0, west = 6.0, spacing = 0.25;
    const int32_t rows = 5, columns = 5, kind = 1;
    FILE *f = fopen(path, "wb");
    int32_t r, c;
    if (f == NULL) return 0;
    fwrite(&south, sizeof south, 1, f);
    fwrite(&west, sizeof west, 1, f);
    fwrite(&spacing, sizeof spacing, 1, f);
    fwrite(&spacing, sizeof spacing, 1, f);
    fwrite(&rows, sizeof rows, 1, f);
    fwrite(&columns, sizeof columns, 1, f);
    fwrite(&kind, sizeof kind, 1, f);
    /* Row by row from the south, each row from the west: a gently tilted
       geoid of about 50 m, rising to the north-east. */
    for (r = 0; r < rows; ++r) {
        for (c = 0; c < columns; ++c) {
            const float n = (float)(49.2 + 0.35 * r + 0.6 * c - 0.02 * r * c);
            fwrite(&n, sizeof n, 1, f);
        }
    }
    return fclose(f) == 0;
}

static void print_angle(const char *label, double degrees, char hemisphere)
{
    int32_t d = 0, m = 0;
    double s = 0.0;
    tsConversion_degreeToDMS(&d, &m, &s, degrees);
    printf("  %-28s %3d deg %02d' %07.4f\" %c\n", label, (int)d, (int)m, s, hemisphere);
}

void step_geoid_height(void)
{
    char dir[] = "/tmp/tessar_road_geoid_XXXXXX";
    char path[sizeof dir + 32];
    /* A peg on the site: latitude and longitude (east) in degrees, GNSS height. */
    const double lat = 46.6012, lon = 6.7234, h = 612.345;
    double n = 0.0, n_west = 0.0, outside = 0.0;
    int32_t status;

    printf("Geoid height\n");
    if (mkdtemp(dir) == NULL) {
        printf("  no temporary directory\n\n");
        return;
    }
    snprintf(path, sizeof path, "%s/g2003u01.bin", dir);
    if (!write_grid(path)) {
        printf("  could not write %s\n\n", path);
        rmdir(dir);
        return;
    }

    /* Search the g2003 family (model 2) in the directory for the file that holds the peg. */
    status = tsGeoid_initModelByGeoid(2, dir, lat, lon, 1);
    printf("  model search in the directory %s\n", status == 0 ? "found g2003u01.bin" : "failed");
    if (status == 0) {
        print_angle("peg latitude", lat, 'N');
        print_angle("peg longitude", lon, 'E');
        status = tsGeoid_getUndulationAtLatLong(&n, lat, lon, 1);
        printf("  ellipsoidal height h         %10.3f m\n", h);
        printf("  undulation N                 %10.3f m (status %d)\n", n, (int)status);
        printf("  orthometric height H = h - N %10.3f m\n", h - n);

        /* The same peg with the longitude counted positive to the west
           (360 - (360 - lon) may differ from lon in the last bits). */
        tsGeoid_getUndulationAtLatLong(&n_west, lat, 360.0 - lon, 0);
        printf("  N with a west longitude      %10.3f m (%s)\n", n_west,
               fabs(n_west - n) < 1e-9 ? "the same" : "differs");

        /* A point off the grid has no undulation: status 1 and N = 0. */
        status = tsGeoid_getUndulationAtLatLong(&outside, 48.0, lon, 1);
        printf("  N at 48 N, off the grid      %10.3f m (status %d)\n", outside, (int)status);
    }

    /* The model is library-wide: close it when done. */
    tsGeoid_closeModel();
    remove(path);
    rmdir(dir);
    printf("\n");
}
