#include "waypoints/row_text.h"

#include "tests/waypoints/list_fixture.h"

using namespace velkoro;

namespace {

class RowText : public ListTest {};

constexpr std::int32_t day = 86400;

} // namespace

TEST_F(RowText, NameAndCommentAreShownAsStored)
{
    add({.nam = "ZUG", .kom = "Zugspitze | top", .pos = {1 << 20, 0}});
    EXPECT_EQ(cell(0, list_col::name), "ZUG");
    EXPECT_EQ(cell(0, list_col::comment), "Zugspitze | top");
    EXPECT_EQ(wp_row_text(0, list_col::comment, sort_entry::name).sort, "zugspitze | top ");
}

TEST_F(RowText, AltitudesStandInTheirUnitAndUnknownOnesAreBlank)
{
    add({.nam = "A", .pos = {1 << 20, 0}, .alt = 2962});
    add({.nam = "B", .pos = {2 << 20, 0}});
    EXPECT_EQ(cell(0, list_col::altitude), "2962 m");
    EXPECT_EQ(cell(1, list_col::altitude), "");
    EXPECT_EQ(wp_row_text(0, list_col::altitude, sort_entry::name).sort, "035730");
    EXPECT_EQ(wp_row_text(1, list_col::altitude, sort_entry::name).sort, "999999");
    settings.alt_index = 1;
    settings.alt_unit = 0.3048F;
    EXPECT_EQ(cell(0, list_col::altitude), "9718 ft");
}

TEST_F(RowText, ProximityHasSignsForNoneAndOff)
{
    add({.nam = "A", .pos = {1 << 20, 0}, .prox = 25});
    add({.nam = "B", .pos = {2 << 20, 0}});
    add({.nam = "C", .pos = {3 << 20, 0}, .prox = -25});
    EXPECT_EQ(cell(0, list_col::proximity), "2.5");
    EXPECT_EQ(cell(1, list_col::proximity), "-.-");
    EXPECT_EQ(cell(2, list_col::proximity), "'''");
    const int column = static_cast<int>(list_col::proximity);
    EXPECT_FALSE(list().dim(0, column));
    EXPECT_TRUE(list().dim(1, column));
    settings.dist_unit = 1609.344F;
    EXPECT_EQ(cell(0, list_col::proximity), "1.6");
}

TEST_F(RowText, ThePositionFollowsTheFormatInForceBehindTwoBlanks)
{
    hooks.position_text = [](const pos_rec& p) { return "at " + std::to_string(p.lat); };
    add({.nam = "A", .pos = {7, 0}});
    EXPECT_EQ(cell(0, list_col::position), "  at 7");
    EXPECT_EQ(list().columns[6].heading, Form1.posform.items[0]);
    Form1.posform.selected = 2;
    hooks.row_changed(-1, false);
    EXPECT_EQ(list().columns[6].heading, Form1.posform.items[2]);
}

TEST_F(RowText, TheSymbolStandsBehindTheSignOfItsMode)
{
    symbols.rows = {{.name = "Dot"}, {.name = "House"}};
    symbols.level = settings.symbol_level;
    add({.nam = "A", .pos = {1 << 20, 0}, .symb = 1});
    add({.nam = "B", .pos = {2 << 20, 0}, .symb = 1, .symbmode = 1});
    add({.nam = "C", .pos = {3 << 20, 0}, .symb = 0, .symbmode = 2});
    EXPECT_EQ(cell(0, list_col::symbol), " House");
    EXPECT_EQ(cell(1, list_col::symbol), "'House");
    EXPECT_EQ(cell(2, list_col::symbol), "\"Dot");
}

TEST_F(RowText, WithoutASymbolTableTheColumnIsEmpty)
{
    symbols.rows.clear();
    add({.nam = "A", .pos = {1 << 20, 0}, .symb = 1});
    EXPECT_EQ(cell(0, list_col::symbol), "");
    EXPECT_EQ(list().glyph(0, static_cast<int>(list_col::symbol)), "");
}

TEST_F(RowText, TheVariableColumnShowsTheDateUnlessTheOrderHasAColumnOfItsOwn)
{
    add({.nam = "A", .pos = {1 << 20, 0}, .dat = day});
    for (const sort_entry order : {sort_entry::name, sort_entry::latitude, sort_entry::date}) {
        sort_by(order);
        EXPECT_EQ(cell(0, list_col::variable), "1990-01-01");
        EXPECT_EQ(list().columns[4].heading, text(7273));
        EXPECT_FALSE(list().columns[4].right);
    }
}

TEST_F(RowText, DatesCountFromTheReceiversEpoch)
{
    EXPECT_EQ(wp_date_text(0), "");
    EXPECT_EQ(wp_date_text(1), "1989-12-31");
    EXPECT_EQ(wp_date_text(day - 1), "1989-12-31");
    EXPECT_EQ(wp_date_text(day), "1990-01-01");
    EXPECT_EQ(wp_date_text(-1), "1989-12-30");
    EXPECT_EQ(wp_date_text(3712 * day), "2000-02-29");
    EXPECT_EQ(wp_date_text(2147483647), "2058-01-18");
    language_select(1);
    EXPECT_EQ(wp_date_text(3712 * day), "29.02.2000");
}

TEST_F(RowText, HeadingsFollowTheLanguage)
{
    EXPECT_EQ(list().columns[1].heading, text(180));
    const std::string english = list().columns[1].heading;
    language_select(1);
    EXPECT_NE(list().columns[1].heading, english);
    EXPECT_EQ(list().columns[0].heading, text(1650));
    EXPECT_EQ(list().columns[2].heading, text(2345));
}

TEST_F(RowText, AnIndexOutsideTheStoreGivesEmptyTexts)
{
    EXPECT_EQ(wp_row_text(0, list_col::name, sort_entry::name).shown, "");
    EXPECT_EQ(wp_row_text(-1, list_col::name, sort_entry::name).sort, "");
    EXPECT_EQ(cell(5, list_col::position), "");
}

TEST_F(RowText, ASymbolHasThePictureOfItsGlyphAndWithoutOneTheDot)
{
    const std::string table = "level;number;glyph;family;colour\r\n3;0;dot;shape;black\r\n"
                              "3;1;house;house\n3;2;fuel_pump;car\n3;3;;car\n3;5;zone;shape\n"
                              "3;x;flag;flag\n3;-1;flag;flag\n3;1000000;flag;flag\n2;0;flag;flag\n";
    EXPECT_EQ(glyphs_parse(table, 3),
              (lines{"g_dot", "g_house", "g_fuel_pump", "g_dot", "g_dot", "g_zone"}));
    EXPECT_EQ(glyphs_parse(table, 2), (lines{"g_flag"}));
    EXPECT_TRUE(glyphs_parse("", 3).empty());
}

TEST_F(RowText, TheGlyphTableIsReadFromTheProgramFolder)
{
    home.put("glyphs.csv", "3;0;dot;shape\n3;1;tent;house\n2;1;flag;flag\n");
    settings.symbol_level = symbols.level = 3;
    symbols.rows = {{.name = "Dot"}, {.name = "Camp"}};
    add({.nam = "A", .pos = {1 << 20, 0}, .symb = 1});
    add({.nam = "B", .pos = {2 << 20, 0}, .symb = 77});
    const int column = static_cast<int>(list_col::symbol);
    EXPECT_EQ(list().glyph(0, column), "g_tent");
    EXPECT_EQ(list().glyph(1, column), "g_dot");
    EXPECT_EQ(list().glyph(0, 0), "");
}
