#include "app/common/qt_operator.h"
#include "app/common/texts.h"
#include "app/dialogs/definitions_form.h"
#include "app/dialogs/processing_form.h"
#include "app/window/main_window.h"
#include "fake_operator.h"
#include "session/settings_table.h"
#include "settings_in_memory.h"
#include "test_folder.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QSpinBox>
#include <QTableView>
#include <QTableWidget>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

#include <map>

namespace tarvo {
namespace {

constexpr const char* kData = "time,x,y,depth,mag1,mag2,other\n1,2,3,4,5,6,7\n,2,3,4,5,6,7\n";

template <typename Control>
Control& control(const QWidget& dialog, const char* name)
{
    auto* const found = dialog.findChild<Control*>(QLatin1String(name));
    if (found == nullptr) throw std::runtime_error(std::string("no control ") + name);
    return *found;
}

void press(const QWidget& dialog, const char* name)
{
    control<QPushButton>(dialog, name).click();
}

std::string text_of(const QWidget& dialog, const char* name)
{
    return to_utf8(control<QComboBox>(dialog, name).currentText());
}

struct Definitions {
    explicit Definitions(const TestFolder& test_folder) : folder(test_folder)
    {
        survey.data_file_name = folder.write("bay.csv", kData);
    }

    const TestFolder& folder;
    SurveyState survey;
    FakeOperator op;
};

std::string preview_header(const QWidget& form)
{
    const QAbstractItemModel& preview = *control<QTableView>(form, "Grid_preview").model();
    QStringList captions;
    for (int column = 0; column < preview.columnCount(); ++column) {
        captions += preview.headerData(column, Qt::Horizontal).toString();
    }
    return to_utf8(captions.join(QLatin1Char('|')));
}

std::string grid_header(const QWidget& form)
{
    const auto& grid = control<QTableWidget>(form, "Grid_sensors");
    QStringList captions;
    for (int column = 0; column < grid.columnCount(); ++column) captions += grid.horizontalHeaderItem(column)->text();
    return to_utf8(captions.join(QLatin1Char('|')));
}

TEST(DefinitionsForm, ShowsTheGuessMarkedInThePreview)
{
    const TestFolder folder;
    Definitions at(folder);
    const DefinitionsForm form(at.survey, at.op);
    EXPECT_FALSE(control<QLabel>(form, "Label_note").isHidden());
    EXPECT_EQ(text_of(form, "Text_locations_column_2"), "x");
    EXPECT_EQ(text_of(form, "Text_locations_column_7"), "N/A");
    EXPECT_EQ(control<QSpinBox>(form, "Text_num_mag").value(), 2);
    EXPECT_EQ(preview_header(form), "Time|East|North|Depth|Sensor 1 TMI|Sensor 2 TMI|");
    EXPECT_EQ(to_utf8(control<QLabel>(form, "Label_rejected").text()), "1 of the 2 data lines shown would be rejected");
}

TEST(DefinitionsForm, ThePreviewFollowsTheBoxes)
{
    const TestFolder folder;
    Definitions at(folder);
    const DefinitionsForm form(at.survey, at.op);
    auto& heading = control<QComboBox>(form, "Text_locations_column_7");
    EXPECT_EQ(heading.count(), 8) << "N/A and the seven columns of the header";
    heading.setCurrentIndex(7);
    control<QComboBox>(form, "Text_locations_column_1").setEditText(QStringLiteral("clock"));
    EXPECT_EQ(preview_header(form), "|East|North|Depth|Sensor 1 TMI|Sensor 2 TMI|Heading");
    EXPECT_EQ(to_utf8(control<QLabel>(form, "Label_rejected").text()), "0 of the 2 data lines shown would be rejected");
    EXPECT_NE(control<QLabel>(form, "Label_warnings").text().indexOf(QLatin1String("The field name: clock")), -1);

    control<QSpinBox>(form, "Text_header_line_number").setValue(2);
    EXPECT_EQ(heading.itemText(1), QLatin1String("1")) << "the second line's fields are the names now";
    EXPECT_EQ(text_of(form, "Text_locations_column_7"), "other") << "what was chosen stays in its box";
    press(form, "Command_guess");
    EXPECT_EQ(text_of(form, "Text_locations_column_7"), "N/A");
}

TEST(DefinitionsForm, ComponentsAndLocationsRelabelTheGrid)
{
    const TestFolder folder;
    Definitions at(folder);
    const DefinitionsForm form(at.survey, at.op);
    control<QComboBox>(form, "Text_num_sensors").setCurrentIndex(1);
    control<QComboBox>(form, "Combo_sensor_location_determination").setCurrentIndex(1);
    control<QSpinBox>(form, "Text_num_mag").setValue(4);
    EXPECT_EQ(grid_header(form), "Tx|Ty|Tz|X|Y|Z");
    EXPECT_EQ(control<QTableWidget>(form, "Grid_sensors").rowCount(), 4);
}

TEST(DefinitionsForm, TemplatesFillTheSensors)
{
    const TestFolder folder;
    Definitions at(folder);
    const DefinitionsForm form(at.survey, at.op);
    auto& box = control<QLineEdit>(form, "Text_component_template_0");
    EXPECT_EQ(to_utf8(box.text()), "mag*");
    box.selectAll();
    box.insert(QStringLiteral("M*_raw"));
    press(form, "Command_fill_template");
    EXPECT_EQ(to_utf8(control<QTableWidget>(form, "Grid_sensors").item(1, 0)->text()), "M2_raw");
    EXPECT_EQ(text_of(form, "Text_TMI_column_name_1"), "M1_raw");
    box.clear();
    EXPECT_FALSE(control<QPushButton>(form, "Command_fill_template").isEnabled());
}

TEST(DefinitionsForm, ASensorPageIsCheckedBeforeAnotherIsShown)
{
    const TestFolder folder;
    Definitions at(folder);
    const DefinitionsForm form(at.survey, at.op);
    auto& grid = control<QTableWidget>(form, "Grid_sensors");
    auto& length = control<QLineEdit>(form, "Text_TMI_xyz_position_2");
    length.setText(QStringLiteral(" "));
    grid.setCurrentCell(1, 0);
    EXPECT_EQ(at.op.messages, std::vector<std::string>{"The sensor arm length is not valid"});
    EXPECT_EQ(grid.currentRow(), 0);
    EXPECT_EQ(length.text(), QLatin1String(" "));

    length.setText(QStringLiteral("750"));
    control<QCheckBox>(form, "Check_flip_sign_1").setChecked(true);
    press(form, "Command_done_sensor");
    EXPECT_EQ(grid.currentRow(), 1);
    EXPECT_EQ(to_utf8(grid.item(0, 0)->text()), "-mag1");
    EXPECT_EQ(to_utf8(grid.item(0, 2)->text()), "750.000");
    EXPECT_EQ(length.text(), QLatin1String("0.000")) << "of the second sensor";
    EXPECT_FALSE(control<QCheckBox>(form, "Check_flip_sign_1").isChecked());
}

TEST(DefinitionsForm, DoneAcceptsAndCancelDiscards)
{
    struct Case {
        const char* button;
        bool accepted;
        bool closed;
    };
    const Case cases[] = {{"Command_Done", true, true},
                          {"Command_save_changes", true, false},
                          {"Command_cancel_changes", false, false},
                          {"Command_cancel", false, true}};
    for (const Case& c : cases) {
        const TestFolder folder;
        Definitions at(folder);
        DefinitionsForm form(at.survey, at.op);
        form.show();
        control<QComboBox>(form, "Text_locations_column_10").setEditText(QStringLiteral("other"));
        press(form, c.button);
        EXPECT_EQ(at.survey.survey_definitions.fields[kLine].name, c.accepted ? "other" : "") << c.button;
        EXPECT_EQ(form.has_changed_survey(), c.accepted) << c.button;
        EXPECT_EQ(std::filesystem::exists(folder.path("bay.def")), c.accepted) << c.button;
        EXPECT_EQ(form.isVisible(), !c.closed) << c.button;
        EXPECT_EQ(text_of(form, "Text_locations_column_10"),
                  c.button == std::string("Command_cancel_changes") ? "N/A" : "other")
            << c.button;
    }
}

TEST(DefinitionsForm, ARefusedSensorComesToItsPage)
{
    const TestFolder folder;
    Definitions at(folder);
    DefinitionsForm form(at.survey, at.op);
    form.show();
    control<QSpinBox>(form, "Text_num_mag").setValue(3);
    press(form, "Command_Done");
    EXPECT_EQ(at.op.messages, std::vector<std::string>{"The sensor component source column is not valid"});
    EXPECT_TRUE(form.isVisible());
    EXPECT_TRUE(control<QTableWidget>(form, "Grid_sensors").isVisible());
    EXPECT_EQ(control<QTableWidget>(form, "Grid_sensors").currentRow(), 2);
}

TEST(DefinitionsForm, MenuReadsAndSavesTheCopy)
{
    const TestFolder folder;
    Definitions at(folder);
    const DefinitionsForm form(at.survey, at.op);
    at.op.chosen_file = folder.path("other.def");
    control<QLineEdit>(form, "Text_data_scale").setText(QStringLiteral("0.5"));
    control<QAction>(form, "menu_file_save").trigger();
    EXPECT_EQ(at.op.messages, std::vector<std::string>{"Output complete"});
    EXPECT_EQ(to_utf8(control<QLabel>(form, "Label_file").text()), "Data Field Definitions : other.def");
    EXPECT_EQ(at.survey.survey_definitions.coordinate_scale, 1) << "saved, not accepted";

    control<QLineEdit>(form, "Text_data_scale").setText(QStringLiteral("7"));
    control<QAction>(form, "menu_file_read").trigger();
    EXPECT_EQ(to_utf8(control<QLineEdit>(form, "Text_data_scale").text()), "0.5000");
}

TEST(ProcessingForm, StaysOpenUntilAccepted)
{
    SurveyState settings;
    FakeOperator op;
    ProcessingForm form(settings, op);
    form.show();
    auto& rate = control<QLineEdit>(form, "Text_sample_rate");
    rate.setText(QStringLiteral("10"));
    op.answer = false;
    press(form, "Command_Done");
    EXPECT_TRUE(form.isVisible());

    op.answer = true;
    press(form, "Command_Done");
    EXPECT_FALSE(form.isVisible());
    EXPECT_TRUE(form.changes().reload);
    EXPECT_EQ(settings.parameters.LoggingSampleRate, 10.0F);
}

TEST(ProcessingForm, EveryBoxIsBoundToItsValue)
{
    SurveyState settings;
    Settings expected;
    FakeOperator op;
    ProcessingForm form(settings, op);
    int value = 101;
    for (const Setting& setting : settings_table()) {
        if (setting.group == SettingGroup::none || is_switch(setting)) continue;
        control<QLineEdit>(form, setting.box).setText(QString::number(value));
        set_setting(expected, setting.key, std::to_string(value++));
    }
    control<QCheckBox>(form, "Check_circular_heading").setChecked(true);
    expected.parameters.CircularHeading = true;
    press(form, "Command_Done");
    EXPECT_EQ(static_cast<const Settings&>(settings), expected);
}

TEST(QtOperator, ABoxGivesTheKeyboardBackToTheWindowThatHadIt)
{
    QWidget main;
    QWidget list(&main, Qt::Window);
    main.show();
    list.show();
    list.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&list));
    QTimer::singleShot(0, &main, [] { QApplication::activeModalWidget()->close(); });
    QtOperator(&main).show_message("The edits have been saved");
    EXPECT_TRUE(QTest::qWaitForWindowActive(&list));
}

// A window whose dialogs are worked as they come up.
struct Window {
    // Runs `action`, and `work` on the dialog that it opens.
    template <typename Action, typename Work>
    void work_dialog(const Action& action, const Work& work)
    {
        bool opened = false;
        QTimer::singleShot(0, &window, [&] {
            QWidget* const dialog = QApplication::activeModalWidget();
            if (dialog == nullptr) return;
            opened = true;
            work(*dialog);
        });
        action();
        EXPECT_TRUE(opened);
    }
    void trigger(const char* name) { control<QAction>(window, name).trigger(); }

    SettingsInMemory store;
    FakeOperator op;
    MainWindow window{store, &op};
};

// What Alt and each letter lead to, of all that can be seen in a window.
std::map<QString, QStringList> alt_keys(const QWidget& shown)
{
    std::map<QString, QStringList> keys;
    const auto add = [&keys](const QString& text) {
        const QKeySequence key = QKeySequence::mnemonic(text);
        if (!key.isEmpty()) keys[key.toString()] += text;
    };
    for (const auto* bar : shown.findChildren<QMenuBar*>()) {
        for (const QAction* action : bar->actions()) add(action->text());
    }
    for (const auto* button : shown.findChildren<QAbstractButton*>()) {
        if (button->isVisible()) add(button->text());
    }
    for (const auto* label : shown.findChildren<QLabel*>()) {
        if (label->isVisible() && label->buddy() != nullptr) add(label->text());
    }
    for (const auto* tabs : shown.findChildren<QTabBar*>()) {
        for (int tab = 0; tab < tabs->count(); ++tab) add(tabs->tabText(tab));
    }
    return keys;
}

TEST(MainWindowDialogs, NoAltKeyLeadsToTwoPlaces)
{
    Window at;
    at.window.show();
    at.window.open_file(TARVO_EXAMPLES "/bay.csv");
    at.window.press_start(StartButton::load_or_pause);
    const auto check = [](const QWidget& shown) {
        for (const auto& [key, texts] : alt_keys(shown)) {
            EXPECT_EQ(texts.size(), 1) << key.toStdString() << ": " << texts.join(" / ").toStdString();
        }
    };
    check(at.window);
    at.work_dialog([&] { at.trigger("menu_processing_parameters"); },
                   [&](QWidget& dialog) {
                       check(dialog);
                       dialog.close();
                   });
    at.work_dialog([&] { at.trigger("menu_definitions"); },
                   [&](QWidget& dialog) {
                       auto* const tabs = dialog.findChild<QTabWidget*>();
                       for (int tab = 0; tab < tabs->count(); ++tab) {
                           tabs->setCurrentIndex(tab);
                           check(dialog);
                       }
                       dialog.close();
                   });
}

TEST(MainWindowDialogs, AFileWithoutDefinitionsGetsToItsTrack)
{
    const TestFolder folder;
    std::string data = "clock_time,x,y,depth,mag\n";
    for (int second = 0; second < 60; ++second) {
        const std::string number = std::to_string(second);
        data += number + "," + number + "," + number + ",2,48000\n";
    }
    const std::string file = folder.write("bay.csv", data);
    Window at;
    at.work_dialog([&] { at.window.open_file(file); }, [](QWidget& dialog) { press(dialog, "Command_Done"); });
    EXPECT_EQ(at.op.questions, std::vector<std::string>{"Load the data file with these definitions now?"});
    EXPECT_TRUE(at.op.messages.empty());
    EXPECT_GT(at.window.survey().processing.store.RecordCount, 20);

    at.op.questions.clear();
    at.work_dialog([&] { at.trigger("menu_definitions"); }, [](QWidget& dialog) { press(dialog, "Command_Done"); });
    EXPECT_TRUE(at.op.questions.empty()) << "nothing has changed";
}

TEST(MainWindowDialogs, ProcessingChangesTakeEffect)
{
    Window at;
    at.window.open_file(TARVO_EXAMPLES "/bay.csv");
    at.window.press_start(StartButton::load_or_pause);
    SurveyState& survey = at.window.survey();
    const std::int32_t records = survey.processing.store.RecordCount;
    const auto change = [&](const char* box, const char* text) {
        at.work_dialog([&] { at.trigger("menu_processing_parameters"); },
                       [&](QWidget& dialog) {
                           control<QLineEdit>(dialog, box).setText(QLatin1String(text));
                           press(dialog, "Command_Done");
                       });
    };
    const double smoothed = survey.processing.store.sensors[1].gradients[0][100];
    change("Text_average_window", "11");
    EXPECT_NE(survey.processing.store.sensors[1].gradients[0][100], smoothed);
    EXPECT_EQ(survey.processing.store.RecordCount, records);
    EXPECT_EQ(at.store.values["SmoothWindow"], "11");
    change("Text_sample_rate", "2");
    EXPECT_GT(survey.processing.store.RecordCount, records * 3 / 2);
    EXPECT_EQ(at.op.questions.size(), 1U);
}

} // namespace
} // namespace tarvo
