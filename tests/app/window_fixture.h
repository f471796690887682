#pragma once

#include "app/window/main_window.h"
#include "core_load.h"
#include "settings_in_memory.h"
#include "test_folder.h"
#include "text/numbers.h"

#include <QAbstractButton>
#include <QApplication>
#include <QTest>

#include <cmath>
#include <functional>
#include <string>

namespace tarvo {

// A survey of a fish on a spiral, ten lines a second, beside its definitions. Returns the data file's name.
inline std::string write_survey(const TestFolder& folder, const std::string& name, int lines)
{
    std::string data = "time,east,north,depth,mag\n";
    for (int line = 0; line < lines; ++line) {
        const double turn = line * 0.002;
        const double values[] = {1000 + line * 0.1, 500000 + (20 + turn) * std::cos(turn),
                                 6000000 + (20 + turn) * std::sin(turn), 3.5,
                                 50000 + 40 * std::sin(line * 0.01) * std::sin(line * 0.0003)};
        for (const double& value : values) data += (&value == values ? "" : ",") + format_fixed(value, 2);
        data += '\n';
    }
    folder.write(name + ".def",
                 "Tarvo Program Parameters V3.0\n\nCoordinate Data Scale : 1.0\nDepth Data Scale : 1.0 0\n"
                 "\nNumber of Fish Data Fields : 4 1\n\n1: time\n\n2: east\n\n3: north\n\n4: depth\n\n"
                 "Number of Sensors : 1\nNumber of Components per Sensor : 1\nRead Sensor Location: No\n"
                 "\nSensor Number 1\nSensor Along Track Offset from Fish Location (mm): 0\n"
                 "Sensor Arm Length (mm): 0\nSensor Arm Rotation (deg): 0\nSensor Component 1: mag\n");
    return folder.write(name + ".csv", data);
}

// The real window, with an operator who answers at once.
class WindowTest : public testing::Test {
protected:
    TestFolder folder;
    SettingsInMemory settings;
    FakeOperator op;
    MainWindow window{settings, &op};

    void SetUp() override
    {
        window.resize(1280, 720);
        window.show();
        QApplication::processEvents();
    }

    template <typename Widget>
    Widget& control(const char* name)
    {
        auto* const found = window.findChild<Widget*>(QLatin1String(name));
        if (found == nullptr) throw std::runtime_error(std::string("the window has no ") + name);
        return *found;
    }
    void click(const char* name) { QTest::mouseClick(&control<QAbstractButton>(name), Qt::LeftButton); }
    QString caption(const char* name) { return control<QAbstractButton>(name).text(); }

    RunFlags run() { return window.session().driver.state(); }
    std::int64_t lines_read() { return window.survey().processing.lines_read; }

    // Lets events happen until the condition holds; false when it does not within a time that is long for any test.
    static bool eventually(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, 20000); }

    // Does something from within the event loop, at the first turn at which the condition holds.
    void at_turn(std::function<bool()> condition, std::function<void()> act)
    {
        auto* const timer = new QTimer(&window);
        QObject::connect(timer, &QTimer::timeout, &window, [=] {
            if (!condition()) return;
            timer->stop();
            act();
        });
        timer->start(0);
    }
};

} // namespace tarvo
