#include "layers/shape_source.h"

#include "layers/shape_reading.h"

#include <ogrsf_frmts.h>

#include <algorithm>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace tarvo {

namespace {

constexpr const char* kDrawingLayer = "Layer"; // the field in which a drawing names the layer of a shape
constexpr const char* kDrawingText = "Text";   // and the one of its lettering

class ShapeSource : public LayerSource {
public:
    ShapeSource(Dataset dataset, const SurveyGrid& survey) : dataset_(std::move(dataset)), survey_(survey)
    {
        facts_.kind = LayerKind::shapes;
        facts_.format = dataset_->GetDriver()->GetMetadataItem(GDAL_DMD_LONGNAME);
        is_drawing_ = std::string_view(dataset_->GetDriver()->GetDescription()) == "DXF";
        if (is_drawing_) facts_.field = kDrawingText;
        for (OGRLayer* const layer : dataset_->GetLayers()) {
            systems_.emplace_back();
            if (is_table(*layer)) continue;
            take_fields(*layer->GetLayerDefn());
            // One for each layer of the file, so that a fault shows now and what is to be said of it is known.
            systems_.back() = std::make_unique<LayerSystem>(layer->GetSpatialRef(), survey_);
            take_note(systems_.back()->note());
            facts_.has_system_of_own |= systems_.back()->is_of_its_own();
        }
    }

    const LayerFacts& facts() const override { return facts_; }

    void bring_into_layer(std::span<LayerPlace>) override {} // of rasters alone

    RasterPixels read_pixels(const RasterRead&, const std::atomic<bool>&) override { return {}; }

    LayerShapes read_shapes(const std::string& label_field, const std::atomic<bool>& stop) override
    {
        ShapeCollector collector;
        for (int at = 0; at < dataset_->GetLayerCount(); ++at) {
            OGRLayer& layer = *dataset_->GetLayer(at);
            if (!is_table(layer))
                read_layer(layer, *systems_[static_cast<std::size_t>(at)], label_field, collector, stop);
        }
        return collector.take();
    }

private:
    // Without places: what a chart tells of itself, for instance.
    static bool is_table(OGRLayer& layer) { return layer.GetLayerDefn()->GetGeomFieldCount() == 0; }

    void take_fields(const OGRFeatureDefn& definition)
    {
        constexpr std::size_t kMostFields = 500;
        for (int field = 0; field < definition.GetFieldCount(); ++field) {
            const std::string name = definition.GetFieldDefn(field)->GetNameRef();
            const bool is_new = std::find(facts_.fields.begin(), facts_.fields.end(), name) == facts_.fields.end();
            if (is_new && facts_.fields.size() < kMostFields) facts_.fields.push_back(name);
        }
    }

    void take_note(const std::optional<std::string>& note)
    {
        const bool is_new = note && std::find(facts_.notes.begin(), facts_.notes.end(), *note) == facts_.notes.end();
        if (is_new) facts_.notes.push_back(*note);
    }

    void read_layer(OGRLayer& layer, const LayerSystem& system, const std::string& label_field,
                    ShapeCollector& collector, const std::atomic<bool>& stop)
    {
        const OGRFeatureDefn& definition = *layer.GetLayerDefn();
        const int label = label_field.empty() ? -1 : definition.GetFieldIndex(label_field.c_str());
        const int part = is_drawing_ ? definition.GetFieldIndex(kDrawingLayer) : -1;
        layer.ResetReading();
        while (const OGRFeatureUniquePtr feature = next_feature(layer)) {
            check_stop(stop);
            const OGRGeometry* const geometry = feature->GetGeometryRef();
            if (geometry == nullptr) continue;
            collector.begin_part(system, part >= 0 ? feature->GetFieldAsString(part) : layer.GetName());
            const bool has_label = label >= 0 && feature->IsFieldSetAndNotNull(label) != FALSE;
            collector.add(*geometry, has_label ? feature->GetFieldAsString(label) : "");
        }
    }

    // null: there are no more. A place that cannot be brought into the survey's grid is an error to GDAL, too: those of
    // reading are told apart from it here.
    static OGRFeatureUniquePtr next_feature(OGRLayer& layer)
    {
        CPLErrorReset();
        OGRFeatureUniquePtr feature(layer.GetNextFeature());
        const bool has_failed = feature == nullptr && CPLGetLastErrorType() >= CE_Failure;
        if (has_failed) throw std::runtime_error(gdal_reason("its shapes cannot be read"));
        return feature;
    }

    Dataset dataset_;
    SurveyGrid survey_;
    std::vector<std::unique_ptr<LayerSystem>> systems_; // of the file's layers, in their order; none of tables
    LayerFacts facts_;
    bool is_drawing_ = false;
};

} // namespace

std::unique_ptr<LayerSource> open_shapes(Dataset dataset, const SurveyGrid& survey)
{
    return std::make_unique<ShapeSource>(std::move(dataset), survey);
}

} // namespace tarvo
