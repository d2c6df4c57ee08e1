#include "core/text_tools.h"

#include "core/code_page.h"

#include <gtest/gtest.h>

using namespace velkoro;

TEST(CutToken, RemovesTheTextUpToTheSeparatorWithIt)
{
    std::string text = "A$B$C";
    EXPECT_EQ(cut_token(text, "$"), "A");
    EXPECT_EQ(text, "B$C");
}

TEST(CutToken, ATextWithoutTheSeparatorIsReturnedWholeAndLeftEmpty)
{
    std::string text = "ABC";
    EXPECT_EQ(cut_token(text, "$"), "ABC");
    EXPECT_EQ(text, "");
    EXPECT_EQ(cut_token(text, "$"), "");
}

TEST(Case, FollowsTheCodePageAndNotTheLocale)
{
    EXPECT_EQ(upper("straße äöüÿœ"_w), "STRAßE ÄÖÜŸŒ"_w);
    EXPECT_EQ(lower("ÄÖÜŸŒ ×"_w), "äöüÿœ ×"_w);
    EXPECT_EQ(find_nocase("Feldberg Hütte"_w, "HÜTTE"_w), 9U);
    EXPECT_EQ(find_nocase("Feldberg", "x"), std::string_view::npos);
    EXPECT_EQ(find_nocase("Feldberg", ""), 0U);
}

TEST(Trim, TakesBlanksAndNothingElse)
{
    EXPECT_EQ(trim("  a\tb \t "), "a\tb \t");
    EXPECT_EQ(trim("   "), "");
}

TEST(SplitLines, TakesAllThreeLineEnds)
{
    const std::vector<std::string_view> want = {"a", "b", "", "c"};
    EXPECT_EQ(split_lines("a\r\nb\n\rc"), want);
    EXPECT_TRUE(split_lines("").empty());
}

TEST(ListTokens, CountARestWithoutDollar)
{
    const std::vector<std::string> want = {"A", "", "B"};
    EXPECT_EQ(list_tokens("A$$B"), want);
    EXPECT_EQ(list_tokens("A$$B$"), want);
    EXPECT_TRUE(list_tokens("").empty());
}
