#pragma once

#include "display/track_scene.h"
#include "fake_operator.h"
#include "text/numbers.h"

#include <cmath>
#include <random>
#include <string>
#include <vector>

namespace tarvo {

// A stored track with display values; element 0 of each column is unused.
struct TestTrack {
    std::vector<double> distance = {kNull};
    std::vector<double> easting = {kNull};
    std::vector<double> northing = {kNull};
    std::vector<double> values = {kNull};

    void add(double new_easting, double new_northing, double value)
    {
        distance.push_back(distance.size() == 1 ? 0 : distance.back() + 10);
        easting.push_back(new_easting);
        northing.push_back(new_northing);
        values.push_back(value);
    }
    std::int32_t count() const { return static_cast<std::int32_t>(values.size()) - 1; }

    TrackScene scene() const
    {
        TrackScene scene;
        scene.track = {count(), distance.data(), nullptr, easting.data(), northing.data()};
        scene.sensor_values = {nullptr, values.data()};
        return scene;
    }
};

// Steps of a few metres, standing still and jumps, null positions and null values among them.
inline TestTrack random_track(unsigned seed, int count)
{
    std::mt19937 random(seed);
    const auto from_to = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
    TestTrack track;
    double easting = 437000.25;
    double northing = 7658800.5;
    for (int sample = 0; sample < count; ++sample) {
        const int reach = from_to(0, 9) == 0 ? 40 : 3;
        if (from_to(0, 3) != 0) {
            easting += from_to(-2 * reach, 2 * reach) / 2.0;
            northing += from_to(-2 * reach, 2 * reach) / 2.0;
        }
        const double value = from_to(0, 9) == 0 ? kNull : from_to(-3, 14);
        track.add(from_to(0, 19) == 0 ? kNull : easting, from_to(0, 19) == 0 ? kNull : northing, value);
    }
    return track;
}

} // namespace tarvo
