#include "layers/local_files_only.h"

#include <cpl_conv.h>
#include <cpl_http.h>
#include <cpl_string.h>
#include <cpl_vsi_virtual.h>
#include <ogr_srs_api.h>

#include <cerrno>
#include <string>

namespace tarvo {

namespace {

// A file system in which nothing is there.
class NoFiles : public VSIFilesystemHandler {
public:
    VSIVirtualHandle* Open(const char*, const char*, bool, CSLConstList) override
    {
        errno = ENOENT;
        return nullptr;
    }
    int Stat(const char*, VSIStatBufL*, int) override
    {
        errno = ENOENT;
        return -1;
    }
};

// The manager takes the handler for good, so that a second one for the same names would be lost.
void close_file_system(const std::string& prefix)
{
    if (dynamic_cast<NoFiles*>(VSIFileManager::GetHandler((prefix + "x").c_str())) != nullptr) return;
    VSIFileManager::InstallHandler(prefix, new NoFiles);
}

CPLHTTPResult* refuse_fetch(const char*, CSLConstList, GDALProgressFunc, void*, CPLHTTPFetchWriteFunc, void*, void*)
{
    auto* const result = static_cast<CPLHTTPResult*>(CPLCalloc(1, sizeof(CPLHTTPResult)));
    result->nStatus = 1;
    result->pszErrBuf = CPLStrdup("nothing is fetched from a network");
    return result;
}

} // namespace

void allow_local_files_only()
{
    for (const char* const remote :
         {"curl", "s3", "gs", "az", "adls", "oss", "swift", "hdfs", "webhdfs", "curl_streaming", "s3_streaming",
          "gs_streaming", "az_streaming", "oss_streaming", "swift_streaming"}) {
        close_file_system(std::string("/vsi") + remote + '/');
    }
    close_file_system("/vsicurl?");
    CPLHTTPSetFetchCallback(refuse_fetch, nullptr);
    OSRSetPROJEnableNetwork(FALSE);
}

} // namespace tarvo
