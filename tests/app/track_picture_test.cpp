#include "app/common/colour_schemes.h"
#include "app/panels/track_widget.h"
#include "window_fixture.h"

#include <QAction>
#include <QClipboard>
#include <QMenu>

#include <algorithm>
#include <utility>

namespace tarvo {

namespace {

class TrackPictureTest : public WindowTest {
protected:
    void SetUp() override
    {
        WindowTest::SetUp();
        window.open_file(write_survey(folder, "a", 6000));
        click("Command_start_logging_1");
        QApplication::processEvents();
    }
    TrackImage& image() { return window.survey().track_image; }
    TrackWidget& track() { return control<TrackWidget>("Picture_data_track"); }
    PixelPlace pixel_of(std::int32_t record)
    {
        const SampleStore& store = window.survey().processing.store;
        const PixelTransform transform = active_transform(image());
        return {pixel_x(transform, store.channel(kEast, record)), pixel_y(transform, store.channel(kNorth, record))};
    }
    QPoint clicked(const PixelPlace& pixel)
    {
        return (QPointF(pixel.x, pixel.y) / track().devicePixelRatioF()).toPoint();
    }
};

using ScaledWindow = TrackPictureTest; // runs once more with two pixels for one

double luminance(const QColor& colour)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

} // namespace

TEST_F(ScaledWindow, PictureRingsAndHitsScaleWithTheScreen)
{
    const double ratio = track().devicePixelRatioF();
    const int scale = qRound(ratio);
    EXPECT_EQ(image().symbol_scale, scale);
    EXPECT_EQ(image().picture.width(), qRound(track().width() * ratio));
    EXPECT_EQ(window.grab().toImage().size(), window.size() * ratio);

    QTest::mouseClick(&track(), Qt::LeftButton, {}, clicked(pixel_of(100)));
    EXPECT_EQ(image().current_record, 100);
    window.survey().pick_settings.ShowNewPickDialog = false;
    control<QAction>("menu_mark_anomaly").trigger();
    ASSERT_EQ(window.survey().picks.number_of_picks, 1);
    const PixelPlace pick = pixel_of(100);
    int red = 0;
    for (int left = 1; left < 8 * scale; ++left) red += image().picture.row(pick.y - 1)[pick.x - left] == kRed ? 1 : 0;
    EXPECT_EQ(red, scale) << "the ring is as wide as the screen's pixel";

    QTest::mouseClick(&track(), Qt::LeftButton, {}, clicked(pixel_of(300)));
    EXPECT_EQ(image().current_record, 300);
    QTest::mouseClick(&track(), Qt::LeftButton, {}, clicked(pick) + QPoint(0, -6));
    EXPECT_EQ(image().current_record, 100) << "the ring itself can be hit";
}

TEST_F(TrackPictureTest, LeavesTheWindowLetteredOrBare)
{
    const auto exported = [this](const char* name) {
        op.chosen_file = folder.path(name);
        control<QAction>("menu_export_track").trigger();
        return QImage(QString::fromStdString(folder.path(name)));
    };
    const auto differing_pixels = [](const QImage& one, const QImage& other) {
        int count = 0;
        for (int y = 0; y < one.height(); ++y) {
            for (int x = 0; x < one.width(); ++x) {
                count += (one.pixel(x, y) & kWhite) != (other.pixel(x, y) & kWhite) ? 1 : 0;
            }
        }
        return count;
    };
    const Picture& core = image().picture;
    const QImage bare(reinterpret_cast<const uchar*>(core.row(0)), core.width(), core.height(), QImage::Format_RGB32);
    const QImage lettered = exported("lettered.png");
    ASSERT_EQ(lettered.size(), bare.size());
    EXPECT_GT(differing_pixels(lettered, bare), 1000);
    control<QAction>("menu_copy_track").trigger();
    EXPECT_EQ(differing_pixels(lettered, QGuiApplication::clipboard()->image()), 0);

    control<QAction>("LetteredPictures").setChecked(false);
    EXPECT_EQ(differing_pixels(exported("bare.png"), bare), 0);
    EXPECT_EQ(settings.values["LetteredPictures"], "0");
}

TEST_F(TrackPictureTest, PositionsAreCopied)
{
    window.survey().survey_definitions.data_format.emplace().survey_grid = "UTM 32N";
    const SampleStore& store = window.survey().processing.store;
    emit track().menu_wanted({{}, 100}, {});
    const QList<QAction*> entries = control<QMenu>("menu_copy_position").actions();
    ASSERT_EQ(entries.size(), 3);
    entries[0]->trigger();
    const std::string grid =
        format_fixed(store.channel(kEast, 100), 2) + ' ' + format_fixed(store.channel(kNorth, 100), 2);
    EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), grid);
    entries[1]->trigger(); // 20 m east of the middle meridian, 9 E, at 54.1 N
    EXPECT_TRUE(QGuiApplication::clipboard()->text().startsWith(QStringLiteral("54.14")))
        << QGuiApplication::clipboard()->text().toStdString();
    control<QMenu>("menu_track").close();
}

// As the recommendations for readable texts count it: 4.5 by day; at night 3, with nothing but red light.
TEST(ColourSchemes, TextsCanBeReadOnTheirBackgrounds)
{
    using Role = QPalette::ColorRole;
    constexpr std::pair<Role, Role> kPairs[] = {{QPalette::WindowText, QPalette::Window},
                                                {QPalette::Text, QPalette::Base},
                                                {QPalette::Text, QPalette::AlternateBase},
                                                {QPalette::ButtonText, QPalette::Button},
                                                {QPalette::HighlightedText, QPalette::Highlight},
                                                {QPalette::ToolTipText, QPalette::ToolTipBase},
                                                {QPalette::Link, QPalette::Base}};
    for (const ColourSchemeEntry& entry : kColourSchemes) {
        if (entry.scheme == ColourScheme::system) continue; // the desktop's own
        const bool is_night = entry.scheme == ColourScheme::night;
        const QPalette palette = palette_of(entry.scheme);
        for (const auto& [text, ground] : kPairs) {
            const double one = luminance(palette.color(text)) + 0.05;
            const double other = luminance(palette.color(ground)) + 0.05;
            EXPECT_GE(std::max(one, other) / std::min(one, other), is_night ? 3 : 4.5)
                << entry.key << ", role " << text;
        }
        for (int role = 0; is_night && role < QPalette::NColorRoles; ++role) {
            const QColor colour = palette.color(static_cast<Role>(role));
            EXPECT_LE(std::max(colour.green(), colour.blue()), colour.red() / 2) << "role " << role;
            EXPECT_LT(luminance(colour), 0.25) << "role " << role;
        }
    }
}

} // namespace tarvo
