#include "app/window/target_show.h"

#include "app/common/texts.h"
#include "app/panels/fit_mark.h"
#include "app/panels/profile_graphs.h"
#include "app/panels/proposal_panel.h"
#include "app/panels/target_panel.h"
#include "app/panels/track_panel.h"
#include "app/panels/track_widget.h"
#include "ports/guarded_operation.h"
#include "session/settings_table.h"
#include "session/target_files.h"
#include "survey/survey_files.h"
#include "survey/survey_residual.h"
#include "text/file_names.h"
#include "text/replace_file.h"

#include <QAction>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QMainWindow>
#include <QMenu>
#include <QProgressDialog>
#include <QThread>
#include <QUrl>

namespace tarvo {

namespace {

constexpr const char* kReviewActions[] = {"menu_search_targets", "menu_take_proposal", "menu_refuse_proposal",
                                          "menu_next_proposal", "menu_previous_proposal"};

} // namespace

TargetShow::TargetShow(QMainWindow& window, Session& session, SurveyView& view, Operator& op,
                       const WindowPanels& panels)
    : window_(window), session_(session), view_(view), op_(op), panels_(panels), fit_(new TargetPanel(session)),
      proposals_(new ProposalPanel(session))
{
    constexpr int kLookEvery = 15; // milliseconds
    results_.setInterval(kLookEvery);
    connect(&results_, &QTimer::timeout, this, &TargetShow::take_results);
    connect(fit_, &TargetPanel::take_pressed, this, &TargetShow::take_fitted_place);
    connect(fit_, &TargetPanel::wishes_changed, this, [this](const FitWishes& wishes) {
        session_.targets.set_wishes(session_.survey.current_pick, wishes);
        look();
    });
    connect(proposals_, &ProposalPanel::chosen, this, &TargetShow::choose_proposal);
    connect(proposals_, &ProposalPanel::threshold_typed, this, &TargetShow::take_threshold);
}

void TargetShow::add_docks(WindowDocks& docks)
{
    docks_ = &docks;
    constexpr auto kRight = DockPlace::Area::right;
    constexpr auto kBottom = DockPlace::Area::bottom;
    const QDockWidget& fit =
        docks.add({"DisplayFit", tr("F&it"), fit_, {kRight, 100, false, true}, {kRight, 110, true, true}});
    connect(&fit, &QDockWidget::visibilityChanged, this, &TargetShow::show_picks);
    docks.add(
        {"DisplayProposals", tr("Pr&oposals"), proposals_, {kBottom, 500, false, true}, {kBottom, 500, false, true}});
}

void TargetShow::add_actions(WindowActions& actions)
{
    QMenu& menu =
        actions.add_menu("menu_targets", tr("&Targets"),
                         {{"menu_show_fit", tr("&Fit of the current pick"), "Ctrl+I", Needs::nothing,
                           [this] { docks_->show("DisplayFit"); }},
                          {"menu_take_fit", tr("Take the fitted &place"), "Ctrl+Return", Needs::nothing,
                           [this] { take_fitted_place(); }, tr("Give the current pick the place that was fitted")},
                          {},
                          {"menu_search_targets", tr("&Search for targets"), "F7", Needs::idle_and_samples,
                           [this] { search(); }, tr("Propose places of the residual that look like targets")},
                          {"menu_take_proposal", tr("&Take"), "Return", Needs::nothing,
                           [this] {
                               session_.proposals.take(indexed_track(session_.survey));
                               show_proposals();
                           },
                           tr("Make a pick of the chosen proposal")},
                          {"menu_refuse_proposal", tr("&Drop"), "Del", Needs::nothing,
                           [this] {
                               session_.proposals.refuse();
                               show_proposals();
                           },
                           tr("Refuse the chosen proposal")},
                          {"menu_next_proposal", tr("&Next"), "N", Needs::nothing,
                           [this] {
                               session_.proposals.go(1);
                               show_proposals();
                           },
                           tr("Go on to the next proposal to judge")},
                          {"menu_previous_proposal", tr("Pre&vious"), "Shift+N", Needs::nothing,
                           [this] {
                               session_.proposals.go(-1);
                               show_proposals();
                           },
                           tr("Go back to the proposal before")},
                          {}});
    actions.add(menu, {"menu_report", tr("&Report as HTML..."), "", Needs::idle_and_samples, [this] {
                           write_file({"Write the report of the targets", "HTML files|*.html|All files (*.*)|*.*",
                                       "_report.html", "html"},
                                      true);
                       }});
    actions.add(menu,
                {"menu_target_list", tr("Target &list as CSV, GeoJSON or KML..."), "", Needs::idle_and_samples, [this] {
                     write_file({"Write the list of the targets",
                                 "CSV files|*.csv|GeoJSON files|*.geojson|KML files|*.kml|All files (*.*)|*.*",
                                 "_targets.csv", "csv"},
                                false);
                 }});
    // These keys are the list's, where it has the keyboard.
    std::vector<QAction*> keys;
    for (const char* const name : kReviewActions) keys.push_back(&actions.action(name));
    for (std::size_t key = 1; key < keys.size(); ++key) keys[key]->setShortcutContext(Qt::WidgetShortcut);
    proposals_->add_keys(keys);
    panels_.graphs->set_threshold([this] {
        const auto& typed = session_.survey.target_settings.ProposalThreshold;
        if (typed) return typed;
        return session_.proposals.has_list() ? std::optional(session_.proposals.threshold()) : std::nullopt;
    });
}

bool TargetShow::are_fits_wanted() const
{
    return (fit_->isVisible() || is_list_shown_) && session_.is_idle();
}

void TargetShow::show_picks()
{
    if (are_fits_wanted()) look();
    show_fit();
    if (session_.proposals.has_list()) proposals_->show_list();
}

void TargetShow::look()
{
    session_.targets.look();
    if (session_.targets.is_working()) {
        results_.start();
    } else {
        show_fit();
    }
}

void TargetShow::take_results()
{
    if (session_.targets.take_results()) {
        show_fit();
        emit fits_changed();
    }
    if (!session_.targets.is_working()) results_.stop();
}

void TargetShow::show_fit()
{
    TrackWidget& track = panels_.track->track();
    const std::int32_t pick = session_.survey.current_pick;
    const DipoleFit* const fit = fit_->isVisible() ? session_.targets.fit_of(pick) : nullptr;
    if (fit != nullptr && fit->is_fitted() && is_pick(session_.survey.picks, pick)) {
        const Pick here = pick_at(session_.survey.picks, pick);
        track.show_fit(FitMark{{here.location[1], here.location[2], 0}, *fit});
    } else {
        track.show_fit(std::nullopt);
    }
    if (fit_->isVisible()) fit_->show_current_pick();
}

void TargetShow::forget()
{
    session_.targets.forget();
    session_.proposals.forget();
    results_.stop();
    show_fit();
    proposals_->show_list();
}

void TargetShow::forget_survey()
{
    forget();
    session_.proposals.forget_all();
}

std::string TargetShow::fit_summary_of(std::int32_t pick)
{
    if (!is_list_shown_) {
        is_list_shown_ = true;
        QTimer::singleShot(0, this, &TargetShow::show_picks);
    }
    return session_.targets.summary_of(pick);
}

void TargetShow::take_fitted_place()
{
    const std::int32_t pick = session_.survey.current_pick;
    const std::optional<GridVector> place = place_to_take(session_.targets.fit_of(pick));
    if (place) session_.pick_work.place_at(indexed_track(session_.survey), pick, place->east, place->north);
}

void TargetShow::search()
{
    constexpr int kLetThrough = 20; // milliseconds between looks at the keyboard
    SurveyState& survey = session_.survey;
    if (!has_residual(survey)) {
        const std::string refusal = update_residual(survey, [] { QCoreApplication::processEvents(); });
        if (!refusal.empty()) {
            op_.show_message(refusal);
            return;
        }
    }
    QProgressDialog progress(tr("Searching the residual"), tr("Stop"), 0, 0, &window_);
    progress.setWindowModality(Qt::ApplicationModal);
    QElapsedTimer since;
    since.start();
    FitWatch watch;
    watch.stop = [&] {
        if (since.elapsed() >= kLetThrough) {
            QCoreApplication::processEvents();
            since.restart();
        }
        return progress.wasCanceled();
    };
    watch.progress = [&](std::size_t done, std::size_t) {
        progress.setLabelText(tr("Searching the residual: %1 anomalies looked at").arg(done));
    };
    progress.show();
    ProposalList found = find_proposals(session_.targets.fit_survey(),
                                        session_.proposals.task(session_.targets.earth_field().direction), watch);
    progress.reset();
    if (found.stopped) return; // what was there stays
    session_.proposals.take_list(std::move(found));
    docks_->show("DisplayProposals");
    show_proposals();
    proposals_->findChild<QWidget*>(QStringLiteral("List_proposals"))->setFocus();
    panels_.graphs->refresh();
}

void TargetShow::choose_proposal(int row)
{
    session_.proposals.choose(row);
    if (session_.proposals.current() < 0) return;
    const FitPlace& place = session_.proposals.list()[static_cast<std::size_t>(row)].proposal.place;
    view_.make_current(place.record, Recentre::yes);
    view_.show_new_pick_marker({place.east, place.north}, place.record);
}

void TargetShow::show_proposals()
{
    proposals_->show_list();
    if (session_.proposals.current() >= 0) choose_proposal(session_.proposals.current());
}

void TargetShow::take_threshold(const QString& text)
{
    set_setting(session_.survey, "ProposalThreshold", to_utf8(text));
    proposals_->show_list(); // a refused text is put back
    panels_.graphs->refresh();
    emit view_.ranges_changed();
}

// False: stopped.
bool TargetShow::wait_for_fits()
{
    constexpr unsigned long kPause = 5; // milliseconds
    session_.targets.look();
    QProgressDialog progress(tr("Fitting the picks"), tr("Stop"), 0, 0, &window_);
    progress.setWindowModality(Qt::ApplicationModal);
    while (session_.targets.is_working()) {
        session_.targets.take_results();
        QCoreApplication::processEvents();
        if (progress.wasCanceled()) return false;
        QThread::msleep(kPause);
    }
    return true;
}

void TargetShow::write_file(const FileQuestion& question, bool is_report)
{
    SurveyState& survey = session_.survey;
    FileQuestion asked = question;
    const std::string_view base =
        survey.data_file_name.empty() ? std::string_view("survey") : without_extension(survey.data_file_name);
    asked.initial_name = std::string(base) + question.initial_name;
    const std::optional<std::string> file = op_.choose_file_to_create(asked);
    if (!file || !wait_for_fits()) return;
    if (is_report && !has_residual(survey)) update_residual(survey); // for its map
    TargetWork& targets = session_.targets;
    const std::vector<FitPlace> places = targets.places();
    const std::vector<DipoleFit> fits = targets.fits();
    const ProposalList open = session_.proposals.open_ones();
    const TargetResults results{targets.fit_survey(),
                                targets.earth_field(),
                                targets.grid(),
                                survey.picks.remarks,
                                places,
                                fits,
                                session_.proposals.has_list() ? &open : nullptr};
    const int status = run_guarded(op_, "An error occurred while writing the targets: ", [&] {
        refuse_file_of_survey(survey, *file);
        replace_file(*file, is_report ? survey_report_text(survey, results) : target_list_text(*file, survey, results));
    });
    if (status == 0 && is_report) {
        QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(to_qt(*file)).absoluteFilePath()));
    }
}

} // namespace tarvo
