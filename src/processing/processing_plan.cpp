#include "processing/fixed_time.h"
#include "processing/sample_processing.h"
#include "processing/sensor_positions.h"

#include <cmath>

namespace tarvo {

namespace {

// Factors this close to 1 are not applied.
constexpr double kFactorTolerance = 0.01;

double applied_factor(double factor)
{
    return std::abs(factor - 1.0) > kFactorTolerance ? factor : 1.0;
}

// Sign and factor of a field slot's valid values.
double slot_multiplier(int slot, const SurveyDefinitions& definitions)
{
    const double depth_factor = applied_factor(definitions.depth_scale);
    const double depth_sign = definitions.flip_depth_sign == 1 ? -1.0 : 1.0;
    switch (field_slot(slot).factor) {
    case SlotFactor::none: break;
    case SlotFactor::coordinate_scale: return applied_factor(definitions.coordinate_scale);
    case SlotFactor::depth_scale: return depth_factor;
    case SlotFactor::signed_depth_scale: return depth_sign * depth_factor;
    }
    return 1.0;
}

void plan_field_slots(ProcessingPlan& plan, const SurveyDefinitions& definitions, const FieldLocations& locations)
{
    for (int slot = 1; slot <= number_of_field_slots; ++slot) {
        const std::int32_t column = locations.column[static_cast<std::size_t>(slot)];
        if (column < 0) continue;
        const auto channel = static_cast<std::size_t>(slot);
        plan.channels.push_back({static_cast<std::size_t>(column), channel});
        const double multiplier = slot_multiplier(slot, definitions);
        if (multiplier != 1.0) plan.scaled_channels.push_back({channel, multiplier});
    }
    plan.has_time = locations.has(kTime);
    plan.line_numbers_from_data = locations.has(kLine);
    plan.vertical_slot = locations.has(kDepth) ? kDepth : locations.has(kElevation) ? kElevation : 0;
    if (locations.derived_dem) plan.dem_sign = definitions.flip_depth_sign == 1 ? -1.0 : 1.0;
}

void plan_sensor_channel(ProcessingPlan& plan, const FieldLocations& locations, std::int32_t channel, double multiplier)
{
    if (channel < 0) return;
    const auto at = static_cast<std::size_t>(channel);
    plan.sensor_channels.push_back({static_cast<std::size_t>(locations.sensor_column[at]), at});
    if (multiplier != 1.0) plan.scaled_sensor_channels.push_back({at, multiplier});
}

void plan_sensor(ProcessingPlan& plan, const SurveyDefinitions& definitions, const FieldLocations& locations,
                 const SensorDefinition& sensor)
{
    ProcessingPlan::Sensor planned;
    for (std::size_t j = 1; j <= static_cast<std::size_t>(definitions.components_per_sensor); ++j) {
        planned.component_channels[j] = sensor.column_slots[3 * j];
        plan_sensor_channel(plan, locations, sensor.column_slots[3 * j], sensor.flip_sign[j] == 1 ? -1.0 : 1.0);
    }
    planned.location_channels = sensor.location_slots;
    const double coordinate_factor = applied_factor(definitions.coordinate_scale);
    plan_sensor_channel(plan, locations, sensor.location_slots[1], coordinate_factor);
    plan_sensor_channel(plan, locations, sensor.location_slots[2], coordinate_factor);
    plan_sensor_channel(plan, locations, sensor.location_slots[3], applied_factor(definitions.depth_scale));
    planned.offset =
        lever_arm_offset(sensor.lever_arm[SensorDefinition::kOffset], sensor.lever_arm[SensorDefinition::kLength],
                         sensor.lever_arm[SensorDefinition::kRotation]);
    plan.sensors.push_back(planned);
}

void plan_parameters(ProcessingPlan& plan, const ProcessingParameters& parameters)
{
    // A rate that gives no interval to count by stands for one sample a second.
    const float rate = parameters.LoggingSampleRate > 0 ? parameters.LoggingSampleRate : 1.0F;
    plan.SampleInterval = 1.0 / static_cast<double>(rate);
    plan.sample_interval = to_fixed_interval(plan.SampleInterval);
    plan.LoggingLineBreakDistance = parameters.LoggingLineBreakDistance;
    plan.LoggingLineBreakTime = parameters.LoggingLineBreakTime;
    plan.line_break_time = to_fixed_interval(static_cast<double>(parameters.LoggingLineBreakTime));
    plan.MinLineRecords = min_line_records(parameters);
    plan.carry_closing_sample = parameters.CarryClosingSample;
    plan.circular_heading = parameters.CircularHeading;
    plan.heading_sense = parameters.CompassHeading ? HeadingSense::compass : HeadingSense::from_east;
}

} // namespace

ProcessingPlan make_processing_plan(const SurveyDefinitions& definitions, const FieldLocations& locations,
                                    const ProcessingParameters& parameters)
{
    ProcessingPlan plan;
    plan.components_per_sensor = definitions.components_per_sensor;
    plan.read_sensor_location = definitions.read_sensor_location == 1;
    plan_field_slots(plan, definitions, locations);
    plan.sensors.emplace_back();
    for (std::size_t sensor = 1; sensor < definitions.sensors.size(); ++sensor) {
        plan_sensor(plan, definitions, locations, definitions.sensors[sensor]);
    }
    plan_parameters(plan, parameters);
    plan.wanted_fields.assign(static_cast<std::size_t>(locations.header_column_count), false);
    for (const auto* const columns : {&plan.channels, &plan.sensor_channels}) {
        for (const ProcessingPlan::Column& column : *columns) plan.wanted_fields[column.field] = true;
    }
    return plan;
}

} // namespace tarvo
