#pragma once

#include "display/profile_axes.h"
#include "display/track_navigation.h"
#include "survey/position_readout.h"
#include "survey/survey_state.h"

#include <QObject>
#include <QString>

#include <optional>

namespace tarvo {

// The open survey as the panels of the window see it: they hand the operator's wishes to the core through it, and hear
// through it what has changed.
class SurveyView : public QObject {
    Q_OBJECT

public:
    SurveyView(SurveyState& survey, Operator& op, QObject* parent = nullptr);

    SurveyState& survey() { return survey_; }
    const SurveyState& survey() const { return survey_; }
    Operator& op() { return op_; }

    // The track image. symbol_scale: the screen's pixels for each of a common screen's.
    void resize_track(int width, int height, int symbol_scale);
    void change_zoom(const QString& text);
    void choose_zoom(const QString& text, int zoom_option);
    void zoom_about(int x, int y, double factor);
    void drag(int right, int down);
    void show_whole();
    void follow();
    void scroll();
    void show_records(std::int32_t first, std::int32_t last); // filling the picture

    // A place of the survey grid, enlarged, wherever the track is.
    void show_place(const GridPlace& place, double zoom);

    // The background layers as they are drawn now, and how far off a planned line the newest sample is (empty: there
    // are no planned lines).
    void show_new_backdrop();
    void show_planned_line(const QString& text);
    const QString& planned_line_text() const { return planned_line_text_; }

    // The current point. Positions are those of HScroll_pan.
    void pan_to(int position);
    void make_current(std::int32_t record, Recentre recentre);
    void step_point(int records); // along the track, to its ends

    // The displayed quantity and its colours, by their keys. One that the survey cannot give is told and not shown.
    void choose_quantity(const QString& key);
    void choose_colour_map(const QString& key);
    // Its range: the adjusters VScroll_TG (0 the fine one; value 1 narrows), the fit to what is in view, and what the
    // operator typed; a refused text changes nothing.
    void adjust_range(int index, int value);
    void fit_range();
    void type_range(const QString& text);

    // One of the display settings by its key, as the operator typed it. A refused text changes nothing.
    void change_display_setting(const std::string& key, const QString& text);

    // What the status bar says of a record or another place, with longitude and latitude where they are known.
    QString record_readout(std::int32_t record);
    QString place_readout(const GridPlace& place);
    PositionTexts position_texts(const GridPlace& place) { return readout_.texts(survey_, place); }

    // While a run goes on, bars and graphs end at the newest record, and no section is highlighted; else they are about
    // the current one, as the section is.
    // In the pauses of a replay the point that the operator has chosen counts again.
    void set_running(bool running, bool paused);
    bool is_running() const { return running_; }
    bool shows_newest() const;          // the middle of bars and graphs goes with the newest record
    std::int32_t middle_record() const; // of bars and graphs; 0: none
    // Holds bars, graphs and highlighted section about a record, wherever the current point or the newest record is,
    // until another point becomes current; 0: lets them go back.
    void hold_middle(std::int32_t record);
    // Holds them about the whole survey line of the current point, or of what is in their middle, and goes with that
    // point to another line; off: as long as before, about the current point.
    void show_whole_line(bool whole);
    bool is_whole_line() const { return length_before_.has_value(); }

    // What bars and graphs show of the track, as long as the highlighted section; and that length, times a factor.
    DistanceRange shown_stretch() const;
    void zoom_section(double factor);

    // The ring that offers the place of a new pick.
    void show_new_pick_marker(const GridPlace& place, std::int32_t record);
    void clear_new_pick_marker();

    // The picks, in all panels.
    void redraw_picks();

    // Lets every panel show what the survey now holds; the track has been drawn.
    void announce();
    // Redraws everything after the survey, its settings or its values have changed.
    void refresh();
    // The picture as it stands now, while a run goes on.
    void show_newest();

signals:
    void track_changed();          // the picture, its view or what lies over it
    void current_record_changed(); // and with it the middle of bars and graphs
    void values_changed();         // stored samples, ranges or sensors
    void planned_line_changed();   // its text
    void ranges_changed();         // display settings, to be kept
    void settings_changed();       // others that are to be kept

private:
    TrackScene scene() const { return track_scene(survey_); }
    SectionLimits current_section(); // none where bars and graphs go with the newest record
    void take_current_record();
    void span_line_of(std::int32_t record);
    void redraw_section();
    void show_section(); // whose length, which is kept, may be another
    void show_changed_colours();

    SurveyState& survey_;
    Operator& op_;
    bool running_ = false;
    bool paused_ = false;
    std::int32_t held_middle_ = 0;       // record; 0: not held
    std::optional<float> length_before_; // of the section, while a whole line is shown
    QString planned_line_text_;
    PositionReadout readout_;
};

} // namespace tarvo
