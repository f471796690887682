#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tarvo {

// A value of a JSON text (RFC 8259). Members of an object keep their order.
struct JsonValue {
    enum class Kind { null, truth, number, text, array, object };

    Kind kind = Kind::null;
    bool truth = false;
    double number = 0;
    std::string text;                                       // UTF-8
    std::vector<JsonValue> elements;                        // of an array
    std::vector<std::pair<std::string, JsonValue>> members; // of an object

    const JsonValue* member(std::string_view name) const; // null: there is none, or this is no object
    void set(std::string name, JsonValue value);          // added behind the others, or in the place of its name

    bool operator==(const JsonValue&) const = default;
};

JsonValue json_truth(bool truth);
JsonValue json_number(double number);
JsonValue json_text(std::string text);

// Throws std::runtime_error that names the line and what was expected there. A text that goes on behind its value,
// nests deeper than 64 levels or holds bytes that are no UTF-8 is refused.
JsonValue read_json(std::string_view text);

// The members of the outermost object and the elements of arrays on lines of their own, two blanks to the level;
// objects that hold neither array nor object on one line. LF line ends, one at the end.
std::string json_file_text(const JsonValue& value);

} // namespace tarvo
