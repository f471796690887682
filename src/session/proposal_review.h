#pragma once

#include "picks/pick_workflow.h"
#include "survey/survey_state.h"
#include "targets/proposals.h"

#include <cstddef>
#include <string>
#include <vector>

namespace tarvo {

enum class Judgement { open, taken, refused };

// A place that looks like a target, and what the operator says of it.
struct ReviewedProposal {
    int number = 0; // from 1, as it is called
    Proposal proposal;
    Judgement judgement = Judgement::open;
    std::string pick; // the name of the pick that was made of it
};

// A row of the review list as people read it.
inline constexpr std::size_t kReviewColumns = 5;
std::vector<std::string> review_captions();
std::vector<std::string> review_row(const ReviewedProposal& reviewed);

// The proposals of one survey while the operator goes through them. Every judgement can be undone with the picks'
// undo; refusals hold as long as the survey is open.
class ProposalReview {
public:
    ProposalReview(const SurveyState& survey, PickWorkflow& picks); // both must outlive it

    void forget(); // another survey, or other samples of it: refusals stay where they were
    void forget_all();

    // What a search is to be made from: the picks are known, and so is what was refused.
    ProposalTask task(const FieldDirection& field) const;
    void take_list(ProposalList list);

    bool has_list() const { return has_list_; }
    double threshold() const { return threshold_; }                     // nT of the newest search
    double noise() const { return noise_; }                             // nT
    const std::vector<ReviewedProposal>& list() const { return list_; } // dipoles, then what is none
    ProposalList open_ones() const;                                     // for the report

    // The row that the keys act on, from 0; -1: none.
    int current() const { return current_; }
    void choose(int row);
    void go(int rows); // on or back, to the next that is open; stays where there is none

    // The current one becomes a pick at its place on the track, or is refused; the next open one is chosen. Nothing
    // happens to one that is judged already.
    void take(const IndexedTrack& ground);
    void refuse();

    std::string heading() const; // "3 of 14 left; above 2.0 nT, noise 0.31 nT"

private:
    ReviewedProposal* open_current();
    void reopen(int number);

    const SurveyState& survey_;
    PickWorkflow& picks_;
    std::vector<ReviewedProposal> list_;
    std::vector<FitPlace> refused_;
    bool has_list_ = false;
    double threshold_ = 0;
    double noise_ = 0;
    int current_ = -1;
};

} // namespace tarvo
