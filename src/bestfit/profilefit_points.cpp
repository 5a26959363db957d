// The point-array form of the vertical profile fit: a long section from
// points, either as chainage along x and level in y, or as running plan
// distance and level in z.
#include <tessar/bestfit.h>
#include <tessar/frame.h>
#include <tessar/memory.h>
#include <tessar/point.h>

#include <cstddef>
#include <cstdint>
#include <new>
#include <vector>

namespace {

struct LongSection {
    std::vector<double> stations;
    std::vector<double> levels;
    double base = 0.0;  // added back to the stations of the result
};

// Chainage as the running plan distance from the first point, level from z.
LongSection alongDistance(const dpoint3d *points, int32_t n)
{
    LongSection section{std::vector<double>(static_cast<std::size_t>(n)),
                        std::vector<double>(static_cast<std::size_t>(n))};
    double run = 0.0;
    for (int32_t i = 0; i < n; ++i) {
        if (i > 0) run += tsPoint_distance2d(&points[i - 1], &points[i]);
        section.stations[i] = run;
        section.levels[i] = points[i].z;
    }
    return section;
}

// Chainage as x reduced to the first point's x, level from y.
LongSection alongX(const dpoint3d *points, int32_t n)
{
    LongSection section{std::vector<double>(static_cast<std::size_t>(n)),
                        std::vector<double>(static_cast<std::size_t>(n)), points[0].x};
    for (int32_t i = 0; i < n; ++i) {
        section.stations[i] = points[i].x - section.base;
        section.levels[i] = points[i].y;
    }
    return section;
}

// The IPs as points: x the chainage with the base added back, y the level,
// z the curve length. One zeroed record more than there are IPs.
dpoint3d *ipPoints(const double *stations, const double *levels, const double *lengths, int32_t count,
                   double base)
{
    auto *result =
        static_cast<dpoint3d *>(tsMem_calloc(static_cast<std::size_t>(count) + 1, sizeof(dpoint3d)));
    if (result == nullptr) return nullptr;
    for (int32_t i = 0; i < count; ++i) {
        result[i].x = base + stations[i];
        result[i].y = levels[i];
        result[i].z = lengths[i];
    }
    return result;
}

}  // namespace

int32_t tsPoint_verticalComputeProfile(dpoint3d **result, int32_t *count, const dpoint3d *points, int32_t n,
                                       int32_t useDistance, double upTol, double loTol, double hogK,
                                       double sagK, double vcMinimumLength, double cogFilter,
                                       int32_t fixStartGrade, int32_t fixEndGrade, int32_t debug)
{
    if (result == nullptr || count == nullptr || points == nullptr || n < 2) return TESSAR_FAILURE;
    try {
        const LongSection section = useDistance != 0 ? alongDistance(points, n) : alongX(points, n);
        tsBestFit_verticalProfileInitialize(upTol, loTol, hogK, sagK, vcMinimumLength, cogFilter,
                                            fixStartGrade, fixEndGrade, debug);
        double *stations = nullptr;
        double *levels = nullptr;
        double *lengths = nullptr;
        int32_t ipCount = 0;
        int32_t status = tsBestFit_verticalComputeProfile(&stations, &levels, &lengths, &ipCount,
                                                          section.stations.data(), section.levels.data(), n);
        if (status == 0 && ipCount > 1) {
            if (dpoint3d *ips = ipPoints(stations, levels, lengths, ipCount, section.base)) {
                *result = ips;
                *count = ipCount;
            } else {
                status = TESSAR_FAILURE;
            }
        }
        for (double *array : {stations, levels, lengths})
            if (array != nullptr) tsMem_free(array);
        return status;
    } catch (const std::bad_alloc &) {
        return TESSAR_FAILURE;
    }
}
