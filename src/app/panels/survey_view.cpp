#include "app/panels/survey_view.h"

#include "app/common/texts.h"
#include "display/track_navigation.h"
#include "session/settings_table.h"
#include "survey/displayed_quantity.h"
#include "survey/ground_grid.h"
#include "survey/survey_readings.h"

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
    emit current_record_changed();
}

void SurveyView::make_current(std::int32_t record, Recentre recentre)
{
    make_record_current(survey_.track_image, scene(), record, recentre, op_);
    survey_.pan_range.position = pan_position_of(survey_.track_image.current_record, survey_.pan_range.TrackSkip);
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
    const DisplaySettings& settings = survey_.display_settings;
    return calculate_section_limits(scene().track, survey_.track_image.current_record, settings.track_axis_length, op_);
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

void SurveyView::set_running(bool running)
{
    running_ = running;
}

std::int32_t SurveyView::middle_record() const
{
    if (running_) {
        return record_behind_newest(track_table(survey_.processing.store), survey_.display_settings.track_axis_length);
    }
    return survey_.track_image.current_record;
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
    if (image.mode == TrackMode::follow || image.zoomed_view.zoom > 1) {
        update_image_display(image, scene(), Redraw::as_needed, op_);
    }
    emit track_changed();
    emit values_changed();
}

} // namespace tarvo
