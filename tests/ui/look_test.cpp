#include "ui/look.h"

#include "ui/icon_paint.h"

#include <QApplication>
#include <QDir>
#include <QFontMetricsF>
#include <QPixmap>

#include <gtest/gtest.h>

#include <cmath>

namespace velkoro::test {
namespace {

double luminance(const QColor& c)
{
    const auto linear = [](double v) {
        return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(c.redF()) + 0.7152 * linear(c.greenF()) + 0.0722 * linear(c.blueF());
}

double contrast(const QColor& a, const QColor& b)
{
    const double x = luminance(a);
    const double y = luminance(b);
    return (std::max(x, y) + 0.05) / (std::min(x, y) + 0.05);
}

class Palette : public testing::TestWithParam<bool> {
protected:
    void TearDown() override { look_set_theme(theme::light); }
};

TEST_P(Palette, EveryTextIsReadableOnItsGround)
{
    const QPalette p = own_palette(GetParam());
    const std::pair<QPalette::ColorRole, QPalette::ColorRole> pairs[] = {
        {QPalette::WindowText, QPalette::Window},
        {QPalette::Text, QPalette::Base},
        {QPalette::Text, QPalette::AlternateBase},
        {QPalette::ButtonText, QPalette::Button},
        {QPalette::PlaceholderText, QPalette::Window},
        {QPalette::PlaceholderText, QPalette::Base},
        {QPalette::HighlightedText, QPalette::Highlight},
        {QPalette::Link, QPalette::Base},
        {QPalette::BrightText, QPalette::Window},
        {QPalette::ToolTipText, QPalette::ToolTipBase}};
    for (const auto& [ink, ground] : pairs)
        EXPECT_GE(contrast(p.color(ink), p.color(ground)), 4.5) << ink << " on " << ground;
}

TEST_P(Palette, TextStaysReadableOnAMarkedRow)
{
    look_set_theme(GetParam() ? theme::dark : theme::light);
    const QPalette p = QApplication::palette();
    EXPECT_EQ(is_dark(p), GetParam());
    EXPECT_GE(contrast(p.color(QPalette::Text), mark_colour(p)), 4.5);
    EXPECT_NE(mark_colour(p), p.color(QPalette::Base));
}

INSTANTIATE_TEST_SUITE_P(LightAndDark, Palette, testing::Bool(),
                         [](const auto& i) { return i.param ? "Dark" : "Light"; });

TEST(Look, AGroundGetsTheTextThatContrastsMore)
{
    EXPECT_EQ(contrast_text(QColor(0, 255, 255)), QColor(0x1d, 0x21, 0x26));
    EXPECT_EQ(contrast_text(QColor(255, 255, 0)), QColor(0x1d, 0x21, 0x26));
    EXPECT_EQ(contrast_text(QColor(0, 0, 128)), QColor(Qt::white));
    EXPECT_EQ(record_colour(0xFFFF00), QColor(0, 255, 255)); // blue, green, red
    EXPECT_EQ(record_colour(0x0000FF), QColor(255, 0, 0));
}

TEST(Look, FiguresOfListsHaveOneWidth)
{
    const QFontMetricsF m(list_font());
    EXPECT_NEAR(m.horizontalAdvance(QLatin1Char('0')), m.horizontalAdvance(QLatin1Char('1')), 0.5);
}

TEST(Icons, EveryDrawingRendersAtEveryResolution)
{
    load_resources();
    const QStringList drawings = QDir(QStringLiteral(":/icons")).entryList();
    EXPECT_GE(drawings.size(), 60);
    for (const QString& file : drawings)
        for (const double ratio : {1.0, 1.5, 2.0}) {
            const QPixmap p = icon_pixmap(file.chopped(4), QColor(1, 2, 3), icon_size, ratio);
            EXPECT_EQ(p.width(), qRound(icon_size * ratio)) << file.toStdString();
            EXPECT_EQ(p.deviceIndependentSize().toSize(), QSize(icon_size, icon_size));
        }
}

TEST(Icons, AnIconTakesTheColourOfItsState)
{
    const auto ink = [](const QIcon& icon, QIcon::Mode mode) {
        const QImage i = icon.pixmap(QSize(40, 40), 1.0, mode).toImage();
        QColor darkest(Qt::white);
        for (int y = 0; y < i.height(); ++y)
            for (int x = 0; x < i.width(); ++x)
                if (i.pixelColor(x, y).alpha() == 255)
                    return i.pixelColor(x, y);
        return darkest;
    };
    const QIcon icon = make_icon(QStringLiteral("search"));
    const QPalette p = QApplication::palette();
    EXPECT_EQ(ink(icon, QIcon::Normal), p.color(QPalette::ButtonText));
    EXPECT_EQ(ink(icon, QIcon::Disabled), p.color(QPalette::Disabled, QPalette::ButtonText));
}

TEST(Icons, AnUnknownNamePaintsNothing)
{
    EXPECT_TRUE(icon_pixmap(QStringLiteral("no_such"), Qt::black, 16, 1.0).isNull());
    EXPECT_TRUE(make_icon(QString()).isNull());
}

} // namespace
} // namespace velkoro::test
