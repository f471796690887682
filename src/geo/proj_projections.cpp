#include "geo/proj_projections.h"

#include "text/grid_code.h"

#include <proj.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <tuple>

namespace tarvo {

namespace {

template <class Type, auto Release>
struct Releaser {
    void operator()(Type* object) const { Release(object); }
};

using Context = std::unique_ptr<PJ_CONTEXT, Releaser<PJ_CONTEXT, proj_context_destroy>>;
using Object = std::unique_ptr<PJ, Releaser<PJ, proj_destroy>>;

Context make_context()
{
    Context context(proj_context_create());
    if (!context) throw std::runtime_error("no memory for a projection");
    proj_context_set_enable_network(context.get(), 0);
    proj_log_level(context.get(), PJ_LOG_NONE); // what goes wrong is told by the caller
    return context;
}

std::string quoted(std::string_view text)
{
    return "\"" + std::string(text) + "\"";
}

// The horizontal part of a coordinate system, free of a vertical one and of a shift to another datum.
Object horizontal_part(PJ_CONTEXT* context, const PJ* crs)
{
    Object part(proj_clone(context, crs));
    while (part) {
        const PJ_TYPE type = proj_get_type(part.get());
        if (type == PJ_TYPE_COMPOUND_CRS) {
            part.reset(proj_crs_get_sub_crs(context, part.get(), 0));
        } else if (type == PJ_TYPE_BOUND_CRS) {
            part.reset(proj_get_source_crs(context, part.get()));
        } else {
            break;
        }
    }
    return part;
}

bool counts_in_metres(PJ_CONTEXT* context, const PJ* horizontal)
{
    const Object system(proj_crs_get_coordinate_system(context, horizontal));
    if (!system) return false;
    for (int axis = 0; axis < 2; ++axis) {
        double metres = 0;
        if (proj_cs_get_axis_info(context, system.get(), axis, nullptr, nullptr, nullptr, &metres, nullptr, nullptr,
                                  nullptr) == 0 ||
            metres != 1.0) {
            return false;
        }
    }
    return true;
}

class ProjProjection : public Projection {
public:
    ProjProjection(Context context, Object transformation, std::string name)
        : context_(std::move(context)), transformation_(std::move(transformation)), name_(std::move(name))
    {
    }

    const std::string& name() const override { return name_; }

    GridCoordinates to_grid(const GeographicPlace& place) const override
    {
        if (!place.is_known()) return {};
        const PJ_COORD image = transform(PJ_FWD, place.longitude, place.latitude);
        return is_image(image) ? GridCoordinates{image.xy.x, image.xy.y} : GridCoordinates{};
    }

    GeographicPlace to_geographic(const GridCoordinates& place) const override
    {
        if (!place.is_known()) return {};
        const PJ_COORD image = transform(PJ_INV, place.easting, place.northing);
        return is_image(image) ? GeographicPlace{image.xy.x, image.xy.y} : GeographicPlace{};
    }

private:
    PJ_COORD transform(PJ_DIRECTION direction, double x, double y) const
    {
        proj_errno_reset(transformation_.get());
        return proj_trans(transformation_.get(), direction, proj_coord(x, y, 0, HUGE_VAL));
    }

    static bool is_image(const PJ_COORD& image) { return std::isfinite(image.xy.x) && std::isfinite(image.xy.y); }

    Context context_; // before what lives in it
    Object transformation_;
    std::string name_;
};

struct FoundGrid {
    bool whole_code = false; // a word is its number
    std::string code;
    std::string name;
};

std::vector<std::string> words_of(std::string_view text)
{
    std::vector<std::string> words;
    std::string word;
    for (const char letter : upper_case(text) + " ") {
        if (letter != ' ' && letter != '\t' && letter != ',') {
            word += letter;
        } else if (!word.empty()) {
            words.push_back(std::move(word));
            word.clear();
        }
    }
    return words;
}

using CrsList = std::unique_ptr<PROJ_CRS_INFO*, Releaser<PROJ_CRS_INFO*, proj_crs_info_list_destroy>>;

CrsList projected_systems(PJ_CONTEXT* context, int& count)
{
    PROJ_CRS_LIST_PARAMETERS* wanted = proj_get_crs_list_parameters_create();
    if (wanted == nullptr) throw std::runtime_error("no memory for the list of survey grids");
    const PJ_TYPE type = PJ_TYPE_PROJECTED_CRS;
    wanted->types = &type;
    wanted->typesCount = 1;
    wanted->allow_deprecated = 0;
    CrsList list(proj_get_crs_info_list_from_database(context, "EPSG", wanted, &count));
    proj_get_crs_list_parameters_destroy(wanted);
    return list;
}

} // namespace

std::unique_ptr<Projection> ProjProjections::open(std::string_view survey_grid) const
{
    const std::string_view text = trimmed(survey_grid);
    if (text.empty()) throw std::runtime_error("no survey grid is given");
    Context context = make_context();
    const Object crs(proj_create(context.get(), grid_code(text).c_str()));
    if (!crs || proj_is_crs(crs.get()) == 0) {
        throw std::runtime_error("the survey grid " + quoted(text) +
                                 " is not known; expected one like \"UTM 35N\" or \"EPSG:32635\"");
    }
    const Object horizontal = horizontal_part(context.get(), crs.get());
    if (!horizontal || proj_get_type(horizontal.get()) != PJ_TYPE_PROJECTED_CRS) {
        throw std::runtime_error("the survey grid " + quoted(text) + " is not a projected one");
    }
    if (!counts_in_metres(context.get(), horizontal.get())) {
        throw std::runtime_error("the survey grid " + quoted(text) + " does not count in metres");
    }
    const Object wgs84(proj_create(context.get(), "EPSG:4326"));
    if (!wgs84) throw std::runtime_error("PROJ does not find its database, proj.db; Debian's package proj-data has it");
    Object transformation(proj_create_crs_to_crs_from_pj(context.get(), wgs84.get(), crs.get(), nullptr, nullptr));
    if (transformation) transformation.reset(proj_normalize_for_visualization(context.get(), transformation.get()));
    if (!transformation) {
        throw std::runtime_error("there is no way from longitude and latitude to the survey grid " + quoted(text));
    }
    const char* name = proj_get_name(crs.get());
    std::string full_name = name != nullptr && std::string_view(name) != "unknown" ? name : std::string(text);
    return std::make_unique<ProjProjection>(std::move(context), std::move(transformation), std::move(full_name));
}

std::vector<GridCode> ProjProjections::search(std::string_view words, std::size_t most) const
{
    const std::vector<std::string> wanted = words_of(words);
    if (wanted.empty()) return {};
    const Context context = make_context();
    int count = 0;
    const CrsList list = projected_systems(context.get(), count);
    std::vector<FoundGrid> found;
    for (int at = 0; list && at < count; ++at) {
        const PROJ_CRS_INFO& crs = *list.get()[at];
        FoundGrid grid;
        grid.code = std::string(crs.auth_name) + ":" + crs.code;
        grid.name = crs.name;
        const std::string shown = upper_case(grid.code + " " + grid.name);
        const auto is_in = [&](const std::string& word) { return shown.find(word) != std::string::npos; };
        if (!std::all_of(wanted.begin(), wanted.end(), is_in)) continue;
        grid.whole_code =
            std::any_of(wanted.begin(), wanted.end(), [&](const std::string& word) { return word == crs.code; });
        found.push_back(std::move(grid));
    }
    // The plain name of a zone is shorter than those of its variants.
    std::sort(found.begin(), found.end(), [](const FoundGrid& a, const FoundGrid& b) {
        return std::tuple(!a.whole_code, a.name.size(), a.name, a.code) <
               std::tuple(!b.whole_code, b.name.size(), b.name, b.code);
    });
    std::vector<GridCode> grids;
    for (FoundGrid& grid : found) {
        if (grids.size() == most) break;
        const Object crs(proj_create(context.get(), grid.code.c_str()));
        if (!crs || !counts_in_metres(context.get(), crs.get())) continue;
        grids.push_back({std::move(grid.code), std::move(grid.name)});
    }
    return grids;
}

} // namespace tarvo
