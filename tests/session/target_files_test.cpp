#include "session/target_files.h"

#include "example_targets.h"
#include "survey/survey_targets.h"
#include "targets/fit_curves.h"
#include "targets/fit_export.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tarvo {
namespace {

int count_of(const std::string& text, const std::string& part)
{
    int count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
}

TEST(TargetReport, StandsAloneWithAPictureForEachTarget)
{
    ExampleTargets example;
    SurveyState& survey = example.survey;
    survey.picks.pick_names[2] = "A<b>,\"c\" 1";
    example.remarks["A<b>,\"c\" 1"] = "seen <twice> & \"dived\"";
    append_pick(survey.picks, {.name = "Far 1", .type = 1, .time = 45000, .location = {0, 0, 0, 0}});
    const FitSurvey fitted = fit_survey(survey);
    const EarthField field = earth_field_of(survey, fitted, nullptr);
    const std::vector<FitPlace> places = places_of_picks(survey.picks);
    const std::vector<DipoleFit> fits = fit_places(fitted, places, field.direction, {});
    const TargetResults results{fitted, field, nullptr, example.remarks, places, fits};
    const std::string text = survey_report_text(survey, results);

    EXPECT_EQ(count_of(text, "<svg"), 1 + 2 * 13); // the map; plan and profiles of each
    EXPECT_EQ(count_of(text, "://"), count_of(text, "xmlns=\"http://www.w3.org/2000/svg\""));
    EXPECT_EQ(count_of(text, "src="), 0);
    EXPECT_EQ(count_of(text, "A<b>"), 0);
    EXPECT_EQ(count_of(text, "<twice>"), 0);
    EXPECT_EQ(count_of(text, "A&lt;b&gt;,&quot;c&quot; 1"), 3); // on the map, in the table, over its own part
    EXPECT_EQ(count_of(text, "<p class=\"remark\">seen &lt;twice&gt; &amp; &quot;dived&quot;</p>"), 1);
    EXPECT_EQ(count_of(text, "No fit: There is no valid reading near the pick."), 1);
    EXPECT_EQ(count_of(text, "<tr><td>Survey lines</td><td>12</td></tr>"), 1);
}

// What is drawn beside the model are the readings that the fit was made from, less what it knows of the neighbours.
TEST(TargetReport, CurvesLeaveWhatTheFitLeaves)
{
    ExampleTargets example;
    const FitSurvey fitted = fit_survey(example.survey);
    const EarthField field = earth_field_of(example.survey, fitted, nullptr);
    const std::vector<FitPlace> places = places_of_picks(example.survey.picks);
    const std::vector<DipoleFit> fits = fit_places(fitted, places, field.direction, {});
    for (std::size_t target = 0; target < fits.size(); ++target) {
        double squares = 0;
        std::size_t count = 0;
        for (const FitCurve& curve : fit_curves(fitted, {places, fits, field.direction}, target)) {
            ASSERT_EQ(curve.model.size(), curve.measured.size());
            for (std::size_t at = 0; at < curve.model.size(); ++at, ++count) {
                squares += (curve.measured[at] - curve.model[at]) * (curve.measured[at] - curve.model[at]);
            }
        }
        EXPECT_EQ(count, fits[target].readings) << target;
        EXPECT_NEAR(std::sqrt(squares / static_cast<double>(count)), fits[target].rms, 0.05 * fits[target].rms)
            << target;
    }
}

} // namespace
} // namespace tarvo
