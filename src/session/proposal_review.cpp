#include "session/proposal_review.h"

#include "survey/survey_targets.h"
#include "targets/fit_texts.h"
#include "text/numbers.h"

#include <algorithm>
#include <utility>

namespace tarvo {

namespace {

std::string judgement_text(const ReviewedProposal& reviewed)
{
    switch (reviewed.judgement) {
    case Judgement::open: break;
    case Judgement::taken: return reviewed.pick;
    case Judgement::refused: return "refused";
    }
    return {};
}

} // namespace

std::vector<std::string> review_captions()
{
    return {"", "Judged", "Peak, nT", "R2", "Fit"};
}

std::vector<std::string> review_row(const ReviewedProposal& reviewed)
{
    const Proposal& proposal = reviewed.proposal;
    const DipoleFit& fit = proposal.fit;
    std::string kind = proposal.is_dipole ? fit_summary(fit) : "no dipole";
    if (proposal.is_line_end) kind += ", line end";
    return {std::to_string(reviewed.number), judgement_text(reviewed), format_fixed(proposal.peak, 1),
            fit.is_fitted() ? format_fixed(fit.r2, 3) : "", kind};
}

ProposalReview::ProposalReview(const SurveyState& survey, PickWorkflow& picks) : survey_(survey), picks_(picks) {}

void ProposalReview::forget()
{
    list_.clear();
    has_list_ = false;
    current_ = -1;
}

void ProposalReview::forget_all()
{
    forget();
    refused_.clear();
}

ProposalTask ProposalReview::task(const FieldDirection& field) const
{
    ProposalTask task = proposal_task(survey_, field);
    task.refused = refused_;
    return task;
}

void ProposalReview::take_list(ProposalList list)
{
    list_.clear();
    int number = 0;
    for (auto* const part : {&list.dipoles, &list.no_dipoles}) {
        for (Proposal& proposal : *part) {
            list_.push_back({++number, std::move(proposal), Judgement::open, {}});
        }
    }
    threshold_ = list.threshold;
    noise_ = list.noise;
    has_list_ = true;
    current_ = list_.empty() ? -1 : 0;
}

ProposalList ProposalReview::open_ones() const
{
    ProposalList open;
    open.threshold = threshold_;
    open.noise = noise_;
    for (const ReviewedProposal& reviewed : list_) {
        if (reviewed.judgement != Judgement::open) continue;
        (reviewed.proposal.is_dipole ? open.dipoles : open.no_dipoles).push_back(reviewed.proposal);
    }
    return open;
}

void ProposalReview::choose(int row)
{
    current_ = row >= 0 && row < static_cast<int>(list_.size()) ? row : -1;
}

void ProposalReview::go(int rows)
{
    const int step = rows < 0 ? -1 : 1;
    for (int row = current_ + step; row >= 0 && row < static_cast<int>(list_.size()); row += step) {
        if (list_[static_cast<std::size_t>(row)].judgement != Judgement::open) continue;
        current_ = row;
        return;
    }
}

ReviewedProposal* ProposalReview::open_current()
{
    if (current_ < 0) return nullptr;
    ReviewedProposal& reviewed = list_[static_cast<std::size_t>(current_)];
    return reviewed.judgement == Judgement::open ? &reviewed : nullptr;
}

// Undo comes back to it. After another search its number belongs to another place.
void ProposalReview::reopen(int number)
{
    for (std::size_t row = 0; row < list_.size(); ++row) {
        if (list_[row].number != number || list_[row].judgement == Judgement::open) continue;
        list_[row].judgement = Judgement::open;
        list_[row].pick.clear();
        current_ = static_cast<int>(row);
    }
}

void ProposalReview::take(const IndexedTrack& ground)
{
    ReviewedProposal* const reviewed = open_current();
    if (reviewed == nullptr) return;
    const int number = reviewed->number;
    const std::int32_t pick =
        picks_.add_pick(ground, reviewed->proposal.place.record, [this, number] { reopen(number); });
    if (pick < 1) return;
    reviewed->judgement = Judgement::taken;
    reviewed->pick = survey_.picks.pick_names[static_cast<std::size_t>(pick)];
    go(1);
}

void ProposalReview::refuse()
{
    ReviewedProposal* const reviewed = open_current();
    if (reviewed == nullptr) return;
    const int number = reviewed->number;
    const FitPlace place = reviewed->proposal.place;
    reviewed->judgement = Judgement::refused;
    refused_.push_back(place);
    picks_.remember_aside("refusal of proposal " + std::to_string(number), [this, number, place] {
        const auto found = std::find(refused_.begin(), refused_.end(), place);
        if (found != refused_.end()) refused_.erase(found);
        reopen(number);
    });
    go(1);
}

std::string ProposalReview::heading() const
{
    if (!has_list_) return "Not searched yet";
    const auto open = std::count_if(list_.begin(), list_.end(), [](const ReviewedProposal& reviewed) {
        return reviewed.judgement == Judgement::open;
    });
    return std::to_string(open) + " of " + std::to_string(list_.size()) + " to judge; above " +
           format_fixed(threshold_, 1) + " nT, noise " + format_fixed(noise_, 2) + " nT";
}

} // namespace tarvo
