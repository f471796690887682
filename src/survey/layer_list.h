#pragma once

#include "display/picture.h"
#include "text/json.h"

#include <optional>
#include <string>
#include <vector>

namespace tarvo {

// The lower and the upper value of a grid's colours.
struct LayerRange {
    double low = 0;
    double high = 1;

    bool operator==(const LayerRange&) const = default;
};

inline constexpr int kWidestLayerLine = 20; // pixels

// One background layer as the operator has set it up.
struct LayerRecord {
    std::string path; // of its file, as the program opens it
    bool visible = true;
    double opacity = 1; // 0..1
    Colour colour = 0x40C0FF;
    int width = 1;                         // of lines, pixels, 1..kWidestLayerLine
    std::string label;                     // the field that letters its shapes; empty: none
    std::optional<LayerRange> range;       // of a grid; none: from its values
    std::string map = "grey";              // a grid's colour map
    bool is_planned_lines = false;         // the newest sample's way off its lines is read out
    std::vector<std::string> hidden_parts; // of the layers that the file itself holds
    JsonValue unknown;                     // members that this version does not know, kept for the next write

    bool operator==(const LayerRecord&) const = default;
};

// The layers of a survey; the first one lies lowest.
struct LayerList {
    std::vector<LayerRecord> layers;
    JsonValue unknown; // members of the file beside version and layers

    bool operator==(const LayerList&) const = default;
};

// "/surveys/line7.layers" for "/surveys/line7.csv"; empty for an empty name.
std::string layer_list_name_for(const std::string& data_file_name);

// A range as it is typed and kept: "auto", or two numbers between blanks of which the first is the smaller. False, and
// the range as it was, for any other text.
bool take_layer_range(std::optional<LayerRange>& range, std::string_view text);
std::string layer_range_text(const std::optional<LayerRange>& range);

// "#RRGGBB"; nullopt for any other text.
std::optional<Colour> colour_of_text(std::string_view text);
std::string colour_text(Colour colour);

// The text of a list's file and back. folder: where the file lies; paths in it are relative to that. A text that is no
// such list, or of another version, throws std::runtime_error that says what was expected and which layer it is about.
std::string layer_list_text(const LayerList& list, const std::string& folder);
LayerList read_layer_list_text(std::string_view text, const std::string& folder);

// The file itself. Errors name it; that it is not there is one.
LayerList read_layer_list(const std::string& file_name);
void write_layer_list(const LayerList& list, const std::string& file_name);

} // namespace tarvo
