#include "definitions/definitions_menu.h"

#include "definitions/definitions_file.h"
#include "text/file_names.h"

#include <filesystem>

namespace tarvo {

namespace {

constexpr const char* kFilter = "Data Field Definitions Files (*.def)|*.def|All files (*.*)|*.*";

} // namespace

std::optional<std::string> menu_file_read(SurveyDefinitions& working, int& header_line_number, Operator& op)
{
    std::optional<std::string> file_name =
        op.choose_file_to_open({"Select the Data Field Definitions file to read", kFilter, "", ""});
    if (!file_name) return std::nullopt;
    SurveyDefinitions definitions = working; // templates that the file does not name stay
    int header_line = header_line_number;
    if (read_definitions(*file_name, definitions, header_line, op).status < 0) return std::nullopt;
    working = std::move(definitions);
    header_line_number = header_line;
    return file_name;
}

std::optional<std::string> menu_file_save(SurveyDefinitions& working, int header_line_number, Operator& op)
{
    std::optional<std::string> file_name =
        op.choose_file_to_create({"Select the Data Field Definitions file to create", kFilter, "*.def", "def", true});
    if (!file_name) return std::nullopt;
    std::error_code ignored;
    if (std::filesystem::exists(*file_name, ignored) && !op.ask_yes_no("That file already exists. Overwrite it?")) {
        return std::nullopt;
    }
    if (write_edited_definitions(*file_name, working, header_line_number, op) < 0) return std::nullopt;
    op.show_message("Output complete");
    return file_name;
}

int write_edited_definitions(const std::string& file_name, SurveyDefinitions& working, int header_line_number,
                             Operator& op)
{
    const std::string lost = lost_digits(working);
    const bool keep_all = !lost.empty() && op.ask_yes_no("A definitions file holds scales with four decimals and arms "
                                                         "with three: " +
                                                         lost + ". Write every digit instead?");
    return write_definitions(file_name, working, header_line_number, op,
                             keep_all ? NumberDigits::all : NumberDigits::fixed);
}

std::string definitions_caption(const std::string& file_name)
{
    return "Data Field Definitions : " + std::string(last_part(file_name));
}

} // namespace tarvo
