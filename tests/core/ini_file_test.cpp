#include "core/ini_file.h"

#include "core/code_page.h"
#include "tests/core/program_folder_fixture.h"

#include <map>
#include <random>
#include <unistd.h>

using namespace velkoro;

namespace {

class IniFile : public ProgramFolder {
protected:
    void ini(std::string_view text) { write("velkoro.ini", text); }
    std::string ini() { return read("velkoro.ini"); }
};

} // namespace

TEST_F(IniFile, NamesAreCaseBlindByTheCodePage)
{
    ini("[Main]\r\nScale=1\r\n[Zürich]\r\nÜber=2\r\n"_w);
    EXPECT_EQ(ini_get("MAIN", "scale"), "1");
    EXPECT_EQ(ini_get("ZÜRICH"_w, "über"_w), "2");
}

TEST_F(IniFile, TheFirstKeyAndTheFirstSectionWin)
{
    ini("[a]\nk=1\nk=2\n[A]\nk=3\nonly=4\n");
    EXPECT_EQ(ini_get("a", "k"), "1");
    EXPECT_EQ(ini_get("a", "only"), "");
    EXPECT_EQ(ini_keys("a"), (std::vector<std::string>{"k"}));
}

TEST_F(IniFile, ValuesAreTrimmedAndLoseOnePairOfQuotes)
{
    ini("[a]\n k1 \t=\t one two \n k2=\" x \"\nk3='y'\nk4=\"\"z\"\"\nk5=\"half\nk6=a=b;c\n");
    EXPECT_EQ(ini_get("a", "k1"), "one two");
    EXPECT_EQ(ini_get("a", "k2"), "x");
    EXPECT_EQ(ini_get("a", "k3"), "y");
    EXPECT_EQ(ini_get("a", "k4"), "\"z\"");
    EXPECT_EQ(ini_get("a", "k5"), "\"half");
    EXPECT_EQ(ini_get("a", "k6"), "a=b;c");
}

TEST_F(IniFile, AQuotedValueIsReadBackAsItWasPut)
{
    for (const char* value : {"\"x\"", "'x'", "\"", "\"\"", "a\"b\"", "x;y", "=", "[n]"}) {
        ini_put("a", "k", value);
        EXPECT_EQ(ini_get("a", "k"), value);
        ini_file = {};
        EXPECT_EQ(ini_get("a", "k"), value) << "from the file";
    }
}

TEST_F(IniFile, AtMost1024CharactersOfAValueAreRead)
{
    ini("[a]\nk=" + std::string(2000, 'x') + "\nblank=" + std::string(1023, 'y') + "  z\n");
    EXPECT_EQ(ini_get("a", "k"), std::string(1024, 'x'));
    EXPECT_EQ(ini_get("a", "blank"), std::string(1023, 'y'));
}

TEST_F(IniFile, AllLineEndsAreReadAndCrLfIsWritten)
{
    ini("[a]\rk=1\n\r\nm=2");
    EXPECT_EQ(ini_get("a", "k"), "1");
    EXPECT_EQ(ini_get("a", "m"), "2");
    ini_put("a", "m", "3");
    EXPECT_EQ(ini(), "[a]\r\nk=1\r\n\r\nm=3\r\n");
}

TEST_F(IniFile, CommentsOrderSpacingAndUnknownLinesSurvive)
{
    const std::string before = "; head\r\nstray=1\r\n[Main]\r\n; c=1\r\n  Scale =  5 \r\njust a "
                               "word\r\n=no key\r\n\r\n[p]\r\nx=1\r\n";
    ini(before);
    EXPECT_EQ(ini_get("Main", "c"), "");
    EXPECT_EQ(ini_get("", "stray"), "");
    ini_put("Main", "New", "1");
    std::string want = before;
    want.insert(want.find("\r\n\r\n[p]") + 2, "New=1\r\n");
    EXPECT_EQ(ini(), want);
    ini_put("Main", "New", std::nullopt);
    EXPECT_EQ(ini(), before);
}

TEST_F(IniFile, AnAbsentTextRemovesTheKeyAndAnAbsentKeyTheSection)
{
    ini("[a]\r\nk=1\r\nm=2\r\n[b]\r\nn=3\r\n");
    ini_put("A", "K", std::nullopt);
    EXPECT_EQ(ini(), "[a]\r\nm=2\r\n[b]\r\nn=3\r\n");
    ini_put("A", std::nullopt, std::nullopt);
    EXPECT_EQ(ini(), "[b]\r\nn=3\r\n");
}

TEST_F(IniFile, ARemovedSectionDoesNotComeBackFromASecondOneOfItsName)
{
    ini("[a]\r\nk=1\r\n[b]\r\n[A]\r\nk=2\r\n");
    ini_put("a", std::nullopt, std::nullopt);
    EXPECT_EQ(ini(), "[b]\r\n");
}

TEST_F(IniFile, AChangedKeyKeepsItsSpelling)
{
    ini("[Main]\r\nScale=1\r\n");
    ini_put("MAIN", "scale", "2");
    EXPECT_EQ(ini(), "[Main]\r\nScale=2\r\n");
}

TEST_F(IniFile, PuttingTheSameValueDoesNotTouchTheFile)
{
    ini("[a]\nk = 1\n");
    ini_put("a", "k", "1");
    ini_put("a", "none", std::nullopt);
    ini_put("none", std::nullopt, std::nullopt);
    EXPECT_EQ(ini(), "[a]\nk = 1\n");
}

TEST_F(IniFile, LineBreaksInAValueBecomeBlanksAndBadNamesAreIgnored)
{
    ini_put("a", "k", "1\r\n[b]\nx=2");
    EXPECT_EQ(ini(), "[a]\r\nk=1  [b] x=2\r\n");
    ini_put("a", "x=y", "1");
    ini_put("a", "[x", "1");
    ini_put("a", ";x", "1");
    ini_put("a", "", "1");
    ini_put("", "k", "1");
    ini_put("a\nb", "k", "1");
    EXPECT_EQ(ini(), "[a]\r\nk=1  [b] x=2\r\n");
}

TEST_F(IniFile, NumbersAreReadFromTheFrontOfTheText)
{
    ini("[a]\nn=-12\nt=12 km\nw=word\ne=\nbig=99999999999\n");
    EXPECT_EQ(ini_get_int("a", "n", 7), -12);
    EXPECT_EQ(ini_get_int("a", "t", 7), 12);
    EXPECT_EQ(ini_get_int("a", "w", 7), 0);
    EXPECT_EQ(ini_get_int("a", "e", 7), 7);
    EXPECT_EQ(ini_get_int("a", "absent", 7), 7);
    EXPECT_EQ(ini_get_int("a", "big", 7), 2147483647);
}

TEST_F(IniFile, TheFileIsReadAnewWhenAnotherInstanceHasChangedIt)
{
    ini("[a]\nk=1\n");
    EXPECT_EQ(ini_get("a", "k"), "1");
    ini("[a]\nk=2\n"); // same size
    EXPECT_EQ(ini_get("a", "k"), "2");
    ini("[a]\nk=2\nm=3\n");
    ini_put("a", "k", "4");
    EXPECT_EQ(ini(), "[a]\r\nk=4\r\nm=3\r\n") << "the other instance's key stays";
    delete_file(settings.ini_path);
    EXPECT_EQ(ini_get("a", "k"), "");
}

TEST_F(IniFile, AMissingFileGivesDefaultsAndIsMadeByTheFirstPut)
{
    EXPECT_EQ(ini_get("a", "k"), "");
    EXPECT_EQ(ini_keys("a"), std::vector<std::string>{});
    ini_put("a", "k", "1");
    EXPECT_EQ(ini(), "[a]\r\nk=1\r\n");
}

TEST_F(IniFile, AFileThatCannotBeWrittenStopsNothingAndTheChangeHoldsForTheRun)
{
    settings.ini_path = folders.program + "none/velkoro.ini";
    EXPECT_NO_THROW(ini_put("a", "k", "1"));
    EXPECT_EQ(ini_get("a", "k"), "1");
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(IniFile, AFileThatCannotBeReadIsNeverReplaced)
{
    ini("[a]\nk=1\n");
    std::filesystem::permissions(settings.ini_path, std::filesystem::perms::none);
    if (::geteuid() == 0) { // root reads everything: a folder in its place cannot be read either
        std::filesystem::remove(settings.ini_path);
        std::filesystem::create_directory(settings.ini_path);
    }
    ini_put("a", "k", "2");
    EXPECT_EQ(ini_get("a", "k"), "2");
    EXPECT_TRUE(std::filesystem::exists(settings.ini_path));
    EXPECT_TRUE(std::filesystem::is_directory(settings.ini_path) || ini() == "<missing>");
}

TEST_F(IniFile, TheFileIsFoundUnderAnotherCase)
{
    write("VELKORO.INI", "[a]\nk=1\n");
    EXPECT_EQ(ini_get("a", "k"), "1");
    ini_put("a", "k", "2");
    EXPECT_EQ(read("VELKORO.INI"), "[a]\r\nk=2\r\n");
    EXPECT_EQ(ini(), "<missing>");
}

TEST_F(IniFile, OverridesComeAheadOfTheFileAndAreNeverWritten)
{
    ini("[a]\r\nk=1\r\n");
    settings.overrides[{"a", "k"}] = "9";
    settings.overrides[{"a", "new"}] = "8";
    EXPECT_EQ(ini_get("A", "K"), "9");
    EXPECT_EQ(ini_get_int("a", "new", 0), 8);
    ini_put("a", "k", "5");
    ini_put("a", "new", "6");
    EXPECT_EQ(ini_get("a", "k"), "5");
    ini_copy("a", "b");
    EXPECT_EQ(ini(), "[a]\r\nk=1\r\n[b]\r\nk=1\r\n");
}

TEST_F(IniFile, CopyingASectionReplacesTheTarget)
{
    ini("[a]\r\nk=1\r\nq=\"'x'\"\r\n[b]\r\nold=1\r\n");
    ini_copy("A", "B");
    EXPECT_EQ(ini_keys("b"), (std::vector<std::string>{"k", "q"}));
    EXPECT_EQ(ini_get("b", "q"), "'x'");
    ini_copy("b", "B");
    EXPECT_EQ(ini_get("b", "k"), "1") << "onto itself";
}

TEST_F(IniFile, ATextWithAByteOrderMarkIsUtf8)
{
    ini("\xEF\xBB\xBF[Main]\nPr_act=Zürich\n");
    EXPECT_EQ(ini_get("Main", "Pr_act"), "Zürich"_w);
}

TEST_F(IniFile, WithoutAPathTheKeysLiveInMemory)
{
    settings.ini_path.clear();
    ini_put("a", "k", "1");
    EXPECT_EQ(ini_get("a", "k"), "1");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folders.program), {}), 0);
}

TEST(IniText, ParsingItsOwnTextGivesTheSameLines)
{
    std::mt19937 random(20261121);
    const std::string alphabet = "ab=[];\"' \t\r\n#A\xDC";
    for (int run = 0; run < 3000; ++run) {
        std::string text;
        for (auto n = random() % 60; n > 0; --n)
            text += alphabet[random() % alphabet.size()];
        const auto lines = ini_parse(text);
        EXPECT_EQ(ini_parse(ini_text(lines)), lines) << text;
    }
}

TEST_F(IniFile, AnyRunOfChangesGivesWhatAPlainMapHolds)
{
    std::mt19937 random(1989);
    const std::vector<std::string> sections = {"Main", "p 1", "Zürich"_w},
                                   keys = {"k", "Flags", "x y"};
    const std::vector<std::string> values = {"1", "", "a b", "\"q\"", "x;y", "[s]", "ä=ö"_w};
    std::map<std::pair<std::string, std::string>, std::string> model;
    for (int run = 0; run < 600; ++run) {
        const std::string &s = sections[random() % 3], &k = keys[random() % 3];
        switch (random() % 8) {
        case 0:
            ini_put(s, std::nullopt, std::nullopt);
            std::erase_if(model, [&](const auto& e) { return e.first.first == s; });
            break;
        case 1:
            ini_put(s, k, std::nullopt);
            model.erase({s, k});
            break;
        default: model[{s, k}] = values[random() % values.size()]; ini_put(s, k, model[{s, k}]);
        }
        if (random() % 3 == 0)
            ini_file = {}; // from the file again
        for (const std::string& a : sections)
            for (const std::string& b : keys) {
                const auto hit = model.find({a, b});
                ASSERT_EQ(ini_get(a, b), hit == model.end() ? "" : hit->second) << run;
            }
    }
}

TEST_F(IniFile, ASecondByteOrderMarkIsNoPartOfTheText)
{
    const std::string_view twice = "\xEF\xBB\xBF\xEF\xBB\xBF\xDF\xD7";
    const std::vector<ini_line> lines = ini_parse(twice);
    EXPECT_EQ(ini_parse(ini_text(lines)), lines);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].raw.find("\xEF\xBB\xBF"), std::string::npos);
}
