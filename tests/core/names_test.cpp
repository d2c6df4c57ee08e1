#include "core/names.h"

#include "core/code_page.h"
#include "tests/core/store_fixture.h"

using namespace velkoro;

namespace {

class Names : public Store {};
class NameClean : public Store {};
class NameUnique : public Store {};
class NameTyped : public Store {};
class NameCut : public Store {};

} // namespace

TEST_F(Names, ACommentThatStartsWithAnAtPutsItsFirstFourCharactersInFrontOfTheKey)
{
    EXPECT_EQ(wp_key("A", "@123 a hut"), "@123A");
    EXPECT_EQ(wp_key("A", "a hut @123"), "A");
    EXPECT_EQ(wp_key("A", ""), "A");
}

TEST_F(Names, AShorterAtCommentGoesIntoTheKeyWhole)
{
    EXPECT_EQ(wp_key("A", "@1"), "@1A");
    EXPECT_EQ(wp_key("A", "@"), "@A");
}

TEST_F(Names, AStoredWaypointHasTheKeyOfItsNameAndComment)
{
    insert(waypoint("A", 1, "@12 x"));
    EXPECT_EQ(wp_key(0), "@12 A");
}

TEST_F(NameClean, TrimsAndTurnsToUpperCase)
{
    EXPECT_EQ(name_clean("  abc9-z ", 0), "ABC9-Z");
    EXPECT_EQ(name_clean("", 0), "");
    EXPECT_EQ(name_clean("   ", 1), "");
}

TEST_F(NameClean, ReplacesUmlautsAndTheirLikeByOneLetter)
{
    EXPECT_EQ(name_clean("äöüßåøæ"_w, 0), "AOUSAOA");
    EXPECT_EQ(name_clean("ÄÖÜÅØÆ"_w, 0), "AOUAOA");
}

TEST_F(NameClean, MakesAllOtherLettersADash)
{
    EXPECT_EQ(name_clean("éÉñÇŸŠ"_w, 0), "------");
    EXPECT_EQ(name_clean("a_b*c/d~e\"f", 0), "A-B-C-D-E-F");
}

TEST_F(NameClean, KeepsCharactersBelowTheBlank)
{
    EXPECT_EQ(name_clean("a\tb", 0), "A\tB");
}

TEST_F(NameClean, KeepsBlanksOnlyInCommentsOrWithTheExtendedSet)
{
    EXPECT_EQ(name_clean("a b", 0), "A-B");
    EXPECT_EQ(name_clean("a b", 1), "A B");
    EXPECT_EQ(name_clean("a b", 2), "A B");
    store.wp_ext_chars = true;
    EXPECT_EQ(name_clean("a b", 0), "A B");
}

TEST_F(NameClean, KeepsThePlusOnlyWithTheExtendedSet)
{
    for (const int mode : {0, 1, 2})
        EXPECT_EQ(name_clean("a+b", mode), "A-B") << mode;
    store.wp_ext_chars = true;
    for (const int mode : {0, 1, 2})
        EXPECT_EQ(name_clean("a+b", mode), "A+B") << mode;
}

TEST_F(NameClean, KeepsPunctuationOnlyInCommentsWithTheExtendedSet)
{
    const std::string all = "&',.():;$?!#";
    const std::string dashes(all.size(), '-');
    for (const int mode : {0, 1, 2})
        EXPECT_EQ(name_clean(all, mode), dashes) << mode;
    store.wp_ext_chars = true;
    EXPECT_EQ(name_clean(all, 0), dashes);
    EXPECT_EQ(name_clean(all, 1), all);
    EXPECT_EQ(name_clean(all, 2), dashes);
}

TEST_F(NameClean, KeepsALeadingAtInCommentsOnly)
{
    EXPECT_EQ(name_clean("@12a@b", 1), "@12A-B");
    EXPECT_EQ(name_clean("@12a", 0), "-12A");
    EXPECT_EQ(name_clean("@12a", 2), "-12A");
}

TEST_F(NameClean, ACleanNameStaysAsItIs)
{
    for (int c = 1; c < 256; ++c) {
        const std::string once = name_clean(std::string("X") + static_cast<char>(c) + "X", 0);
        EXPECT_EQ(name_clean(once, 0), once) << c;
    }
}

TEST_F(NameUnique, AFreeNameStays)
{
    insert(waypoint("B", 1));
    std::string name = "A";
    name_unique(name, "", -1);
    EXPECT_EQ(name, "A");
}

TEST_F(NameUnique, ANameWithoutANumberGetsOne)
{
    insert(waypoint("A", 1));
    std::string name = "A";
    name_unique(name, "", -1);
    EXPECT_EQ(name, "A1");
}

TEST_F(NameUnique, TheNumberAtTheEndIsCountedUpInItsWidth)
{
    for (const char* taken : {"A007", "A008", "A9", "B99"})
        insert(waypoint(taken, 100 + store.wp_top));
    for (const auto& [from, to] : std::vector<std::pair<std::string, std::string>>{
             {"A007", "A009"}, {"A9", "A10"}, {"B99", "B100"}}) {
        std::string name = from;
        name_unique(name, "", -1);
        EXPECT_EQ(name, to);
    }
}

TEST_F(NameUnique, ANameTooLongLosesTwoCharactersAheadOfTheNumberAndIsTestedAgain)
{
    insert(waypoint("ABCDE9", 1));
    std::string name = "ABCDE9";
    name_unique(name, "", -1);
    EXPECT_EQ(name, "ABC10");

    insert(waypoint("ABC10", 2));
    name = "ABCDE9";
    name_unique(name, "", -1);
    EXPECT_EQ(name, "ABC11");
}

TEST_F(NameUnique, AFullNameWithoutANumberKeepsTheLimit)
{
    insert(waypoint("ABCDEF", 1));
    std::string name = "ABCDEF";
    name_unique(name, "", -1);
    EXPECT_EQ(name, "ABCD1");
}

TEST_F(NameUnique, ANameOfNinesGoesOnFromZero)
{
    insert(waypoint("999999", 1));
    std::string name = "999999";
    name_unique(name, "", -1);
    EXPECT_EQ(name, "000000");
}

TEST_F(NameUnique, PassesTheLimitWhenAllNumbersOfThatLengthAreTaken)
{
    store.wp_name_max = 1;
    for (char c = '0'; c <= '9'; ++c)
        insert(waypoint(std::string(1, c), c));
    std::string name = "3";
    name_unique(name, "", -1);
    EXPECT_GT(name.size(), 1U);
    EXPECT_EQ(wp_find_key(name, "", -1, store.wp_top), -1);
}

TEST_F(NameUnique, LeavesOutTheRecordThatAsks)
{
    insert(waypoint("A", 1));
    std::string name = "A";
    name_unique(name, "", 0);
    EXPECT_EQ(name, "A");
}

TEST_F(NameUnique, AnotherNamespaceDoesNotCount)
{
    insert(waypoint("A", 1, "@123"));
    std::string name = "A";
    name_unique(name, "", -1);
    EXPECT_EQ(name, "A");
    name_unique(name, "@123 other", -1);
    EXPECT_EQ(name, "A1");
}

TEST_F(NameUnique, ANumberThatBecameFreeIsFoundAgain)
{
    for (const char* taken : {"A", "A1", "A2"})
        insert(waypoint(taken, 100 + store.wp_top));
    std::string name = "A";
    name_unique(name, "", -1);
    EXPECT_EQ(name, "A3");
    wp_rename(1, "B", "");
    name = "A";
    name_unique(name, "", -1);
    EXPECT_EQ(name, "A1");
}

// Fields and limits
// ---------------------------------------------------------------------------------------------------------------

TEST_F(NameTyped, IsCleanedCharacterByCharacter)
{
    EXPECT_EQ(name_typed("hütte"_w), "HUTTE");
    EXPECT_EQ(name_typed(" a.b "), "-A-B-");
    EXPECT_EQ(name_typed(""), "");
}

TEST_F(NameTyped, KeepsBlanksAtTheEndsWithTheExtendedSet)
{
    store.wp_ext_chars = true;
    EXPECT_EQ(name_typed(" a b "), " A B ");
}

TEST_F(NameCut, PutsTheTailInFrontOfTheCommentBehindItsPartOfTheKey)
{
    std::string nam = "ABCDEFG", kom = "hut";
    EXPECT_TRUE(name_cut(nam, kom));
    EXPECT_EQ(nam, "ABCDEF");
    EXPECT_EQ(kom, "G<hut");
    nam = "ABCDEFGH";
    kom = "@123hut";
    EXPECT_TRUE(name_cut(nam, kom));
    EXPECT_EQ(kom, "@123GH<hut");
}

TEST_F(NameCut, LeavesAShortNameAlone)
{
    std::string nam = "ABCDEF", kom = "hut";
    EXPECT_FALSE(name_cut(nam, kom));
    EXPECT_EQ(nam, "ABCDEF");
    EXPECT_EQ(kom, "hut");
}
