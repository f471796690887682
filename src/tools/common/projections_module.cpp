#include "tools/common/projections_module.h"

#include "tools/common/program_module.h"

#include <stdexcept>

namespace tarvo {

namespace {

constexpr const char* kProjectionsModule = "tarvo_projections.so";
constexpr const char* kMakeProjections = "tarvo_make_projections_1"; // its number goes up with each change of the port

std::unique_ptr<const Projections> load()
{
    try {
        using MakeProjections = Projections* (*)();
        return std::unique_ptr<const Projections>(
            reinterpret_cast<MakeProjections>(program_module_function(kProjectionsModule, kMakeProjections))());
    } catch (const std::exception& reason) {
        throw std::runtime_error(std::string("survey grids need ") + kProjectionsModule + ": " + reason.what());
    }
}

const Projections& loaded()
{
    static const std::unique_ptr<const Projections> projections = load();
    return *projections;
}

} // namespace

std::unique_ptr<Projection> LoadedProjections::open(std::string_view survey_grid) const
{
    return loaded().open(survey_grid);
}

std::vector<GridCode> LoadedProjections::search(std::string_view words, std::size_t most) const
{
    return loaded().search(words, most);
}

} // namespace tarvo
