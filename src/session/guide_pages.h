#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarvo {

// Where help is asked for: the names of the control that has the keyboard and of everything that it stands in, from the
// inside out. Returns the guide's page about the innermost of them that has one ("live" for docs/guide/live.md), else
// the page that begins it.
std::string_view guide_page_for(std::span<const std::string> places);

// All pages that help may open.
std::vector<std::string_view> guide_pages();

} // namespace tarvo
