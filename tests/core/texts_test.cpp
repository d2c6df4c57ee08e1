#include "core/texts.h"

#include "core/code_page.h"
#include "core/form1.h"
#include "tests/core/program_folder_fixture.h"

#include <filesystem>

using namespace velkoro;

namespace {

class Texts : public ProgramFolder {
protected:
    void table(const std::string& source) { write("velkoro.res", res_build(source)); }
    std::vector<std::string> boxes() const
    {
        std::vector<std::string> out;
        for (const message_box& m : user.messages)
            out.push_back(m.text);
        return out;
    }
};

using lines = std::vector<std::string>;

const std::string two_languages = "206\tx\tEnglish\tDeutsch\n11\t\tEnglish\tDeutsch\n"
                                  "20\t\tone # two #\teins # zwei #\n21\t\tonly English\t\n";

} // namespace

TEST_F(Texts, AreFetchedByNumberInTheActiveLanguage)
{
    table(two_languages);
    EXPECT_EQ(text(11), "English");
    text_table.language = 1;
    EXPECT_EQ(text(11), "Deutsch");
    EXPECT_EQ(text_table.languages, (lines{"English", "Deutsch"}));
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(Texts, ALanguageBehindTheLastColumnIsTheFirst)
{
    table(two_languages);
    for (const int language : {5, 2, -3}) {
        text_table = {};
        text_table.language = language;
        EXPECT_EQ(text(11), "English") << language;
        EXPECT_EQ(text_table.language, 0);
    }
}

TEST_F(Texts, AnEmptyFieldGivesTheTextOfTheFirstColumn)
{
    table("206\tx\tA\tB\tC\tD\n30\t\ta\tb\tc\t\n31\t\ta\tb\n");
    text_table.language = 3;
    EXPECT_EQ(text(30), "a");
    EXPECT_EQ(text(31), "a") << "the column is not there at all";
}

TEST_F(Texts, ParametersFillTheMarksInOrder)
{
    table(two_languages);
    EXPECT_EQ(text(20, "A", "B"), "one A two B");
    EXPECT_EQ(text(20, "A", "B", "C"), "one A two B");
    EXPECT_EQ(text(20, 7, 8), "one 7 two 8");
    EXPECT_EQ(text(20, 7), "one 7 two #");
    EXPECT_EQ(text(11, "A"), "English") << "no mark";
}

TEST_F(Texts, AParameterThatIsAMarkLeavesItsMark)
{
    table(two_languages);
    EXPECT_EQ(text(20), "one # two #");
    EXPECT_EQ(text(20, "#", "B"), "one # two B");
}

TEST_F(Texts, AMarkWithinAParameterIsNotFilled)
{
    table(two_languages);
    EXPECT_EQ(text(20, "A#1", "B"), "one A#1 two B");
}

TEST_F(Texts, AnUnknownTextNamesItsNumber)
{
    table(two_languages);
    EXPECT_EQ(text(22), "Missing text 22");
    EXPECT_EQ(text(9999), "Missing text 9999");
    EXPECT_TRUE(user.messages.empty());
    text_table.generator = true;
    EXPECT_EQ(text(22), "Missing text 22");
    EXPECT_EQ(boxes(), (lines{"Missing text 22"}));
}

TEST_F(Texts, Number12MayBeEmptyAndNumbersBelow1Are)
{
    table(two_languages);
    text_table.generator = true;
    EXPECT_EQ(text(12), "");
    EXPECT_EQ(text(0), "");
    EXPECT_EQ(text(-1), "");
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(Texts, BackslashNIsALineBreak)
{
    table("206\tx\tA\n5\t\ta\\n\\nb\n");
    EXPECT_EQ(text(5), "a\n\nb");
}

TEST_F(Texts, AMissingTableIsToldOnceAndEveryTextIsMissing)
{
    EXPECT_EQ(text(11), "Missing text 11");
    EXPECT_EQ(text(20), "Missing text 20");
    EXPECT_EQ(boxes(), (lines{"File velkoro.res not found"}));
}

TEST_F(Texts, AWrongFormatNumberIsTold)
{
    table("205\tx\tA\n11\t\tEnglish\n");
    EXPECT_EQ(text(11), "English");
    EXPECT_EQ(boxes(), (lines{"Wrong res file for 206"}));
}

TEST_F(Texts, ANumberThatStandsTwiceIsToldAndTheLastOneWins)
{
    table("206\tx\tA\n11\t\tfirst\n11\t\tlast\n");
    EXPECT_EQ(text(11), "last");
    EXPECT_EQ(boxes(), (lines{"Double text at 11"}));
}

TEST_F(Texts, AHostileTableDoesNoHarm)
{
    for (const std::string& bytes :
         {std::string(), std::string("\xFF"), std::string("\xFF\xFF\xFF\xFF"),
          std::string("\x01\0\x8C\xFF\xFF\x01\0\x50", 8), std::string(5000, '\x01')}) {
        write("velkoro.res", bytes);
        text_table = {};
        EXPECT_EQ(text(400), "Missing text 400");
        EXPECT_EQ(text_table.language, 0);
    }
}

// Replacements
// ------------------------------------------------------------------------------------------------

TEST_F(Texts, ReplacementsPutTheUsersWordsInPlace)
{
    table("206\tx\tA\n1\t\tWaypoint and waypoint\n2\t\tA route\n");
    write("velkoro.rep", "Waypoint\tPoint\r\n\r\n  route\tway  \r\nno tab\r\n");
    EXPECT_EQ(text(1), "Point and waypoint") << "with exact comparison";
    EXPECT_EQ(text(2), "A way");
}

TEST_F(Texts, TheAccessMarkStaysAtItsPosition)
{
    table("206\tx\tA\n1\t\tRead way&points\n2\t\t&Track\n3\t\tAB&C\n4\t\tR&&D &waypoint\n");
    write("velkoro.rep", "waypoints\tpoints of interest\nTrack\tTrail\nABC\tX\nR&&D\tRD\n");
    EXPECT_EQ(text(1), "Read poi&nts of interest");
    EXPECT_EQ(text(2), "&Trail");
    EXPECT_EQ(text(3), "X&") << "behind the end of a text that became shorter";
    EXPECT_EQ(text(4), "RD wa&ypoint") << "a doubled mark is none, the sixth place is";
}

TEST_F(Texts, AReplacementThatHoldsItsOwnFromTextEnds)
{
    table("206\tx\tA\n1\t\ta b a\n");
    write("velkoro.rep", "a\taa\nb\n");
    EXPECT_EQ(text(1), "aa b aa") << "a line without a tab changes nothing";
    write("velkoro.rep", "b \t\n");
    texts_load();
    EXPECT_EQ(text(1), "a a") << "an empty second word takes the first one out";
}

// Regeneration
// ------------------------------------------------------------------------------------------------

class TextsRegenerate : public Texts {
protected:
    void sources(int txt_age_s, int res_age_s)
    {
        write("velkoro.txt", "206\tx\tA\n11\tcomment\tnew\n");
        table("206\tx\tA\n11\t\told\n");
        const auto now = std::filesystem::file_time_type::clock::now();
        std::filesystem::last_write_time(folders.program + "velkoro.txt",
                                         now - std::chrono::seconds(txt_age_s));
        std::filesystem::last_write_time(folders.program + "velkoro.res",
                                         now - std::chrono::seconds(res_age_s));
        text_table.regenerate = true;
    }
};

TEST_F(TextsRegenerate, ATableOlderThanItsSourceIsBuiltAnew)
{
    sources(0, 100);
    EXPECT_EQ(text(11), "new");
    EXPECT_EQ(boxes(), (lines{"File velkoro.res updated"}));
    EXPECT_EQ(user.beeps, 1);
}

TEST_F(TextsRegenerate, ATableThatIsNotOlderStays)
{
    for (const int age : {100, 50}) {
        sources(100, age);
        text_table.loaded = -1;
        EXPECT_EQ(text(11), "old");
        EXPECT_TRUE(user.messages.empty());
    }
}

TEST_F(TextsRegenerate, CancelLeavesTheOldTable)
{
    sources(0, 100);
    user.answers = {answer::cancel};
    EXPECT_EQ(text(11), "old");
    EXPECT_EQ(user.beeps, 0);
}

TEST_F(TextsRegenerate, AMissingTableIsBuilt)
{
    sources(0, 0);
    delete_file(folders.program + "velkoro.res");
    EXPECT_EQ(text(11), "new");
}

TEST_F(TextsRegenerate, ABadSourceIsReportedAndLeavesTheOldTable)
{
    sources(0, 100);
    const auto before = read("velkoro.res");
    write("velkoro.txt", "206\tx\tA\nbad\tx\ty\n");
    text(11);
    EXPECT_EQ(read("velkoro.res"), before);
    EXPECT_EQ(boxes().back(), "line 2: no text number from 1 to 32767 at its start in texts_load");
}

TEST_F(TextsRegenerate, OnlyTheCommandAsksForIt)
{
    sources(0, 100);
    text_table.regenerate = false;
    EXPECT_EQ(text(11), "old");
    EXPECT_TRUE(user.messages.empty());
}

// Messages and windows
// ------------------------------------------------------------------------------------------------

TEST_F(Texts, SayShowsTheTextUnderItsNumber)
{
    table(two_languages);
    user.answers = {answer::no};
    EXPECT_EQ(say(20, buttons::yes_no, icon::question, "A", "B"), answer::no);
    ASSERT_EQ(user.messages.size(), 1U);
    EXPECT_EQ(user.messages[0].text, "one A two B");
    EXPECT_EQ(user.messages[0].number, 20);
    EXPECT_EQ(user.messages[0].buttons, buttons::yes_no);
}

namespace {

struct sample_window {
    window form{"sample", "&Titel", "1"};
    control label{form, kind::label, "label", {.caption = "a", .tag = "2"}};
    control button{form, kind::button, "button", {.caption = "b", .tag = "2 3"}};
    control tip_only{form, kind::button, "tip_only", {.caption = "c", .tag = "0 3"}};
    control field{form, kind::text, "field", {.caption = "d", .tag = "2 3"}};
    control plain{form, kind::check, "plain", {.caption = "e"}};
};

} // namespace

TEST_F(Texts, TranslateAWindowByItsTags)
{
    table("206\tx\tA\tB\n1\t\t\t&Title && more\n2\t\t&Caption\t&Beschriftung\n3\t\tTip\tHinweis\n");
    text_table.language = 1;
    sample_window w;
    int translated = 0;
    w.form.translated = [&] { ++translated; };
    translate_form(w.form);
    EXPECT_EQ(w.form.caption, "Title & more");
    EXPECT_EQ(w.label.caption, "&Beschriftung");
    EXPECT_EQ(w.label.tooltip, "");
    EXPECT_EQ(w.button.caption, "&Beschriftung");
    EXPECT_EQ(w.button.tooltip, "Hinweis");
    EXPECT_EQ(w.tip_only.caption, "c");
    EXPECT_EQ(w.tip_only.tooltip, "Hinweis");
    EXPECT_EQ(w.field.caption, "d") << "a text field has no caption";
    EXPECT_EQ(w.field.tooltip, "Hinweis");
    EXPECT_EQ(w.plain.caption, "e");
    EXPECT_EQ(translated, 1);
}

TEST_F(Texts, ChildWindowsLoseTheAccessMarkOfTheirCaption)
{
    table("206\tx\tA\n1\t\t&Title && more\n2\t\tx\n3\t\tx\n");
    sample_window w;
    translate_form(w.form);
    EXPECT_EQ(w.form.caption, "Title & more");
}

TEST_F(Texts, TheListsBackgroundGoesToWindowsWithAStandardColour)
{
    table(two_languages);
    sample_window w, own, bare;
    own.form.back = 0x112233;
    settings.list_back = list_back_blue;
    translate_all();
    EXPECT_EQ(w.form.back, list_back_blue);
    EXPECT_EQ(own.form.back, 0x112233U);
    settings.list_back = own_colour;
    translate_form(w.form);
    EXPECT_EQ(w.form.back, own_colour);
    window empty{"empty", "x"};
    settings.list_back = list_back_blue;
    translate_form(empty);
    EXPECT_EQ(empty.back, own_colour) << "a window without controls";
    settings.list_back = own_colour;
    translate_all();
}

TEST_F(Texts, TheMainWindowIsTranslatedWithTheMakersName)
{
    shipped_texts();
    text_table.language = 1;
    settings.garmin[6] = 1;
    translate_all();
    EXPECT_EQ(Form1.gar.caption, "&Magellan");
    EXPECT_EQ(Form1.zeich_akt.caption, "Track, &Zeichnung...");
    settings.garmin[6] = 0;
    text_table.language = 0;
    translate_all();
    EXPECT_EQ(Form1.gar.caption, "&Garmin");
    EXPECT_EQ(Form1.datei.caption, "&File");
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(Texts, TheShippedTableLoadsWithoutMessages)
{
    shipped_texts();
    for (text_table.language = 0; text_table.language < 2; ++text_table.language) {
        EXPECT_NE(text(1010), "");
        EXPECT_EQ(text(1010).find("Missing"), std::string::npos);
    }
    EXPECT_TRUE(user.messages.empty());
}
