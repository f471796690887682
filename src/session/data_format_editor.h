#pragma once

#include "ports/projection.h"
#include "session/definitions_editor.h"

#include <string>
#include <string_view>
#include <vector>

namespace tarvo {

// The page "Data format" of the definitions dialog, on the editor's working copy.

// Puts a data format into use or takes it out; what it said comes back when it is put into use again.
void use_data_format(DefinitionsEditor& editor, bool in_use);

// Sets one key from what was typed. What is refused leaves the copy as it was and is kept as a fault of the editor
// until the box holds something better: "a date as YYYY-MM-DD was expected". Empty: taken.
std::string edit_data_format(DefinitionsEditor& editor, std::string_view key, std::string_view value);

// The text of a key's box: as typed where it was refused, else the value in force, its default included.
std::string data_format_box_text(const DefinitionsEditor& editor, std::string_view key);

// Grids to choose from for what was typed of a code or a name. projections: null: none are known.
std::vector<GridCode> offered_grids(const Projections* projections, std::string_view words);

} // namespace tarvo
