#pragma once

#include "targets/fit_survey.h"
#include "targets/group_fit.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace tarvo {

// A place that looks like a target.
struct Proposal {
    FitPlace place;  // on the track: where the anomaly is largest
    double time = 0; // days since 1899-12-30
    double peak = 0; // nT, of the smoothed residual there
    bool is_dipole = false;
    bool is_line_end = false; // the background is not known so well there
    DipoleFit fit;
};

// What proposals are made from.
struct ProposalTask {
    // The residual by sensor from 1 and by record, whose nulls are left out, and its window in metres.
    std::vector<const double*> residual = {nullptr};
    double window = 0;
    FieldDirection field;
    std::optional<double> threshold; // nT; none: by the noise
    std::vector<FitPlace> picks;     // known targets: fitted first and never proposed
    std::vector<FitPlace> refused;   // proposals that the operator has refused
};

struct ProposalList {
    bool stopped = false;
    double noise = 0;                 // nT: 1.4826 x median |smoothed residual|
    double threshold = 0;             // nT
    std::vector<Proposal> dipoles;    // the largest moment first
    std::vector<Proposal> no_dipoles; // the largest peak first
};

// The largest anomaly of the residual, smoothed over a quarter of an altitude, is fitted; a good fit is a proposal and
// its model is taken off, any other place is closed for one altitude; and again, until nothing stands out of the noise.
// In the end proposals and picks are fitted together. watch.progress counts anomalies looked at, of the most there may
// be.
ProposalList find_proposals(const FitSurvey& survey, const ProposalTask& task, const FitWatch& watch);

} // namespace tarvo
