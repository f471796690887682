#include "picks/pick_file.h"

#include "picks/pick_times.h"
#include "ports/guarded_operation.h"
#include "text/file_names.h"
#include "text/line_reader.h"
#include "text/numbers.h"
#include "text/replace_file.h"

#include <array>
#include <fstream>
#include <functional>
#include <sstream>
#include <stdexcept>

namespace tarvo {

namespace {

constexpr std::string_view kFirstWords = "\\Tarvo Anomaly Picks";
constexpr std::string_view kColumnHeader = "       Time,          X,          Y,       Dist,       Type,       Name";

// A file that is not a pick file, as opposed to one that cannot be read; the text is shown as it stands.
struct NotAPickFile : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// A line too long to be one of ours is an empty one: it is refused for what it lacks.
std::string_view required_line(LineReader& reader, const char* expected)
{
    std::string_view line;
    if (reader.next_line(line) == LineReader::Outcome::end) {
        throw std::runtime_error(reader.file_name() + ", line " + std::to_string(reader.line_number() + 1) + ": " +
                                 expected + " was expected, the file ends");
    }
    return line;
}

std::int32_t version_code(std::string_view first_line)
{
    if (!first_line.starts_with(kFirstWords)) {
        throw NotAPickFile("The specified file does not have the correct format");
    }
    if (first_line.find("V1.0") != std::string_view::npos) return 1;
    return first_line.find("V2.0") != std::string_view::npos ? 2 : 3;
}

std::int32_t announced_picks(std::string_view second_line)
{
    const std::size_t colon = second_line.find(':');
    const bool has_number = colon != std::string_view::npos;
    const std::int32_t number = has_number ? rounded_to_int32(leading_number(second_line.substr(colon + 1))) : 0;
    if (number < 1) throw NotAPickFile("The anomaly pick file does not contain any data");
    return number;
}

// Takes the number before the first comma off the line.
double take_number(std::string_view& line)
{
    const std::size_t comma = line.find(',');
    const std::string_view field = line.substr(0, comma == std::string_view::npos ? 0 : comma);
    const std::optional<double> value = numeric_value(field);
    if (!value) throw NotAPickFile("The anomaly pick file is not valid");
    line = trimmed(line.substr(comma + 1));
    return *value;
}

Pick parsed_pick(std::string_view line)
{
    line = trimmed(line);
    std::array<double, 6> fields{}; // from 1: time, easting, northing, distance, type
    for (std::size_t field = 1; field <= 5; ++field) fields[field] = take_number(line);
    return {.name = std::string(line),
            .type = rounded_to_int32(fields[5]),
            .time = date_time_of_seconds(fields[1]),
            .location = {0, fields[2], fields[3], fields[4]}};
}

std::string pick_line(const Pick& pick)
{
    std::string name = pick.name;
    for (char& c : name) {
        if (c == '\r' || c == '\n') c = ' '; // a line break inside a name would cut the file in pieces
    }
    return format_fixed(static_cast<double>(whole_seconds_since_1970(pick.time)), 3) + ',' +
           format_fixed(pick.location[1], 1) + ',' + format_fixed(pick.location[2], 1) + ',' +
           format_fixed(pick.location[3], 1) + ',' + std::to_string(pick.type) + ',' + std::string(trimmed(name));
}

std::size_t mark_of(const std::string& bytes)
{
    return std::hash<std::string>()(bytes);
}

void keep_remarks_of_others(const PickList& picks, const std::string& path, Operator& op)
{
    const bool is_changed = path == picks.known_remarks.path && known_file(path).mark != picks.known_remarks.mark;
    if (!is_changed || !is_there(path)) return;
    op.show_warnings({{WarningAbout::picks, path,
                       "The remarks in " + path + " were changed by another program; what they held is kept in " +
                           keep_copy_aside(path, "changed")}});
}

// What is to be replaced though this list does not hold it: a file that could not be read, or one that another program
// has changed, such as a second monitor on the same survey.
Warnings keep_what_others_wrote(PickList& picks)
{
    const std::string& path = picks.pick_file_name;
    if (!is_there(path)) return {};
    const bool is_unreadable = path == picks.unreadable_file;
    const bool is_changed = path == picks.known_file.path && known_file(path).mark != picks.known_file.mark;
    if (!is_unreadable && !is_changed) return {};
    const std::string copy = keep_copy_aside(path, is_unreadable ? "unreadable" : "changed");
    picks.unreadable_file.clear();
    picks.known_file = known_file(path); // kept once, also when the write behind this fails and is tried again
    return {{WarningAbout::picks, path,
             "The pick file " + path + (is_unreadable ? " could not be read" : " was changed by another program") +
                 "; what it held is kept in " + copy}};
}

} // namespace

KnownFile known_file(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) return {path, std::nullopt};
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return {path, mark_of(bytes.str())};
}

std::string leftover_pick_file(const PickList& picks)
{
    const KnownFile& known = picks.known_file;
    const bool is_own = !picks.pick_file_name.empty() && known.path == picks.pick_file_name && known.mark.has_value();
    if (picks.number_of_picks > 0 || !is_own || !is_there(known.path)) return {};
    return known_file(known.path).mark == known.mark ? known.path : std::string();
}

PickFileRead read_pick_file(const std::string& path, PickList& picks, Operator& op)
{
    PickFileRead read;
    const auto fail = [&](const std::string& message) {
        op.show_message(message);
        picks.number_of_picks = 0;
        picks.unreadable_file = is_there(path) ? path : std::string();
    };
    picks.number_of_picks = 0;
    try {
        LineReader reader(path);
        read.version = version_code(required_line(reader, "the line that begins a pick file"));
        const std::int32_t number_of_picks = announced_picks(required_line(reader, "the number of picks"));
        required_line(reader, "the column header");

        clear_picks(picks);
        for (std::int32_t pick = 1; pick <= number_of_picks; ++pick) {
            append_pick(picks, parsed_pick(required_line(reader, "a pick")));
        }
        give_spare_room(picks);
        picks.unreadable_file.clear();
        picks.known_file = known_file(path);
        read.status = 0;
    } catch (const NotAPickFile& refusal) {
        fail(refusal.what());
    } catch (const std::exception& fault) { // the wording is fixed, spelling included
        fail(std::string("An error occurred while reading the aomaly file: ") + fault.what());
    }
    return read;
}

int write_pick_file(PickList& picks, Operator& op)
{
    picks.is_unsaved = picks.number_of_picks > 0;
    if (picks.pick_file_name.empty() || picks.number_of_picks == 0) return -1;
    const bool is_another_file = picks.pick_file_name != picks.known_file.path;
    try {
        const std::string text = pick_file_text(picks);
        op.show_warnings(keep_what_others_wrote(picks));
        replace_file(picks.pick_file_name, text);
        picks.known_file = {picks.pick_file_name, mark_of(text)};
        picks.is_unsaved = false;
    } catch (const std::exception& fault) { // the wording is fixed, spelling included
        op.show_message(std::string("An error occurred while saving the aomaly file: ") + fault.what());
        return -1;
    }
    if (picks.are_remarks_unsaved || (is_another_file && !picks.remarks.empty())) write_remarks_of(picks, op);
    return 0;
}

void read_remarks_of(PickList& picks, Operator& op)
{
    picks.remarks.clear();
    picks.remarks_fault.clear();
    picks.are_remarks_unsaved = false;
    const std::string path = remarks_file_name_for(picks.pick_file_name);
    try {
        picks.remarks = read_pick_remarks(path);
        picks.known_remarks = known_file(path);
    } catch (const std::exception& fault) {
        picks.remarks_fault = fault.what();
        op.show_message("The remarks could not be read: " + picks.remarks_fault);
    }
}

void write_remarks_of(PickList& picks, Operator& op)
{
    const std::string path = remarks_file_name_for(picks.pick_file_name);
    if (path.empty()) return;
    if (!picks.remarks_fault.empty()) {
        op.show_message(
            "The remark is kept only until the program ends, since the file of remarks could not be read: " +
            picks.remarks_fault);
        return;
    }
    picks.are_remarks_unsaved = true;
    run_guarded(op, "An error occurred while saving the remarks: ", [&] {
        keep_remarks_of_others(picks, path, op);
        picks.known_remarks = known_file(path); // kept once, also when the write behind this fails and is tried again
        replace_file(path, pick_remarks_text(picks.remarks));
        picks.known_remarks = known_file(path);
        picks.are_remarks_unsaved = false;
    });
}

int write_unsaved_picks(PickList& picks, Operator& op)
{
    if (!has_unsaved_changes(picks)) return 0;
    if (picks.pick_file_name.empty()) picks.pick_file_name = picks.offered_file_name;
    if (picks.is_unsaved) return write_pick_file(picks, op);
    write_remarks_of(picks, op);
    return picks.are_remarks_unsaved ? -1 : 0;
}

std::string pick_file_text(const PickList& picks)
{
    std::string text = std::string(kFirstWords) + " V1.0\r\n";
    text += "\\Number of picks : " + std::to_string(picks.number_of_picks) + "\r\n";
    text += std::string(kColumnHeader) + "\r\n";
    for (std::int32_t pick = 1; pick <= picks.number_of_picks; ++pick) text += pick_line(pick_at(picks, pick)) + "\r\n";
    return text;
}

} // namespace tarvo
