#pragma once

#include "definitions/field_locations.h"
#include "definitions/survey_definitions.h"
#include "processing/sample_processing.h"
#include "targets/fit_readings.h"
#include "targets/grid_vector.h"
#include "text/numbers.h"

#include <cstdint>
#include <span>
#include <vector>

namespace tarvo {

// What readings a fit may use.
struct FitSelection {
    double east = kNull; // metres, survey grid: the middle
    double north = kNull;
    double radius = 0; // metres, in plan
    std::vector<std::int32_t> lines_left_out;
    std::vector<int> sensors_left_out;
};

// The stored samples as fits see them: which way is up, how samples were averaged, and where on the ground records lie.
// It looks at the run, which must outlive it and stay as it is.
class FitSurvey {
public:
    FitSurvey(const SampleProcessing& run, const SurveyDefinitions& definitions, const FieldLocations& locations);

    const SampleProcessing& run() const { return run_; }
    const SampleStore& store() const { return run_.store; }

    // Heights are metres upwards: -Depth, or Depth when its sign is flipped, or Elevation. Without either sensors lie
    // at 0.
    bool has_heights() const { return has_heights_; }
    double height(double vertical) const { return up_sign_ * vertical; } // of one of the survey's vertical numbers
    double vertical(double height) const { return up_sign_ * height; }   // and back
    double seabed_height(std::int32_t record) const;                     // kNull: not known

    GridVector sensor_place(int sensor, std::int32_t record) const; // kNull where it is not known
    double median_field() const { return median_field_; }           // nT, of all sensors; kNull: no reading

    // The readings within a selection, of all survey lines. from: where their places count from.
    FitReadings readings(const FitSelection& selection, const GridVector& from) const;

    // Calls action(first, last) for each run of records that may have sensors within `radius` of a place.
    template <typename Action>
    void for_records_near(double east, double north, double radius, Action action) const
    {
        for (const Block& block : blocks_) {
            if (block.low_east <= east + radius && block.high_east >= east - radius &&
                block.low_north <= north + radius && block.high_north >= north - radius) {
                action(block.first, block.last);
            }
        }
    }

private:
    // Records that follow each other, and the box of their sensors.
    struct Block {
        std::int32_t first = 0, last = 0;
        double low_east = 0, high_east = 0, low_north = 0, high_north = 0;
    };
    void make_blocks();
    GridVector way(int sensor, std::int32_t record, std::int32_t line) const;

    const SampleProcessing& run_;
    bool has_heights_ = false;
    double up_sign_ = 1;
    double median_field_ = kNull;
    SampleWay way_;
    std::vector<Block> blocks_;
};

// The median; kNull of none.
double median_or_null(std::vector<double> values);

} // namespace tarvo
