#include "tools/process_layers.h"

#include "survey/layer_work.h"
#include "tools/common/layer_module.h"

#include <atomic>
#include <exception>
#include <vector>

namespace tarvo {

namespace {

constexpr const char* kListExtension = ".layers";

// The records of a list, or one of a file's own.
std::vector<LayerRecord> records_of(const std::string& file)
{
    if (file.ends_with(kListExtension)) return read_layer_list(file).layers;
    LayerRecord record;
    record.path = file;
    return {record};
}

class LayersReading {
public:
    LayersReading(const std::string& survey_grid, const MapView& view, const WorldExtent& survey, Operator& op)
        : survey_grid_(survey_grid), view_(view), survey_(survey), op_(op)
    {
    }

    void read_file(const std::string& file)
    {
        guarded(file, [&] {
            const LayerIs is = file.ends_with(kListExtension) ? LayerIs::in_the_list : LayerIs::new_in_the_list;
            if (reader_ == nullptr) reader_ = load_layer_reader();
            for (const LayerRecord& record : records_of(file)) {
                guarded(record.path, [&] { read_layer(record, is); });
            }
        });
    }

    LayersUnderneath result() const { return {draw_backdrop(view_, drawings_, 1, never_), all_read_}; }

private:
    template <class Step>
    void guarded(const std::string& file, const Step& step)
    {
        try {
            step();
        } catch (const std::exception& fault) {
            const std::string reason = fault.what(); // that of a list begins with its name
            op_.show_message("The layer " + (reason.starts_with(file) ? reason : file + ": " + reason));
            all_read_ = false;
        }
    }

    void read_layer(const LayerRecord& record, LayerIs is)
    {
        if (!record.visible) return;
        const OpenLayer layer = open_layer(*reader_, record, survey_grid_, is, never_);
        const auto tell = [&](const std::string& note) {
            if (!note.empty()) op_.show_message("The layer " + record.path + ": " + note);
        };
        for (const std::string& note : layer.facts.notes) tell(note);
        tell(distance_text(layer.facts.extent, survey_));
        drawings_.push_back(
            {record, layer.facts.low, layer.facts.high, layer.shapes, read_raster(*layer.source, view_, never_)});
    }

    std::string survey_grid_;
    MapView view_;
    WorldExtent survey_;
    Operator& op_;
    const std::atomic<bool> never_ = false;
    std::shared_ptr<LayerReader> reader_;
    std::vector<LayerDrawing> drawings_;
    bool all_read_ = true;
};

} // namespace

LayersUnderneath read_layers_underneath(std::span<const std::string> files, const std::string& survey_grid,
                                        const MapView& view, const WorldExtent& survey, Operator& op)
{
    LayersReading reading(survey_grid, view, survey, op);
    for (const std::string& file : files) reading.read_file(file);
    return reading.result();
}

} // namespace tarvo
