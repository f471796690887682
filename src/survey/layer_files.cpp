#include "survey/layer_files.h"

#include "text/numbers.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>

namespace tarvo {

namespace fs = std::filesystem;

const char* const kLayerFileFilter =
    "Layers|*.tif;*.tiff;*.png;*.jpg;*.jpeg;*.bmp;*.jp2;*.asc;*.grd;*.nc;*.shp;*.dxf;*.geojson;*.json;*.gpkg;*.000;"
    "*.kml;*.gpx;*.tab;*.fgb|All files (*.*)|*.*";

namespace {

constexpr std::array<std::string_view, 17> kExtensions = {".TIF",     ".TIFF", ".GRD",  ".NC",  ".SHP", ".DXF",
                                                          ".GEOJSON", ".JSON", ".GPKG", ".000", ".KML", ".GPX",
                                                          ".TAB",     ".FGB",  ".JP2",  ".ADF", ".IMG"};
constexpr std::array<std::string_view, 6> kPictures = {".PNG", ".JPG", ".JPEG", ".BMP", ".GIF", ".WEBP"};

std::string extension_of(const fs::path& file)
{
    return upper_case(file.extension().string());
}

bool begins_as_a_grid(const std::string& file_name)
{
    constexpr std::string_view kBegin = "NCOLS";
    std::string begin(kBegin.size(), '\0');
    std::ifstream(file_name, std::ios::binary).read(begin.data(), static_cast<std::streamsize>(begin.size()));
    return upper_case(begin) == kBegin;
}

bool is_picture(const fs::path& file)
{
    return std::find(kPictures.begin(), kPictures.end(), extension_of(file)) != kPictures.end();
}

// "map.pgw", "map.pngw" or "map.wld" beside "map.png".
bool has_world_file(const fs::path& picture)
{
    const std::string extension = picture.extension().string();
    if (extension.size() < 3) return false;
    const std::string names[] = {{'.', extension[1], extension.back(), 'w'}, extension + 'w', ".wld"};
    std::error_code ignored;
    return std::any_of(std::begin(names), std::end(names), [&](const std::string& name) {
        return fs::exists(fs::path(picture).replace_extension(name), ignored);
    });
}

} // namespace

bool is_layer_file(const std::string& file_name)
{
    const std::string extension = extension_of(file_name);
    if (extension == ".ASC") return begins_as_a_grid(file_name);
    return is_picture(file_name) || std::find(kExtensions.begin(), kExtensions.end(), extension) != kExtensions.end();
}

std::vector<std::string> layer_files_beside(const std::string& data_file_name)
{
    constexpr std::size_t kMost = 20;
    std::vector<std::string> files;
    if (data_file_name.empty()) return files;
    const fs::path folder = fs::path(data_file_name).parent_path();
    std::error_code fault;
    for (fs::directory_iterator at(folder.empty() ? "." : folder, fault), end; at != end && !fault;
         at.increment(fault)) {
        const std::string name = (folder / at->path().filename()).string();
        std::error_code ignored;
        const bool is_offered = at->is_regular_file(ignored) && name != data_file_name && is_layer_file(name) &&
                                (!is_picture(name) || has_world_file(name));
        if (is_offered) files.push_back(name);
    }
    std::sort(files.begin(), files.end());
    files.resize(std::min(files.size(), kMost));
    return files;
}

} // namespace tarvo
