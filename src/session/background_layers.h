#pragma once

#include "display/backdrop.h"
#include "survey/layer_list.h"
#include "survey/layer_work.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarvo {

enum class LayerStatus {
    reading, // its file is being opened or its shapes are being read
    ready,
    failed // greyed in the list, with the reason
};

// A layer of the list and what is known of it.
struct LayerEntry {
    LayerRecord record;
    LayerStatus status = LayerStatus::reading;
    std::string reason; // why it failed
    LayerFacts facts;   // once it is ready
    std::shared_ptr<const LayerShapes> shapes;
};

// The background layers of the survey that is open: their list, the workers that read and draw them, and the backdrop
// that results. All calls come from the program's one thread; the workers hold copies and hand back results, which
// take_results lets in. A file that hangs holds up its own layer and nothing else.
class BackgroundLayers {
public:
    // Called on a worker, once, when the first layer is opened; throws std::runtime_error with the reason.
    using LoadReader = std::function<std::shared_ptr<LayerReader>()>;

    BackgroundLayers();
    BackgroundLayers(const BackgroundLayers&) = delete;
    BackgroundLayers& operator=(const BackgroundLayers&) = delete;
    ~BackgroundLayers(); // waits a moment for the workers; one that hangs is left alone

    // Before the first layer is opened. wake: called on a worker when there is a result; it must stay callable as long
    // as a worker may be at work.
    void connect_workers(LoadReader load, std::function<void()> wake);

    const std::vector<LayerEntry>& entries() const { return entries_; }
    bool is_empty() const { return entries_.empty(); }
    bool is_working() const;

    // Reads NAME.layers of a survey, where there is one, in the place of the list there is. Throws std::runtime_error
    // for a list that cannot be read; there are no layers then, and the first write keeps a copy of that file.
    void open_list(const std::string& list_file);
    // Writes the list where it has changed since it was read or written. Throws std::system_error.
    void keep_list();

    void set_survey_grid(const std::string& survey_grid); // as the definitions name it; reads all layers anew
    void add(const std::string& path);                    // on top of the others
    void remove(std::size_t layer);
    void move(std::size_t from, std::size_t to); // to: its place afterwards
    void change(std::size_t layer, const LayerRecord& record);
    void read_again(std::size_t layer);
    void stop_reading(); // Esc: what is being read is given up

    // What is to be shown, with some room around it; nullopt: nothing. Reads and draws what the backdrop lacks.
    void show(const std::optional<MapView>& view, int letter_scale);

    struct Changes {
        bool list = false;     // an entry has become ready or has failed
        bool backdrop = false; // there is a new one
    };
    Changes take_results();
    const Backdrop& backdrop() const { return backdrop_; }

private:
    struct Outbox;
    struct Job;
    struct Result;
    struct Layer {                           // beside the entry of the same number
        std::unique_ptr<LayerSource> source; // null while a worker has it
        std::shared_ptr<Job> job;            // null: no worker is at it
        std::shared_ptr<const PlacedRaster> raster;
        std::optional<MapView> raster_view; // that the raster was read for
        std::string label_field;
        bool is_new = false;
    };

    void start_opening(std::size_t layer);
    void start_reading_pixels(std::size_t layer);
    void start_drawing();
    void start_what_is_due();
    void give_up(std::size_t layer);
    void take(Result& result, Changes& changes);
    void add_entry(const LayerRecord& record, bool is_new);
    void run(const std::shared_ptr<Job>& job, std::function<Result(Job& job)> work);

    std::shared_ptr<Outbox> outbox_;
    std::vector<LayerEntry> entries_;
    std::vector<Layer> layers_;
    std::string survey_grid_;
    std::string list_file_;
    LayerList kept_; // as the file holds it
    bool list_is_unreadable_ = false;
    std::optional<MapView> view_; // with its room
    int letter_scale_ = 1;
    std::shared_ptr<Job> drawing_;
    bool is_drawing_due_ = false;
    Backdrop backdrop_;
};

} // namespace tarvo
