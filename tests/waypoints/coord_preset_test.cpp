#include "waypoints/coord_preset.h"

#include "core/code_page.h"

#include <gtest/gtest.h>

using namespace velkoro;

namespace {

/// What stands in the field after the characters were typed one by one behind a start.
std::string typed(std::string field, const std::string& characters, const std::string& sample)
{
    for (const char c : characters)
        field = preset_typed(field, field + c, sample);
    return field;
}

const std::string minutes = "N47°52.974'"_w, seconds = "E008°01'44.5\""_w;

} // namespace

TEST(CoordPreset, KeepsTheDegreesOrAllButFiveDigits)
{
    EXPECT_EQ(preset_length(minutes, true), 4U);
    EXPECT_EQ(preset_length("N 47.88290\xB0", true), 5U);
    EXPECT_EQ(preset_length("0562471", false), 2U);
    EXPECT_EQ(preset_length("0562.471", false), 2U);
    EXPECT_EQ(preset_length("62471", false), 0U);
    EXPECT_EQ(preset_length("", true), 0U);
}

TEST(CoordPreset, DigitsBringTheMarksOfTheFormat)
{
    EXPECT_EQ(typed("N47°"_w, "52974", minutes), "N47°52.974"_w);
    EXPECT_EQ(typed("E008°"_w, "01445", seconds), "E008°01'44.5"_w);
    EXPECT_EQ(typed("", "4752974", minutes), "N47°52.974"_w);
    EXPECT_EQ(typed("05", "62471", "0562.471"), "0562.471");
}

TEST(CoordPreset, AMarkFillsMissingDigits)
{
    EXPECT_EQ(typed("N47°"_w, "5.2", minutes), "N47°05.2"_w);
    EXPECT_EQ(typed("N47°"_w, "5,2", minutes), "N47°05.2"_w);
    EXPECT_EQ(typed("E008°"_w, "1 4.5", seconds), "E008°01'04.5"_w);
}

TEST(CoordPreset, AMarkThatStandsAlreadyIsPassedOver)
{
    EXPECT_EQ(typed("N47°"_w, " 52.974", minutes), "N47°52.974"_w);
}

TEST(CoordPreset, OtherChangesStayAsTyped)
{
    EXPECT_EQ(preset_typed("N47°52"_w, "N47°5"_w, minutes), "N47°5"_w);
    EXPECT_EQ(preset_typed("N47°52"_w, "S12 30.5", minutes), "S12 30.5");
    EXPECT_EQ(preset_typed("48.5", "48.51", minutes), "48.51");
    EXPECT_EQ(typed("N47°52.974"_w, "'", minutes), minutes);
    EXPECT_EQ(typed(minutes, "1", minutes), minutes + "1");
}
