// Drawing the track: a full rebuild of a million points against the bare loop that does the same work, and against
// the toolkit's painter; one new sample in the whole mode; a frame of the scrolling mode against a memmove of the
// picture; a frame that follows the track.

#include "display/colour_scale.h"
#include "display/track_image.h"
#include "display/track_view.h"

#include <benchmark/benchmark.h>

#ifdef TARVO_BENCH_QT
#include <QImage>
#include <QPainter>
#endif

#include <cmath>
#include <cstring>
#include <numbers>
#include <random>
#include <vector>

namespace tarvo {
namespace {

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;
constexpr std::int32_t kPoints = 1'000'000;

class SilentOperator : public Operator {
public:
    void show_message(const std::string&) override {}
    bool ask_yes_no(const std::string&) override { return false; }
    std::optional<std::string> choose_file_to_open(const FileQuestion&) override { return std::nullopt; }
    std::optional<std::string> choose_file_to_create(const FileQuestion&) override { return std::nullopt; }
};

enum Layout : int { kAlongTrack, kScattered };

struct Track {
    std::vector<double> easting;
    std::vector<double> northing;
    std::vector<double> values;

    TrackScene scene() const
    {
        TrackScene scene;
        scene.track.count = static_cast<std::int32_t>(values.size()) - 1;
        scene.track.easting = easting.data();
        scene.track.northing = northing.data();
        scene.sensor_values = {nullptr, values.data()};
        return scene;
    }
};

// Element 0 of every column is unused. Along the track: parallel survey lines flown to and fro, a metre a sample.
Track make_track(Layout layout, std::int32_t points)
{
    constexpr int kLineLength = 4000;
    std::mt19937 random(7);
    std::uniform_real_distribution<double> east(0, 4000);
    std::uniform_real_distribution<double> north(0, 2250);
    std::uniform_real_distribution<double> noise(0, 0.4);
    Track track = {{kNull}, {kNull}, {kNull}};
    for (std::int32_t sample = 0; sample < points; ++sample) {
        const int line = sample / kLineLength;
        const int along = sample % kLineLength;
        const bool is_scattered = layout == kScattered;
        track.easting.push_back(is_scattered ? east(random) : line % 2 == 0 ? along : kLineLength - along);
        track.northing.push_back(is_scattered ? north(random) : 9 * line + noise(random));
        track.values.push_back(5 + 5 * std::sin(sample * std::numbers::pi / 700) + noise(random));
    }
    return track;
}

const Track& track_of(std::int64_t layout)
{
    static const Track along = make_track(kAlongTrack, kPoints);
    static const Track scattered = make_track(kScattered, kPoints);
    return layout == kScattered ? scattered : along;
}

PixelTransform transform_of(const MapFrame& frame)
{
    return {frame.extent.x_min, frame.extent.y_max, frame.pixel_scale, 1};
}

Picture drawn_track(const TrackScene& scene, const MapFrame& frame)
{
    Picture picture(kWidth, kHeight);
    paint_track(picture, transform_of(frame), scene);
    return picture;
}

// Square by square without clipping, the colours mixed right here: the work that no implementation can leave out.
void bare_loop(Picture& picture, const MapFrame& frame, const TrackScene& scene)
{
    constexpr double kUnitsOnly = 0x1.8p52;
    const auto rounded = [](double value) { return static_cast<int>((value + kUnitsOnly) - kUnitsOnly); };
    Colour* const pixels = picture.row(0);
    std::memset(pixels, 0, sizeof(Colour) * kWidth * kHeight);
    std::int32_t next_tick = 1;
    for (std::int32_t record = 1; record <= scene.track.count; ++record) {
        const int x = rounded((scene.track.easting[record] - frame.extent.x_min) * frame.pixel_scale);
        const int y = rounded((frame.extent.y_max - scene.track.northing[record]) * frame.pixel_scale);
        Colour colour = kYellow;
        int half_size = 1;
        if (record == next_tick) {
            colour = kGreen;
            half_size = 3;
            next_tick += 120;
        } else if (is_valid_sensor(scene.sensor_values[1][record])) {
            float position = static_cast<float>(scene.sensor_values[1][record] / scene.colours.high) * 4;
            position = position < 0 ? 0 : position > 4 ? 4 : position;
            const int entry = position < 3 ? static_cast<int>(position) : 3;
            const float share = position - static_cast<float>(entry);
            colour = 0;
            for (int part = 0; part < 3; ++part) {
                const float low = kColourTable[static_cast<std::size_t>(3 * entry + part)];
                const float high = kColourTable[static_cast<std::size_t>(3 * entry + 3 + part)];
                colour = colour << 8 | static_cast<Colour>(rounded((low + (high - low) * share) * 255));
            }
        }
        for (int row = y - half_size; row <= y + half_size; ++row) {
            for (int column = x - half_size; column <= x + half_size; ++column) pixels[kWidth * row + column] = colour;
        }
    }
}

void FullRebuild(benchmark::State& state)
{
    const TrackScene scene = track_of(state.range(0)).scene();
    SilentOperator op;
    const MapFrame frame = fitted_frame(scene.track, kWidth, kHeight);
    TrackView view;
    create_image_buffer(view, kWidth, kHeight, op);
    calculate_zoom_settings(view, frame.extent, op);
    for (auto _ : state) {
        add_track_to_buffer(view, frame, scene, op);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(FullRebuild)->ArgName("scattered")->Arg(kAlongTrack)->Arg(kScattered)->Unit(benchmark::kMillisecond);

void BareLoop(benchmark::State& state)
{
    const TrackScene scene = track_of(state.range(0)).scene();
    const MapFrame frame = fitted_frame(scene.track, kWidth, kHeight);
    Picture picture(kWidth, kHeight);
    for (auto _ : state) {
        bare_loop(picture, frame, scene);
        benchmark::ClobberMemory();
    }
    if (picture != drawn_track(scene, frame)) state.SkipWithError("the two pictures differ");
}
BENCHMARK(BareLoop)->ArgName("scattered")->Arg(kAlongTrack)->Arg(kScattered)->Unit(benchmark::kMillisecond);

#ifdef TARVO_BENCH_QT
void ToolkitPainter(benchmark::State& state)
{
    const TrackScene scene = track_of(state.range(0)).scene();
    const MapFrame frame = fitted_frame(scene.track, kWidth, kHeight);
    const PixelTransform transform = transform_of(frame);
    QImage image(kWidth, kHeight, QImage::Format_RGB32);
    for (auto _ : state) {
        image.fill(Qt::black);
        QPainter painter(&image);
        for (std::int32_t record = 1; record <= scene.track.count; ++record) {
            const PointMark mark = point_mark(scene, record);
            const int x = pixel_x(transform, scene.track.easting[record]);
            const int y = pixel_y(transform, scene.track.northing[record]);
            const int side = 2 * mark.half_size + 1;
            painter.fillRect(x - mark.half_size, y - mark.half_size, side, side, QColor::fromRgb(mark.colour));
        }
        benchmark::ClobberMemory();
    }
    const Picture drawn = drawn_track(scene, frame);
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            if ((image.pixel(x, y) & kWhite) != drawn.row(y)[x]) state.SkipWithError("the two pictures differ");
        }
    }
}
BENCHMARK(ToolkitPainter)->ArgName("scattered")->Arg(kAlongTrack)->Arg(kScattered)->Unit(benchmark::kMillisecond);
#endif

void NewSampleFixedExtent(benchmark::State& state)
{
    const Track track = make_track(kAlongTrack, static_cast<std::int32_t>(state.range(0)));
    const TrackScene scene = track.scene();
    SilentOperator op;
    TrackImage image;
    resize_track_image(image, scene, kWidth, kHeight, op);
    show_whole_track(image, scene, op);
    const std::int32_t newest = scene.track.count;
    for (auto _ : state) {
        plot_track_point(image, scene, newest, scene.track.easting[newest], scene.track.northing[newest]);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(NewSampleFixedExtent)->ArgName("stored")->Arg(1'000)->Arg(kPoints);

// A frame of the scrolling mode. Every sample moves the picture, in all eight directions in turn.
void ScrollFrame(benchmark::State& state)
{
    constexpr int kDx[] = {3, 3, 0, -3, -3, -3, 0, 3};
    constexpr int kDy[] = {0, 2, 2, 2, 0, -2, -2, -2};
    SilentOperator op;
    TrackImage image;
    resize_track_image(image, {}, kWidth, kHeight, op);
    scroll_track(image, {});
    double easting = 0;
    double northing = 0;
    std::int32_t index = 0;
    for (auto _ : state) {
        for (std::int64_t sample = 0; sample < state.range(0); ++sample) {
            plot_track_point(image, {}, ++index, easting, northing);
            easting += kDx[index % 8];
            northing += kDy[index % 8];
        }
        update_image_display(image, {}, Redraw::as_needed, op);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(ScrollFrame)->ArgName("samples_a_frame")->Arg(1)->Arg(400)->Unit(benchmark::kMicrosecond);

// A frame that follows the track at its end, samples_a_frame newer than the one before; all lines of the survey lie in
// the picture's reach.
void FollowFrame(benchmark::State& state)
{
    const Track track = make_track(kAlongTrack, kPoints);
    TrackScene scene = track.scene();
    scene.settings.follow_width = static_cast<double>(state.range(0));
    const auto samples_a_frame = static_cast<std::int32_t>(state.range(1));
    SilentOperator op;
    TrackImage image;
    resize_track_image(image, {}, kWidth, kHeight, op);
    constexpr std::int32_t kBegin = kPoints - kPoints / 10;
    scene.track.count = kBegin;
    follow_track(image, scene, op);
    for (auto _ : state) {
        for (std::int32_t sample = 0; sample < samples_a_frame; ++sample) {
            const std::int32_t record = ++scene.track.count;
            plot_track_point(image, scene, record, track.easting[static_cast<std::size_t>(record)],
                             track.northing[static_cast<std::size_t>(record)]);
        }
        recolour_track_points(image, scene, scene.track.count - samples_a_frame - 5);
        update_image_display(image, scene, Redraw::as_needed, op);
        benchmark::ClobberMemory();
        if (scene.track.count + samples_a_frame <= kPoints) continue;
        state.PauseTiming();
        scene.track.count = kBegin;
        follow_track(image, scene, op);
        state.ResumeTiming();
    }
}
BENCHMARK(FollowFrame)
    ->ArgNames({"metres_across", "samples_a_frame"})
    ->ArgsProduct({{50, 200, 4500}, {1, 400}})
    ->Unit(benchmark::kMicrosecond);

// The whole picture moved by as many pixels within itself, up and down the memory in turn.
void PictureMemmove(benchmark::State& state)
{
    constexpr std::ptrdiff_t kShift = 2 * kWidth + 3;
    Picture picture(kWidth, kHeight);
    Colour* const pixels = picture.row(0);
    constexpr std::size_t kBytes = sizeof(Colour) * (std::size_t{kWidth} * kHeight - kShift);
    bool goes_up = false;
    for (auto _ : state) {
        std::memmove(goes_up ? pixels : pixels + kShift, goes_up ? pixels + kShift : pixels, kBytes);
        goes_up = !goes_up;
        benchmark::ClobberMemory();
    }
}
BENCHMARK(PictureMemmove)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace tarvo

BENCHMARK_MAIN();
