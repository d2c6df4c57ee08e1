#include "core/help_pages.h"

#include "core/code_page.h"
#include "tests/support/program_folder.h"
#include "tests/support/scripted_platform.h"

#include <gtest/gtest.h>

using namespace velkoro;

namespace {

struct HelpPages : testing::Test {
    scripted_platform user{};
    program_folder home{};

    HelpPages() { texts_load(); }
    void put(const std::string& language, const std::string& contents) const
    {
        std::filesystem::create_directories(home.path / "help" / language);
        home.put("help/" + language + "/index.txt", contents);
    }
    static void speak(int column)
    {
        text_table.language = column;
        texts_load();
    }
};

} // namespace

TEST_F(HelpPages, TheContentsAreFileTitleAndLevel)
{
    EXPECT_EQ(help_contents_read("index.html\tWelcome\t1\r\nfind.html\tSuchen für alle\t2\n"),
              (std::vector<help_topic>{{"index", "Welcome", 1}, {"find", "Suchen für alle"_w, 2}}));
}

TEST_F(HelpPages, LinesOfAnotherFormAreLeftOut)
{
    EXPECT_EQ(help_contents_read("\nindex.html\n.html\tx\t1\npage.txt\tx\t1\na.html\t\t1\n"
                                 "b.html\tx\t3\nc.html\tx\n"),
              std::vector<help_topic>{});
}

TEST_F(HelpPages, WithoutPagesThereIsNoHelp)
{
    EXPECT_EQ(help_folder(), "");
    EXPECT_EQ(help_contents(), std::vector<help_topic>{});
}

TEST_F(HelpPages, ThePagesAreThoseOfTheLanguageInForce)
{
    put("en", "index.html\tWelcome\t1\n");
    put("de", "index.html\tWillkommen\t1\n");
    speak(0);
    EXPECT_TRUE(help_folder().ends_with("help/en/"));
    EXPECT_EQ(help_contents().at(0).title, "Welcome");
    speak(1);
    EXPECT_TRUE(help_folder().ends_with("help/de/"));
    EXPECT_EQ(help_contents().at(0).title, "Willkommen");
}

TEST_F(HelpPages, ALanguageWithoutPagesGetsTheEnglishOnes)
{
    put("en", "index.html\tWelcome\t1\n");
    speak(1);
    EXPECT_TRUE(help_folder().ends_with("help/en/"));
}
