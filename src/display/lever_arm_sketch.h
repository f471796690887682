#pragma once

#include "definitions/survey_definitions.h"

#include <vector>

namespace tarvo {

// Pixels from the top left corner of a view, y down.
struct SketchPoint {
    double x = 0;
    double y = 0;
};

// Where the lever arms put the sensors, as two square pictures of one scale with the fish in their middle: seen from
// above (ahead is up, port is left) and from behind (up is up, port is left).
struct LeverArmSketch {
    struct Sensor {
        SketchPoint foot_above; // of the arm, on the fish's axis
        SketchPoint above;
        SketchPoint behind; // the foot is in the middle
    };
    std::vector<Sensor> sensors; // from 1; empty where positions are read from columns
    SketchPoint fish;            // in both views
    double pixels_per_metre = 1;
    double scale_bar = 1; // metres, a round length that fits the views
};

// Views of side x side pixels; sensors keep `margin` pixels away from the border. A vertical that counts downwards
// (Depth without its sign flipped) turns the view from behind over.
LeverArmSketch lever_arm_sketch(const SurveyDefinitions& definitions, double side, double margin);

} // namespace tarvo
