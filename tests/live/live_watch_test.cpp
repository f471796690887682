#include "live/live_watch.h"
#include "live_monitor.h"

namespace tarvo {

TEST(LiveWatch, TellsEachOccurrenceOnce)
{
    LiveMonitor monitor;
    LiveWatch watch;
    WatchSettings limits;
    limits.field.least = 20'000;
    limits.field.greatest = 48'000.5;
    const auto look = [&] {
        std::string told;
        for (const WatchNotice& notice :
             watch.look(monitor.live.status(), monitor.session.survey, limits, monitor.now, "noon")) {
            told += (notice.is_alarm ? "! " : "") + notice.text + '|';
        }
        return told;
    };
    int second = 0;
    const auto send = [&](const std::string& field, int samples) { // two lines each
        for (int line = 0; line < 2 * samples; ++line) {
            monitor.now += std::chrono::milliseconds(500);
            monitor.send("$GDP0001 " + std::to_string(++second) + ",1,2,3," + field);
        }
    };
    monitor.live.Command_UDP_receive();
    monitor.now += std::chrono::seconds(60);
    EXPECT_EQ(look(), "") << "no run";
    monitor.begin_run();
    monitor.now += std::chrono::milliseconds(4999);
    EXPECT_EQ(look(), "");
    monitor.now += std::chrono::milliseconds(1);
    EXPECT_EQ(look(), "! No data for 5 s|");
    EXPECT_EQ(look(), "") << "it lasts";
    send("48000.5", 3);
    EXPECT_EQ(look(), "Over: No data for 5 s|") << "the limit itself is within";
    send("48000.6", 1);
    send("48000", 1); // both seen by one look
    EXPECT_EQ(look(), "! Sensor 1 is out of its limits: 48,000.60 nT|");
    EXPECT_EQ(watch.standing_text(), "Sensor 1 is out of its limits: 48,000.60 nT");
    send("48000", 1);
    EXPECT_EQ(look(), "") << "for less than two seconds";
    send("19999", 1);
    EXPECT_EQ(look(), "") << "the same occurrence";
    monitor.now += std::chrono::seconds(4);
    EXPECT_EQ(look(), "") << "nothing new is known of it";
    send("48000", 3);
    EXPECT_EQ(look(), "Over: Sensor 1 is out of its limits: 48,000.60 nT|");
    send("1e29", 2);
    EXPECT_EQ(look(), "! Sensor 1 is out of its limits: 1.0e+29 nT|");
    monitor.send("$GDP0000");
    EXPECT_EQ(look(), "Over: Sensor 1 is out of its limits: 1.0e+29 nT|");
    EXPECT_EQ(watch.log().size(), 6U);
}

TEST(LiveWatch, JudgesTheSpeedOverSeconds)
{
    LiveMonitor monitor;
    LiveWatch watch;
    WatchSettings limits;
    limits.speed = {0.9, 3};
    monitor.live.Command_UDP_receive();
    monitor.begin_run();
    std::string told;
    for (int second = 1; second <= 60; ++second) {
        // 2 m a second, each fix a metre off to the other side; from second 41 on the boat stands.
        const int place = second <= 40 ? 2 * second + second % 2 : 81;
        const std::string tail = "," + std::to_string(place) + ",2,3,48000";
        for (const char* part : {"", ".5"}) monitor.send("$GDP0001 " + std::to_string(second) + part + tail);
        monitor.now += std::chrono::seconds(1);
        for (const WatchNotice& notice :
             watch.look(monitor.live.status(), monitor.session.survey, limits, monitor.now, "noon")) {
            told += std::to_string(second) + ' ' + notice.text.substr(0, notice.text.find(':')) + '|';
        }
    }
    EXPECT_EQ(told, "45 The speed is out of its limits|");
}

} // namespace tarvo
