#include "survey/graph_readings.h"

#include "survey/displayed_quantity.h"
#include "text/numbers.h"

namespace tarvo {

namespace {

constexpr int kMostValues = 4; // of a text that lies over a graph
constexpr const char* kBetween = "   ";

// "1.46   -   0.98 nT/m": of the shown sensors.
template <typename TextOf>
std::string sensor_texts(int sensors, const std::function<bool(int)>& is_shown, const TextOf& text_of,
                         const std::string& unit)
{
    std::string text;
    int listed = 0;
    for (int sensor = 1; sensor <= sensors && listed <= kMostValues; ++sensor) {
        if ((is_shown && !is_shown(sensor)) || ++listed > kMostValues) continue;
        if (!text.empty()) text += kBetween;
        text += text_of(sensor);
    }
    if (text.empty()) return text;
    return text + ' ' + unit + (listed > kMostValues ? " ..." : "");
}

std::string height_text(const SampleStore& store, int slot, const char* name, std::int32_t record)
{
    if (!store.has_channel(slot)) return "";
    const double value = store.channel(slot, record);
    return std::string(kBetween) + name + ' ' + readable_number(value, 2) + (is_valid_channel(value) ? " m" : "");
}

} // namespace

GraphReadings graph_readings(const SurveyState& survey, std::int32_t record, const std::function<bool(int)>& is_shown)
{
    const SampleStore& store = survey.processing.store;
    if (record < 1 || record > store.RecordCount) return {};
    const Quantity& shown = displayed_quantity(survey.display_settings);
    const bool is_of_fish = shown.owner == QuantityOf::fish;
    const TrackScene scene = track_scene(survey);
    const auto quantity_text = [&](int sensor) {
        const ShownValues values(scene, static_cast<std::size_t>(sensor));
        const double value = values.exist() ? values[record] : kNull;
        return readable_number(is_valid_sensor(value) ? value : kNull, 2);
    };
    const auto field_text = [&](int sensor) {
        const double field = store.sensors[static_cast<std::size_t>(sensor)].averages[0][record];
        return readable_number(is_valid_sensor(field) ? field : kNull, 2);
    };
    const int sensors = store.number_of_sensors();
    GraphReadings readings;
    readings.quantity = is_of_fish ? quantity_value_text(survey, 1, record)
                                   : sensor_texts(sensors, is_shown, quantity_text, shown.unit);
    readings.field = sensor_texts(sensors, is_shown, field_text, "nT");
    readings.heights = "at " + readable_number(store.distance[record], 1) + " m" +
                       height_text(store, kDepth, "depth", record) +
                       height_text(store, kElevation, "elevation", record);
    return readings;
}

} // namespace tarvo
