#include "core/symbols.h"

#include "core/code_page.h"
#include "tests/core/program_folder_fixture.h"

using namespace velkoro;

namespace {

class Symbols : public ProgramFolder {
protected:
    void SetUp() override
    {
        ProgramFolder::SetUp();
        shipped_texts();
    }
    void table(const std::string& bytes, int level = 3)
    {
        write("SYMBOL_" + std::to_string(level) + ".INI", bytes);
        settings.symbol_level = level;
        symbols_load();
    }
    std::string file() { return read("SYMBOL_3.INI"); }
};

} // namespace

TEST_F(Symbols, ALineHasNumberReceiverValueAndName)
{
    table("00:1F Flag, Blue\r\n02:2004 Gas Station \r\n5 Boje\r\n");
    EXPECT_EQ(symb_ext(0), "Flag, Blue");
    EXPECT_EQ(symb_ext(2), "Gas Station") << "blanks within a name are kept";
    EXPECT_EQ(symb_ext("Gas Station"), 2);
    EXPECT_EQ(symb_to_receiver(2), 0x2004);
    EXPECT_EQ(symb_to_receiver(5), 5) << "without a receiver value it is the number itself";
    EXPECT_EQ(symb_from_receiver(0x1F), 0);
    EXPECT_EQ(symb_from_receiver(5), 5);
    EXPECT_EQ(symbols.rows[0].flags, 1);
    EXPECT_EQ(symbols.rows[5].flags, 0);
}

TEST_F(Symbols, NumbersWithoutALineAreUnused)
{
    table("03 A\r\n");
    EXPECT_EQ(symb_ext(1), "??");
    EXPECT_EQ(symb_ext("??"), -1);
    symbols.extend = false;
    EXPECT_EQ(symb_from_receiver(0), 0) << "an unused row is no match for its zero";
}

TEST_F(Symbols, NumbersOutsideTheTableAreAQuestionMark)
{
    table("00 A\r\n");
    EXPECT_EQ(symb_ext(1), "?");
    EXPECT_EQ(symb_ext(-1), "?");
    EXPECT_EQ(symb_ext("none"), -1);
    EXPECT_EQ(symb_ext(""), -1);
    EXPECT_EQ(symb_to_receiver(8200), 8200);
}

TEST_F(Symbols, LinesThatDoNotFitAreSkipped)
{
    table("; comment\r\n\r\n00\r\nx A\r\n01: B\r\n02:XY C\r\n-3 D\r\n40000 E\r\n04:10000 F\r\n"
          "05:5x G\r\n  06:6   H  \r\n");
    EXPECT_EQ(symbols.order, (std::vector<int>{6}));
    EXPECT_EQ(symb_ext(6), "H");
    EXPECT_EQ(symbols.rows.size(), 7U);
}

TEST_F(Symbols, TheLastLineOfARepeatedNumberStands)
{
    table("01:1 First\r\n02:2 Two\r\n01:3 Last\r\n");
    EXPECT_EQ(symb_ext(1), "Last");
    EXPECT_EQ(symb_ext("First"), -1);
    EXPECT_EQ(symb_from_receiver(3), 1);
    EXPECT_EQ(symbols.order, (std::vector<int>{2, 1}));
}

TEST_F(Symbols, OfTwoEqualNamesTheLowerNumberIsFound)
{
    table("05 Same\r\n03 Same\r\n");
    EXPECT_EQ(symb_ext("Same"), 3);
}

TEST_F(Symbols, TheListIsInFileOrder)
{
    table("07 C\r\n01 A\r\n03 B\r\n");
    window w{"symbols_test", "x"};
    control combo{w, kind::combo, "symb"};
    symb_list(combo);
    EXPECT_EQ(combo.items, (std::vector<std::string>{"C", "A", "B"}));
    EXPECT_TRUE(combo.enabled);
    control list{w, kind::list, "list"};
    symb_list(list);
    ASSERT_EQ(list.rows.rows.size(), 3U);
    EXPECT_EQ(list.rows.rows[0].data, 7);
    EXPECT_EQ(list.rows.rows[0].cells, (std::vector<std::string>{"C"}));
}

TEST_F(Symbols, Level0IsEmptyAndTheListDisabled)
{
    table("00 A\r\n");
    settings.symbol_level = 0;
    symbols_load();
    EXPECT_TRUE(symbols.rows.empty());
    window w{"symbols_test", "x"};
    control combo{w, kind::combo, "symb"};
    symb_list(combo);
    EXPECT_TRUE(combo.items.empty());
    EXPECT_FALSE(combo.enabled);
    EXPECT_EQ(symb_from_receiver(7), 7);
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(Symbols, LevelsWithoutATableAreAsLevel0)
{
    for (const int level : {1, 4, -1}) {
        settings.symbol_level = level;
        symbols_load();
        EXPECT_EQ(symbols.level, 0);
    }
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(Symbols, EachLevelHasItsFileAndIsLoadedOnce)
{
    table("00 Sixteen\r\n", 2);
    EXPECT_EQ(symb_ext(0), "Sixteen");
    write("SYMBOL_2.INI", "00 Changed\r\n");
    symbols_load();
    EXPECT_EQ(symb_ext(0), "Sixteen");
    table("00 More\r\n", 3);
    EXPECT_EQ(symb_ext(0), "More");
}

TEST_F(Symbols, AMissingFileGivesAMessageWithTheFolderOnce)
{
    settings.symbol_level = 3;
    symbols_load();
    symbols_load();
    ASSERT_EQ(user.numbers(), (std::vector<int>{7700}));
    EXPECT_NE(user.messages[0].text.find("SYMBOL_3.INI"), std::string::npos);
    EXPECT_NE(user.messages[0].text.find(folders.program), std::string::npos);
    EXPECT_EQ(symb_ext(0), "?");
    EXPECT_EQ(symb_from_receiver(5), 5);
    EXPECT_FALSE(file_exists(folders.program + "SYMBOL_3.INI"));
}

TEST_F(Symbols, TheFileIsFoundCaseBlind)
{
    write("symbol_3.ini", "00 A\r\n");
    settings.symbol_level = 3;
    symbols_load();
    EXPECT_EQ(symb_ext(0), "A");
}

TEST_F(Symbols, ANewReceiverSymbolAddsALineWithANumberInTwoDigits)
{
    table("00:0 A\r\n01:1 B");
    EXPECT_EQ(symb_from_receiver(8203), 2);
    EXPECT_EQ(user.numbers(), (std::vector<int>{7701}));
    EXPECT_EQ(file(), "00:0 A\r\n01:1 B\r\n02:200B <8203>\r\n");
    EXPECT_EQ(symb_ext(2), "<8203>");
    EXPECT_EQ(symb_ext("<8203>"), 2);
    EXPECT_EQ(symb_to_receiver(2), 8203);
    EXPECT_EQ(symbols.order.back(), 2);
    EXPECT_EQ(symbols.rows[2].flags, 3);
    EXPECT_EQ(symb_from_receiver(8203), 2) << "in memory at once";
}

TEST_F(Symbols, ItIsAskedOnceARun)
{
    table("00:0 A\r\n");
    symb_from_receiver(50);
    symb_from_receiver(51);
    table("00:0 A\r\n", 2);
    symb_from_receiver(52);
    EXPECT_EQ(user.count(7701), 1);
    EXPECT_EQ(read("SYMBOL_2.INI"), "00:0 A\r\n01:34 <52>\r\n");
}

TEST_F(Symbols, NoLeavesTheRawValueInTheRecord)
{
    table("00:0 A\r\n");
    user.answers = {answer::no};
    EXPECT_EQ(symb_from_receiver(8203), 8203);
    EXPECT_EQ(symb_from_receiver(8204), 8204);
    EXPECT_EQ(user.count(7701), 1);
    EXPECT_EQ(file(), "00:0 A\r\n");
}

TEST_F(Symbols, NumbersAbove99AreWrittenInFull)
{
    table("120:5 A\r\n");
    EXPECT_EQ(symb_from_receiver(200), 121);
    EXPECT_TRUE(file().ends_with("121:C8 <200>\r\n"));
}

TEST_F(Symbols, AnAppendedTableReadsBackTheSame)
{
    table("00:0 A\r\n");
    for (int raw = 1; raw < 150; ++raw)
        EXPECT_EQ(symb_from_receiver(raw * 7), raw);
    symbol_state again;
    symbols_parse(file(), again);
    EXPECT_EQ(again.order, symbols.order);
    EXPECT_EQ(again.by_name, symbols.by_name);
    for (std::size_t n = 0; n < again.rows.size(); ++n)
        EXPECT_EQ(again.rows[n].raw, symbols.rows[n].raw);
}

TEST_F(Symbols, TheShippedTablesAreReadWithoutLoss)
{
    for (const int level : {2, 3}) {
        const std::string name =
            std::string(VELKORO_SOURCE_DIR "/data/SYMBOL_") + std::to_string(level) + ".INS";
        const auto bytes = read_file(name);
        ASSERT_TRUE(bytes) << name;
        symbol_state s;
        symbols_parse(*bytes, s);
        EXPECT_GE(s.order.size(), 16U);
    }
}
