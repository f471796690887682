#include "tools/process_options.h"

#include "definitions/definitions_file.h"
#include "display/track_navigation.h"
#include "intake/survey_files.h"
#include "session/settings_table.h"
#include "survey/survey_files.h"
#include "text/numbers.h"
#include "tools/common/option_table.h"

#include <string_view>
#include <vector>

namespace tarvo {

std::string process_usage()
{
    return R"(tarvo-process [options] DATA_FILE...
Loads a recorded survey (several files, or the files of a folder, are one), prints a summary, and writes what the
options ask for.

  --definitions FILE   instead of the definitions file beside the data file
  --header-line N      line of the column names (else what the definitions say, else 1)
  --set KEY=VALUE      a setting by its key; may be repeated
  --samples FILE       stored samples as CSV ("-": standard output)
  --lines FILE         survey lines as CSV
  --picks FILE         the picks of the pick file beside the data, located on the track, as CSV
  --track FILE.png     the whole track
  --quantity NAME      what colours the pictures: gradient, vertical, horizontal, total, residual, depth, elevation
                       or speed
  --colours NAME       the colour map: survey, viridis, cividis, grey or blue-white-red
  --layer FILE         under the track: a raster, grid, drawing or chart, or a list of them (NAME.layers); may be repeated
  --size WxH           size of the pictures in pixels (1200x900)
  --zoom PERCENT       the track enlarged, 100 to 10000
  --at RECORD          the record in the middle of the enlarged track and of the colour bars
  --bars FILE.png      the sensors' colour bars around that record
  --guess              first makes the definitions file from the data, where there is none, and says why
  --fits FILE          a dipole fitted at every pick of the pick file, neighbours together, as CSV
  --propose FILE       places of the residual that look like targets, as CSV
  --targets FILE       the picks with their fits and remarks, as .csv, .geojson or .kml
  --report FILE.html   the picks with their fits, pictures, a map and the method, to print; with --propose the proposals
  --base FILE          readings of a base station: IAGA-2002, or text with its definitions file beside it
  --rejected FILE      the rejected lines as CSV
  --workers N          threads that read the data ahead (else by the machine and the size of the file)
  --quiet              no progress line
  --help-settings      the settings with their defaults and values
  --help, --version

)" + settings_paragraph() +
           R"(
Exit status: 0 done, 1 refused or failed, 2 wrong usage.
)";
}

std::string settings_paragraph()
{
    constexpr std::size_t kWidth = 100;
    return "Settings:\n" + settings_usage_text(kWidth);
}

namespace {

constexpr int kLargestSide = 32767; // pixels of a picture's side

void take_size(ProcessOptions& options, std::string_view text)
{
    const std::size_t cross = text.find('x');
    if (cross == std::string_view::npos) {
        throw UsageError("WxH was expected, such as 1200x900, found \"" + std::string(text) + '"');
    }
    const auto side = [](std::string_view pixels) {
        return static_cast<int>(number_within(pixels, 1, kLargestSide, NumberKind::whole));
    };
    options.picture_width = side(text.substr(0, cross));
    options.picture_height = side(text.substr(cross + 1));
}

// Of quantities of either sign.
void take_colours(Settings& settings, const std::string& name)
{
    take_setting("ColourMap=" + name, settings);
    take_setting("SignedColourMap=" + name, settings);
}

void take_zoom(ProcessOptions& options, std::string_view text)
{
    if (!zoom_of_text(text)) {
        throw UsageError("a number from 100 to 10000 was expected, found \"" + std::string(text) + '"');
    }
    options.zoom_percent = numeric_value(text.substr(0, text.find('%')));
}

void take_data_files(ProcessOptions& options, const std::vector<std::string>& named)
{
    std::vector<std::string> files = survey_files_of(named);
    if (files.empty()) return;
    options.data_file = files.front();
    options.further_data_files.assign(files.begin() + 1, files.end());
}

// No product may replace what it is made from, nor another product.
void check_products(const ProcessOptions& options)
{
    std::vector<std::string> taken = files_of_survey(options.data_file, options.definitions_file);
    taken.insert(taken.end(), options.layer_files.begin(), options.layer_files.end());
    taken.insert(taken.end(), options.further_data_files.begin(), options.further_data_files.end());
    if (!options.base_file.empty()) {
        taken.push_back(options.base_file);
        taken.push_back(definitions_file_name_for(options.base_file));
    }
    for (const std::string* const product :
         {&options.samples_file, &options.lines_file, &options.picks_file, &options.track_file, &options.bars_file,
          &options.rejected_file, &options.targets.fits, &options.targets.proposals, &options.targets.list,
          &options.targets.report}) {
        if (product->empty()) continue;
        for (const std::string& other : taken) {
            if (!is_same_file(*product, other)) continue;
            throw UsageError(*product + " would be overwritten: it belongs to the survey or is named twice");
        }
        taken.push_back(*product);
    }
}

} // namespace

void take_setting(std::string_view text, Settings& settings)
{
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos) {
        throw UsageError("KEY=VALUE was expected, found \"" + std::string(text) + '"');
    }
    const std::string_view key = text.substr(0, equals);
    const std::string_view value = text.substr(equals + 1);
    const Setting* const setting = find_setting(key);
    if (setting == nullptr) throw UsageError("there is no setting \"" + std::string(key) + '"');
    if (take_setting_text(settings, *setting, value) == SettingOutcome::refused) {
        throw UsageError("\"" + std::string(value) + "\" is not valid for " + std::string(key) + ": " +
                         accepted_values_text(*setting) + " was expected");
    }
}

ProcessOptions read_process_options(std::span<const char* const> arguments)
{
    ProcessOptions options;
    std::vector<std::string> data_files;
    OptionTable table;
    table.switches = {{"--guess", set(options.guess)},
                      {"--quiet", set(options.quiet)},
                      {"--help", set(options.help)},
                      {"--help-settings", set(options.help_settings)},
                      {"--version", set(options.version)}};
    table.values = {
        {"--definitions", text_into(options.definitions_file)},
        {"--header-line", text_into(options.header_line)},
        {"--set", [&](const std::string& text) { take_setting(text, options.settings); }},
        {"--quantity", [&](const std::string& text) { take_setting("DisplayQuantity=" + text, options.settings); }},
        {"--colours", [&](const std::string& text) { take_colours(options.settings, text); }},
        {"--samples", text_into(options.samples_file)},
        {"--lines", text_into(options.lines_file)},
        {"--picks", text_into(options.picks_file)},
        {"--track", text_into(options.track_file)},
        {"--bars", text_into(options.bars_file)},
        {"--rejected", text_into(options.rejected_file)},
        {"--workers", number_into<int>(options.load_workers, 0, 64)},
        {"--fits", text_into(options.targets.fits)},
        {"--propose", text_into(options.targets.proposals)},
        {"--targets",
         [&](const std::string& name) {
             if (!name.ends_with(".csv") && !name.ends_with(".geojson") && !name.ends_with(".kml")) {
                 throw UsageError("a name that ends in .csv, .geojson or .kml was expected, found \"" + name + '"');
             }
             options.targets.list = name;
         }},
        {"--report", text_into(options.targets.report)},
        {"--base", text_into(options.base_file)},
        {"--layer", [&](const std::string& name) { options.layer_files.push_back(name); }},
        {"--size", [&](const std::string& text) { take_size(options, text); }},
        {"--zoom", [&](const std::string& text) { take_zoom(options, text); }},
        {"--at", number_into<std::int32_t>(options.at_record, 1, INT32_MAX)}};
    table.operand = [&](const std::string& name) { data_files.push_back(name); };
    table.read(arguments);
    const bool only_tells = options.help || options.help_settings || options.version;
    if (data_files.empty() && !only_tells) throw UsageError("a data file was expected");
    take_data_files(options, data_files);
    check_products(options);
    return options;
}

} // namespace tarvo
