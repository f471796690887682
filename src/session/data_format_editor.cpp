#include "session/data_format_editor.h"

#include "text/numbers.h"

#include <algorithm>

namespace tarvo {

namespace {

constexpr std::string_view kTimeColumns = "Time Columns";

// The first of the fixed words, or what stands for nothing.
std::string default_text(const DataFormatKey& key)
{
    if (!key.choices.empty()) return std::string(key.choices.front());
    if (key.name == "Time Form") return DataFormat().time_form;
    return {};
}

} // namespace

void use_data_format(DefinitionsEditor& editor, bool in_use)
{
    std::optional<DataFormat>& format = editor.working.data_format;
    if (in_use == format.has_value()) return;
    editor.format_faults.clear();
    if (in_use) {
        format = editor.format_put_aside.value_or(DataFormat());
        show_first_time_column(editor.working);
    } else {
        editor.format_put_aside = format;
        format.reset();
    }
}

std::string edit_data_format(DefinitionsEditor& editor, std::string_view key, std::string_view value)
{
    if (!editor.working.data_format) return {};
    std::erase_if(editor.format_faults, [key](const FormatFault& fault) { return fault.key == key; });
    const KeyTaking taking = set_data_format_value(*editor.working.data_format, key, value);
    if (taking.outcome == KeyOutcome::taken) {
        if (taking.key == kTimeColumns) show_first_time_column(editor.working);
        return {};
    }
    editor.format_faults.push_back({std::string(key), std::string(value), taking.expected + " was expected"});
    return editor.format_faults.back().reason;
}

std::string data_format_box_text(const DefinitionsEditor& editor, std::string_view key)
{
    for (const FormatFault& fault : editor.format_faults) {
        if (fault.key == key) return fault.value;
    }
    if (key == kTimeColumns) return time_columns_text(time_column_names(editor.working));
    const DataFormat format = editor.working.data_format.value_or(DataFormat());
    std::string value = data_format_value(format, key, format_fixed);
    if (value.empty()) {
        for (const DataFormatKey& known : data_format_keys()) {
            if (known.name == key) value = default_text(known);
        }
    }
    return value;
}

std::vector<GridCode> offered_grids(const Projections* projections, std::string_view words)
{
    constexpr std::size_t kMostOffered = 20;
    constexpr std::size_t kFewestLetters = 2;
    if (projections == nullptr || trimmed(words).size() < kFewestLetters) return {};
    return projections->search(trimmed(words), kMostOffered);
}

} // namespace tarvo
