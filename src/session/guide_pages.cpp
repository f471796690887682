#include "session/guide_pages.h"

#include <algorithm>
#include <array>

namespace tarvo {

namespace {

struct PageOfPlace {
    std::string_view place; // the name of a dock, a dialog or a page of one
    std::string_view page;
};

constexpr auto kPages = std::to_array<PageOfPlace>({{"Dock_DisplayDials", "window"},
                                                    {"Dock_DisplayGraphs", "window"},
                                                    {"Dock_DisplayColourBars", "window"},
                                                    {"Dock_DisplayMessages", "troubleshooting"},
                                                    {"Dock_DisplayLive", "live"},
                                                    {"Dock_DisplayPicks", "picks"},
                                                    {"Dock_DisplayFit", "targets"},
                                                    {"Dock_DisplayProposals", "targets"},
                                                    {"Dock_DisplayLines", "residual"},
                                                    {"Dock_DisplayLayers", "layers"},
                                                    {"Form_define_colum_names", "logger-data"},
                                                    {"Form_rejected_lines", "logger-data"},
                                                    {"Form_processing_parameters", "settings"},
                                                    {"Form_base_station", "residual"},
                                                    {"Form_pick_list", "picks"},
                                                    {"Form_save_new_pick", "picks"},
                                                    {"Page_residual", "residual"},
                                                    {"Form_Tarvo", "window"}});

} // namespace

std::string_view guide_page_for(std::span<const std::string> places)
{
    for (const std::string& place : places) {
        const auto* const found =
            std::find_if(kPages.begin(), kPages.end(), [&](const PageOfPlace& entry) { return entry.place == place; });
        if (found != kPages.end()) return found->page;
    }
    return "index";
}

std::vector<std::string_view> guide_pages()
{
    std::vector<std::string_view> pages = {"index"};
    for (const PageOfPlace& entry : kPages) pages.push_back(entry.page);
    return pages;
}

} // namespace tarvo
