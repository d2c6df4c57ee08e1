#include "coords/units.h"

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
        EXPECT_EQ(coord.zone_held[0], "");
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
}

} // namespace
} // namespace velkoro
