#include "survey/layer_work.h"
#include "test_folder.h"
#include "tools/common/layer_module.h"
#include "tools/process_survey.h"

#include <gdal_priv.h>
#include <gdal_utils.h>
#include <gtest/gtest.h>
#include <ogr_spatialref.h>
#include <ogrsf_frmts.h>

#include <cmath>
#include <functional>
#include <memory>

namespace tarvo {
namespace {

constexpr std::atomic<bool> kGoOn = false;
constexpr int kColumns = 40;
constexpr int kRows = 30;
const MapView kView = {{428000.3, 5994899.8, 1.7, 1}, 150, 120};

LayerReader& reader()
{
    static const std::shared_ptr<LayerReader> loaded = load_layer_reader();
    return *loaded;
}

Picture drawn(const LayerRecord& record, const std::string& survey_grid = {})
{
    const OpenLayer layer = open_layer(reader(), record, survey_grid, LayerIs::in_the_list, kGoOn);
    const LayerDrawing drawing = {record, layer.facts.low, layer.facts.high, layer.shapes,
                                  read_raster(*layer.source, kView, kGoOn)};
    return draw_backdrop(kView, {&drawing, 1}, 1, kGoOn).picture;
}

class LayerFiles : public testing::Test {
protected:
    static void SetUpTestSuite() { GDALAllRegister(); }

    using Dataset = std::unique_ptr<GDALDataset, decltype(&GDALClose)>;

    // A GeoTIFF with number(band, column, row) in its pixels.
    std::string make_raster(const std::string& name, int bands, GDALDataType type, std::array<double, 6> place,
                            const std::function<double(int band, int column, int row)>& number,
                            const std::function<void(GDALDataset&)>& complete = {}) const
    {
        GDALDriver& driver = *GetGDALDriverManager()->GetDriverByName("GTiff");
        const Dataset dataset(driver.Create(folder_.path(name).c_str(), kColumns, kRows, bands, type, nullptr),
                              GDALClose);
        dataset->SetGeoTransform(place.data());
        for (int band = 1; band <= bands; ++band) {
            std::vector<double> values;
            for (int row = 0; row < kRows; ++row) {
                for (int column = 0; column < kColumns; ++column) values.push_back(number(band, column, row));
            }
            EXPECT_EQ(dataset->GetRasterBand(band)->RasterIO(GF_Write, 0, 0, kColumns, kRows, values.data(), kColumns,
                                                             kRows, GDT_Float64, 0, 0, nullptr),
                      CE_None);
        }
        if (complete) complete(*dataset);
        return folder_.path(name);
    }

    // Another form of a raster or a drawing.
    std::string convert(const std::string& from, const std::string& name, std::vector<const char*> options,
                        bool is_raster) const
    {
        options.push_back(nullptr);
        char** const arguments = const_cast<char**>(options.data()); // which are only read
        const Dataset source(GDALDataset::Open(from.c_str()), GDALClose);
        GDALDatasetH handle = source.get();
        int fault = 0;
        GDALDatasetH made = nullptr;
        if (is_raster) {
            GDALTranslateOptions* const how = GDALTranslateOptionsNew(arguments, nullptr);
            made = GDALTranslate(folder_.path(name).c_str(), handle, how, &fault);
            GDALTranslateOptionsFree(how);
        } else {
            GDALVectorTranslateOptions* const how = GDALVectorTranslateOptionsNew(arguments, nullptr);
            made = GDALVectorTranslate(folder_.path(name).c_str(), nullptr, 1, &handle, how, &fault);
            GDALVectorTranslateOptionsFree(how);
        }
        EXPECT_NE(made, nullptr) << name;
        if (made != nullptr) GDALClose(made);
        return folder_.path(name);
    }

    TestFolder folder_;
};

// The picture that a raster gives by its place alone. colour: of a pixel; kBlack for none.
Picture computed(const std::array<double, 6>& g, const std::function<Colour(int column, int row)>& colour)
{
    Picture picture(kView.width, kView.height);
    const double turned = g[1] * g[5] - g[2] * g[4];
    for (int y = 0; y < kView.height; ++y) {
        for (int x = 0; x < kView.width; ++x) {
            const double east = kView.transform.x_min + x / 1.7 - g[0];
            const double north = kView.transform.y_max - y / 1.7 - g[3];
            const double column = std::floor((east * g[5] - north * g[2]) / turned);
            const double row = std::floor((north * g[1] - east * g[4]) / turned);
            if (column < 0 || row < 0 || column >= kColumns || row >= kRows) continue;
            picture.row(y)[x] = colour(static_cast<int>(column), static_cast<int>(row));
        }
    }
    return picture;
}

const std::array<double, 6> kUpright = {428005, 2, 0, 5994890, 0, -2};
const std::array<double, 6> kTurned = {428020, 1.1, 0.7, 5994870, 0.7, -1.1};

double red_green_blue(int band, int column, int row)
{
    return band == 1 ? column * 6 : band == 2 ? row * 8 : band == 3 ? 120 : column < 20 ? 255 : 0;
}
Colour colour_of(int column, int row)
{
    return static_cast<Colour>(column * 6) << 16 | static_cast<Colour>(row * 8) << 8 | 120;
}
double ramp(int, int column, int row)
{
    return column + kColumns * row;
}
Colour grey_of_ramp(int column, int row)
{
    return static_cast<Colour>(std::nearbyint(ramp(1, column, row) / 1199 * 255)) * 0x010101;
}

LayerRecord record_of(const std::string& path)
{
    LayerRecord record;
    record.path = path;
    record.range = LayerRange{0, 1199};
    return record;
}

TEST_F(LayerFiles, RastersAndGridsLieWhereTheirPlacesSay)
{
    const auto with_null = [](GDALDataset& dataset) { dataset.GetRasterBand(1)->SetNoDataValue(41); };
    const auto colours = make_raster("colours.tif", 3, GDT_Byte, kUpright, red_green_blue);
    const auto grid = make_raster("grid.tif", 1, GDT_Float32, kUpright, ramp, with_null);
    const auto grid_without_null = [](int column, int row) {
        return ramp(1, column, row) == 41 ? kBlack : grey_of_ramp(column, row);
    };
    const auto palette = make_raster(
        "palette.tif", 1, GDT_Byte, kUpright, [](int, int column, int) { return column % 2; },
        [](GDALDataset& dataset) {
            GDALColorTable table;
            const GDALColorEntry entries[] = {{1, 2, 3, 255}, {200, 100, 50, 255}};
            table.SetColorEntry(0, &entries[0]);
            table.SetColorEntry(1, &entries[1]);
            dataset.GetRasterBand(1)->SetColorTable(&table);
        });
    const auto bits = make_raster("byte.tif", 1, GDT_Byte, kUpright, [](int, int column, int) { return column % 2; });
    struct Case {
        const char* label;
        std::string file;
        Picture picture;
        std::optional<LayerRange> range = LayerRange{0, 1199};
    };
    const Case cases[] = {
        {"3 bands of 8 bits", colours, computed(kUpright, colour_of)},
        {"4 bands, the last one covers", make_raster("cover.tif", 4, GDT_Byte, kUpright, red_green_blue),
         computed(kUpright, [](int c, int r) { return c < 20 ? colour_of(c, r) : kBlack; })},
        {"3 bands of 16 bits",
         make_raster("deep.tif", 3, GDT_UInt16, kUpright,
                     [](int band, int c, int r) { return band == 3 ? 25500 : 100 * red_green_blue(band, c, r); }),
         computed(kUpright, [](int c, int r) { return colour_of(c, r) | 0xFF; })},
        {"a palette", palette, computed(kUpright, [](int c, int) { return c % 2 == 0 ? 0x010203U : 0xC86432U; })},
        {"1 bit, its values its range",
         convert(bits, "bits.tif", {"-co", "NBITS=1"}, true),
         computed(kUpright, [](int c, int) { return c % 2 == 0 ? kBlack : kWhite; }),
         {}},
        {"16 bits", make_raster("short.tif", 1, GDT_Int16, kUpright, ramp), computed(kUpright, grey_of_ramp)},
        {"32 bits with a null", grid, computed(kUpright, grid_without_null)},
        {"turned", make_raster("turned.tif", 1, GDT_Float64, kTurned, ramp), computed(kTurned, grey_of_ramp)},
        {"picture with a world file", convert(colours, "p.png", {"-of", "PNG", "-co", "WORLDFILE=YES"}, true),
         computed(kUpright, colour_of)},
        {"ASCII grid", convert(grid, "g.asc", {"-of", "AAIGrid"}, true), computed(kUpright, grid_without_null)},
        {"Surfer 7", convert(grid, "g.grd", {"-of", "GS7BG"}, true), computed(kUpright, grid_without_null)},
        {"netCDF", convert(grid, "g.nc", {"-of", "netCDF"}, true), computed(kUpright, grid_without_null)},
    };
    for (const Case& c : cases) {
        LayerRecord record = record_of(c.file);
        record.range = c.range;
        EXPECT_TRUE(drawn(record) == c.picture) << c.label;
    }
}

TEST_F(LayerFiles, ReducedCopiesServeViewsOfTheirScale)
{
    const std::string file = folder_.path("large.tif");
    {
        GDALDriver& driver = *GetGDALDriverManager()->GetDriverByName("GTiff");
        const Dataset dataset(driver.Create(file.c_str(), 1200, 960, 1, GDT_Byte, nullptr), GDALClose);
        std::array<double, 6> place = {428000, 0.1, 0, 5994900, 0, -0.1};
        dataset->SetGeoTransform(place.data());
        dataset->GetRasterBand(1)->Fill(200);
        int factors[] = {4};
        ASSERT_EQ(dataset->BuildOverviews("NEAREST", 1, factors, 0, nullptr, nullptr, nullptr), CE_None);
        dataset->GetRasterBand(1)->GetOverview(0)->Fill(100);
    }
    OpenLayer layer = open_layer(reader(), record_of(file), "", LayerIs::in_the_list, kGoOn);
    EXPECT_EQ(layer.facts.levels, (std::vector<RasterLevel>{{1200, 960}, {300, 240}}));
    const auto raster =
        read_raster(*layer.source, kView, kGoOn); // 0.59 m a pixel: 5.9 of the file's, 1.5 of the copy's
    ASSERT_NE(raster, nullptr);
    EXPECT_EQ(raster->read.level, 1);
    EXPECT_EQ(raster->pixels.values.front(), 100);
    const std::atomic<bool> stop = true;
    EXPECT_THROW(read_raster(*layer.source, kView, stop), LayerReadingStopped);
}

const std::string kDrawing =
    R"({"type": "FeatureCollection", "crs": {"type": "name", "properties": {"name": "urn:ogc:def:crs:EPSG::32632"}},
"features": [
{"type": "Feature", "properties": {"name": "Area"}, "geometry": {"type": "Polygon", "coordinates": [
[[428020.1, 5994840.2], [428070.3, 5994841.1], [428068.2, 5994880.4], [428020.1, 5994840.2]],
[[428055.2, 5994850.3], [428060.1, 5994850.3], [428060.1, 5994858.2], [428055.2, 5994850.3]]]}},
{"type": "Feature", "properties": {"name": "A7"}, "geometry": {"type": "LineString", "coordinates":
[[428005.2, 5994835.4], [428040.3, 5994895.1], [428084.6, 5994890.3]]}},
{"type": "Feature", "properties": {"name": "Wreck"}, "geometry": {"type": "Point", "coordinates": [428030.4, 5994860.2]}}]})";

LayerShapes drawing_by_hand()
{
    LayerShapes shapes;
    shapes.places = {{428020.1, 5994840.2}, {428070.3, 5994841.1}, {428068.2, 5994880.4}, {428020.1, 5994840.2},
                     {428055.2, 5994850.3}, {428060.1, 5994850.3}, {428060.1, 5994858.2}, {428055.2, 5994850.3},
                     {428005.2, 5994835.4}, {428040.3, 5994895.1}, {428084.6, 5994890.3}, {428030.4, 5994860.2}};
    shapes.path_ends = {4, 8, 11, 12};
    shapes.labels = {"", "Area", "A7", "Wreck"};
    shapes.shapes = {{ShapeKind::polygon, 0, 0, 2, 1}, {ShapeKind::line, 0, 2, 1, 2}, {ShapeKind::point, 0, 3, 1, 3}};
    return shapes;
}

TEST_F(LayerFiles, ShapesLieWhereTheirPlacesSayInTheSurveysGrid)
{
    const std::string drawing = folder_.write("d.geojson", kDrawing);
    const auto one_kind = [&](const char* name, const char* kind) {
        return convert(drawing, name,
                       {"-f", "ESRI Shapefile", "-nlt", kind, "-where",
                        std::string(kind) == "POLYGON" ? "name='Area'"
                        : std::string(kind) == "POINT" ? "name='Wreck'"
                                                       : "name='A7'"},
                       false);
    };
    struct Case {
        const char* label;
        std::string file;
        std::size_t first; // of the shapes by hand
        std::size_t count;
        bool lettered;
    };
    const Case cases[] = {
        {"GeoJSON", drawing, 0, 3, true},
        {"GeoPackage", convert(drawing, "d.gpkg", {"-f", "GPKG"}, false), 0, 3, true},
        {"in degrees", convert(drawing, "deg.gpkg", {"-f", "GPKG", "-t_srs", "EPSG:4326"}, false), 0, 3, true},
        {"in another zone",
         convert(drawing, "z33.geojson",
                 {"-f", "GeoJSON", "-t_srs", "EPSG:4326", "-lco", "RFC7946=NO", "-lco", "COORDINATE_PRECISION=12"},
                 false),
         0, 3, true},
        {"shapefile of polygons", one_kind("a.shp", "POLYGON"), 0, 1, true},
        {"shapefile of lines", one_kind("l.shp", "LINESTRING"), 1, 1, true},
        {"shapefile of points", one_kind("p.shp", "POINT"), 2, 1, true},
    };
    for (const Case& c : cases) {
        LayerRecord record = record_of(c.file);
        record.label = "name";
        record.width = 2;
        auto by_hand = std::make_shared<LayerShapes>(drawing_by_hand());
        by_hand->shapes = {by_hand->shapes.begin() + static_cast<std::ptrdiff_t>(c.first),
                           by_hand->shapes.begin() + static_cast<std::ptrdiff_t>(c.first + c.count)};
        const LayerDrawing expected = {record, 0, 1, by_hand, nullptr};
        EXPECT_TRUE(drawn(record, "UTM 32N") == draw_backdrop(kView, {&expected, 1}, 1, kGoOn).picture) << c.label;
    }
}

// Charts keep places and objects apart, and begin with a table about themselves.
TEST_F(LayerFiles, AChartLiesInTheSurveysGrid)
{
    const std::string file = folder_.path("chart.000");
    {
        GDALDriver& driver = *GetGDALDriverManager()->GetDriverByName("S57");
        const Dataset chart(driver.Create(file.c_str(), 0, 0, 0, GDT_Unknown, nullptr), GDALClose);
        const auto add = [&](const char* name, const std::vector<std::pair<const char*, int>>& numbers,
                             const char* text, const OGRGeometry* place) {
            OGRLayer& layer = *chart->GetLayerByName(name);
            OGRFeature feature(layer.GetLayerDefn());
            for (const auto& [field, number] : numbers) feature.SetField(field, 1, &number);
            if (text != nullptr) feature.SetField("OBJNAM", text);
            if (place != nullptr) feature.SetGeometry(place);
            EXPECT_EQ(layer.CreateFeature(&feature), OGRERR_NONE) << name;
        };
        const OGRPoint wreck(7.8994801397, 54.0968767598); // by gdaltransform, of the place below
        add("IsolatedNode", {{"RCNM", 110}, {"RCID", 1}, {"RVER", 1}, {"RUIN", 1}}, nullptr, &wreck);
        add("WRECKS",
            {{"RCID", 1},
             {"PRIM", 1},
             {"GRUP", 2},
             {"RVER", 1},
             {"AGEN", 550},
             {"FIDN", 1},
             {"FIDS", 1},
             {"NAME_RCNM", 110},
             {"NAME_RCID", 1},
             {"ORNT", 255},
             {"USAG", 255},
             {"MASK", 255}},
            "Wreck", nullptr);
    }
    LayerRecord record = record_of(file);
    record.label = "OBJNAM";
    const OpenLayer layer = open_layer(reader(), record, "UTM 32N", LayerIs::in_the_list, kGoOn);
    EXPECT_EQ(layer.facts.notes, std::vector<std::string>());
    EXPECT_EQ(layer.shapes->parts, std::vector<std::string>{"WRECKS"});
    EXPECT_EQ(layer.shapes->labels.back(), "Wreck");
    ASSERT_EQ(layer.shapes->places.size(), 1U);
    EXPECT_NEAR(layer.shapes->places[0].x, 428030.4, 0.02);
    EXPECT_NEAR(layer.shapes->places[0].y, 5994860.2, 0.02);
}

TEST_F(LayerFiles, ADrawingBringsItsLayersAndLettering)
{
    const std::string file = folder_.write("d.dxf", "0\nSECTION\n2\nENTITIES\n0\nLINE\n8\nPlan\n10\n1\n20\n2\n11\n3\n21"
                                                    "\n4\n0\nTEXT\n8\nNames\n10\n5\n20\n6\n40\n1\n1\nBuoy 4\n"
                                                    "0\nENDSEC\n0\nEOF\n");
    const OpenLayer layer = open_layer(reader(), record_of(file), "UTM 32N", LayerIs::new_in_the_list, kGoOn);
    EXPECT_EQ(layer.shapes->parts, (std::vector<std::string>{"Plan", "Names"}));
    EXPECT_EQ(layer.shapes->places, (std::vector<LayerPlace>{{1, 2}, {3, 4}, {5, 6}}));
    EXPECT_EQ(layer.label_field, "Text");
    EXPECT_EQ(layer.shapes->labels.back(), "Buoy 4");
    EXPECT_EQ(layer.facts.notes,
              std::vector<std::string>{"it has no coordinate system: taken as lying in the survey's grid"});
}

TEST_F(LayerFiles, WhatIsNotWholeIsRefusedOrLeftOut)
{
    const std::string whole = folder_.write("whole.geojson", kDrawing);
    const std::string tiff = make_raster("whole.tif", 3, GDT_Byte, kUpright, red_green_blue);
    struct Case {
        const char* name;
        std::string bytes;
        const char* reason;
    };
    const Case cases[] = {
        {"empty.tif", "", "the file is empty"},
        {"half.tif", folder_.read("whole.tif").substr(0, 1000), "IReadBlock failed"},
        {"cut.geojson", kDrawing.substr(0, 500), "Failed to read GeoJSON data"},
        {"random.dxf", std::string(3000, '\x93'), "not recognized"},
        {"zero.asc", "ncols 0\nnrows 0\nxllcorner 0\nyllcorner 0\ncellsize 5\n", "Invalid dataset dimensions"},
        {"unplaced.png", folder_.read("whole.tif"), ""}, // renamed: its bytes tell what it is
    };
    for (const Case& c : cases) {
        std::string reason;
        try {
            drawn(record_of(folder_.write(c.name, c.bytes)));
        } catch (const std::runtime_error& fault) {
            reason = fault.what();
        }
        EXPECT_TRUE(*c.reason == '\0' ? reason.empty() : reason.find(c.reason) != std::string::npos)
            << c.name << ": " << reason;
    }
    for (const char* const path : {"/dev/zero", "/vsicurl/http://127.0.0.1/a.tif", "http://127.0.0.1/a.geojson"}) {
        EXPECT_THROW(drawn(record_of(path)), std::runtime_error) << path;
    }
    const std::string odd = folder_.write(
        "odd.geojson",
        R"({"type": "FeatureCollection", "features": [
{"type": "Feature", "properties": {"name": ")" +
            std::string(10000, 'x') +
            R"("}, "geometry": {"type": "LineString", "coordinates": [[1, 1], [2, 2], [1e300, 5], [3, 3], [4, 4]]}},
{"type": "Feature", "properties": {}, "geometry": {"type": "Point", "coordinates": [1e308, -1e308]}}]})");
    LayerRecord record = record_of(odd);
    record.label = "name";
    const OpenLayer layer = open_layer(reader(), record, "", LayerIs::in_the_list, kGoOn);
    EXPECT_EQ(layer.shapes->path_ends, (std::vector<std::size_t>{2, 4})); // broken at the place out of reach
    EXPECT_EQ(layer.shapes->shapes_without_a_place, 1U);
    EXPECT_EQ(layer.shapes->labels.back().size(), 83U);
    const std::string nothing = make_raster(
        "nothing.tif", 1, GDT_Float32, kUpright, [](int, int, int) { return 7; },
        [](GDALDataset& dataset) { dataset.GetRasterBand(1)->SetNoDataValue(7); });
    EXPECT_TRUE(drawn(record_of(nothing)) == Picture(kView.width, kView.height));
}

TEST_F(LayerFiles, LieUnderThePicturesOfTarvoProcess)
{
    folder_.write("s.def", "Tarvo Program Parameters V3.0\n\nCoordinate Data Scale : 1\nDepth Data Scale : 1 0\n\n"
                           "Number of Fish Data Fields : 3 1\n\n1: Time\n\n2: East\n\n3: North\n\n"
                           "Number of Sensors : 1\nNumber of Components per Sensor : 1\nRead Sensor Location: No\n\n"
                           "Sensor Number 1\nOffset: 0\nLength: 0\nRotation: 0\nSensor Component 1: F\n");
    std::string lines = "Time,East,North,F\n";
    for (int second = 0; second < 20; ++second) {
        lines += std::to_string(second) + "," + std::to_string(428010 + 4 * second) + ",5994850,5\n";
    }
    const std::string data = folder_.write("s.csv", lines);
    ProcessOptions options;
    options.data_file = data;
    options.quiet = true;
    options.track_file = folder_.path("plain.png");
    EXPECT_EQ(process_survey(options), kDone);
    options.layer_files = {folder_.write("d.geojson", kDrawing)};
    options.track_file = folder_.path("layer.png");
    EXPECT_EQ(process_survey(options), kDone);
    EXPECT_TRUE(folder_.read("layer.png") != folder_.read("plain.png"));
    folder_.write("s.layers", R"({"version": 1, "layers": [{"path": "none.tif"}, {"path": "d.geojson"}]})");
    options.layer_files = {folder_.path("s.layers")};
    options.track_file = folder_.path("list.png");
    EXPECT_EQ(process_survey(options), kFailed); // one is not there
    EXPECT_TRUE(folder_.read("list.png") != folder_.read("plain.png"));
}

} // namespace
} // namespace tarvo
