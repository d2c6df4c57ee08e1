#include "coords/units.h"

#include "core/ini_file.h"
#include "tests/coords/coord_fixture.h"

namespace velkoro {
namespace {

class Units : public CoordTest {};

TEST_F(Units, TheSpeedUnitFollowsTheDistanceUnitOnRequest)
{
    user.answers = {answer::yes};
    einh_click(1);
    EXPECT_EQ(settings.dist_unit, 1609.344F);
    EXPECT_EQ(settings.speed_unit, 1609.344F);
    EXPECT_EQ(user.count(746), 1);
    EXPECT_TRUE(Form1.einh[1].checked);
    EXPECT_TRUE(Form1.einh_s[1].checked);
    EXPECT_FALSE(Form1.einh[0].checked);
    EXPECT_STREQ(dist_label(), "mi");

    user.answers = {answer::no};
    einh_s_click(2);
    EXPECT_EQ(user.count(745), 1);
    EXPECT_EQ(settings.dist_unit, 1609.344F);
    EXPECT_EQ(settings.speed_unit, 1852.0F);
    EXPECT_STREQ(speed_label(), "kt");
    einh_s_click(1); // equal again: no question
    EXPECT_EQ(user.count(745), 1);
}

TEST_F(Units, AltitudesAreMetresOrFeet)
{
    einh_alt_click(1);
    EXPECT_EQ(settings.alt_unit, 0.3048F);
    EXPECT_STREQ(alt_label(), "ft");
    einh_alt_click(0);
    EXPECT_EQ(settings.alt_unit, 1.0F);
}

TEST_F(Units, ChangesRefreshTheListAndTheZeroOfUtmAloneDoesNot)
{
    int refreshed = 0, told = 0;
    hooks.row_changed = [&](int index, bool mark) { refreshed += index == -1 && !mark; };
    hooks.units_changed = [&] { ++told; };
    ei_grid_u_click(1);
    ei_grid_u_click(0);
    EXPECT_EQ(refreshed, 2);
    ei_grid_u_click(3);
    EXPECT_EQ(refreshed, 2);
    user.answers = {answer::no, answer::no};
    einh_click(1);
    einh_s_click(2);
    einh_alt_click(1);
    EXPECT_EQ(refreshed, 5);
    EXPECT_EQ(told, 3);
}

TEST_F(Units, TheZoneChosenHoldsAndTheListFollowsOnAChangeOnly)
{
    Form1.posform.selected = fmt_utm;
    posform_click();
    int refreshed = 0;
    hooks.row_changed = [&](int, bool) { ++refreshed; };
    Form1.zone.selected = 33;
    zone_click();
    EXPECT_EQ(coord.zone, 33);
    EXPECT_EQ(refreshed, 1);
    zone_click();
    EXPECT_EQ(refreshed, 1);
    EXPECT_EQ(line(at(51.5, 9.9), -1).substr(0, 3), "33U");
    Form1.zone.selected = 0;
    zone_click();
    EXPECT_EQ(refreshed, 2);
    EXPECT_EQ(line(at(51.5, 9.9), -1).substr(0, 3), "32U");
    EXPECT_EQ(coord.zone, 32); // found for the place
}

TEST_F(Units, ADatumThatTheTableLacksLeavesTheChoiceAlone)
{
    use_datum("Potsdam");
    const int before = Form1.Datum.selected;
    datums.grid_datum[fmt_utm] = "no such datum";
    Form1.posform.selected = fmt_utm;
    posform_click();
    EXPECT_EQ(Form1.Datum.selected, before);
    datums.grid_datum[fmt_swiss] = " CH-1903 "; // names are compared without blanks at their ends
    Form1.posform.selected = fmt_swiss;
    posform_click();
    EXPECT_EQ(Form1.Datum.selected, datum_find("CH-1903"));
}

TEST_F(Units, MetricCoordinatesFollowTheirMenu)
{
    ei_grid_u_click(1);
    EXPECT_TRUE(settings.km_grid);
    EXPECT_TRUE(Form1.ei_grid_u[1].checked);
    ei_grid_u_click(0);
    EXPECT_FALSE(settings.km_grid);
    ei_grid_u_click(3);
    EXPECT_TRUE(settings.utm_zero);
    ei_grid_u_click(3);
    EXPECT_FALSE(settings.utm_zero);
}

TEST_F(Units, ZonesAppearWhereTheyHaveAMeaning)
{
    const struct {
        int fmt;
        std::size_t rows;
        int chosen;
    } formats[] = {{fmt_degrees, 0, -1}, {fmt_utm, 61, 0},    {fmt_mgrs, 61, 0}, {fmt_gk, 7, 0},
                   {fmt_swiss, 0, -1},   {fmt_lambert, 5, 2}, {fmt_user, 0, -1}};
    for (const auto& f : formats) {
        coord.zone_held = {"a", "b", "c"};
        Form1.posform.selected = f.fmt;
        posform_click();
        EXPECT_EQ(Form1.zone.items.size(), f.rows) << f.fmt;
        EXPECT_EQ(Form1.zone.visible, f.rows > 0) << f.fmt;
        EXPECT_EQ(Form1.zone.selected, f.chosen) << f.fmt;
        for (const std::string& held : coord.zone_held)
            EXPECT_EQ(held, "");
        if (f.rows > 0) {
            EXPECT_EQ(Form1.zone.items[0], "Zone auto");
        }
        if (f.rows == 61) {
            EXPECT_EQ(Form1.zone.items[1], "Zone 1");
            EXPECT_EQ(Form1.zone.items[60], "Zone 60");
        } else if (f.fmt == fmt_gk) {
            EXPECT_EQ(Form1.zone.items[1], "Zone 0");
            EXPECT_EQ(Form1.zone.items[6], "Zone 5");
        } else if (f.fmt == fmt_lambert) {
            EXPECT_EQ(Form1.zone.items[1], "Zone 1");
            EXPECT_EQ(Form1.zone.items[2], "Zone 2 étd"_w);
            EXPECT_EQ(Form1.zone.items[4], "Zone 4");
        }
        EXPECT_EQ(Form1.Datum.items[static_cast<std::size_t>(Form1.Datum.selected)],
                  datums.grid_datum[static_cast<std::size_t>(f.fmt)]);
    }
}

TEST_F(Units, ZoneRulesComeFromTheMenuOrFromTheUser)
{
    EXPECT_EQ(zone_menu_rule(1, "x"), "+1 L3 L10");
    EXPECT_EQ(zone_menu_rule(5, "old"), "old"); // cancelled
    user.inputs = {"", "+5,5"};
    EXPECT_EQ(zone_menu_rule(5, "old"), "old");
    EXPECT_EQ(zone_menu_rule(5, "old"), "+5.5");
    Zeit_LZ_click(4);
    EXPECT_EQ(settings.list_zone, "+10 L10 L3");
    EXPECT_TRUE(Form1.Zeit_LZ[4].checked);
    EXPECT_TRUE(store.wp_dirty);
    EXPECT_FALSE(Form1.Zeit_LZ[1].checked);
}

TEST_F(Units, TheZoneAtHomeIsKeptUnderItsKey)
{
    Zeit_Z_click(3);
    EXPECT_EQ(settings.home_zone, "-5 F4 L10");
    EXPECT_EQ(ini_get(settings.profile, "Time"), "-5 F4 L10");
    EXPECT_TRUE(Form1.Zeit_Z[3].checked);
    user.inputs = {"-5 S3 F11"};
    Zeit_Z_click(5);
    EXPECT_EQ(user.prompts.size(), 1U);
    EXPECT_EQ(ini_get(settings.profile, "Time"), "-5 S3 F11");
    EXPECT_TRUE(Form1.Zeit_Z[5].checked); // a rule of one's own
    EXPECT_FALSE(Form1.Zeit_Z[3].checked);
    EXPECT_FALSE(store.wp_dirty); // it belongs to no list
}

TEST_F(Units, TheHelpOfTheZonesOpensFromBothMenus)
{
    std::vector<std::string> pages;
    platform.help = [&](const std::string& page) { pages.push_back(page); };
    units_install();
    Form1.Zeit_H.click();
    Form1.Zeit_LH.click();
    EXPECT_EQ(pages, (std::vector<std::string>{"time_zones", "time_zones"}));
}

} // namespace
} // namespace velkoro
