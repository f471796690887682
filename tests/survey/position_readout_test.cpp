#include "survey/position_readout.h"

#include "plain_projection.h"

#include <gtest/gtest.h>

namespace tarvo {

TEST(PositionReadout, WritesDegreesOfTheSurveysGrid)
{
    struct Case {
        const char* label;
        const char* grid;
        GridPlace place;
        PositionTexts texts;
    };
    const Case cases[] = {
        {"north and east",
         "plain",
         {10512.5, 54250},
         {"10512.50 54250.00", "54.250000 N, 10.512500 E", "54\u00b0 15.0000' N, 010\u00b0 30.7500' E"}},
        {"south and west",
         "plain",
         {-500, -33000.25},
         {"-500.00 -33000.25", "33.000250 S, 0.500000 W", "33\u00b0 00.0150' S, 000\u00b0 30.0000' W"}},
        {"never 60 minutes",
         "plain",
         {9999.9999999, 0},
         {"10000.00 0.00", "0.000000 N, 10.000000 E", "00\u00b0 00.0000' N, 010\u00b0 00.0000' E"}},
        {"an unknown grid", "UTM 99", {1, 2}, {"1.00 2.00", "", ""}},
        {"no grid", "", {1, 2}, {"1.00 2.00", "", ""}},
        {"no place", "plain", {1, kNull}, {}},
        {"out of this world", "plain", {1e13, 2}, {}}};
    const PlainProjections projections;
    PositionReadout readout; // one for all: the grid may change
    for (const Case& c : cases) {
        SurveyState survey;
        survey.projections = &projections;
        survey.survey_definitions.data_format.emplace().survey_grid = c.grid;
        const PositionTexts texts = readout.texts(survey, c.place);
        EXPECT_EQ(texts.grid, c.texts.grid) << c.label;
        EXPECT_EQ(texts.decimal_degrees, c.texts.decimal_degrees) << c.label;
        EXPECT_EQ(texts.degrees_and_minutes, c.texts.degrees_and_minutes) << c.label;
    }
}

} // namespace tarvo
