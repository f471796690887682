#include "app/panels/survey_view.h"

#include "app/common/texts.h"
#include "display/track_navigation.h"
#include "session/settings_table.h"
#include "survey/displayed_quantity.h"
#include "survey/ground_grid.h"
#include "survey/survey_readings.h"

#include <algorithm>

namespace tarvo {

SurveyView::SurveyView(SurveyState& survey, Operator& op, QObject* parent) : QObject(parent), survey_(survey), op_(op)
{
    // Painting waits for the event loop; nothing runs from within a redraw.
    survey_.track_image.run_pending_events = [this] { emit track_changed(); };
}

void SurveyView::resize_track(int width, int height, int symbol_scale)
{
    TrackImage& image = survey_.track_image;
    const bool is_same = width == image.picture.width() && height == image.picture.height();
    if (is_same && symbol_scale == image.symbol_scale) return;
    image.symbol_scale = symbol_scale;
    resize_track_image(image, scene(), width, height, op_);
    update_image_display(image, scene(), Redraw::as_needed, op_);
    emit track_changed();
}

void SurveyView::change_zoom(const QString& text)
{
    Combo_zoom_change(survey_.track_image, scene(), to_utf8(text), op_);
}

void SurveyView::choose_zoom(const QString& text, int zoom_option)
{
    Combo_zoom_click(survey_.track_image, scene(), to_utf8(text), zoom_option, op_);
}

void SurveyView::zoom_about(int x, int y, double factor)
{
    if (survey_.track_image.mode != TrackMode::follow) {
        zoom_about_pixel(survey_.track_image, scene(), x, y, factor, op_);
        return;
    }
    double& width = survey_.display_settings.follow_width;
    width = zoomed_follow_width(width, factor);
    update_image_display(survey_.track_image, scene(), Redraw::as_needed, op_);
    emit ranges_changed();
}

void SurveyView::drag(int right, int down)
{
    drag_view(survey_.track_image, scene(), right, down, op_);
}

void SurveyView::show_whole()
{
    show_whole_track(survey_.track_image, scene(), op_);
}

void SurveyView::follow()
{
    follow_track(survey_.track_image, scene(), op_);
    emit track_changed();
}

void SurveyView::scroll()
{
    scroll_track(survey_.track_image, scene());
    emit track_changed();
}

void SurveyView::show_records(std::int32_t first, std::int32_t last)
{
    make_current(first + (last - first) / 2, Recentre::no);
    tarvo::show_records(survey_.track_image, scene(), first, last, op_);
    emit track_changed();
}

void SurveyView::show_place(const GridPlace& place, double zoom)
{
    tarvo::show_place(survey_.track_image, scene(), place, zoom, op_);
}

void SurveyView::show_new_backdrop()
{
    drop_drawn_track(survey_.track_image);
    update_image_display(survey_.track_image, scene(), Redraw::requested, op_);
}

void SurveyView::show_planned_line(const QString& text)
{
    if (text == planned_line_text_) return;
    planned_line_text_ = text;
    emit planned_line_changed();
}

void SurveyView::pan_to(int position)
{
    survey_.pan_range.position = position;
    HScroll_pan_change(survey_.track_image, scene(), position, survey_.pan_range.TrackSkip, op_);
    take_current_record();
}

void SurveyView::make_current(std::int32_t record, Recentre recentre)
{
    make_record_current(survey_.track_image, scene(), record, recentre, op_);
    survey_.pan_range.position = pan_position_of(survey_.track_image.current_record, survey_.pan_range.TrackSkip);
    take_current_record();
}

void SurveyView::step_point(int records)
{
    const std::int32_t count = survey_.processing.store.RecordCount;
    const std::int32_t current = survey_.track_image.current_record;
    if (count > 0) make_current(std::clamp(current + records, 1, count), Recentre::yes);
}

// Bars, graphs and section go with the current point.
void SurveyView::take_current_record()
{
    if (is_whole_line()) {
        span_line_of(survey_.track_image.current_record);
        show_section();
    } else {
        held_middle_ = 0;
        if (shows_newest()) redraw_section();
    }
    emit current_record_changed();
}

void SurveyView::show_changed_colours()
{
    refresh_ground_grid(survey_);
    redraw_colours(survey_.track_image, scene(), op_);
    emit track_changed();
    emit values_changed();
    emit ranges_changed();
}

void SurveyView::choose_quantity(const QString& key)
{
    if (const std::string refusal = tarvo::choose_quantity(survey_, to_utf8(key)); !refusal.empty()) {
        op_.show_message(refusal);
    }
    show_changed_colours();
}

void SurveyView::choose_colour_map(const QString& key)
{
    tarvo::choose_colour_map(survey_.display_settings, to_utf8(key));
    show_changed_colours();
}

void SurveyView::adjust_range(int index, int value)
{
    adjust_shown_range(survey_, index, value);
    show_changed_colours();
}

void SurveyView::fit_range()
{
    if (fit_shown_range(survey_)) show_changed_colours();
}

void SurveyView::type_range(const QString& text)
{
    if (type_shown_range(survey_, to_utf8(text)) == SettingOutcome::taken) show_changed_colours();
}

void SurveyView::change_display_setting(const std::string& key, const QString& text)
{
    if (set_setting(survey_, key, to_utf8(text)) != SettingOutcome::taken) return;
    survey_.track_image.section = current_section();
    show_changed_colours();
}

SectionLimits SurveyView::current_section()
{
    if (shows_newest()) return {};
    return calculate_section_limits(scene().track, middle_record(), survey_.display_settings.track_axis_length, op_);
}

QString SurveyView::record_readout(std::int32_t record)
{
    const TrackTable track = scene().track;
    if (record < 1 || record > track.count) return {};
    const std::string degrees = position_texts({track.easting[record], track.northing[record]}).decimal_degrees;
    return to_qt(record_text(survey_, record) + (degrees.empty() ? "" : "   " + degrees));
}

QString SurveyView::place_readout(const GridPlace& place)
{
    const std::string degrees = position_texts(place).decimal_degrees;
    return to_qt(place_text(place) + (degrees.empty() ? "" : "   " + degrees));
}

void SurveyView::redraw_section()
{
    survey_.track_image.section = current_section();
    update_image_display(survey_.track_image, scene(), Redraw::as_needed, op_);
    emit track_changed();
    emit values_changed();
}

void SurveyView::show_section()
{
    redraw_section();
    emit settings_changed();
}

void SurveyView::set_running(bool running, bool paused)
{
    const bool was_newest = shows_newest();
    if (running != running_) {
        show_whole_line(false);
        held_middle_ = 0;
    }
    running_ = running;
    paused_ = paused;
    if (was_newest != shows_newest()) redraw_section();
}

bool SurveyView::shows_newest() const
{
    return running_ && held_middle_ == 0 && (!paused_ || survey_.track_image.current_record == 0);
}

std::int32_t SurveyView::middle_record() const
{
    if (held_middle_ > 0 && held_middle_ <= survey_.processing.store.RecordCount) return held_middle_;
    if (!shows_newest()) return survey_.track_image.current_record;
    return record_behind_newest(track_table(survey_.processing.store), survey_.display_settings.track_axis_length);
}

DistanceRange SurveyView::shown_stretch() const
{
    return section_about(track_table(survey_.processing.store), middle_record(),
                         survey_.display_settings.track_axis_length);
}

void SurveyView::hold_middle(std::int32_t record)
{
    if (record == held_middle_) return;
    held_middle_ = record;
    show_section();
}

void SurveyView::zoom_section(double factor)
{
    float& length = survey_.display_settings.track_axis_length;
    length = static_cast<float>(zoomed_section_length(length, factor));
    length_before_.reset();
    show_section();
}

void SurveyView::show_whole_line(bool whole)
{
    if (whole == is_whole_line()) return;
    if (whole && middle_record() < 1) {
        emit values_changed(); // the button goes back
        return;
    }
    float& length = survey_.display_settings.track_axis_length;
    if (whole) {
        const std::int32_t record = middle_record();
        length_before_ = length;
        span_line_of(record);
    } else {
        length = *length_before_;
        length_before_.reset();
        held_middle_ = 0;
    }
    show_section();
}

void SurveyView::span_line_of(std::int32_t record)
{
    const TrackTable track = scene().track;
    const DistanceRange line = line_stretch(track, survey_.processing.lines, record);
    if (!(line.length() > 0)) return;
    survey_.display_settings.track_axis_length = static_cast<float>(section_length_over(line.length()));
    held_middle_ = calculate_track_index_from_distance(track, line.middle(), 1, op_);
}

void SurveyView::show_new_pick_marker(const GridPlace& place, std::int32_t record)
{
    display_new_pick_location(survey_.track_image, place, kMagenta, 1, record);
    emit track_changed();
}

void SurveyView::clear_new_pick_marker()
{
    display_new_pick_location(survey_.track_image, {}, kMagenta, -1);
    emit track_changed();
}

void SurveyView::redraw_picks()
{
    update_image_display(survey_.track_image, scene(), Redraw::as_needed, op_);
    emit track_changed();
    emit values_changed();
}

void SurveyView::announce()
{
    emit track_changed();
    emit current_record_changed();
    emit values_changed();
}

void SurveyView::refresh()
{
    renew_automatic_range(survey_);
    if (!running_) update_ground_grid(survey_);
    TrackImage& image = survey_.track_image;
    drop_drawn_track(image);
    image.section = current_section();
    update_image_display(image, scene(), Redraw::requested, op_);
    announce();
}

void SurveyView::show_newest()
{
    TrackImage& image = survey_.track_image;
    keep_newest_in_view(image, scene(), op_);
    // New samples are marked by the whole view's transform: a zoomed picture is made anew instead.
    if (image.mode != TrackMode::whole || image.zoomed_view.zoom > 1) {
        update_image_display(image, scene(), Redraw::as_needed, op_);
    }
    emit track_changed();
    emit values_changed();
}

} // namespace tarvo
