#include "survey/displayed_quantity.h"

#include "display/range_fit.h"
#include "survey/survey_residual.h"
#include "text/numbers.h"

#include <algorithm>

namespace tarvo {

namespace {

const double* sensor_column(const SurveyState& survey, QuantityId id, std::size_t sensor)
{
    const SampleStore& store = survey.processing.store;
    const SensorRecords& records = store.sensors[sensor];
    const bool has_gradients = store.gradient_records >= store.RecordCount;
    switch (id) {
    case QuantityId::gradient: return has_gradients ? records.gradients[0].data() : nullptr;
    case QuantityId::vertical: return has_gradients ? records.gradients[1].data() : nullptr;
    case QuantityId::horizontal: return has_gradients ? records.gradients[2].data() : nullptr;
    case QuantityId::total: return records.averages[0].data();
    case QuantityId::residual: return has_residual(survey) ? survey.residual.values[sensor].data() : nullptr;
    case QuantityId::depth: return store.has_channel(kDepth) ? store.channels[kDepth].data() : nullptr;
    case QuantityId::elevation: return store.has_channel(kElevation) ? store.channels[kElevation].data() : nullptr;
    case QuantityId::speed: break;
    }
    return nullptr;
}

std::optional<ValueRange>& typed_range(SurveyState& survey)
{
    const Quantity& shown = displayed_quantity(survey.display_settings);
    return survey.display_settings.ranges[static_cast<std::size_t>(shown.id)].typed;
}

const AutomaticRange& automatic_range_of(const SurveyState& survey, const Quantity& quantity)
{
    return survey.automatic_ranges[static_cast<std::size_t>(quantity.id)];
}

void set_shown_range(SurveyState& survey, const ValueRange& range)
{
    if (displayed_quantity(survey.display_settings).id == QuantityId::gradient) {
        type_gradient_range(survey.display_settings, range.high);
    } else {
        typed_range(survey) = range;
    }
}

// All that are stored of the quantity in use.
std::vector<double> shown_values(const SurveyState& survey)
{
    const TrackScene scene = track_scene(survey);
    const bool is_of_fish = scene.quantity->owner == QuantityOf::fish;
    const std::size_t last_sensor = is_of_fish ? 1 : survey.processing.store.sensors.size() - 1;
    std::vector<double> values;
    for (std::size_t sensor = 1; sensor <= last_sensor; ++sensor) {
        const ShownValues column(scene, sensor);
        if (!column.exist()) continue;
        for (std::int32_t record = 1; record <= scene.track.count; ++record) {
            if (const double value = column[record]; is_in_world(value)) values.push_back(value);
        }
    }
    return values;
}

// Of the quantity in use, when more or fewer samples are stored than it was made of.
void update_automatic_range(SurveyState& survey)
{
    const Quantity& shown = displayed_quantity(survey.display_settings);
    if (shown.id == QuantityId::gradient) return;
    AutomaticRange& automatic = survey.automatic_ranges[static_cast<std::size_t>(shown.id)];
    const std::int32_t records = survey.processing.store.RecordCount;
    if (automatic.records == records) return;
    std::vector<double> values = shown_values(survey);
    automatic = {automatic_range(values, shown.sign), records};
}

// Where the ground's height has a column of its own, the elevation is not the altitude that the limits are meant for.
const ValueLimits& shown_limits(const SurveyState& survey)
{
    static const ValueLimits kNone;
    const QuantityId shown = displayed_quantity(survey.display_settings).id;
    if (shown == QuantityId::speed) return survey.watch_settings.speed;
    const bool is_altitude = shown == QuantityId::elevation && !survey.processing.store.dem_from_column;
    return is_altitude ? survey.watch_settings.altitude : kNone;
}

std::string with_unit(double value, const Quantity& quantity)
{
    return format_significant(value) + " " + quantity.unit;
}

} // namespace

const Quantity& displayed_quantity(const DisplaySettings& settings)
{
    return quantity_of_key(settings.quantity);
}

std::vector<const double*> quantity_columns(const SurveyState& survey, const Quantity& quantity)
{
    if (quantity.id == QuantityId::speed) return {};
    const std::size_t sensors = survey.processing.store.sensors.size();
    std::vector<const double*> columns(std::max<std::size_t>(sensors, 1), nullptr);
    for (std::size_t sensor = 1; sensor < sensors; ++sensor) {
        columns[sensor] = sensor_column(survey, quantity.id, sensor);
    }
    return columns;
}

std::string missing_quantity_text(const SurveyState& survey, const Quantity& quantity)
{
    const SampleStore& store = survey.processing.store;
    if (store.RecordCount == 0) return "";
    const bool is_missing = (quantity.id == QuantityId::depth && !store.has_channel(kDepth)) ||
                            (quantity.id == QuantityId::elevation && !store.has_channel(kElevation));
    if (is_missing) return "The survey has no " + std::string(quantity.key) + " column";
    if (quantity.id == QuantityId::speed && !survey.processing.plan.has_time) {
        return "The survey has no time column, so that no speed is known";
    }
    return "";
}

ValueRange shown_range(const SurveyState& survey)
{
    const DisplaySettings& settings = survey.display_settings;
    const Quantity& shown = displayed_quantity(settings);
    if (shown.id == QuantityId::gradient) return {0, settings.gradient_max_range};
    const QuantityRange& range = settings.ranges[static_cast<std::size_t>(shown.id)];
    if (range.typed) return *range.typed;
    const AutomaticRange& automatic = automatic_range_of(survey, shown);
    return automatic.records > 0 ? automatic.range : automatic_range({}, shown.sign);
}

ColourScale shown_colours(const SurveyState& survey)
{
    const ValueRange range = shown_range(survey);
    const ColourMap& map = chosen_colour_map(survey.display_settings);
    // The survey's own map has always shown the gradient with green ticks.
    const bool is_given =
        displayed_quantity(survey.display_settings).id == QuantityId::gradient && map.table == nullptr;
    ColourScale scale = {range.low, range.high, &map, map.has_green && !is_given ? kWhite : kGreen};
    const ValueLimits& limits = shown_limits(survey);
    scale.least = limits.least.value_or(scale.least);
    scale.greatest = limits.greatest.value_or(scale.greatest);
    return scale;
}

std::string choose_quantity(SurveyState& survey, const std::string& key)
{
    const Quantity& wanted = quantity_of_key(key);
    if (std::string missing = missing_quantity_text(survey, wanted); !missing.empty()) return missing;
    if (wanted.id == QuantityId::residual && survey.processing.store.RecordCount > 0 && !has_residual(survey)) {
        if (std::string refusal = update_residual(survey); !refusal.empty()) return refusal;
    }
    survey.display_settings.quantity = wanted.key;
    update_automatic_range(survey);
    return "";
}

void choose_colour_map(DisplaySettings& settings, const std::string& key)
{
    const bool is_signed = displayed_quantity(settings).sign == QuantitySign::signed_values;
    (is_signed ? settings.signed_colour_map : settings.colour_map) = colour_map(key).key;
}

const ColourMap& chosen_colour_map(const DisplaySettings& settings)
{
    const bool is_signed = displayed_quantity(settings).sign == QuantitySign::signed_values;
    return colour_map(is_signed ? settings.signed_colour_map : settings.colour_map);
}

void renew_automatic_range(SurveyState& survey)
{
    survey.automatic_ranges = {};
    update_automatic_range(survey);
}

bool follow_automatic_range(SurveyState& survey)
{
    const Quantity& shown = displayed_quantity(survey.display_settings);
    if (shown.id == QuantityId::gradient || typed_range(survey)) return false;
    constexpr std::int32_t kFewest = 16; // stored samples that a range is made of
    const std::int32_t known = automatic_range_of(survey, shown).records;
    const std::int32_t records = survey.processing.store.RecordCount;
    if (records >= known && records < std::max(kFewest, 2 * known)) return false;
    const ValueRange before = shown_range(survey);
    update_automatic_range(survey);
    return shown_range(survey) != before;
}

void adjust_shown_range(SurveyState& survey, int index, int value)
{
    if (displayed_quantity(survey.display_settings).id == QuantityId::gradient) {
        VScroll_TG_change(index, value, survey.display_settings);
    } else {
        typed_range(survey) = adjusted_range(shown_range(survey), index, value);
    }
}

bool fit_shown_range(SurveyState& survey)
{
    const std::optional<ValueRange> range = fitted_range(survey.track_image, track_scene(survey));
    if (!range || !(range->width() > 0)) return false;
    set_shown_range(survey, *range);
    return true;
}

SettingOutcome type_shown_range(SurveyState& survey, const std::string& text)
{
    if (displayed_quantity(survey.display_settings).id == QuantityId::gradient) {
        const std::string_view last = std::string_view(text).substr(trimmed(text).find_last_of(" \t") + 1);
        const std::optional<double> range = numeric_value(last);
        if (!range || !(*range > 0)) return SettingOutcome::refused;
        type_gradient_range(survey.display_settings, *range);
        return SettingOutcome::taken;
    }
    const std::optional<QuantityRange> range = quantity_range_of(text);
    if (!range) return SettingOutcome::refused;
    typed_range(survey) = range->typed;
    update_automatic_range(survey);
    return SettingOutcome::taken;
}

std::string range_hint(const SurveyState& survey)
{
    const Quantity& shown = displayed_quantity(survey.display_settings);
    const ValueRange range = shown_range(survey);
    std::vector<double> values = shown_values(survey);
    if (values.empty()) return "";
    const bool is_signed = shown.sign == QuantitySign::signed_values;
    const double origin = is_signed ? 0 : range.low;
    for (double& value : values) value = is_signed ? std::abs(value) : value - origin;
    constexpr double kMostFactor = 3;
    const double reach = value_at_share(values, 0.98);
    const double room = range.high - origin;
    if (reach == 0) return ""; // no range suits it better
    if (reach <= kMostFactor * room && reach >= room / kMostFactor) return "";
    return "98 of 100 values lie below " + with_unit(origin + reach, shown) + ", the colours reach to " +
           with_unit(range.high, shown);
}

std::string quantity_value_text(const SurveyState& survey, std::size_t sensor, std::int32_t record)
{
    const TrackScene scene = track_scene(survey);
    const ShownValues values(scene, sensor);
    const double value = values.exist() ? values[record] : kNull;
    if (!is_valid_sensor(value)) return "no value";
    return (is_in_world(value) ? format_fixed(value, 2) : readable_number(value, 2)) + " " + scene.quantity->unit;
}

} // namespace tarvo
