#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <span>
#include <vector>

namespace tarvo {

// A box of the plan, closed on all four sides.
struct PlanBox {
    double x_min = 0;
    double y_min = 0;
    double x_max = 0;
    double y_max = 0;

    bool operator==(const PlanBox&) const = default;
};

bool contains_point(const PlanBox& box, double x, double y);
bool boxes_overlap(const PlanBox& a, const PlanBox& b);

struct NearestPoint {
    double squared_distance = -1; // -1: none was found, the rest is as it stands here
    double x = 0;
    double y = 0;
    std::int32_t sample_index = -1;
};

// Points found by a collecting query, from 1 to count; element 0 is unused.
struct FoundPoints {
    std::int32_t count = 0;
    std::vector<double> xs{0.0};
    std::vector<double> ys{0.0};
    std::vector<std::int32_t> indices{0};
};

// Where a plan position falls on a drawing surface: (x - x_origin) * scale + x_offset across and
// (y_origin - y) * scale + y_offset down.
struct PlanToSurface {
    double scale = 1;
    double x_origin = 0;
    double x_offset = 0;
    double y_origin = 0;
    double y_offset = 0;
};

// Point-region quadtree over the plan positions of track samples. A node keeps the first `capacity` points that reach
// it and hands later ones to the first of its four children, in the order north-west, north-east, south-west,
// south-east, whose box contains them: a point on a dividing line goes north and west. All nodes lie in one array and
// all points in another, in blocks, so that building costs no allocation per node.
class cQuadTree {
public:
    // Empties the tree and, when capacity >= 1, x_min < x_max and y_min < y_max, makes it ready for points of that box.
    bool InitialiseQuadtree(double x_min, double y_min, double x_max, double y_max, std::int32_t capacity);
    void DeleteQuadtree();

    bool is_initialised() const { return !nodes_.empty(); }
    std::int32_t point_count() const { return point_count_; }

    // False: the point lies outside the tree's box.
    bool insert_point(double x, double y, std::int32_t sample_index);
    // Inserts xs[i], ys[i] with sample index i, from i = 1; points outside the box are passed over.
    // pause: called after every some ten thousand points, where it is given.
    void insert_points(std::span<const double> xs, std::span<const double> ys,
                       const std::function<void()>& pause = nullptr);

    // The nearest among the points held by the nodes whose boxes contain (x, y), not by all: a neighbour just over a
    // dividing line may be nearer. Of equally near points the first on the way from the root.
    NearestPoint find_nearest_point(double x, double y) const;

    // Points with x_min <= x < x_max and y_min <= y < y_max.
    FoundPoints find_points_in_box(double x_min, double y_min, double x_max, double y_max) const;
    // Points at most `radius` away.
    FoundPoints find_points_near(double x, double y, double radius) const;

    // Draws the box of every node that holds points, as draw_box(left, top, right, bottom) in surface units.
    using DrawBox = std::function<void(double, double, double, double)>;
    void draw_quadtree(const DrawBox& draw_box, const PlanToSurface& mapping, bool show) const;

private:
    static constexpr std::int32_t kNone = -1;
    static constexpr std::int32_t kRoot = 0;
    static constexpr std::int32_t kNeverDivides = -2;
    static constexpr double kInfinity = std::numeric_limits<double>::infinity();

    struct Node {
        PlanBox box;
        PlanBox extent{kInfinity, kInfinity, -kInfinity, -kInfinity}; // of the node's own points
        std::int32_t first_child = kNone;                             // its children follow one another in child order
        std::int32_t point_count = 0;
        std::int32_t first_block = kNone;
        std::int32_t last_block = kNone;
    };

    void reserve_room(std::size_t points);
    void set_bounds(std::int32_t node, const PlanBox& box);
    void subdivide(std::int32_t node);
    std::span<const Node> children_of(const Node& node) const;
    std::int32_t child_for(const Node& node, double x, double y) const;
    void append_point(std::int32_t node, double x, double y, std::int32_t sample_index);
    void search_nearest(const Node& node, double x, double y, NearestPoint& best) const;
    void search_own_points(const Node& node, double x, double y, NearestPoint& best) const;
    template <typename Visit>
    void visit_own_points(const Node& node, const Visit& visit) const;
    void collect_points_in_box(const Node& node, const PlanBox& query, FoundPoints& found) const;
    void collect_points_near(const Node& node, double x, double y, double radius, FoundPoints& found) const;

    std::int32_t capacity_ = 0;
    std::int32_t point_count_ = 0;
    std::int32_t last_node_ = kRoot; // that took the last point
    std::vector<Node> nodes_;

    // Block b holds the slots from b * block_size_ on; a node with more points than one block has a chain of them.
    std::int32_t block_size_ = 0;
    std::vector<std::int32_t> next_block_;
    std::vector<double> point_x_;
    std::vector<double> point_y_;
    std::vector<std::int32_t> point_index_;
};

} // namespace tarvo
