#include "picks/pick_remarks.h"

#include "text/quoted.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <vector>

namespace tarvo {

namespace {

constexpr std::string_view kRemarkColumns = "name,remark";

// Reads CSV field by field; a field in quotes may hold line ends.
class CsvReader {
public:
    explicit CsvReader(std::string_view text) : rest_(text) {}

    bool at_end() const { return rest_.empty(); }
    int line() const { return line_; }

    // The fields up to the end of the line; a quote that is not closed ends at the end of the text.
    std::vector<std::string> next_line()
    {
        std::vector<std::string> fields(1);
        bool in_quotes = false;
        const int started = next_;
        while (!rest_.empty()) {
            const char c = rest_.front();
            rest_.remove_prefix(1);
            if (c == '\n') ++next_;
            if (in_quotes) {
                const bool is_double = c == '"' && !rest_.empty() && rest_.front() == '"';
                if (is_double) rest_.remove_prefix(1);
                if (c == '"' && !is_double) {
                    in_quotes = false;
                } else {
                    fields.back() += c;
                }
            } else if (c == '"') {
                in_quotes = true;
            } else if (c == ',') {
                fields.emplace_back();
            } else if (c == '\n') {
                break;
            } else if (c != '\r') {
                fields.back() += c;
            }
        }
        line_ = started;
        return fields;
    }

private:
    std::string_view rest_;
    int line_ = 0; // of the line read last, from 1
    int next_ = 1;
};

} // namespace

std::string remarks_file_name_for(std::string_view pick_file_name)
{
    if (pick_file_name.empty()) return {};
    constexpr std::string_view kPickEnd = "_pick";
    std::filesystem::path path{std::string(pick_file_name)};
    std::string stem = path.stem().string();
    if (stem.ends_with(kPickEnd)) stem.resize(stem.size() - kPickEnd.size());
    return path.replace_filename(stem + "_remarks.csv").string();
}

PickRemarks read_pick_remarks(const std::string& path)
{
    PickRemarks remarks;
    std::error_code not_there;
    if (path.empty() || !std::filesystem::exists(path, not_there)) return remarks;
    std::ifstream file(path, std::ios::binary);
    if (!file) throw std::runtime_error(path + " cannot be read");
    std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(kByteOrderMark)) text.erase(0, kByteOrderMark.size());
    CsvReader reader(text);
    bool is_heading = true;
    while (!reader.at_end()) {
        const std::vector<std::string> fields = reader.next_line();
        if (fields.size() == 1 && fields.front().empty()) continue;
        if (fields.size() != 2 || (is_heading && fields.front() + ',' + fields.back() != kRemarkColumns)) {
            throw std::runtime_error(
                path + ", line " + std::to_string(reader.line()) + ": " +
                (is_heading ? "the heading name,remark was expected"
                            : "a name and a remark were expected, found " + std::to_string(fields.size()) + " fields"));
        }
        if (!is_heading) remarks[fields[0]] = fields[1];
        is_heading = false;
    }
    return remarks;
}

std::string pick_remarks_text(const PickRemarks& remarks)
{
    std::string text = std::string(kRemarkColumns) + "\r\n";
    for (const auto& [name, remark] : remarks) text += csv_quoted(name) + ',' + csv_quoted(remark) + "\r\n";
    return text;
}

void rename_remark(PickRemarks& remarks, const std::string& from, const std::string& to)
{
    if (from == to) return;
    auto moved = remarks.extract(from);
    if (moved.empty()) return;
    moved.key() = to;
    remarks.erase(to);
    remarks.insert(std::move(moved));
}

} // namespace tarvo
