#include "intake/definitions_guess.h"

#include "intake/guess_columns.h"
#include "intake/guess_lines.h"
#include "intake/guess_names.h"
#include "intake/guess_positions.h"
#include "intake/guess_sensors.h"
#include "intake/guess_times.h"
#include "text/numbers.h"

#include <algorithm>

namespace tarvo {

namespace {

class Guess {
public:
    Guess(std::span<const std::string> first_lines, std::optional<int> header_line_number)
        : lines_(guess_lines(first_lines, header_line_number)), null_texts_(guess_null_texts(lines_)),
          columns_(guess_columns(lines_, null_texts_)), is_free_(columns_.size(), true)
    {
    }

    DefinitionsGuess guess();

private:
    void propose_layout();
    void propose_sensors();
    void propose_time();
    void propose_positions();
    void propose_slot(FieldSlotIndex slot);
    void propose_valid_column();
    void propose_data_format();
    bool nulls_are_numbers_in_use() const;

    void choose(std::string key, std::string choice, std::string reason);
    void leave_open(std::string key, std::string reason, bool is_needed);
    std::string take(std::size_t column);
    std::string& slot_name(int slot) { return guess_.definitions.fields[static_cast<std::size_t>(slot)].name; }

    GuessedLines lines_;
    std::vector<std::string> null_texts_;
    std::vector<GuessColumn> columns_;
    std::vector<bool> is_free_; // by column: may still be proposed
    DataFormat format_;
    DefinitionsGuess guess_;
};

void Guess::choose(std::string key, std::string choice, std::string reason)
{
    guess_.choices.push_back({std::move(key), std::move(choice), std::move(reason), false});
}

void Guess::leave_open(std::string key, std::string reason, bool is_needed)
{
    guess_.choices.push_back({std::move(key), {}, std::move(reason), is_needed});
}

std::string Guess::take(std::size_t column)
{
    is_free_[column] = false;
    return columns_[column].name;
}

void Guess::propose_layout()
{
    DataFormat layout;
    layout.separator = lines_.separator;
    const std::string separator = data_format_value(layout, "Separator", format_fixed);
    choose("Separator", separator.empty() ? "any" : separator, lines_.separator_reason);
    choose(lines_.names_in_line ? "Header line" : "First data line", std::to_string(lines_.header_line_number),
           lines_.names_reason);
}

void Guess::propose_time()
{
    const std::optional<TimeGuess> time = guess_time(columns_);
    if (!time) {
        leave_open("Time", "no column holds seconds or clocks", false);
        return;
    }
    for (const std::size_t column : time->columns) format_.time_columns.push_back(take(column));
    slot_name(kTime) = format_.time_columns.front();
    choose("Time", time_columns_text(format_.time_columns), time->reason);
    if (time->columns.size() == 1) format_.time_columns.clear();
    if (time->is_plain()) return;
    format_.time_form = time->form;
    format_.time_offset = time->offset;
    if (time->open.empty()) {
        choose("Time Form", time->form, "fits the texts");
    } else {
        leave_open("Time Form", time->open, true);
    }
    if (time->offset != 0) {
        choose("Time Offset (s)", format_fixed(time->offset, 3), "GPST is GPS time, which is ahead of UTC");
    }
}

void Guess::propose_positions()
{
    std::string open = "no columns of metres or degrees";
    const std::optional<PositionGuess> found = guess_positions(columns_, open);
    if (!found) {
        leave_open("Positions", open, guess_.definitions.read_sensor_location != 1);
        return;
    }
    slot_name(kEast) = take(found->east);
    slot_name(kNorth) = take(found->north);
    choose("East", slot_name(kEast), found->reason);
    choose("North", slot_name(kNorth), found->reason);
    if (found->form == PositionForm::grid) return;
    format_.position_form = found->form;
    format_.survey_grid = found->survey_grid;
    choose("Position Form", data_format_value(format_, "Position Form", format_fixed), "what the fields hold");
    choose("Survey Grid", found->survey_grid, "the zone of the first fixes' median longitude");
}

void Guess::propose_slot(FieldSlotIndex slot)
{
    const auto can_be = [this, slot](std::size_t column) {
        const GuessColumn& candidate = columns_[column];
        if (!is_free_[column] || !candidate.can_be_named || !candidate.is_numeric()) return false;
        if (slot == kDem && has_word(candidate.words, "OVER")) return false; // speed over ground
        const bool is_height = slot == kElevation || slot == kDem;
        return !is_height || !candidate.is_mostly_zero(); // as receivers write without a fix
    };
    for (const auto fits : {is_called, mentions}) {
        for (const std::string_view name : names_of_slot(slot)) {
            for (std::size_t column = 0; column < columns_.size(); ++column) {
                if (!can_be(column) || !fits(columns_[column].words, words_of(name))) continue;
                slot_name(slot) = take(column);
                choose(field_slot(slot).name, slot_name(slot), "by its name");
                return;
            }
        }
    }
}

void Guess::propose_sensors()
{
    const SensorsGuess sensors = guess_sensors(columns_, is_free_, guess_.definitions);
    if (!sensors.found) {
        leave_open("Sensors", "no column looks like a magnetic field", true);
        return;
    }
    std::string names;
    for (const std::size_t column : sensors.columns) names += (names.empty() ? "" : ", ") + take(column);
    choose("Sensors", names, sensors.reason);
}

// A column named "valid" that holds zeros and ones.
void Guess::propose_valid_column()
{
    for (std::size_t column = 0; column < columns_.size(); ++column) {
        const GuessColumn& candidate = columns_[column];
        if (!is_free_[column] || !candidate.can_be_named || !has_word(candidate.words, "VALID")) continue;
        const bool is_switch = std::all_of(candidate.numbers.begin(), candidate.numbers.end(),
                                           [](double value) { return value == 0 || value == 1; });
        if (candidate.numbers.empty() || !is_switch) continue;
        format_.valid_column = take(column);
        choose("Valid Column", format_.valid_column, "named so, and zeros and ones");
        return;
    }
}

// In the plain form a text is a null anyway, but a number such as -9999 is a value.
bool Guess::nulls_are_numbers_in_use() const
{
    for (std::size_t column = 0; column < columns_.size(); ++column) {
        if (is_free_[column]) continue;
        for (std::size_t row = 0; row < lines_.rows.size(); ++row) {
            const std::vector<std::string>& fields = lines_.rows[row];
            const bool is_null = column < fields.size() && columns_[column].texts[row].empty();
            if (is_null && is_numeric(fields[column])) return true;
        }
    }
    return false;
}

void Guess::propose_data_format()
{
    const auto has_units_in_use = [this] {
        for (std::size_t column = 0; column < columns_.size(); ++column) {
            if (!is_free_[column] && columns_[column].has_units) return true;
        }
        return false;
    };
    const bool is_needed =
        lines_.plain_form_differs || format_ != DataFormat() || nulls_are_numbers_in_use() || has_units_in_use();
    if (!is_needed) return;
    format_.separator = lines_.separator;
    format_.names_in_line = lines_.names_in_line;
    format_.null_texts = null_texts_;
    if (!null_texts_.empty()) {
        choose("Null Texts", data_format_value(format_, "Null Texts", format_fixed), "stand for nothing");
    }
    guess_.definitions.data_format = format_;
}

DefinitionsGuess Guess::guess()
{
    for (FieldSlot& field : guess_.definitions.fields) field.name = "N/A";
    set_default_field_names(guess_.definitions);
    guess_.header_line_number = lines_.header_line_number;
    propose_layout();
    propose_time();
    propose_positions();
    propose_sensors();
    for (int slot = kDepth; slot <= number_of_field_slots; ++slot) propose_slot(static_cast<FieldSlotIndex>(slot));
    propose_valid_column();
    propose_data_format();
    return guess_;
}

} // namespace

bool DefinitionsGuess::is_certain() const
{
    return std::none_of(choices.begin(), choices.end(), [](const GuessedChoice& choice) { return choice.is_needed; });
}

DefinitionsGuess guess_definitions(std::span<const std::string> first_lines, std::optional<int> header_line_number)
{
    return Guess(first_lines, header_line_number).guess();
}

std::string choice_text(const GuessedChoice& choice)
{
    return choice.key + ": " + (choice.choice.empty() ? "open" : choice.choice) + " (" + choice.reason + ")";
}

std::string guess_text(const DefinitionsGuess& guess)
{
    std::string text;
    for (const GuessedChoice& choice : guess.choices) text += choice_text(choice) + "\n";
    return text;
}

} // namespace tarvo
