#pragma once

#include <string>

namespace tarvo {

// "0.2.0 (build 1a2b3c4)": the version, and what the sources were when the build was configured.
std::string version_and_build();
std::string version_number();

} // namespace tarvo
