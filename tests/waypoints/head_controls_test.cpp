// What the head of a waypoint file does to the drop-downs of the coordinates.
#include "coords/coord_text.h"
#include "coords/units.h"
#include "core/settings.h"
#include "tests/waypoints/native_support.h"
#include "waypoints/native_wp.h"

#include <gtest/gtest.h>

namespace velkoro {
namespace {

/// The main window with its position formats, some datums and the handlers of the coordinates.
class HeadControls : public testing::Test {
protected:
    native_fixture f{};

    HeadControls()
    {
        coord = {};
        datums = datum_parse("WGS 84,WGS 84,WGS 84,WGS 84,WGS 84,Potsdam,CH-1903,NTF (France),"
                             "a,b,c\n"
                             "CH-1903,739.845,0.10037483,674,15,405\n"
                             "NTF (France),-112.2,-0.54738855,-168,-60,320\n"
                             "Potsdam,739.845,0.10037483,606,23,413\n"
                             "WGS 84,0,0,0,0,0\n");
        for (const char* name : {"GK", "CH", "F", "GB", "IRL", "NZ"})
            Form1.posform.items.emplace_back(name);
        Form1.Datum.items.clear();
        for (const datum_rec& d : datums.rows)
            Form1.Datum.items.push_back(d.name);
        Form1.posform.change = posform_click;
        Form1.zone.change = zone_click;
        set(fmt_degrees, "WGS 84");
    }
    ~HeadControls() override
    {
        coord = {};
        datums = {};
        Form1.zone.items.clear();
        Form1.zone.selected = -1;
        Form1.zone.visible = true;
        Form1.zone.change = {};
    }
    static void set(int fmt, const std::string& datum)
    {
        Form1.posform.selected = fmt;
        Form1.Datum.selected = datum_find(datum);
        zone_fill();
    }
    static std::string datum()
    {
        return Form1.Datum.items.at(static_cast<std::size_t>(Form1.Datum.selected));
    }
    /// A file that was saved with these choices.
    static std::string file_with(int fmt, const std::string& datum)
    {
        const int fmt_now = Form1.posform.selected;
        const std::string datum_now = HeadControls::datum();
        set(fmt, datum);
        const std::string bytes = write_wp({}).bytes;
        set(fmt_now, datum_now);
        return bytes;
    }
};

TEST_F(HeadControls, AGridWithZonesShowsTheZonesAndKeepsTheDatumOfTheFile)
{
    read_wp(file_with(fmt_utm, "Potsdam"));
    EXPECT_EQ(Form1.posform.selected, fmt_utm);
    EXPECT_EQ(datum(), "Potsdam"); // not WGS 84, which UTM brings along
    EXPECT_TRUE(Form1.zone.visible);
    EXPECT_EQ(Form1.zone.items.size(), 61U);
    EXPECT_EQ(Form1.zone.selected, 0);
    EXPECT_EQ(coord.zone_choice, 0);
}

TEST_F(HeadControls, TheZonesOfAnotherGridTakeThePlaceOfTheChosenOne)
{
    set(fmt_utm, "WGS 84");
    Form1.zone.selected = 33;
    zone_click();
    ASSERT_EQ(coord.zone_choice, 33);
    read_wp(file_with(fmt_lambert, "NTF (France)"));
    EXPECT_EQ(Form1.zone.items.size(), 5U);
    EXPECT_EQ(Form1.zone.selected, 2);
    EXPECT_EQ(coord.zone_choice, 2);
    EXPECT_EQ(datum(), "NTF (France)");
}

TEST_F(HeadControls, AFormatWithoutZonesHidesThem)
{
    set(fmt_gk, "Potsdam");
    coord.zone_held = {"", "5707000", "3562000"};
    read_wp(file_with(fmt_swiss, "CH-1903"));
    EXPECT_FALSE(Form1.zone.visible);
    EXPECT_EQ(coord.zone_choice, 0);
    EXPECT_EQ(coord.zone_held[1], "");
    EXPECT_EQ(datum(), "CH-1903");
}

TEST_F(HeadControls, AChosenZoneSurvivesAFileOfTheSameFormat)
{
    const std::string bytes = file_with(fmt_utm, "Potsdam");
    set(fmt_utm, "WGS 84");
    Form1.zone.selected = 33;
    zone_click();
    read_wp(bytes);
    EXPECT_EQ(Form1.zone.selected, 33);
    EXPECT_EQ(coord.zone_choice, 33);
    EXPECT_EQ(datum(), "Potsdam");
}

TEST_F(HeadControls, ADatumThatIsNotInTheTableLeavesTheUsualOneOfTheFormat)
{
    Form1.Datum.items.emplace_back("Atlantis");
    datums.rows.push_back(datum_make("Atlantis", 0, 0, 1, 1, 1));
    const std::string bytes = file_with(fmt_gk, "Atlantis");
    Form1.Datum.items.pop_back();
    datums.rows.pop_back();
    read_wp(bytes);
    EXPECT_EQ(Form1.posform.selected, fmt_gk);
    EXPECT_EQ(datum(), "Potsdam");
}

TEST_F(HeadControls, TheTimeZoneOfTheFileIsTickedInTheMenu)
{
    settings.list_zone = "+10 L10 L3";
    const std::string bytes = write_wp({}).bytes;
    settings.list_zone = "+0";
    zone_menu_checks();
    ASSERT_TRUE(Form1.Zeit_LZ[0].checked);
    read_wp(bytes);
    EXPECT_EQ(settings.list_zone, "+10 L10 L3");
    EXPECT_TRUE(Form1.Zeit_LZ[4].checked);
    EXPECT_FALSE(Form1.Zeit_LZ[0].checked);
}

} // namespace
} // namespace velkoro
