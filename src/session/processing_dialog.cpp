#include "session/processing_dialog.h"

#include "processing/gradients.h"
#include "session/settings_table.h"
#include "survey/survey_readings.h"
#include "survey/survey_residual.h"
#include "text/numbers.h"

namespace tarvo {

namespace {

// The first setting whose box does not hold a value for it; nullptr when all do.
const Setting* take_page(const ProcessingPage& page, const Settings& current, Settings& wanted)
{
    for (const Setting& setting : settings_table()) {
        const auto box = page.find(setting.key);
        if (box == page.end() || trimmed(box->second) == shown_setting_text(current, setting)) continue;
        if (take_setting_text(wanted, setting, box->second) != SettingOutcome::taken) return &setting;
    }
    return nullptr;
}

ProcessingChanges changes_between(const Settings& current, const Settings& wanted)
{
    ProcessingChanges changes;
    for (const Setting& setting : settings_table()) {
        if (setting_text(current, setting) == setting_text(wanted, setting)) continue;
        changes.reload |= setting.effect == SettingEffect::reload;
        changes.gradients |= setting.effect == SettingEffect::gradients;
        changes.residual |= setting.effect == SettingEffect::residual;
        changes.redraw |= setting.effect == SettingEffect::redraw;
    }
    return changes;
}

void take_what_asks_for_nothing(Settings& current, const Settings& wanted)
{
    for (const Setting& setting : settings_table()) {
        if (setting.effect != SettingEffect::none) continue;
        take_setting_text(current, setting, setting_text(wanted, setting));
    }
}

} // namespace

ProcessingPage display_processing_parameters(const Settings& settings)
{
    ProcessingPage page;
    for (const Setting& setting : settings_table()) {
        if (setting.group != SettingGroup::none) page[setting.key] = shown_setting_text(settings, setting);
    }
    return page;
}

ProcessingChanges done_processing_parameters(const ProcessingPage& page, Settings& settings, Operator& op,
                                             const SettingsObjection& objection)
{
    Settings wanted = settings;
    if (const Setting* const refused = take_page(page, settings, wanted)) {
        op.show_message(refusal_text(*refused, page.at(refused->key)));
        return {};
    }
    if (const std::string why = objection ? objection(wanted) : std::string(); !why.empty()) {
        op.show_message(why);
        return {};
    }
    take_what_asks_for_nothing(settings, wanted);
    ProcessingChanges changes = changes_between(settings, wanted);
    if (changes.reload && !op.ask_yes_no("The data file processing parameter changes require that the data file be "
                                         "reloaded. Procced?")) {
        return {};
    }
    settings = wanted;
    changes.status = 0;
    return changes;
}

Settings settings_of_page(const ProcessingPage& page, const Settings& settings)
{
    Settings wanted = settings;
    for (const Setting& setting : settings_table()) {
        const auto box = page.find(setting.key);
        if (box == page.end() || trimmed(box->second) == shown_setting_text(settings, setting)) continue;
        take_setting_text(wanted, setting, box->second); // a refused text leaves it alone
    }
    return wanted;
}

bool use_all_corrections(Settings& settings)
{
    bool any_was_off = false;
    for (const Setting& setting : settings_table()) {
        if (setting.group != SettingGroup::corrections) continue;
        any_was_off |= setting_text(settings, setting) != "1";
        take_setting_text(settings, setting, "1");
    }
    return any_was_off;
}

void store_every_line(SurveyState& survey)
{
    survey.parameters.LoggingSampleRate = rate_of_lines(survey.processing);
    survey.parameters.CarryClosingSample = true;
}

bool carry_out_changes(const ProcessingChanges& changes, SurveyState& survey, Operator& op)
{
    if (changes.reload && !survey.data_file_name.empty()) return true;
    if (changes.gradients) {
        SampleProcessing& run = survey.processing;
        recalculate_gradient_values(run.store, run.lines, survey.parameters, survey.filters, op);
    }
    if (changes.residual) {
        for (const std::string& note : finish_residual(survey)) {
            op.show_warnings({{WarningAbout::data, "base station", note}});
        }
    }
    return false;
}

} // namespace tarvo
