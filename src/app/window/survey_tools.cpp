#include "app/window/survey_tools.h"

#include "app/common/survey_export.h"
#include "app/dialogs/base_station_form.h"
#include "app/panels/line_table_panel.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>

namespace tarvo {

SurveyTools::SurveyTools(QMainWindow& window, Session& session, SurveyView& view, Operator& op)
    : window_(window), session_(session), view_(view), op_(op), lines_(new LineTablePanel)
{
    connect(lines_, &LineTablePanel::line_chosen, &view_, &SurveyView::show_records);
    connect(lines_, &LineTablePanel::export_wanted, this,
            [this] { export_file(export_format("line_table"), session_.survey, op_, &window_); });
}

LineTablePanel& SurveyTools::line_table()
{
    return *lines_;
}

void SurveyTools::add_survey_actions(WindowActions& actions, QMenu& menu)
{
    actions.add(menu, {"menu_base_station", tr("&Base station..."), "", Needs::idle,
                       [this] { session_.when_idle([this] { edit_base_station(); }); }});
}

void SurveyTools::add_view_actions(WindowActions& actions, QMenu& menu)
{
    actions.add_switch(menu, {QStringLiteral("menu_show_grid"), tr("Grid under the &track"),
                              tr("The displayed quantity on square cells, in the track's colours"),
                              session_.survey.display_settings.show_grid, [this](bool on) { show_grid(on); }});
}

void SurveyTools::show_survey()
{
    if (lines_->isVisible()) lines_->show_lines(session_.survey);
}

void SurveyTools::edit_base_station()
{
    BaseStationForm form(session_.survey, op_, &window_);
    connect(&form, &BaseStationForm::base_changed, &view_, &SurveyView::refresh);
    form.exec();
}

void SurveyTools::show_grid(bool shown)
{
    view_.change_display_setting("ShowGrid", QString::number(shown ? 1 : 0));
    const std::string& refusal = session_.survey.ground.refusal;
    if (!refusal.empty() && session_.survey.processing.store.RecordCount > 0) op_.show_message(refusal);
}

} // namespace tarvo
