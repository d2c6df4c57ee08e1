// The shipped tables through the program's own parsers.

#include "core/code_page.h"
#include "core/symbols.h"
#include "core/texts.h"
#include "tests/data/data_files.h"

#include <gtest/gtest.h>

#include <string>

using namespace velkoro;

TEST(ShippedTexts, SurviveTheBinaryTable)
{
    const res_table table = res_decode(res_build(data_file("velkoro.txt")));
    EXPECT_FALSE(table.damaged);
    ASSERT_EQ(table.header.size(), 4U);
    EXPECT_EQ(table.header[0], "206");
    EXPECT_EQ(table.header[2], "English");
    EXPECT_EQ(table.header[3], "Deutsch");
    const auto rows = language_rows();
    ASSERT_EQ(table.rows.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(table.rows[i].first, rows[i].number);
        ASSERT_EQ(table.rows[i].second.size(), 2U) << rows[i].number;
        EXPECT_EQ(table.rows[i].second[0], from_utf8(rows[i].english));
        EXPECT_EQ(table.rows[i].second[1], from_utf8(rows[i].german));
    }
}

TEST(ShippedSymbols, AreTakenWithTheirReceiverValues)
{
    symbol_state level2, level3;
    symbols_parse(data_file("de/SYMBOL_2.INS"), level2);
    symbols_parse(data_file("SYMBOL_3.INS"), level3);
    EXPECT_EQ(level2.order.size(), 16U);
    EXPECT_EQ(level2.rows.at(10).name, "Flagge");
    EXPECT_EQ(level2.rows.at(10).raw, 10);
    EXPECT_EQ(level3.order.size(), 197U);
    EXPECT_EQ(level3.rows.at(20).name, "Summit");
    EXPECT_EQ(level3.rows.at(20).raw, 0x2036);
    for (const symbol_row& row : level3.rows)
        EXPECT_NE(row.name, "??");
}
