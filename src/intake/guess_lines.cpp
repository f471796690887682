#include "intake/guess_lines.h"

#include "intake/header.h"
#include "text/numbers.h"
#include "text/tokens.h"

#include <algorithm>
#include <array>
#include <map>

namespace tarvo {

namespace {

constexpr std::size_t kLeastFields = 3;

std::vector<std::string> split(Separator separator, std::string_view line)
{
    FieldSplitter splitter(separator);
    const std::span<const std::string_view> fields = splitter.split(line);
    return {fields.begin(), fields.end()};
}

// A number, a date, a clock, or what loggers write for nothing.
bool is_value(std::string_view field)
{
    for (const std::string_view nothing : {"*", "-", "--", "---", "nan", "NaN", "NAN", "null", "NULL"}) {
        if (field == nothing) return true;
    }
    const std::size_t first = field.find_first_not_of("+-.");
    return first <= 2 && is_digit(field[first]);
}

struct LineShape {
    std::size_t fields = 0;
    std::size_t values = 0;
    std::size_t texts = 0;
};

LineShape shape_of(const std::vector<std::string>& fields)
{
    LineShape shape;
    shape.fields = fields.size();
    for (const std::string& field : fields) {
        if (trimmed(field).empty()) continue;
        ++(is_value(trimmed(field)) ? shape.values : shape.texts);
    }
    return shape;
}

// The lines that tell the separator: the last 100 of a long beginning, else the second half. Empty ones left out.
std::vector<std::string_view> telling_lines(std::span<const std::string> first_lines)
{
    constexpr std::size_t kLast = 100;
    const std::size_t count = first_lines.size();
    const std::size_t from = count >= static_cast<std::size_t>(kGuessLines) ? count - kLast : count / 2;
    std::vector<std::string_view> lines;
    for (const std::string& line : first_lines.subspan(from)) {
        if (!trimmed(line).empty()) lines.push_back(line);
    }
    return lines;
}

std::optional<Separator> separator_of(const std::vector<std::string_view>& lines)
{
    for (const Separator separator : {Separator::tab, Separator::semicolon, Separator::comma, Separator::blank}) {
        const auto enough = std::count_if(lines.begin(), lines.end(), [separator](std::string_view line) {
            return split(separator, line).size() >= kLeastFields;
        });
        if (!lines.empty() && 5 * enough >= 4 * static_cast<std::ptrdiff_t>(lines.size())) return separator;
    }
    return std::nullopt;
}

const char* word_of(Separator separator)
{
    constexpr std::array<const char*, 5> kWords = {"any", "comma", "semicolon", "TAB", "blank"};
    return kWords[static_cast<std::size_t>(separator)];
}

// The shapes of all lines, and what a data line looks like.
class LineShapes {
public:
    LineShapes(std::span<const std::string> lines, Separator separator)
    {
        std::map<std::size_t, int> lines_by_fields;
        for (const std::string& line : lines) {
            shapes_.push_back(shape_of(split(separator, line)));
            if (shapes_.back().values > shapes_.back().texts) ++lines_by_fields[shapes_.back().fields];
        }
        const auto commonest =
            std::max_element(lines_by_fields.begin(), lines_by_fields.end(),
                             [](const auto& one, const auto& other) { return one.second < other.second; });
        if (commonest != lines_by_fields.end()) usual_fields_ = commonest->first;
    }

    std::size_t count() const { return shapes_.size(); }

    bool is_data(std::size_t line) const
    {
        const LineShape& shape = shapes_[line];
        return shape.fields >= 2 && shape.values > shape.texts && 2 * shape.fields > usual_fields_;
    }

    // The first data line that another one follows, or that is the last line; count() when there is none.
    std::size_t first_data_line() const
    {
        for (std::size_t line = 0; line < count(); ++line) {
            if (!is_data(line)) continue;
            std::size_t next = line + 1;
            while (next < count() && shapes_[next].fields == 0) ++next;
            if (next == count() || is_data(next)) return line;
        }
        return count();
    }

    std::size_t most_data_fields() const
    {
        std::size_t most = 0;
        for (std::size_t line = 0; line < count(); ++line) {
            if (is_data(line)) most = std::max(most, shapes_[line].fields);
        }
        return most;
    }

private:
    std::vector<LineShape> shapes_;
    std::size_t usual_fields_ = 0;
};

void number_the_columns(GuessedLines& guessed, std::size_t columns)
{
    guessed.names_in_line = false;
    guessed.names.clear();
    for (std::size_t column = 1; column <= columns; ++column) guessed.names.push_back(std::to_string(column));
}

// With blanks between them a date and a clock are two fields under one name: the names belong to the last fields.
void take_hints(GuessedLines& guessed, const std::vector<std::string>& names)
{
    guessed.hints.assign(guessed.names.size(), "");
    const std::size_t nameless = guessed.names.size() - names.size();
    for (std::size_t name = 0; name < names.size(); ++name) guessed.hints[nameless + name] = names[name];
    if (!names.empty()) guessed.hints.front() = names.front();
}

void take_names(GuessedLines& guessed, std::span<const std::string> lines, const LineShapes& shapes, std::size_t line)
{
    guessed.names = split(guessed.separator, without_marks(guessed.separator, lines[line]));
    guessed.header_line_number = static_cast<int>(line) + 1;
    const std::size_t fields = shapes.most_data_fields();
    if (fields <= guessed.names.size()) {
        guessed.names_reason = "the last line of names before the data";
        return;
    }
    if (guessed.separator != Separator::blank) {
        guessed.names_reason = "the last line of names before the data; fields without a name: " +
                               std::to_string(fields - guessed.names.size());
        guessed.names.resize(fields);
        return;
    }
    const std::vector<std::string> names = guessed.names;
    number_the_columns(guessed, fields);
    take_hints(guessed, names);
    guessed.header_line_number = static_cast<int>(shapes.first_data_line()) + 1;
    guessed.names_reason = "line " + std::to_string(line + 1) + " holds " + std::to_string(names.size()) +
                           " names for " + std::to_string(fields) + " fields";
}

// The last line before the data that can name their columns.
std::optional<std::size_t> names_line(Separator separator, std::span<const std::string> lines, const LineShapes& shapes)
{
    const std::size_t most = shapes.most_data_fields();
    for (std::size_t line = shapes.first_data_line(); line-- > 0;) {
        const LineShape shape = shape_of(split(separator, without_marks(separator, lines[line])));
        if (shape.texts >= 2 && shape.fields <= most) return line;
    }
    return std::nullopt;
}

void find_names(GuessedLines& guessed, std::span<const std::string> lines, const LineShapes& shapes,
                std::optional<int> header_line_number)
{
    const std::size_t given = header_line_number ? static_cast<std::size_t>(*header_line_number) - 1 : shapes.count();
    if (given < shapes.count() && !shapes.is_data(given)) {
        take_names(guessed, lines, shapes, given);
        if (guessed.names_in_line) guessed.names_reason = "the header line";
        return;
    }
    const std::optional<std::size_t> found =
        header_line_number ? std::nullopt : names_line(guessed.separator, lines, shapes);
    if (found) {
        take_names(guessed, lines, shapes, *found);
        return;
    }
    const std::size_t first = given < shapes.count() ? given : shapes.first_data_line();
    if (first == shapes.count()) return;
    number_the_columns(guessed, shapes.most_data_fields());
    guessed.header_line_number = static_cast<int>(first) + 1;
    guessed.names_reason = "no line before the data names the columns";
}

// The first line that is mostly names before a line of as many fields that are mostly numbers; 1 when none is.
int plain_header_line(std::span<const std::string> lines)
{
    const auto shape_of_line = [](const std::string& line) {
        LineShape shape;
        const HeaderColumns columns = header_columns_of(line);
        for (const std::string& field : columns.names()) {
            ++shape.fields;
            if (is_numeric(field)) ++shape.values;
        }
        return shape;
    };
    for (std::size_t line = 0; line + 1 < lines.size(); ++line) {
        const LineShape names = shape_of_line(lines[line]);
        const LineShape data = shape_of_line(lines[line + 1]);
        const bool as_many = names.fields >= 2 && names.fields == data.fields;
        if (as_many && 2 * names.values < names.fields && 2 * data.values > data.fields) {
            return static_cast<int>(line) + 1;
        }
    }
    return 1;
}

// By the tokenizer's rule: what has too few fields for a separator of its own.
void take_plain_lines(GuessedLines& guessed, std::span<const std::string> lines, std::optional<int> header_line_number)
{
    guessed.header_line_number = header_line_number.value_or(plain_header_line(lines));
    guessed.separator_reason = "no separator gives three fields";
    const auto header = static_cast<std::size_t>(guessed.header_line_number) - 1;
    if (header >= lines.size()) return;
    guessed.names = header_columns_of(lines[header]).names();
    guessed.names_reason = "the header line";
    for (const std::string& line : lines.subspan(header + 1)) {
        if (!trimmed(line).empty()) guessed.rows.push_back(fields_of_line(line));
    }
}

bool plain_form_differs(const GuessedLines& guessed, std::span<const std::string> lines, const LineShapes& shapes)
{
    if (!guessed.names_in_line) return true;
    const auto header = static_cast<std::size_t>(guessed.header_line_number) - 1;
    std::vector<std::string> plain_names = header_columns_of(lines[header]).names();
    plain_names.resize(std::max(plain_names.size(), guessed.names.size()));
    if (plain_names != guessed.names) return true;
    for (std::size_t line = header + 1; line < lines.size(); ++line) {
        if (shapes.is_data(line) && fields_of_line(lines[line]) != split(guessed.separator, lines[line])) return true;
    }
    return false;
}

} // namespace

GuessedLines guess_lines(std::span<const std::string> first_lines, std::optional<int> header_line_number)
{
    const std::span<const std::string> lines =
        first_lines.first(std::min<std::size_t>(first_lines.size(), kGuessLines));
    if (header_line_number && *header_line_number < 1) header_line_number = 1;
    GuessedLines guessed;
    const std::optional<Separator> separator = separator_of(telling_lines(lines));
    if (!separator) {
        take_plain_lines(guessed, lines, header_line_number);
        return guessed;
    }
    guessed.separator = *separator;
    guessed.separator_reason = std::string("a ") + word_of(*separator) + " gives at least three fields in most lines";
    const LineShapes shapes(lines, *separator);
    find_names(guessed, lines, shapes, header_line_number);
    const auto from = static_cast<std::size_t>(guessed.header_line_number) - (guessed.names_in_line ? 0 : 1);
    for (std::size_t line = from; line < lines.size(); ++line) {
        if (shapes.is_data(line)) guessed.rows.push_back(split(*separator, lines[line]));
    }
    guessed.plain_form_differs = plain_form_differs(guessed, lines, shapes);
    return guessed;
}

} // namespace tarvo
