#include "survey/survey_residual.h"

#include "text/numbers.h"

#include <new>
#include <utility>

namespace tarvo {

namespace {

std::string calculate(SurveyState& survey, const std::function<void()>& pause)
{
    const SampleProcessing& run = survey.processing;
    return calculate_residual(survey.residual, run.store, run.lines, survey.parameters, base_station(survey), pause);
}

} // namespace

bool is_residual_wanted(const SurveyState& survey)
{
    const ProcessingParameters& parameters = survey.parameters;
    return survey.wants_residual || survey.display_settings.quantity == quantity(QuantityId::residual).key ||
           survey.base || parameters.SpikeFilter || parameters.ResidualWindow > 0;
}

const BaseStation* base_station(const SurveyState& survey)
{
    return survey.base ? &*survey.base : nullptr;
}

std::string update_residual(SurveyState& survey, const std::function<void()>& pause)
{
    return calculate(survey, pause);
}

std::vector<std::string> finish_residual(SurveyState& survey, const std::function<void()>& pause)
{
    clear_residual(survey.residual); // what a run left unfinished
    if (!is_residual_wanted(survey) || survey.processing.store.RecordCount == 0) return {};
    try {
        const std::string refusal = calculate(survey, pause);
        return refusal.empty() ? residual_notes(survey) : std::vector<std::string>{refusal};
    } catch (const std::bad_alloc&) {
        clear_residual(survey.residual);
        return {"There is not enough memory for the residual"};
    }
}

std::int32_t follow_residual(SurveyState& survey)
{
    if (!is_residual_wanted(survey)) return 0;
    const SampleProcessing& run = survey.processing;
    return calculate_newest_residual(survey.residual, run.store, run.lines, survey.parameters, base_station(survey));
}

std::string residual_objection(const SurveyState& survey, const ProcessingParameters& wanted)
{
    const ProcessingParameters& current = survey.parameters;
    const bool is_same = wanted.ResidualWindow == current.ResidualWindow && wanted.SpikeFilter == current.SpikeFilter;
    if (is_same || survey.processing.store.RecordCount == 0) return {};
    return residual_refusal(survey.processing.store, survey.processing.lines, wanted, base_station(survey));
}

std::string take_base_station(SurveyState& survey, std::optional<BaseStation> base)
{
    std::swap(survey.base, base);
    if (survey.processing.store.RecordCount == 0) return {};
    std::string refusal = calculate(survey, nullptr);
    if (!refusal.empty()) std::swap(survey.base, base);
    return refusal;
}

std::vector<std::string> residual_notes(const SurveyState& survey)
{
    if (!has_residual(survey)) return {};
    std::vector<std::string> notes =
        residual_remarks(survey.processing.store, survey.processing.lines, survey.residual);
    if (survey.residual.spikes > 0) {
        notes.push_back(grouped_digits(std::to_string(survey.residual.spikes)) +
                        (survey.residual.spikes == 1 ? " reading is" : " readings are") +
                        " left out of the residual as spikes");
    }
    return notes;
}

} // namespace tarvo
