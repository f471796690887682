#pragma once

#include "survey/survey_state.h"
#include "targets/earth_field.h"
#include "targets/fit_curves.h"
#include "targets/fit_survey.h"
#include "targets/group_fit.h"

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace tarvo {

// What the operator wants of the fit of one pick.
struct FitWishes {
    std::optional<double> radius; // of the readings, metres; none: by the altitude
    std::vector<std::int32_t> lines_left_out;
    std::vector<int> sensors_left_out;

    bool operator==(const FitWishes&) const = default;
};

// A line or a sensor near a pick, which the fit may leave out.
struct FitSource {
    std::int32_t number = 0; // of the survey line, from 1, or of the sensor
    std::string name;
    bool is_used = true;
};

// The fits of the survey's picks as they are wanted: all neighbours together, again when a pick, a wish or the samples
// have changed, on a thread of its own that works on copies. Nothing of it is stored.
class TargetWork {
public:
    explicit TargetWork(const SurveyState& survey); // which must outlive it
    TargetWork(const TargetWork&) = delete;
    TargetWork& operator=(const TargetWork&) = delete;
    ~TargetWork();

    // The samples have changed, or are about to: no fit holds any more.
    void forget();
    // Begins to fit what has no fit yet, the current pick's group first. While a run goes on nothing is to be asked
    // for.
    void look();
    // Takes what the thread has finished. True: some fit is new.
    bool take_results();
    bool is_working() const;

    const DipoleFit* fit_of(std::int32_t pick) const; // nullptr: not known yet
    std::vector<DipoleFit> fits() const;              // of all picks; those not known yet say so
    std::vector<FitPlace> places() const;             // of all picks, with their wishes
    std::vector<FitCurve> curves_of(std::int32_t pick);

    FitWishes wishes_of(std::int32_t pick) const;
    void set_wishes(std::int32_t pick, const FitWishes& wishes);
    double radius_of(std::int32_t pick); // metres, wanted or by the altitude
    std::vector<FitSource> lines_near(std::int32_t pick);
    std::vector<FitSource> sensors_near(std::int32_t pick);

    // Of the samples as they are now.
    const FitSurvey& fit_survey();
    const EarthField& earth_field();
    const Projection* grid(); // nullptr: the survey has none

    // One line for a list: the fit's, or why there is none yet.
    std::string summary_of(std::int32_t pick) const;

private:
    // Places that are fitted together, and what came of it.
    struct FittedGroup {
        std::vector<FitPlace> places;
        std::vector<DipoleFit> fits;
    };

    // What one thread works on. It owns all of it.
    struct Job {
        std::vector<FittedGroup> groups; // in the order of work
        std::vector<std::vector<FitTask>> tasks;
        std::atomic<bool> stop = false;
        std::atomic<bool> is_done = false;
        std::mutex mutex;
        std::vector<FittedGroup> finished; // to be taken
        std::thread thread;
    };

    static void work_on(Job& job);
    void stop_job();
    FitReadings readings_near(std::int32_t pick);
    std::vector<std::vector<std::size_t>> groups_of(const std::vector<FitPlace>& places);
    const FittedGroup* known_group(const std::vector<FitPlace>& places) const;
    void match_fits();

    const SurveyState& survey_;
    std::map<std::string, FitWishes> wishes_; // by the pick's name
    std::optional<FitSurvey> fit_survey_;
    std::int32_t records_ = 0; // that it was made of
    std::optional<EarthField> field_;
    TargetSettings field_settings_; // that it was made with
    std::unique_ptr<Projection> grid_;
    bool grid_is_open_ = false;
    std::vector<FittedGroup> known_;
    std::vector<FitPlace> asked_for_;            // of the last look
    std::vector<std::optional<DipoleFit>> fits_; // by pick from 0
    std::unique_ptr<Job> job_;
};

// The fit's place that is to be the pick's, when the operator takes it; none: there is none, or its side is not known.
std::optional<GridVector> place_to_take(const DipoleFit* fit);

} // namespace tarvo
