#include "layers/layer_file.h"

#include "layers/local_files_only.h"
#include "layers/raster_source.h"
#include "layers/shape_source.h"

#include <gdal_frmts.h>
#include <ogrsf_frmts.h>

#include <filesystem>
#include <stdexcept>

namespace tarvo {

namespace fs = std::filesystem;

namespace {

// Formats that a file on this computer is enough for, and that do not lead on to other sources.
void register_formats()
{
    GDALRegister_GTiff();
    GDALRegister_PNG();
    GDALRegister_JPEG();
    GDALRegister_GIF();
    GDALRegister_BMP();
    GDALRegister_JP2OpenJPEG();
    GDALRegister_WEBP();
    GDALRegister_AAIGrid();
    GDALRegister_GSAG();
    GDALRegister_GSBG();
    GDALRegister_GS7BG();
    GDALRegister_netCDF();
    GDALRegister_EHdr();
    GDALRegister_HFA();
    RegisterOGRShape();
    RegisterOGRDXF();
    RegisterOGRGeoJSON();
    RegisterOGRGeoPackage();
    RegisterOGRS57();
    RegisterOGRTAB();
    RegisterOGRFlatGeobuf();
    RegisterOGRGPX();
    RegisterOGRKML();
}

// Pipes and devices would be waited for without end.
void check_file(const std::string& path)
{
    std::error_code unreachable;
    const fs::file_status status = fs::status(path, unreachable);
    if (status.type() == fs::file_type::not_found) throw std::runtime_error("the file is not there");
    if (unreachable) throw std::runtime_error("the file cannot be reached: " + unreachable.message());
    if (status.type() != fs::file_type::regular) throw std::runtime_error("it is no file");
    if (fs::file_size(path, unreachable) == 0 && !unreachable) throw std::runtime_error("the file is empty");
}

Dataset open_dataset(const std::string& name)
{
    CPLErrorReset();
    constexpr unsigned kHow = GDAL_OF_RASTER | GDAL_OF_VECTOR | GDAL_OF_READONLY | GDAL_OF_VERBOSE_ERROR;
    // Of S-57 charts: one shape a sounding, lettered with its depth, not one for all.
    static const char* const kChartOptions[] = {"SPLIT_MULTIPOINT=ON", "ADD_SOUNDG_DEPTH=ON", nullptr};
    const bool is_chart = std::filesystem::path(name).extension() == ".000";
    Dataset dataset(GDALDataset::Open(name.c_str(), kHow, nullptr, is_chart ? kChartOptions : nullptr));
    if (dataset == nullptr) throw std::runtime_error(gdal_reason("it is of no format that is known"));
    return dataset;
}

// A file that holds several grids shows the first one, and says so.
std::string first_grid_of(GDALDataset& dataset)
{
    char** const grids = dataset.GetMetadata("SUBDATASETS");
    const char* const name = CSLFetchNameValue(grids, "SUBDATASET_1_NAME");
    return name == nullptr ? "" : name;
}

} // namespace

GdalLayerReader::GdalLayerReader()
{
    constexpr GIntBig kPixelCache = 64 * 1024 * 1024; // bytes, of the pixels that were read last
    CPLSetErrorHandler(CPLQuietErrorHandler);         // what goes wrong is told by who asked
    GDALSetCacheMax64(kPixelCache);
    allow_local_files_only();
    register_formats();
}

std::unique_ptr<LayerSource> GdalLayerReader::open(const std::string& path, const std::string& survey_grid,
                                                   const std::atomic<bool>& stop)
{
    check_file(path);
    const SurveyGrid survey = survey_grid_of(survey_grid);
    Dataset dataset = open_dataset(path);
    check_stop(stop);
    if (dataset->GetRasterCount() == 0 && dataset->GetLayerCount() == 0) {
        const std::string grid = first_grid_of(*dataset);
        if (grid.empty()) throw std::runtime_error("it holds neither pixels nor shapes");
        dataset = open_dataset(grid);
    }
    if (dataset->GetLayerCount() > 0) return open_shapes(std::move(dataset), survey);
    if (dataset->GetRasterCount() == 0) throw std::runtime_error("it holds neither pixels nor shapes");
    return open_raster(std::move(dataset), survey, stop);
}

} // namespace tarvo
