#include "picks/quadtree.h"

#include <algorithm>
#include <cstddef>

namespace tarvo {

namespace {

constexpr std::int32_t kPointsPerBlock = 32; // at most; a node of smaller capacity has smaller blocks

// The four children of a node, in child order.
enum Quarter : std::int32_t { north_west, north_east, south_west, south_east };

double x_middle(const PlanBox& box)
{
    return (box.x_min + box.x_max) / 2;
}
double y_middle(const PlanBox& box)
{
    return (box.y_min + box.y_max) / 2;
}

bool is_degenerate(const PlanBox& box)
{
    return !(box.x_min < box.x_max && box.y_min < box.y_max);
}

// In a box so small that its middle is one of its edges, one child would have the very box of its parent and the others
// none. Nodes without end would hang from one another, each with `capacity` points in the order of their arrival; one
// node that never divides gives the same answers.
bool has_no_middle(const PlanBox& box)
{
    const double x_mid = x_middle(box);
    const double y_mid = y_middle(box);
    return (x_mid == box.x_min || x_mid == box.x_max) && (y_mid == box.y_min || y_mid == box.y_max);
}

PlanBox quarter_of(const PlanBox& box, Quarter quarter)
{
    PlanBox part = box;
    const bool is_north = quarter == north_west || quarter == north_east;
    const bool is_west = quarter == north_west || quarter == south_west;
    (is_north ? part.y_min : part.y_max) = y_middle(box);
    (is_west ? part.x_max : part.x_min) = x_middle(box);
    return part;
}

// Holds for the points that are the box's alone: those on its west and north edges may belong to a neighbour.
bool contains_beyond_doubt(const PlanBox& box, double x, double y)
{
    return x > box.x_min && x <= box.x_max && y >= box.y_min && y < box.y_max;
}

double squared_distance(double from_x, double from_y, double to_x, double to_y)
{
    const double dx = to_x - from_x;
    const double dy = to_y - from_y;
    return dx * dx + dy * dy;
}

// No point of the box is nearer than this, to the last bit: every operation is rounded in the same direction.
double squared_distance_to_box(const PlanBox& box, double x, double y)
{
    const double dx = std::max({box.x_min - x, x - box.x_max, 0.0});
    const double dy = std::max({box.y_min - y, y - box.y_max, 0.0});
    return dx * dx + dy * dy;
}

void add_found(FoundPoints& found, double x, double y, std::int32_t sample_index)
{
    ++found.count;
    found.xs.push_back(x);
    found.ys.push_back(y);
    found.indices.push_back(sample_index);
}

} // namespace

bool contains_point(const PlanBox& box, double x, double y)
{
    return box.x_min <= x && x <= box.x_max && box.y_min <= y && y <= box.y_max;
}

bool boxes_overlap(const PlanBox& a, const PlanBox& b)
{
    return a.x_max >= b.x_min && a.y_max >= b.y_min && a.x_min <= b.x_max && a.y_min <= b.y_max;
}

bool cQuadTree::InitialiseQuadtree(double x_min, double y_min, double x_max, double y_max, std::int32_t capacity)
{
    DeleteQuadtree();
    const PlanBox box{x_min, y_min, x_max, y_max};
    if (capacity < 1 || is_degenerate(box)) return false;
    capacity_ = capacity;
    block_size_ = std::min(capacity, kPointsPerBlock);
    nodes_.resize(1);
    set_bounds(kRoot, box);
    return true;
}

void cQuadTree::DeleteQuadtree()
{
    *this = cQuadTree();
}

// A degenerate box is stored like the others: child_for never chooses it, so it holds nothing.
void cQuadTree::set_bounds(std::int32_t node, const PlanBox& box)
{
    Node& set = nodes_[static_cast<std::size_t>(node)];
    set.box = box;
    if (has_no_middle(box)) set.first_child = kNeverDivides;
}

void cQuadTree::subdivide(std::int32_t node)
{
    const auto first_child = static_cast<std::int32_t>(nodes_.size());
    nodes_.resize(nodes_.size() + 4);
    Node& parent = nodes_[static_cast<std::size_t>(node)];
    parent.first_child = first_child;
    for (const Quarter quarter : {north_east, north_west, south_east, south_west}) {
        set_bounds(first_child + quarter, quarter_of(parent.box, quarter));
    }
}

// In child order; none of an undivided node.
std::span<const cQuadTree::Node> cQuadTree::children_of(const Node& node) const
{
    if (node.first_child < 0) return {};
    return std::span(nodes_).subspan(static_cast<std::size_t>(node.first_child), 4);
}

// The first child, in child order, that can take a point of the node's box; kNone when all are degenerate.
std::int32_t cQuadTree::child_for(const Node& node, double x, double y) const
{
    const PlanBox& box = node.box;
    const double x_mid = x_middle(box);
    const double y_mid = y_middle(box);
    const bool fits_west = x <= x_mid && box.x_min < x_mid;
    const bool fits_east = x >= x_mid && x_mid < box.x_max;
    const bool fits_north = y >= y_mid && y_mid < box.y_max;
    const bool fits_south = y <= y_mid && box.y_min < y_mid;
    if (!(fits_west || fits_east) || !(fits_north || fits_south)) return kNone;
    if (fits_north) return node.first_child + (fits_west ? north_west : north_east);
    return node.first_child + (fits_west ? south_west : south_east);
}

// Neighbours along the track mostly share a node, so the search for room begins at the node that took the last point.
bool cQuadTree::insert_point(double x, double y, std::int32_t sample_index)
{
    if (nodes_.empty()) return false;
    std::int32_t taker = last_node_;
    if (!contains_beyond_doubt(nodes_[static_cast<std::size_t>(taker)].box, x, y)) taker = kRoot;
    if (taker == kRoot && !contains_point(nodes_[kRoot].box, x, y)) return false;

    for (;;) {
        const Node& node = nodes_[static_cast<std::size_t>(taker)];
        if (node.point_count < capacity_ || node.first_child == kNeverDivides) break;
        if (node.first_child == kNone) subdivide(taker);
        taker = child_for(nodes_[static_cast<std::size_t>(taker)], x, y);
        if (taker == kNone) return false;
    }
    append_point(taker, x, y, sample_index);
    last_node_ = taker;
    ++point_count_;
    return true;
}

void cQuadTree::append_point(std::int32_t node, double x, double y, std::int32_t sample_index)
{
    Node& taker = nodes_[static_cast<std::size_t>(node)];
    const std::int32_t place = taker.point_count % block_size_;
    if (place == 0) {
        const auto block = static_cast<std::int32_t>(next_block_.size());
        (taker.first_block == kNone ? taker.first_block : next_block_[static_cast<std::size_t>(taker.last_block)]) =
            block;
        taker.last_block = block;
        next_block_.push_back(kNone);
        const std::size_t slots = next_block_.size() * static_cast<std::size_t>(block_size_);
        point_x_.resize(slots);
        point_y_.resize(slots);
        point_index_.resize(slots);
    }
    const auto slot = static_cast<std::size_t>(taker.last_block) * static_cast<std::size_t>(block_size_) +
                      static_cast<std::size_t>(place);
    point_x_[slot] = x;
    point_y_[slot] = y;
    point_index_[slot] = sample_index;
    ++taker.point_count;
    taker.extent = {std::min(taker.extent.x_min, x), std::min(taker.extent.y_min, y), std::max(taker.extent.x_max, x),
                    std::max(taker.extent.y_max, y)};
}

void cQuadTree::insert_points(std::span<const double> xs, std::span<const double> ys,
                              const std::function<void()>& pause)
{
    constexpr std::size_t kPointsPerPause = 1 << 14;
    if (nodes_.empty()) return;
    reserve_room(xs.size());
    for (std::size_t point = 1; point < xs.size(); ++point) {
        insert_point(xs[point], ys[point], static_cast<std::int32_t>(point));
        if (pause && point % kPointsPerPause == 0) pause();
    }
}

// What a survey track needs: its nodes are about two thirds full, and half of them hold no point. Memory that stays
// unused is never touched; too little only means that the arrays grow on the way.
void cQuadTree::reserve_room(std::size_t points)
{
    const std::size_t blocks = 1 + points * 3 / 2 / static_cast<std::size_t>(block_size_);
    const std::size_t slots = blocks * static_cast<std::size_t>(block_size_);
    nodes_.reserve(2 * blocks);
    next_block_.reserve(blocks);
    point_x_.reserve(slots);
    point_y_.reserve(slots);
    point_index_.reserve(slots);
}

NearestPoint cQuadTree::find_nearest_point(double x, double y) const
{
    if (nodes_.empty() || !contains_point(nodes_[kRoot].box, x, y)) return {};
    constexpr double kFarthest = 1e30; // squared; a point beyond is none
    NearestPoint best;
    best.squared_distance = kFarthest;
    search_nearest(nodes_[kRoot], x, y, best);
    return best.squared_distance < kFarthest ? best : NearestPoint{};
}

// The rule goes from the root down, the first of equally near points winning. The search goes the other way, last child
// first and the node's own points at the end, the last of equals winning: the deep nodes hold the nearest points, so
// most of the others are passed over.
void cQuadTree::search_nearest(const Node& node, double x, double y, NearestPoint& best) const
{
    if (const std::span<const Node> children = children_of(node); !children.empty()) {
        const double x_mid = x_middle(node.box);
        const double y_mid = y_middle(node.box);
        if (y <= y_mid && x >= x_mid) search_nearest(children[south_east], x, y, best);
        if (y <= y_mid && x <= x_mid) search_nearest(children[south_west], x, y, best);
        if (y >= y_mid && x >= x_mid) search_nearest(children[north_east], x, y, best);
        if (y >= y_mid && x <= x_mid) search_nearest(children[north_west], x, y, best);
    }
    if (squared_distance_to_box(node.extent, x, y) <= best.squared_distance) search_own_points(node, x, y, best);
}

template <typename Visit>
void cQuadTree::visit_own_points(const Node& node, const Visit& visit) const
{
    std::int32_t left = node.point_count;
    for (std::int32_t block = node.first_block; block != kNone; block = next_block_[static_cast<std::size_t>(block)]) {
        const auto first = static_cast<std::size_t>(block) * static_cast<std::size_t>(block_size_);
        const std::size_t end = first + static_cast<std::size_t>(std::min(left, block_size_));
        for (std::size_t slot = first; slot < end; ++slot) visit(slot);
        left -= block_size_;
    }
}

void cQuadTree::search_own_points(const Node& node, double x, double y, NearestPoint& best) const
{
    double nearest = kInfinity;
    std::size_t nearest_slot = 0;
    visit_own_points(node, [&](std::size_t slot) {
        const double distance = squared_distance(x, y, point_x_[slot], point_y_[slot]);
        if (distance < nearest) {
            nearest = distance;
            nearest_slot = slot;
        }
    });
    if (nearest <= best.squared_distance) {
        best = {nearest, point_x_[nearest_slot], point_y_[nearest_slot], point_index_[nearest_slot]};
    }
}

FoundPoints cQuadTree::find_points_in_box(double x_min, double y_min, double x_max, double y_max) const
{
    FoundPoints found;
    if (!nodes_.empty()) collect_points_in_box(nodes_[kRoot], {x_min, y_min, x_max, y_max}, found);
    return found;
}

void cQuadTree::collect_points_in_box(const Node& node, const PlanBox& query, FoundPoints& found) const
{
    if (!boxes_overlap(node.box, query)) return;
    visit_own_points(node, [&](std::size_t slot) {
        const double x = point_x_[slot];
        const double y = point_y_[slot];
        if (query.x_min <= x && x < query.x_max && query.y_min <= y && y < query.y_max) {
            add_found(found, x, y, point_index_[slot]);
        }
    });
    for (const Node& child : children_of(node)) collect_points_in_box(child, query, found);
}

FoundPoints cQuadTree::find_points_near(double x, double y, double radius) const
{
    FoundPoints found;
    if (!nodes_.empty()) collect_points_near(nodes_[kRoot], x, y, radius, found);
    return found;
}

void cQuadTree::collect_points_near(const Node& node, double x, double y, double radius, FoundPoints& found) const
{
    if (!boxes_overlap(node.box, {x - radius, y - radius, x + radius, y + radius})) return;
    visit_own_points(node, [&](std::size_t slot) {
        if (squared_distance(x, y, point_x_[slot], point_y_[slot]) <= radius * radius) {
            add_found(found, point_x_[slot], point_y_[slot], point_index_[slot]);
        }
    });
    for (const Node& child : children_of(node)) collect_points_near(child, x, y, radius, found);
}

void cQuadTree::draw_quadtree(const DrawBox& draw_box, const PlanToSurface& mapping, bool show) const
{
    if (!show) return;
    const auto across = [&](double x) { return (x - mapping.x_origin) * mapping.scale + mapping.x_offset; };
    const auto down = [&](double y) { return (mapping.y_origin - y) * mapping.scale + mapping.y_offset; };
    for (const Node& node : nodes_) {
        if (node.point_count == 0) continue;
        const PlanBox& box = node.box;
        draw_box(across(box.x_min), down(box.y_max), across(box.x_max), down(box.y_min));
    }
}

} // namespace tarvo
