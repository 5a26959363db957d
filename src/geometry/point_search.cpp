// The search along a sampled string (points, unit tangents and ascending
// distances in parallel arrays) for the samples that answer a given point.
// A sample answers when the side of its tangent's tip, seen from the line
// from the point to the sample, turns between 1 and -1 from the previous
// sample of the pass, or when the point lies on the sample itself.
#include <array>
#include <cmath>
#include <cstddef>

#include <tessar/mathapi.h>
#include <tessar/memory.h>
#include <tessar/point.h>

namespace {

// How far along its tangent the tip of a sample is placed.
constexpr double kTangentReach = 1000.0;

// A point nearer than this to a sample lies on it.
constexpr double kOnSampleDistance = 0.001;

constexpr std::size_t kMaxHits = 20;

struct Hit {
    int32_t index;
    double delta;  // |distance - seed|, meaningful only in a seeded search
};

class TangentSearch
{
  public:
    TangentSearch(const dpoint3d &point, const dpoint3d *points, const dpoint3d *tangents,
                  const double *distances, int32_t n, const double *seed)
        : points_(points), tangents_(tangents), distances_(distances), n_(n), seeded_(seed != nullptr),
          seed_(seed ? *seed : 0.0), q_(relative(point))
    {
    }

    // With a seed: backward then forward from the sample at or before the
    // seed, then a full forward pass; a second hit anywhere ends it all.
    // Without one: the full forward pass alone.
    void run()
    {
        if (seeded_) {
            const int32_t start = startIndex();
            if (pass(start, 0, -1)) return;
            if (pass(start, n_ - 1, 1)) return;
        }
        pass(0, n_ - 1, 1);
    }

    // A seeded search keeps only the hit nearest the seed, the first of equals.
    void keepNearestSeed()
    {
        if (!seeded_ || count_ < 2) return;
        Hit best = hits_[0];
        for (std::size_t k = 1; k < count_; ++k)
            if (hits_[k].delta < best.delta) best = hits_[k];
        hits_[0] = best;
        count_ = 1;
    }

    std::size_t count() const { return count_; }
    int32_t index(std::size_t k) const { return hits_[k].index; }

  private:
    // Coordinates relative to the first sample of the string.
    dpoint3d relative(const dpoint3d &p) const { return {p.x - points_[0].x, p.y - points_[0].y, p.z}; }

    // The last sample whose distance does not exceed the seed, 0 if none.
    int32_t startIndex() const
    {
        int32_t start = 0;
        for (int32_t i = 0; i < n_; ++i)
            if (!(distances_[i] > seed_)) start = i;
        return start;
    }

    int32_t sideOfTip(int32_t i) const
    {
        const dpoint3d s = relative(points_[i]);
        const double tipX = s.x + kTangentReach * tangents_[i].x;
        const double tipY = s.y + kTangentReach * tangents_[i].y;
        return tsMath_sideOfLine2d(q_.x, q_.y, s.x, s.y, tipX, tipY);
    }

    bool onSample(int32_t i) const
    {
        const dpoint3d s = relative(points_[i]);
        return tsMath_distance2d(q_.x, q_.y, s.x, s.y) < kOnSampleDistance;
    }

    // One pass over first..last (inclusive) in the given step. Returns true
    // when the whole search must stop.
    bool pass(int32_t first, int32_t last, int32_t step)
    {
        int32_t previousSide = 0;
        for (int32_t i = first;; i += step) {
            const double delta = seeded_ ? std::fabs(distances_[i] - seed_) : 0.0;
            // Moving away from the seed past the best hit cannot do better.
            if (seeded_ && count_ > 0 && delta > best_) return false;

            const int32_t side = sideOfTip(i);
            const bool turned = side != 0 && previousSide != 0 && side != previousSide;
            if (side != 0) previousSide = side;  // a sample on the line keeps the previous side

            if (turned || onSample(i)) {
                if (count_ < kMaxHits) hits_[count_++] = {i, delta};
                best_ = delta;
                if (seeded_) return count_ >= 2;  // a seeded pass ends at its first hit
                if (count_ == kMaxHits) return false;
            }
            if (i == last) return false;
        }
    }

    const dpoint3d *points_;
    const dpoint3d *tangents_;
    const double *distances_;
    int32_t n_;
    bool seeded_;
    double seed_;
    dpoint3d q_;
    std::array<Hit, kMaxHits> hits_{};
    std::size_t count_ = 0;
    double best_ = 0.0;
};

}  // namespace

int32_t tsPoint_projectPointOnTangentUsingXYTanDistArraysIteration(dpoint3d **result, const double *seed,
                                                                   const dpoint3d *point,
                                                                   const dpoint3d *points,
                                                                   const dpoint3d *tangents,
                                                                   const double *distances, int32_t n)
{
    if (!result || !point || !points || !tangents || !distances || n < 1) return 0;

    TangentSearch search(*point, points, tangents, distances, n, seed);
    search.run();
    search.keepNearestSeed();
    if (search.count() == 0) return 0;

    auto *found = static_cast<dpoint3d *>(tsMem_calloc(search.count(), sizeof(dpoint3d)));
    if (!found) return 0;
    for (std::size_t k = 0; k < search.count(); ++k)
        found[k] = points[search.index(k)];
    *result = found;
    return static_cast<int32_t>(search.count());
}
