#include "session/session.h"

#include "intake/column_report.h"
#include "intake/open_survey.h"
#include "session/definitions_editor.h"

#include <utility>

namespace tarvo {

Session::Session(Operator& op, RunDisplay& run_display, PickDisplay& pick_display)
    : Session(op, run_display, pick_display, no_window_)
{
}

Session::Session(Operator& op, RunDisplay& run_display, PickDisplay& pick_display, SessionDisplay& display)
    : pick_work(survey.picks, survey.current_pick, survey.pick_settings, op, pick_display), driver(survey, pick_work, op, run_display),
      op_(op), run_display_(run_display), display_(display)
{
}

void Session::open_file(const std::string& file_name, const std::optional<std::string>& header_line)
{
    if (driver.is_pipe_open()) {
        op_.show_message("Close the UDP pipe before you open a file");
        return;
    }
    when_idle([this, file_name, header_line] { read_file(file_name, header_line); });
}

void Session::read_file(const std::string& file_name, const std::optional<std::string>& header_line)
{
    if (!pick_work.may_leave_list()) return;
    display_.clear_hints();
    const SurveyOpening opening = open_survey(survey, pick_work, file_name, header_line, op_);
    if (survey.data_file_name == file_name) display_.note_opened_file(file_name);
    run_display_.clear_monitor_form();
    run_display_.show_counters({});
    if (opening == SurveyOpening::opened) show_missing_columns();
    if (opening == SurveyOpening::without_definitions) display_.edit_definitions();
}

void Session::show_missing_columns()
{
    display_.show_missing_columns(
        missing_columns_text(defined_columns(survey.survey_definitions, survey.header_columns)));
}

void Session::read_header()
{
    if (survey.data_file_name.empty()) return;
    const int status = read_survey_header(survey, op_);
    display_.show_survey();
    if (status == 0) show_missing_columns();
}

void Session::change_header_line(const std::string& text)
{
    survey.header_line_text = text;
    read_header();
}

void Session::press_start(StartButton index, const std::string& header_line)
{
    if (is_idle()) {
        display_.clear_hints();
        survey.header_line_text = header_line;
    }
    display_.cut_wait_short();
    driver.Command_start_logging(index);
    perform_waiting_actions();
}

void Session::load()
{
    press_start(StartButton::load_or_pause,
                survey.header_line_text.value_or(std::to_string(survey.header_line_number)));
}

void Session::take_edited_definitions()
{
    if (survey.data_file_name.empty()) display_.show_survey();
    read_header();
    if (ask_to_load(survey, op_)) load();
}

void Session::take_processing_changes(const ProcessingChanges& changes)
{
    display_.keep_settings(); // the scroll step is taken even when the dialog is cancelled afterwards
    if (carry_out_changes(changes, survey, op_)) {
        load();
    } else {
        display_.show_survey();
    }
}

void Session::reload_after(const std::function<void()>& change)
{
    if (driver.is_pipe_open()) return;
    change();
    display_.keep_settings();
    when_idle([this] { load(); });
}

Closing Session::close()
{
    const auto close_later = [this] { display_.close_later(); };
    if (!driver.is_pipe_open() && !is_idle()) {
        when_idle(close_later);
        return Closing::later;
    }
    if (!pick_work.may_leave_list()) return Closing::refused;
    if (driver.is_pipe_open()) display_.end_listening();
    if (is_idle()) return Closing::now;
    when_idle(close_later);
    return Closing::later;
}

bool Session::is_idle() const
{
    return !driver.state().any_run_active() && !driver.is_at_work();
}

void Session::when_idle(std::function<void()> action)
{
    waiting_actions_.push_back(std::move(action));
    if (!is_idle()) {
        display_.cut_wait_short();
        driver.request_stop();
    }
    perform_waiting_actions();
}

void Session::perform_waiting_actions()
{
    while (is_idle() && has_waiting_actions()) {
        const std::function<void()> action = std::move(waiting_actions_.front());
        waiting_actions_.erase(waiting_actions_.begin());
        action();
    }
}

void Session::end_run_for_waiting_actions()
{
    if (has_waiting_actions()) driver.request_stop();
}

std::int32_t Session::sample_to_mark() const
{
    const RunFlags run = driver.state();
    const std::int32_t current = survey.track_image.current_record;
    const bool is_newest = run.any_run_active() && (!run.run_paused || current == 0);
    return is_newest ? survey.processing.store.RecordCount : current;
}

} // namespace tarvo
