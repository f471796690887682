#include "tools/common/version.h"

namespace tarvo {

std::string version_number()
{
    return TARVO_VERSION;
}

std::string version_and_build()
{
    const std::string build = TARVO_BUILD; // empty: made from an archive of the sources
    return version_number() + (build.empty() ? "" : " (build " + build + ")");
}

} // namespace tarvo
