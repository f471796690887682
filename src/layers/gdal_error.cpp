#include "layers/gdal_error.h"

#include <cpl_error.h>

namespace tarvo {

std::string gdal_reason(const std::string& otherwise)
{
    constexpr std::size_t kLongest = 300; // bytes
    std::string reason = CPLGetLastErrorMsg();
    if (reason.empty()) return otherwise;
    for (char& c : reason) {
        if (static_cast<unsigned char>(c) < ' ') c = ' ';
    }
    return reason.substr(0, kLongest);
}

int go_on_until_stopped(double, const char*, void* progress_data)
{
    return static_cast<const std::atomic<bool>*>(progress_data)->load() ? FALSE : TRUE;
}

void check_stop(const std::atomic<bool>& stop)
{
    if (stop) throw LayerReadingStopped();
}

} // namespace tarvo
