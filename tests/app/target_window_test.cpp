#include "window_fixture.h"

#include <QLabel>
#include <QListWidget>
#include <QTreeWidget>

namespace tarvo {

class TargetWindow : public WindowTest {
protected:
    // The example with every reading stored and its picks in a folder of their own.
    void load_example()
    {
        for (const char* const name : {"bay.csv", "bay.def", "bay_pick.dat"}) {
            std::filesystem::copy_file(std::string(TARVO_EXAMPLES "/") + name, folder.path(name));
        }
        SurveyState& survey = window.survey();
        survey.parameters.LoggingSampleRate = 10;
        survey.parameters.CarryClosingSample = true;
        survey.target_settings.FieldInclination = 68.5;
        survey.target_settings.FieldDeclination = 3.5;
        window.open_file(folder.path("bay.csv"));
        window.press_start(StartButton::load_or_pause);
    }
    void trigger(const char* name) { window.actions().action(name).trigger(); }
    QString numbers() { return control<QLabel>("Label_fit_numbers").text(); }
};

TEST_F(TargetWindow, ShowsTheFitOfThePickAndTakesItsPlace)
{
    load_example();
    trigger("menu_show_fit");
    trigger("menu_next_pick");
    ASSERT_TRUE(eventually([&] { return numbers().contains("R2 0.99"); })) << numbers().toStdString();
    const QString usual = numbers();
    const auto before = window.survey().picks.pick_locations[1];

    control<QListWidget>("List_fit_sources").item(0)->setCheckState(Qt::Unchecked);
    ASSERT_TRUE(eventually([&] { return numbers().contains("R2") && numbers() != usual; }));
    trigger("menu_take_fit");
    EXPECT_NE(window.survey().picks.pick_locations[1], before);
    trigger("menu_undo_pick");
    EXPECT_EQ(window.survey().picks.pick_locations[1], before);
}

TEST_F(TargetWindow, ProposalsAreTakenAndDroppedByKeys)
{
    load_example();
    clear_picks(window.survey().picks);
    trigger("menu_search_targets");
    auto& list = control<QTreeWidget>("List_proposals");
    EXPECT_EQ(list.topLevelItem(0)->childCount(), 12);
    trigger("menu_take_proposal");
    trigger("menu_refuse_proposal");
    EXPECT_EQ(window.survey().picks.number_of_picks, 1);
    EXPECT_EQ(list.topLevelItem(0)->child(0)->text(1), QString("Anomaly 1"));
    EXPECT_EQ(list.topLevelItem(0)->child(1)->text(1), QString("refused"));
    trigger("menu_undo_pick");
    trigger("menu_undo_pick");
    EXPECT_EQ(window.survey().picks.number_of_picks, 0);
    EXPECT_EQ(window.session().proposals.open_ones().dipoles.size(), 12U);
}

} // namespace tarvo
