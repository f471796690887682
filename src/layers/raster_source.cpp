#include "layers/raster_source.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <utility>

namespace tarvo {

namespace {

constexpr float kNoValue = std::numeric_limits<float>::quiet_NaN();
constexpr int kSampleSide = 256; // pixels of a sample that values are judged by

bool is_value(float value)
{
    constexpr float kLargest = 1e37F; // what formats write for no value lies above
    return std::abs(value) < kLargest;
}

// A block of one band or its overview, decimated to so many columns and rows.
struct BandBlock {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    int columns = 0;
    int rows = 0;
};

void read_block(GDALRasterBand& band, const BandBlock& block, float* values, const std::atomic<bool>& stop)
{
    GDALRasterIOExtraArg extra;
    INIT_RASTERIO_EXTRA_ARG(extra);
    extra.pfnProgress = go_on_until_stopped;
    extra.pProgressData = const_cast<std::atomic<bool>*>(&stop); // which GDAL hands back unchanged
    const CPLErr status = band.RasterIO(GF_Read, block.x, block.y, block.width, block.height, values, block.columns,
                                        block.rows, GDT_Float32, 0, 0, &extra);
    check_stop(stop);
    if (status != CE_None) throw std::runtime_error(gdal_reason("its pixels cannot be read"));
}

class RasterSource : public LayerSource {
public:
    RasterSource(Dataset dataset, const SurveyGrid& survey, const std::atomic<bool>& stop)
        : dataset_(std::move(dataset)), band_(*dataset_->GetRasterBand(1)), system_(dataset_->GetSpatialRef(), survey)
    {
        facts_.format = dataset_->GetDriver()->GetMetadataItem(GDAL_DMD_LONGNAME);
        facts_.has_system_of_own = system_.is_of_its_own();
        if (system_.note()) facts_.notes.push_back(*system_.note());
        find_place();
        find_levels();
        choose_kind();
        judge_values(stop);
    }

    const LayerFacts& facts() const override { return facts_; }

    void bring_into_layer(std::span<LayerPlace> places) override { system_.bring_to_layer(places); }

    LayerShapes read_shapes(const std::string&, const std::atomic<bool>&) override { return {}; }

    // Some rows at a time: the block of all bands as 32-bit numbers would take several times the pixels' own size.
    RasterPixels read_pixels(const RasterRead& read, const std::atomic<bool>& stop) override
    {
        constexpr std::size_t kPixelsAtATime = std::size_t{1} << 20;
        const int columns = read.width / read.step;
        const int rows = read.height / read.step;
        const auto rows_at_a_time = static_cast<int>(
            std::max<std::size_t>(kPixelsAtATime / static_cast<std::size_t>(std::max(columns, 1)), 64));
        RasterPixels pixels;
        for (int row = 0; row < rows; row += rows_at_a_time) {
            const int count = std::min(rows_at_a_time, rows - row);
            append_rows(pixels, read.level,
                        {read.x, read.y + row * read.step, read.width, count * read.step, columns, count}, stop);
        }
        return pixels;
    }

private:
    void find_place()
    {
        if (dataset_->GetGeoTransform(facts_.pixel_to_place.data()) != CE_None) {
            const bool has_points =
                dataset_->GetGCPCount() > 0 && GDALGCPsToGeoTransform(dataset_->GetGCPCount(), dataset_->GetGCPs(),
                                                                      facts_.pixel_to_place.data(), TRUE) != FALSE;
            if (!has_points)
                throw std::runtime_error("it has no place: neither a world file nor coordinates of its own");
            facts_.notes.emplace_back("placed by its control points");
        }
        constexpr int kEdgePlaces = 20;
        std::vector<LayerPlace> edge;
        const auto& [x0, x_column, x_row, y0, y_column, y_row] = facts_.pixel_to_place;
        const auto add = [&](double column, double row) {
            edge.push_back({x0 + x_column * column + x_row * row, y0 + y_column * column + y_row * row});
        };
        const double width = dataset_->GetRasterXSize();
        const double height = dataset_->GetRasterYSize();
        for (int at = 0; at <= kEdgePlaces; ++at) {
            add(width * at / kEdgePlaces, 0);
            add(width * at / kEdgePlaces, height);
            add(0, height * at / kEdgePlaces);
            add(width, height * at / kEdgePlaces);
        }
        system_.bring_to_survey(edge);
        for (const LayerPlace& place : edge) {
            if (std::isnan(place.x)) continue;
            LayerExtent& extent = facts_.extent;
            extent = {std::min(extent.x_min, place.x), std::max(extent.x_max, place.x), std::min(extent.y_min, place.y),
                      std::max(extent.y_max, place.y)};
        }
    }

    // Reductions in the order of their size, whatever the order in the file.
    void find_levels()
    {
        facts_.levels.push_back({band_.GetXSize(), band_.GetYSize()});
        std::vector<std::pair<int, int>> widths; // with their numbers in the file
        for (int overview = 0; overview < band_.GetOverviewCount(); ++overview) {
            GDALRasterBand* const reduced = band_.GetOverview(overview);
            if (reduced != nullptr && reduced->GetXSize() > 0) widths.emplace_back(-reduced->GetXSize(), overview);
        }
        std::sort(widths.begin(), widths.end());
        for (const auto& [width, overview] : widths) {
            facts_.levels.push_back({-width, band_.GetOverview(overview)->GetYSize()});
            overviews_.push_back(overview);
        }
    }

    void choose_kind()
    {
        const int bands = dataset_->GetRasterCount();
        const auto is_colour = [this](int band) {
            const GDALDataType type = dataset_->GetRasterBand(band)->GetRasterDataType();
            return type == GDT_Byte || type == GDT_UInt16;
        };
        has_palette_ = band_.GetColorTable() != nullptr;
        has_colour_bands_ = !has_palette_ && bands >= 3 && is_colour(1) && is_colour(2) && is_colour(3);
        facts_.kind = has_palette_ || has_colour_bands_ ? LayerKind::raster : LayerKind::grid;
        const bool second_covers = bands == 2 && dataset_->GetRasterBand(2)->GetColorInterpretation() == GCI_AlphaBand;
        if (facts_.kind == LayerKind::grid && bands > 1 && !second_covers) {
            facts_.notes.push_back("the first of its " + std::to_string(bands) + " bands");
        }
    }

    // The band of a level; band 1 and its like count from 1.
    GDALRasterBand& band_of_level(int band, int level)
    {
        GDALRasterBand* const whole = dataset_->GetRasterBand(band);
        if (level == 0) return *whole;
        GDALRasterBand* const reduced = whole->GetOverview(overviews_[static_cast<std::size_t>(level) - 1]);
        if (reduced == nullptr) throw std::runtime_error("a reduced copy of it is not whole");
        return *reduced;
    }

    std::vector<float> band_values(int band, int level, const BandBlock& block, const std::atomic<bool>& stop)
    {
        std::vector<float> values(static_cast<std::size_t>(block.columns) * static_cast<std::size_t>(block.rows));
        read_block(band_of_level(band, level), block, values.data(), stop);
        int has_null = FALSE;
        const auto null = static_cast<float>(dataset_->GetRasterBand(band)->GetNoDataValue(&has_null));
        if (has_null != FALSE) std::replace(values.begin(), values.end(), null, kNoValue);
        return values;
    }

    // 0 to 255: how much each pixel covers by a mask or an alpha band of the file; empty when there is none.
    std::vector<float> mask_values(int level, const BandBlock& block, const std::atomic<bool>& stop)
    {
        const int flags = band_.GetMaskFlags();
        if ((flags & (GMF_ALL_VALID | GMF_NODATA)) != 0) return {};
        GDALRasterBand* mask = band_.GetMaskBand();
        std::vector<float> values(static_cast<std::size_t>(block.columns) * static_cast<std::size_t>(block.rows));
        BandBlock part = block;
        if (level > 0) {
            const int overview = overviews_[static_cast<std::size_t>(level) - 1];
            const RasterLevel& reduced = facts_.levels[static_cast<std::size_t>(level)];
            if (mask->GetOverviewCount() > overview && mask->GetOverview(overview)->GetXSize() == reduced.width) {
                mask = mask->GetOverview(overview);
            } else { // the same part of the whole mask
                const RasterLevel& whole = facts_.levels.front();
                const auto scaled = [](int pixels, int to, int from) {
                    return static_cast<int>(std::int64_t{pixels} * to / from);
                };
                part = {scaled(block.x, whole.width, reduced.width),
                        scaled(block.y, whole.height, reduced.height),
                        std::max(scaled(block.width, whole.width, reduced.width), 1),
                        std::max(scaled(block.height, whole.height, reduced.height), 1),
                        block.columns,
                        block.rows};
            }
        }
        read_block(*mask, part, values.data(), stop);
        return values;
    }

    void append_rows(RasterPixels& pixels, int level, const BandBlock& block, const std::atomic<bool>& stop)
    {
        const std::vector<float> mask = mask_values(level, block, stop);
        const std::vector<float> first = band_values(1, level, block, stop);
        const auto cover = [&](std::size_t at) {
            return mask.empty() ? 255U : static_cast<unsigned>(std::clamp(mask[at], 0.0F, 255.0F));
        };
        if (facts_.kind == LayerKind::grid) {
            for (std::size_t at = 0; at < first.size(); ++at) {
                pixels.values.push_back(is_value(first[at]) && cover(at) > 0 ? first[at] : kNoValue);
            }
        } else if (has_palette_) {
            for (std::size_t at = 0; at < first.size(); ++at) {
                pixels.colours.push_back(palette_colour(first[at], cover(at)));
            }
        } else {
            const std::vector<float> second = band_values(2, level, block, stop);
            const std::vector<float> third = band_values(3, level, block, stop);
            for (std::size_t at = 0; at < first.size(); ++at) {
                const bool is_null = std::isnan(first[at]) && std::isnan(second[at]) && std::isnan(third[at]);
                pixels.colours.push_back((is_null ? 0U : cover(at)) << 24 | part(first[at]) << 16 |
                                         part(second[at]) << 8 | part(third[at]));
            }
        }
    }

    std::uint32_t palette_colour(float value, unsigned cover)
    {
        const GDALColorTable& table = *band_.GetColorTable();
        if (!is_value(value) || value < 0 || value >= static_cast<float>(table.GetColorEntryCount())) return 0;
        const GDALColorEntry& entry = *table.GetColorEntry(static_cast<int>(value));
        const auto byte = [](short c) { return static_cast<std::uint32_t>(std::clamp<int>(c, 0, 255)); };
        return byte(entry.c4) * cover / 255 << 24 | byte(entry.c1) << 16 | byte(entry.c2) << 8 | byte(entry.c3);
    }

    // A share of red, green or blue; a pixel with a null in one band and not in all has none of that colour.
    std::uint32_t part(float value) const
    {
        if (!is_value(value)) return 0;
        return static_cast<std::uint32_t>(std::lround(std::clamp(value / brightest_, 0.0F, 1.0F) * 255));
    }

    // Places that tell of a band's values without reading all of it: a reduced copy or every so many pixels of it, and
    // of a large one that has no such copies some blocks.
    std::vector<float> sample(int band, const std::atomic<bool>& stop)
    {
        constexpr std::int64_t kLarge = std::int64_t{1} << 24; // pixels
        constexpr int kBlocks = 3;                             // along each side
        int level = static_cast<int>(facts_.levels.size()) - 1;
        while (level > 0 && facts_.levels[static_cast<std::size_t>(level)].width < kSampleSide) --level;
        const RasterLevel& size = facts_.levels[static_cast<std::size_t>(level)];
        if (std::int64_t{size.width} * size.height <= kLarge) {
            return band_values(
                band, level,
                {0, 0, size.width, size.height, std::min(size.width, kSampleSide), std::min(size.height, kSampleSide)},
                stop);
        }
        std::vector<float> values;
        const int width = std::min(kSampleSide, size.width);
        const int height = std::min(kSampleSide, size.height);
        for (int block = 0; block < kBlocks * kBlocks; ++block) {
            const auto begin = [&](int whole, int length, int at) {
                return static_cast<int>(std::int64_t{whole - length} * (2 * at + 1) / (2 * kBlocks));
            };
            const std::vector<float> part =
                band_values(band, level,
                            {begin(size.width, width, block % kBlocks), begin(size.height, height, block / kBlocks),
                             width, height, width, height},
                            stop);
            values.insert(values.end(), part.begin(), part.end());
        }
        return values;
    }

    void judge_values(const std::atomic<bool>& stop)
    {
        if (has_palette_) return;
        if (has_colour_bands_) {
            if (band_.GetRasterDataType() == GDT_Byte) return;
            brightest_ = 1;
            for (int band = 1; band <= 3; ++band) {
                for (const float value : sample(band, stop)) {
                    if (is_value(value)) brightest_ = std::max(brightest_, value);
                }
            }
            return;
        }
        std::vector<float> values = sample(1, stop);
        values.erase(std::remove_if(values.begin(), values.end(), [](float value) { return !is_value(value); }),
                     values.end());
        if (values.empty()) {
            facts_.notes.emplace_back("no values were found in a sample of its pixels");
            return;
        }
        const auto ranked = [&](double share) {
            const auto rank = static_cast<std::ptrdiff_t>(share * static_cast<double>(values.size() - 1));
            std::nth_element(values.begin(), values.begin() + rank, values.end());
            return static_cast<double>(values[static_cast<std::size_t>(rank)]);
        };
        facts_.low = ranked(0.02);
        facts_.high = ranked(0.98);
        if (!(facts_.high > facts_.low)) facts_.high = facts_.low + 1;
    }

    Dataset dataset_;
    GDALRasterBand& band_;
    LayerSystem system_;
    LayerFacts facts_;
    std::vector<int> overviews_; // the file's numbers of the levels from 1 on
    bool has_palette_ = false;
    bool has_colour_bands_ = false;
    float brightest_ = 255; // the value of a colour band that is drawn as 255
};

} // namespace

std::unique_ptr<LayerSource> open_raster(Dataset dataset, const SurveyGrid& survey, const std::atomic<bool>& stop)
{
    if (dataset->GetRasterXSize() < 1 || dataset->GetRasterYSize() < 1) {
        throw std::runtime_error("it has no pixels");
    }
    return std::make_unique<RasterSource>(std::move(dataset), survey, stop);
}

} // namespace tarvo
