#include "targets/proposals.h"

#include "processing/altitude.h"
#include "processing/residual.h"
#include "processing/track_table.h"
#include "targets/anomaly_field.h"

#include <algorithm>
#include <cmath>

namespace tarvo {

namespace {

constexpr double kLeastThreshold = 2; // nT
constexpr double kNoiseToThreshold = 6;
constexpr double kSameSource = 0.5; // altitudes: places nearer to each other are one
constexpr double kMatch = 0.8;      // R2 of a fit that is taken
constexpr int kMostAnomalies = 2000;

bool is_good(const DipoleFit& fit)
{
    const auto& doubts = fit.doubts;
    return fit.is_fitted() && fit.r2 >= kMatch &&
           std::find(doubts.begin(), doubts.end(), FitDoubt::at_bound) == doubts.end();
}

// The readings of a task less the models that are off the anomalies already; what they leave out is left out.
FitReadings cleaned_readings(const FitReadings& all, const AnomalyField& anomalies)
{
    FitReadings cleaned;
    cleaned.origin = all.origin;
    cleaned.way_weight = all.way_weight;
    for (const FitSegment& segment : all.segments) {
        FitSegment part{segment.line, segment.sensor, cleaned.count(), 0};
        for (std::size_t at = segment.first; at < segment.first + segment.count; ++at) {
            const double field = anomalies.cleaned(segment.sensor, all.record[at]);
            if (!is_valid_sensor(field)) continue;
            cleaned.place.push_back(all.place[at]);
            cleaned.field.push_back(field);
            cleaned.distance.push_back(all.distance[at]);
            cleaned.record.push_back(all.record[at]);
            cleaned.way.push_back(all.way[at]);
            ++part.count;
        }
        if (part.count > 0) cleaned.segments.push_back(part);
    }
    return cleaned;
}

bool lies_near(const GridVector& place, const std::vector<GridVector>& others, double distance)
{
    return std::any_of(others.begin(), others.end(),
                       [&](const GridVector& other) { return plan_length(place - other) < distance; });
}

class ProposalSearch {
public:
    ProposalSearch(const FitSurvey& survey, const ProposalTask& task, const FitWatch& watch)
        : survey_(survey), task_(task), watch_(watch),
          altitude_(median_altitude(survey.store()).value_or(kAltitudeWhenUnknown))
    {
    }

    ProposalList run()
    {
        constexpr int kMostPasses = 3;
        std::vector<DipoleFit> fits = fit_places(survey_, task_.picks, task_.field, watch_);
        for (int pass = 0; pass < kMostPasses && !is_stopped(); ++pass) {
            const std::size_t known = list_.dipoles.size();
            look_at_anomalies(fits);
            if (is_stopped() || list_.dipoles.size() == known) break;
            fits = fit_all();
            while (!is_stopped() && drop_bad_ones()) fits = fit_all();
        }
        for (const Proposal& one : dropped_) note_dropped(one);
        list_.stopped = is_stopped();
        sort_lists();
        return std::move(list_);
    }

private:
    bool is_stopped()
    {
        if (!stopped_ && watch_.stop) stopped_ = watch_.stop();
        return stopped_;
    }

    // fits: of the picks and the dipoles so far, whose models are taken off first.
    void look_at_anomalies(const std::vector<DipoleFit>& fits)
    {
        AnomalyField anomalies(survey_, task_.residual, task_.window, altitude_ / 4, [this] { is_stopped(); });
        if (list_.threshold == 0) {
            list_.noise = anomalies.noise();
            list_.threshold = task_.threshold.value_or(std::max(kLeastThreshold, kNoiseToThreshold * list_.noise));
        }
        std::vector<GridVector> taken;
        for (const DipoleFit& fit : fits) {
            if (!is_good(fit)) continue;
            anomalies.take_off(fit.dipole, task_.field);
            taken.push_back(fit.dipole.place);
        }
        for (const FitPlace& refused : task_.refused) anomalies.close(refused.east, refused.north, altitude_);
        list_.no_dipoles.clear();
        while (looked_at_ < kMostAnomalies && !is_stopped()) {
            const std::optional<AnomalyField::Peak> peak = anomalies.largest();
            if (!peak || std::abs(peak->size) < list_.threshold) break;
            look_at(*peak, anomalies, taken);
            ++looked_at_;
            if (watch_.progress) watch_.progress(static_cast<std::size_t>(looked_at_), kMostAnomalies);
        }
    }

    void look_at(const AnomalyField::Peak& peak, AnomalyField& anomalies, std::vector<GridVector>& taken)
    {
        Proposal proposal = proposal_at(peak);
        FitTask task = fit_task(survey_, proposal.place, task_.field);
        task.readings = cleaned_readings(task.readings, anomalies);
        proposal.fit = fit_together({task}, {}).front();
        proposal.is_dipole = is_good(proposal.fit);
        const GridVector& place = proposal.fit.dipole.place;
        if (proposal.is_dipole && !lies_near(place, taken, kSameSource * altitude_)) {
            anomalies.take_off(proposal.fit.dipole, task_.field);
            taken.push_back(place);
            list_.dipoles.push_back(std::move(proposal));
            return;
        }
        anomalies.close(proposal.place.east, proposal.place.north, altitude_);
        const GridVector here = {proposal.place.east, proposal.place.north, 0};
        if (!proposal.is_dipole && !lies_near(here, taken, altitude_)) list_.no_dipoles.push_back(std::move(proposal));
    }

    Proposal proposal_at(const AnomalyField::Peak& peak) const
    {
        const TrackTable track = track_table(survey_.store());
        const SurveyLines& lines = survey_.run().lines;
        Proposal proposal;
        proposal.peak = peak.size;
        proposal.time = track.time[peak.record];
        proposal.place.record = peak.record;
        const GridVector sensor = survey_.sensor_place(peak.sensor, peak.record);
        const bool on_track = has_position(track, peak.record);
        proposal.place.east = on_track ? track.easting[peak.record] : sensor.east;
        proposal.place.north = on_track ? track.northing[peak.record] : sensor.north;
        const std::int32_t line = line_of_record(lines, peak.record);
        proposal.is_line_end = is_window_cut(track.distance, peak.record, lines.first_record(line),
                                             std::min(lines.last_record(line), track.count), task_.window);
        return proposal;
    }

    // Picks and dipoles together.
    std::vector<DipoleFit> fit_all()
    {
        std::vector<FitPlace> places = task_.picks;
        for (const Proposal& dipole : list_.dipoles) places.push_back(dipole.place);
        std::vector<DipoleFit> fits = fit_places(survey_, places, task_.field, watch_);
        if (fits.size() != places.size()) return {};
        for (std::size_t at = 0; at < list_.dipoles.size(); ++at) {
            list_.dipoles[at].fit = fits[task_.picks.size() + at];
        }
        return fits;
    }

    // A dipole that was good alone may be none beside its neighbours: of those that lie together the one that explains
    // the least goes, and of two at one place the weaker. False: none went.
    bool drop_bad_ones()
    {
        std::vector<Proposal> kept;
        std::vector<Proposal> dropped;
        for (const Proposal& one : list_.dipoles) {
            const bool goes = is_worst_here(one) || has_stronger_twin(one);
            (goes ? dropped : kept).push_back(one);
        }
        if (dropped.empty()) return false;
        list_.dipoles = std::move(kept);
        for (Proposal& one : dropped) {
            one.is_dipole = false;
            dropped_.push_back(std::move(one));
        }
        return true;
    }

    // Where nothing else was listed in the end.
    void note_dropped(const Proposal& one)
    {
        const auto is_near = [&](const Proposal& other) {
            return std::hypot(other.place.east - one.place.east, other.place.north - one.place.north) < altitude_;
        };
        const auto is_listed = [&](const std::vector<Proposal>& list) {
            return std::any_of(list.begin(), list.end(), is_near);
        };
        if (!is_listed(list_.dipoles) && !is_listed(list_.no_dipoles)) list_.no_dipoles.push_back(one);
    }

    bool is_worst_here(const Proposal& one) const
    {
        constexpr double kTogether = 3; // altitudes
        if (is_good(one.fit)) return false;
        return std::none_of(list_.dipoles.begin(), list_.dipoles.end(), [&](const Proposal& other) {
            const bool is_near = std::hypot(other.place.east - one.place.east, other.place.north - one.place.north) <
                                 kTogether * altitude_;
            return &other != &one && is_near && !is_good(other.fit) && other.fit.r2 < one.fit.r2;
        });
    }

    bool has_stronger_twin(const Proposal& one) const
    {
        const Dipole& here = one.fit.dipole;
        return std::any_of(list_.dipoles.begin(), list_.dipoles.end(), [&](const Proposal& other) {
            const Dipole& there = other.fit.dipole;
            return &other != &one && is_good(other.fit) && length(there.moment) > length(here.moment) &&
                   plan_length(there.place - here.place) < kSameSource * altitude_;
        });
    }

    void sort_lists()
    {
        const auto moment = [](const Proposal& proposal) { return length(proposal.fit.dipole.moment); };
        std::stable_sort(list_.dipoles.begin(), list_.dipoles.end(),
                         [&](const Proposal& one, const Proposal& other) { return moment(one) > moment(other); });
        std::stable_sort(
            list_.no_dipoles.begin(), list_.no_dipoles.end(),
            [](const Proposal& one, const Proposal& other) { return std::abs(one.peak) > std::abs(other.peak); });
    }

    const FitSurvey& survey_;
    const ProposalTask& task_;
    const FitWatch& watch_;
    double altitude_; // metres
    ProposalList list_;
    std::vector<Proposal> dropped_; // good alone, and no dipole beside their neighbours
    int looked_at_ = 0;             // anomalies
    bool stopped_ = false;
};

} // namespace

ProposalList find_proposals(const FitSurvey& survey, const ProposalTask& task, const FitWatch& watch)
{
    return ProposalSearch(survey, task, watch).run();
}

} // namespace tarvo
