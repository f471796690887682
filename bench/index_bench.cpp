// The index of the track beside two libraries' indexes, on a survey of 1,000,000 track points: building, nearest-point
// queries along the track, and anywhere over it. The libraries give the nearest of all points, ours the nearest by its
// own rule, so only the times compare.

#include "picks/track_index.h"

#include <benchmark/benchmark.h>

#include <boost/geometry/geometries/box.hpp>
#include <boost/geometry/geometries/point.hpp>
#include <boost/geometry/index/rtree.hpp>
#include <nanoflann.hpp>

#include <cmath>
#include <random>
#include <utility>
#include <vector>

namespace {

struct Plan {
    std::vector<double> xs; // element 0 unused
    std::vector<double> ys;

    // what nanoflann asks of its points
    std::size_t kdtree_get_point_count() const { return xs.size() - 1; }
    double kdtree_get_pt(std::size_t point, std::size_t dimension) const
    {
        return dimension == 0 ? xs[point + 1] : ys[point + 1];
    }
    template <class Box>
    bool kdtree_get_bbox(Box&) const
    {
        return false;
    }
};

// A hundred lines of 10 km, 50 m apart, sailed to and fro with a slow weave and some noise, a sample every metre.
Plan survey_track()
{
    std::mt19937_64 random(7);
    std::normal_distribution<double> noise(0, 0.05);
    Plan track{{0}, {0}};
    for (int line = 0; line < 100; ++line) {
        for (int sample = 0; sample < 10000; ++sample) {
            const double along = line % 2 == 0 ? sample : 9999 - sample;
            const double weave = 3 * std::sin(along / 150 + line);
            track.xs.push_back(500000 + 0.8 * along - 0.6 * (50 * line + weave) + noise(random));
            track.ys.push_back(6700000 + 0.6 * along + 0.8 * (50 * line + weave) + noise(random));
        }
    }
    return track;
}

const Plan kTrack = survey_track();
const tarvo::TrackTable kTrackTable{.count = static_cast<std::int32_t>(kTrack.xs.size() - 1),
                                    .easting = kTrack.xs.data(),
                                    .northing = kTrack.ys.data()};
const tarvo::PlanBox kBox = *tarvo::track_index_box(kTrackTable);

// As many positions as track points: beside each of them, or anywhere in the box.
Plan positions_along_the_track()
{
    std::mt19937_64 random(8);
    std::uniform_real_distribution<double> offset(-2, 2);
    Plan positions = kTrack;
    for (double& x : positions.xs) x += offset(random);
    for (double& y : positions.ys) y += offset(random);
    return positions;
}

Plan positions_anywhere()
{
    std::mt19937_64 random(9);
    std::uniform_real_distribution<double> x(kBox.x_min, kBox.x_max);
    std::uniform_real_distribution<double> y(kBox.y_min, kBox.y_max);
    Plan positions = kTrack;
    for (double& position : positions.xs) position = x(random);
    for (double& position : positions.ys) position = y(random);
    return positions;
}

Plan positions_of(const benchmark::State& state)
{
    return state.range(0) == 0 ? positions_along_the_track() : positions_anywhere();
}

// Calls nearest(x, y) -> index for every position, as one iteration.
template <class Nearest>
void query_all(benchmark::State& state, const Nearest& nearest)
{
    const Plan positions = positions_of(state);
    for (auto _ : state) {
        std::int64_t sum = 0;
        for (std::size_t at = 1; at < positions.xs.size(); ++at) sum += nearest(positions.xs[at], positions.ys[at]);
        benchmark::DoNotOptimize(sum);
    }
}

tarvo::cQuadTree build_quadtree()
{
    tarvo::cQuadTree tree;
    tarvo::build_track_index(kTrackTable, tree);
    return tree;
}

void BuildQuadtree(benchmark::State& state)
{
    for (auto _ : state) benchmark::DoNotOptimize(build_quadtree().point_count());
}

void QueryQuadtree(benchmark::State& state)
{
    const tarvo::cQuadTree tree = build_quadtree();
    query_all(state, [&](double x, double y) { return tree.find_nearest_point(x, y).sample_index; });
}

using KdTree = nanoflann::KDTreeSingleIndexAdaptor<nanoflann::L2_Simple_Adaptor<double, Plan>, Plan, 2>;

void BuildNanoflann(benchmark::State& state)
{
    for (auto _ : state) {
        KdTree tree(2, kTrack, nanoflann::KDTreeSingleIndexAdaptorParams(10));
        tree.buildIndex();
        benchmark::DoNotOptimize(&tree);
    }
}

void QueryNanoflann(benchmark::State& state)
{
    KdTree tree(2, kTrack, nanoflann::KDTreeSingleIndexAdaptorParams(10));
    tree.buildIndex();
    query_all(state, [&](double x, double y) {
        const double position[] = {x, y};
        std::size_t point = 0;
        double squared_distance = 0;
        nanoflann::KNNResultSet<double> result(1);
        result.init(&point, &squared_distance);
        tree.findNeighbors(result, position, nanoflann::SearchParams());
        return static_cast<std::int64_t>(point);
    });
}

using BoostPoint = boost::geometry::model::point<double, 2, boost::geometry::cs::cartesian>;
using RTree = boost::geometry::index::rtree<std::pair<BoostPoint, std::int32_t>, boost::geometry::index::rstar<16>>;

// The tree's bulk load: the range constructor packs.
void BuildBoostRTree(benchmark::State& state)
{
    std::vector<std::pair<BoostPoint, std::int32_t>> points;
    for (std::size_t at = 1; at < kTrack.xs.size(); ++at) {
        points.emplace_back(BoostPoint(kTrack.xs[at], kTrack.ys[at]), static_cast<std::int32_t>(at));
    }
    for (auto _ : state) {
        const RTree tree(points);
        benchmark::DoNotOptimize(tree.size());
    }
}

BENCHMARK(BuildQuadtree)->Unit(benchmark::kMillisecond);
BENCHMARK(BuildNanoflann)->Unit(benchmark::kMillisecond);
BENCHMARK(BuildBoostRTree)->Unit(benchmark::kMillisecond);
BENCHMARK(QueryQuadtree)->ArgName("anywhere")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(QueryNanoflann)->ArgName("anywhere")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
