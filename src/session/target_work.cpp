#include "session/target_work.h"

#include "survey/survey_targets.h"
#include "targets/fit_export.h"
#include "targets/fit_texts.h"
#include "targets/target_report.h"

#include <algorithm>
#include <set>
#include <utility>

namespace tarvo {

namespace {

std::size_t at(std::int32_t pick)
{
    return static_cast<std::size_t>(pick - 1);
}

} // namespace

TargetWork::TargetWork(const SurveyState& survey) : survey_(survey) {}

TargetWork::~TargetWork()
{
    stop_job();
}

void TargetWork::stop_job()
{
    if (!job_) return;
    job_->stop = true;
    job_->thread.join(); // within a step of a search
    job_.reset();
}

void TargetWork::forget()
{
    stop_job();
    known_.clear();
    asked_for_.clear();
    fits_.clear();
    fit_survey_.reset();
    field_.reset();
    grid_.reset();
    grid_is_open_ = false;
}

const FitSurvey& TargetWork::fit_survey()
{
    if (!fit_survey_) {
        fit_survey_.emplace(tarvo::fit_survey(survey_));
        records_ = survey_.processing.store.RecordCount;
    }
    return *fit_survey_;
}

const Projection* TargetWork::grid()
{
    if (!grid_is_open_ && survey_.projections != nullptr) {
        std::string fault; // which the run has told
        grid_ = survey_grid(survey_.survey_definitions, *survey_.projections, fault);
        grid_is_open_ = true;
    }
    return grid_.get();
}

const EarthField& TargetWork::earth_field()
{
    if (!field_ || field_settings_ != survey_.target_settings) {
        field_ = earth_field_of(survey_, fit_survey(), grid());
        field_settings_ = survey_.target_settings;
    }
    return *field_;
}

std::vector<FitPlace> TargetWork::places() const
{
    std::vector<FitPlace> places = places_of_picks(survey_.picks);
    for (std::size_t place = 0; place < places.size(); ++place) {
        const auto wish = wishes_.find(survey_.picks.pick_names[place + 1]);
        if (wish == wishes_.end()) continue;
        places[place].radius = wish->second.radius;
        places[place].lines_left_out = wish->second.lines_left_out;
        places[place].sensors_left_out = wish->second.sensors_left_out;
    }
    return places;
}

// The current pick's first.
std::vector<std::vector<std::size_t>> TargetWork::groups_of(const std::vector<FitPlace>& places)
{
    std::vector<std::vector<std::size_t>> groups = fit_groups(fit_survey(), places);
    if (!is_pick(survey_.picks, survey_.current_pick)) return groups;
    const std::size_t current = at(survey_.current_pick);
    std::stable_partition(groups.begin(), groups.end(), [current](const std::vector<std::size_t>& group) {
        return std::find(group.begin(), group.end(), current) != group.end();
    });
    return groups;
}

const TargetWork::FittedGroup* TargetWork::known_group(const std::vector<FitPlace>& places) const
{
    const auto found = std::find_if(known_.begin(), known_.end(),
                                    [&places](const FittedGroup& group) { return group.places == places; });
    return found == known_.end() ? nullptr : &*found;
}

void TargetWork::look()
{
    if (fit_survey_ && records_ != survey_.processing.store.RecordCount) forget();
    std::vector<FitPlace> wanted = places();
    const bool is_other_field = field_ && field_settings_ != survey_.target_settings;
    if (is_other_field) known_.clear();
    if (wanted == asked_for_ && !is_other_field) return;
    stop_job();
    asked_for_ = std::move(wanted);
    fits_.assign(asked_for_.size(), std::nullopt);
    if (survey_.processing.store.RecordCount < 1) return;

    auto job = std::make_unique<Job>();
    std::vector<FittedGroup> still_known;
    for (const std::vector<std::size_t>& group : groups_of(asked_for_)) {
        FittedGroup fitted;
        for (const std::size_t place : group) fitted.places.push_back(asked_for_[place]);
        if (const FittedGroup* const known = known_group(fitted.places)) {
            still_known.push_back(*known);
            continue;
        }
        std::vector<FitTask> tasks;
        for (const FitPlace& place : fitted.places) {
            tasks.push_back(fit_task(fit_survey(), place, earth_field().direction));
        }
        job->groups.push_back(std::move(fitted));
        job->tasks.push_back(std::move(tasks));
    }
    known_ = std::move(still_known);
    match_fits();
    if (job->groups.empty()) return;
    job_ = std::move(job);
    job_->thread = std::thread([&job = *job_] { work_on(job); });
}

void TargetWork::work_on(Job& job)
{
    FitWatch watch;
    watch.stop = [&job] { return job.stop.load(); };
    for (std::size_t group = 0; group < job.groups.size() && !job.stop; ++group) {
        std::vector<DipoleFit> fits = fit_together(job.tasks[group], watch);
        if (fits.empty()) break; // stopped
        job.tasks[group].clear();
        const std::lock_guard lock(job.mutex);
        job.finished.push_back({job.groups[group].places, std::move(fits)});
    }
    job.is_done = true;
}

bool TargetWork::take_results()
{
    if (!job_) return false;
    const bool is_done = job_->is_done; // before what it has finished is taken
    std::vector<FittedGroup> finished;
    {
        const std::lock_guard lock(job_->mutex);
        finished.swap(job_->finished);
    }
    if (is_done) stop_job();
    if (finished.empty()) return false;
    for (FittedGroup& group : finished) known_.push_back(std::move(group));
    match_fits();
    return true;
}

bool TargetWork::is_working() const
{
    return job_ != nullptr;
}

// Every group's fits go to the picks that stand at its places.
void TargetWork::match_fits()
{
    for (const FittedGroup& group : known_) {
        for (std::size_t place = 0; place < group.places.size(); ++place) {
            for (std::size_t pick = 0; pick < asked_for_.size(); ++pick) {
                if (asked_for_[pick] == group.places[place]) fits_[pick] = group.fits[place];
            }
        }
    }
}

const DipoleFit* TargetWork::fit_of(std::int32_t pick) const
{
    if (pick < 1 || at(pick) >= fits_.size() || !fits_[at(pick)]) return nullptr;
    return &*fits_[at(pick)];
}

std::vector<DipoleFit> TargetWork::fits() const
{
    std::vector<DipoleFit> fits;
    for (std::int32_t pick = 1; pick <= survey_.picks.number_of_picks; ++pick) {
        const DipoleFit* const known = fit_of(pick);
        fits.push_back(known != nullptr ? *known : DipoleFit{});
        if (known == nullptr) fits.back().refusal = "It has not been fitted yet.";
    }
    return fits;
}

std::vector<FitCurve> TargetWork::curves_of(std::int32_t pick)
{
    if (fit_of(pick) == nullptr) return {};
    const std::vector<DipoleFit> all = fits();
    return fit_curves(fit_survey(), {asked_for_, all, earth_field().direction}, at(pick));
}

FitWishes TargetWork::wishes_of(std::int32_t pick) const
{
    if (!is_pick(survey_.picks, pick)) return {};
    const auto found = wishes_.find(survey_.picks.pick_names[static_cast<std::size_t>(pick)]);
    return found == wishes_.end() ? FitWishes{} : found->second;
}

void TargetWork::set_wishes(std::int32_t pick, const FitWishes& wishes)
{
    if (!is_pick(survey_.picks, pick)) return;
    const std::string& name = survey_.picks.pick_names[static_cast<std::size_t>(pick)];
    if (wishes == FitWishes{}) {
        wishes_.erase(name);
    } else {
        wishes_[name] = wishes;
    }
}

double TargetWork::radius_of(std::int32_t pick)
{
    if (!is_pick(survey_.picks, pick)) return 0;
    FitPlace place = places()[at(pick)];
    return fit_radius(fit_survey(), place);
}

// All that a fit could use, whatever is left out.
FitReadings TargetWork::readings_near(std::int32_t pick)
{
    if (!is_pick(survey_.picks, pick)) return {};
    const FitPlace place = places()[at(pick)];
    return fit_survey().readings({place.east, place.north, fit_radius(fit_survey(), place), {}, {}}, {});
}

std::vector<FitSource> TargetWork::lines_near(std::int32_t pick)
{
    const std::vector<std::int32_t> left_out = wishes_of(pick).lines_left_out;
    std::set<std::int32_t> lines;
    for (const FitSegment& segment : readings_near(pick).segments) lines.insert(segment.line);
    std::vector<FitSource> sources;
    for (const std::int32_t line : lines) {
        const bool is_used = std::find(left_out.begin(), left_out.end(), line) == left_out.end();
        sources.push_back({line, survey_line_name(survey_.processing.lines, line), is_used});
    }
    return sources;
}

std::vector<FitSource> TargetWork::sensors_near(std::int32_t pick)
{
    const std::vector<int> left_out = wishes_of(pick).sensors_left_out;
    std::set<int> sensors;
    for (const FitSegment& segment : readings_near(pick).segments) sensors.insert(segment.sensor);
    std::vector<FitSource> sources;
    for (const int sensor : sensors) {
        const bool is_used = std::find(left_out.begin(), left_out.end(), sensor) == left_out.end();
        sources.push_back({sensor, "Sensor " + std::to_string(sensor), is_used});
    }
    return sources;
}

std::string TargetWork::summary_of(std::int32_t pick) const
{
    const DipoleFit* const fit = fit_of(pick);
    return fit == nullptr ? std::string() : fit_summary(*fit);
}

std::optional<GridVector> place_to_take(const DipoleFit* fit)
{
    if (fit == nullptr || !fit->is_fitted() || fit->is_side_unknown()) return std::nullopt;
    return fit->dipole.place;
}

} // namespace tarvo
