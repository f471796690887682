#include "survey/layer_list.h"

#include "text/file_names.h"
#include "text/numbers.h"
#include "text/replace_file.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace tarvo {

namespace fs = std::filesystem;

namespace {

constexpr double kVersion = 1;
constexpr std::uintmax_t kLargestFile = 16 * 1024 * 1024; // bytes

// Relative to the folder of the list where that is possible, with "/" between its parts on every system.
std::string stored_path(const std::string& path, const std::string& folder)
{
    std::error_code unknown;
    const fs::path absolute = fs::absolute(path, unknown);
    const fs::path base = fs::absolute(folder.empty() ? "." : folder, unknown);
    if (unknown) return path;
    return absolute.lexically_normal().lexically_proximate(base.lexically_normal()).generic_string();
}

std::string opened_path(const std::string& stored, const std::string& folder)
{
    return (fs::path(folder) / stored).lexically_normal().string();
}

JsonValue record_value(const LayerRecord& record, const std::string& folder)
{
    JsonValue value;
    value.set("path", json_text(stored_path(record.path, folder)));
    value.set("visible", json_truth(record.visible));
    value.set("opacity", json_number(record.opacity));
    value.set("colour", json_text(colour_text(record.colour)));
    value.set("width", json_number(record.width));
    value.set("label", json_text(record.label));
    value.set("range", json_text(layer_range_text(record.range)));
    value.set("map", json_text(record.map));
    if (record.is_planned_lines) value.set("planned", json_truth(true));
    if (!record.hidden_parts.empty()) {
        JsonValue parts;
        parts.kind = JsonValue::Kind::array;
        for (const std::string& part : record.hidden_parts) parts.elements.push_back(json_text(part));
        value.set("hidden", std::move(parts));
    }
    for (const auto& [name, member] : record.unknown.members) value.set(name, member);
    return value;
}

// Takes the members of one layer; what it does not know it keeps.
class RecordReader {
public:
    RecordReader(const JsonValue& value, const std::string& folder)
    {
        for (const auto& [name, member] : value.members) take(name, member, folder);
        if (value.kind != JsonValue::Kind::object || record_.path.empty()) refuse("path", "the name of a file");
    }
    LayerRecord record() const { return record_; }

private:
    [[noreturn]] static void refuse(const std::string& name, const std::string& expected)
    {
        throw std::runtime_error("\"" + name + "\": " + expected + " was expected");
    }
    static const std::string& text(const std::string& name, const JsonValue& value)
    {
        if (value.kind != JsonValue::Kind::text) refuse(name, "a text");
        return value.text;
    }
    static bool truth(const std::string& name, const JsonValue& value)
    {
        if (value.kind != JsonValue::Kind::truth) refuse(name, "true or false");
        return value.truth;
    }
    static double number(const std::string& name, const JsonValue& value, double least, double most)
    {
        if (value.kind != JsonValue::Kind::number || value.number < least || value.number > most) {
            refuse(name, "a number from " + format_shortest(least) + " to " + format_shortest(most));
        }
        return value.number;
    }

    void take(const std::string& name, const JsonValue& value, const std::string& folder)
    {
        if (name == "path") {
            if (!text(name, value).empty()) record_.path = opened_path(value.text, folder);
        } else if (name == "visible") {
            record_.visible = truth(name, value);
        } else if (name == "opacity") {
            record_.opacity = number(name, value, 0, 1);
        } else if (name == "colour") {
            const std::optional<Colour> colour = colour_of_text(text(name, value));
            if (!colour) refuse(name, "\"#RRGGBB\"");
            record_.colour = *colour;
        } else if (name == "width") {
            record_.width = static_cast<int>(std::lround(number(name, value, 1, kWidestLayerLine)));
        } else if (name == "label") {
            record_.label = text(name, value);
        } else if (name == "range") {
            if (!take_layer_range(record_.range, text(name, value))) refuse(name, R"("auto" or "low high")");
        } else if (name == "map") {
            record_.map = text(name, value);
        } else if (name == "planned") {
            record_.is_planned_lines = truth(name, value);
        } else if (name == "hidden") {
            for (const JsonValue& part : value.elements) record_.hidden_parts.push_back(text(name, part));
        } else {
            record_.unknown.set(name, value);
        }
    }

    LayerRecord record_;
};

} // namespace

std::string layer_list_name_for(const std::string& data_file_name)
{
    if (data_file_name.empty()) return {};
    return std::string(without_extension(data_file_name)) + ".layers";
}

bool take_layer_range(std::optional<LayerRange>& range, std::string_view text)
{
    text = trimmed(text);
    if (upper_case(text) == "AUTO") {
        range.reset();
        return true;
    }
    const std::size_t blank = text.find_first_of(" \t");
    if (blank == std::string_view::npos) return false;
    const std::optional<double> low = numeric_value(text.substr(0, blank));
    const std::optional<double> high = numeric_value(text.substr(blank));
    if (!low || !high || !(*low < *high)) return false;
    range = LayerRange{*low, *high};
    return true;
}

std::string layer_range_text(const std::optional<LayerRange>& range)
{
    return range ? format_shortest(range->low) + ' ' + format_shortest(range->high) : "auto";
}

std::optional<Colour> colour_of_text(std::string_view text)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    constexpr std::size_t kLength = 7; // "#" and six digits
    if (text.size() != kLength || text.front() != '#') return std::nullopt;
    Colour colour = 0;
    for (const char c : upper_case(text.substr(1))) {
        const std::size_t digit = kDigits.find(c);
        if (digit == std::string_view::npos) return std::nullopt;
        colour = colour * 16 + static_cast<Colour>(digit);
    }
    return colour;
}

std::string colour_text(Colour colour)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text = "#";
    for (int shift = 20; shift >= 0; shift -= 4) text += kDigits[(colour >> shift) & 0xF];
    return text;
}

std::string layer_list_text(const LayerList& list, const std::string& folder)
{
    JsonValue layers;
    layers.kind = JsonValue::Kind::array;
    for (const LayerRecord& record : list.layers) layers.elements.push_back(record_value(record, folder));
    JsonValue file;
    file.set("version", json_number(kVersion));
    file.set("layers", std::move(layers));
    for (const auto& [name, member] : list.unknown.members) file.set(name, member);
    return json_file_text(file);
}

LayerList read_layer_list_text(std::string_view text, const std::string& folder)
{
    const JsonValue file = read_json(text);
    const JsonValue* const version = file.member("version");
    if (version == nullptr || *version != json_number(kVersion)) {
        throw std::runtime_error("\"version\": 1 was expected");
    }
    const JsonValue* const layers = file.member("layers");
    if (layers == nullptr || layers->kind != JsonValue::Kind::array) {
        throw std::runtime_error("\"layers\": a list was expected");
    }
    LayerList list;
    for (const JsonValue& layer : layers->elements) {
        try {
            list.layers.push_back(RecordReader(layer, folder).record());
        } catch (const std::exception& fault) {
            throw std::runtime_error("layer " + std::to_string(list.layers.size() + 1) + ", " + fault.what());
        }
    }
    for (const auto& [name, member] : file.members) {
        if (name != "version" && name != "layers") list.unknown.set(name, member);
    }
    return list;
}

LayerList read_layer_list(const std::string& file_name)
{
    try {
        std::error_code not_there;
        if (fs::file_size(file_name, not_there) > kLargestFile && !not_there) {
            throw std::runtime_error("it is too large for a list of layers");
        }
        std::ifstream file(file_name, std::ios::binary);
        std::ostringstream bytes;
        bytes << file.rdbuf();
        if (!file) throw std::runtime_error("it is not there or cannot be read");
        return read_layer_list_text(bytes.str(), fs::path(file_name).parent_path().string());
    } catch (const std::exception& fault) {
        throw std::runtime_error(file_name + ": " + fault.what());
    }
}

void write_layer_list(const LayerList& list, const std::string& file_name)
{
    replace_file(file_name, layer_list_text(list, fs::path(file_name).parent_path().string()));
}

} // namespace tarvo
