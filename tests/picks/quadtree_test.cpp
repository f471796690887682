#include "picks/quadtree.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <memory>
#include <random>
#include <tuple>

namespace tarvo {
namespace {

using Found = std::vector<std::tuple<double, double, std::int32_t>>;

// The rule of the tree as it reads, node by node; for few points, since it goes as deep as they ask.
struct PlainTree {
    PlanBox box;
    std::int32_t capacity = 0; // 0: degenerate, holds nothing
    Found points;
    std::array<std::unique_ptr<PlainTree>, 4> children; // north-west, north-east, south-west, south-east

    PlainTree(const PlanBox& bounds, std::int32_t room)
    {
        if (!(bounds.x_min < bounds.x_max && bounds.y_min < bounds.y_max)) return;
        box = bounds;
        capacity = room;
    }

    bool insert(double x, double y, std::int32_t index)
    {
        if (capacity == 0 || !contains_point(box, x, y)) return false;
        if (std::ssize(points) < capacity) {
            points.emplace_back(x, y, index);
            return true;
        }
        if (!children[0]) {
            const double x_mid = (box.x_min + box.x_max) / 2;
            const double y_mid = (box.y_min + box.y_max) / 2;
            const PlanBox quarters[] = {{box.x_min, y_mid, x_mid, box.y_max},
                                        {x_mid, y_mid, box.x_max, box.y_max},
                                        {box.x_min, box.y_min, x_mid, y_mid},
                                        {x_mid, box.y_min, box.x_max, y_mid}};
            for (std::size_t child = 0; child < 4; ++child) {
                children[child] = std::make_unique<PlainTree>(quarters[child], capacity);
            }
        }
        for (const auto& child : children) {
            if (child->insert(x, y, index)) return true;
        }
        return false;
    }

    void search(double x, double y, NearestPoint& best) const
    {
        if (!contains_point(box, x, y)) return;
        for (const auto& [px, py, index] : points) {
            const double distance = (px - x) * (px - x) + (py - y) * (py - y);
            if (distance < best.squared_distance) best = {distance, px, py, index};
        }
        if (!children[0]) return;
        for (const auto& child : children) child->search(x, y, best);
    }

    // Points that `wanted` accepts, of the nodes whose boxes overlap the query's.
    template <class Wanted>
    void collect(const PlanBox& query, const Wanted& wanted, Found& found) const
    {
        if (!boxes_overlap(box, query)) return;
        for (const auto& point : points) {
            if (wanted(std::get<0>(point), std::get<1>(point))) found.push_back(point);
        }
        if (!children[0]) return;
        for (const auto& child : children) child->collect(query, wanted, found);
    }
};

Found as_list(const FoundPoints& found)
{
    Found list;
    for (std::size_t point = 1; point <= static_cast<std::size_t>(found.count); ++point) {
        list.emplace_back(found.xs.at(point), found.ys.at(point), found.indices.at(point));
    }
    return list;
}

TEST(Quadtree, TakesOnlyBoxesWithExtentAndRoom)
{
    struct Case {
        const char* label;
        PlanBox box;
        std::int32_t capacity;
        bool taken;
    };
    const Case cases[] = {{"proper", {0, 0, 1, 1}, 1, true},      {"no width", {1, 0, 1, 1}, 32, false},
                          {"no height", {0, 1, 1, 1}, 32, false}, {"turned round", {1, 0, 0, 1}, 32, false},
                          {"no room", {0, 0, 1, 1}, 0, false},    {"not a number", {0, 0, std::nan(""), 1}, 32, false}};
    cQuadTree tree;
    for (const Case& c : cases) {
        const PlanBox& box = c.box;
        EXPECT_EQ(tree.InitialiseQuadtree(box.x_min, box.y_min, box.x_max, box.y_max, c.capacity), c.taken) << c.label;
        EXPECT_EQ(tree.is_initialised(), c.taken) << c.label;
        EXPECT_EQ(tree.insert_point(1, 1, 7), c.taken) << c.label;
        EXPECT_EQ(tree.find_nearest_point(1, 1).sample_index, c.taken ? 7 : -1)
            << c.label << ", also after another tree";
    }
}

TEST(Quadtree, DoesNotReturnPointsTooFarForTheirSquareToCount)
{
    cQuadTree tree;
    tree.InitialiseQuadtree(-1e20, -1e20, 1e20, 1e20, 32);
    tree.insert_point(1e15, 0, 1);
    EXPECT_EQ(tree.find_nearest_point(0, 0).squared_distance, -1);
    EXPECT_EQ(tree.find_nearest_point(1, 0).sample_index, 1);
}

// Coarse grids make points collide with each other, with box edges and with the queries.
TEST(Quadtree, AnswersLikeItsPlainRule)
{
    for (unsigned seed = 1; seed <= 300; ++seed) {
        std::mt19937 random(seed);
        const int grid = seed % 3 == 0 ? 1000000 : 16;
        const auto coordinate = [&] {
            return static_cast<double>(random() % static_cast<unsigned>(grid + 1)) * 16 / grid;
        };
        const std::int32_t capacity = 1 + static_cast<std::int32_t>(random() % 40);
        const PlanBox box{random() % 2 ? 0.0 : 0.7, 0, 16, random() % 2 ? 16.0 : 15.3};
        cQuadTree tree;
        ASSERT_TRUE(tree.InitialiseQuadtree(box.x_min, box.y_min, box.x_max, box.y_max, capacity));
        PlainTree plain(box, capacity);
        for (std::int32_t index = 1; index <= 400; ++index) {
            const double x = coordinate();
            const double y = coordinate();
            ASSERT_EQ(tree.insert_point(x, y, index), plain.insert(x, y, index)) << "seed " << seed;
        }
        for (int query = 0; query < 60; ++query) {
            const double x = coordinate();
            const double y = coordinate();
            NearestPoint expected;
            expected.squared_distance = 1e32;
            plain.search(x, y, expected);
            if (expected.sample_index == -1) expected.squared_distance = -1;
            const NearestPoint nearest = tree.find_nearest_point(x, y);
            ASSERT_EQ(nearest.sample_index, expected.sample_index) << "seed " << seed << " at " << x << ", " << y;
            ASSERT_EQ(nearest.squared_distance, expected.squared_distance) << "seed " << seed;

            const PlanBox part{x, y, coordinate(), coordinate()};
            Found inside;
            plain.collect(
                part,
                [&](double px, double py) {
                    return part.x_min <= px && px < part.x_max && part.y_min <= py && py < part.y_max;
                },
                inside);
            ASSERT_EQ(as_list(tree.find_points_in_box(part.x_min, part.y_min, part.x_max, part.y_max)), inside)
                << "seed " << seed;

            const double radius = std::floor(coordinate() / 4);
            Found near;
            plain.collect(
                {x - radius, y - radius, x + radius, y + radius},
                [&](double px, double py) { return (px - x) * (px - x) + (py - y) * (py - y) <= radius * radius; },
                near);
            ASSERT_EQ(as_list(tree.find_points_near(x, y, radius)), near) << "seed " << seed;
        }
    }
}

// Where a box has no middle any more, the plain rule still finds room for every point, node under node.
TEST(Quadtree, TakesIdenticalPointsWithoutEnd)
{
    for (const auto& [x, y] : {std::pair{0.3, 0.7}, {1.0, 1.0}, {0.0, 0.0}, {0.5, 1e-300}}) {
        cQuadTree tree;
        tree.InitialiseQuadtree(0, 0, 1, 1, 32);
        PlainTree plain({0, 0, 1, 1}, 32);
        for (std::int32_t index = 1; index <= 3000; ++index) {
            const double step = index % 3 == 0 ? x : std::nextafter(x, 2);
            ASSERT_EQ(tree.insert_point(step, y, index), plain.insert(step, y, index)) << index;
        }
        for (const double at : {x, std::nextafter(x, 2)}) {
            NearestPoint expected;
            expected.squared_distance = 1e32;
            plain.search(at, y, expected);
            if (expected.sample_index == -1) continue;
            EXPECT_EQ(tree.find_nearest_point(at, y).sample_index, expected.sample_index);
        }
        Found all;
        plain.collect(
            {0, 0, 2, 2}, [](double, double) { return true; }, all);
        EXPECT_EQ(as_list(tree.find_points_in_box(0, 0, 2, 2)), all);
    }
    // A million, by turns at two neighbouring floats: a node under a node for each would take hours.
    cQuadTree tree;
    tree.InitialiseQuadtree(0, 0, 1, 1, 32);
    const double places[] = {0.3, std::nextafter(0.3, 1)};
    for (std::int32_t index = 1; index <= 1'000'000; ++index)
        ASSERT_TRUE(tree.insert_point(places[index % 2], 0.7, index));
    EXPECT_EQ(tree.find_nearest_point(places[0], 0.7).sample_index, 2);
    EXPECT_EQ(tree.find_points_near(0.3, 0.7, 0).count, 500'000);
}

TEST(Quadtree, DrawsTheBoxesOfTheNodesThatHoldPoints)
{
    cQuadTree tree;
    tree.InitialiseQuadtree(0, 0, 8, 8, 1);
    tree.insert_points(std::vector<double>{-1, 1, 9, 7}, std::vector<double>{-1, 1, 9, 2}); // the middle one: outside
    EXPECT_EQ(tree.point_count(), 2);
    using Rectangle = std::array<double, 4>;
    std::vector<Rectangle> drawn;
    const auto draw = [&](double left, double top, double right, double bottom) {
        drawn.push_back({left, top, right, bottom});
    };
    const PlanToSurface mapping{.scale = 10, .x_origin = 2, .x_offset = 5, .y_origin = 8, .y_offset = 7};
    tree.draw_quadtree(draw, mapping, false);
    EXPECT_TRUE(drawn.empty());
    tree.draw_quadtree(draw, mapping, true);
    EXPECT_EQ(drawn, (std::vector<Rectangle>{{-15, 7, 65, 87}, {25, 47, 65, 87}}));
}

} // namespace
} // namespace tarvo
