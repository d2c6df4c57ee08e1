#include "core/profiles.h"

#include "core/code_page.h"
#include "core/hooks.h"
#include "tests/core/program_folder_fixture.h"

using namespace velkoro;

namespace {

using names = std::vector<std::string>;

class Profiles : public ProgramFolder {
protected:
    void SetUp() override
    {
        ProgramFolder::SetUp();
        shipped_texts();
    }
    void three()
    {
        write("velkoro.ini", "[Main]\r\nPr_act=B\r\nPr_0=Standard\r\nPr_1=B\r\nPr_2=C\r\n"
                             "[Standard]\r\nPort=1\r\n[B]\r\nPort=2\r\n[C]\r\nPort=3\r\n");
        profiles_load();
        settings_read();
    }
};

} // namespace

TEST_F(Profiles, TheFirstStartMakesStandardWithItsSwitchesOn)
{
    profiles_load();
    EXPECT_EQ(ini_get("Main", "Pr_act"), "Standard");
    EXPECT_EQ(ini_get("Main", "Pr_0"), "Standard");
    EXPECT_EQ(profile_names(), (names{"Standard"}));
    settings_read();
    EXPECT_TRUE(settings.backup_on && settings.km_grid && settings.utm_zero &&
                settings.printer_option);
    EXPECT_EQ(settings.symbol_level, 3);
    EXPECT_EQ(settings.home_zone, "+0");
    EXPECT_EQ(settings.profile, "Standard");
}

TEST_F(Profiles, ProfilesWithoutAnActiveOneStayInTheirPlaces)
{
    write("velkoro.ini", "[Main]\r\nPr_0=Standard\r\nPr_1=B\r\n[Standard]\r\nFlags=1920\r\n");
    profiles_load();
    EXPECT_EQ(profile_names(), (names{"Standard", "B"}));
    EXPECT_EQ(ini_get("Standard", "Flags"), "1920");
}

TEST_F(Profiles, TheActiveOneIsTakenCaseBlindAndElseStandard)
{
    write("velkoro.ini", "[Main]\r\nPr_act=b\r\nPr_0=Standard\r\nPr_1=B\r\n");
    profiles_load();
    EXPECT_EQ(settings.profile, "B");
    EXPECT_EQ(profile_active(), 1);
    write("velkoro.ini", "[Main]\r\nPr_act=gone\r\nPr_0=Standard\r\nPr_1=B\r\n");
    profiles_load();
    EXPECT_EQ(settings.profile, "Standard");
}

TEST_F(Profiles, TheListEndsAtTheFirstGap)
{
    write("velkoro.ini", "[Main]\r\nPr_0=Standard\r\nPr_2=C\r\n");
    EXPECT_EQ(profile_names(), (names{"Standard"}));
}

TEST_F(Profiles, SwitchingWritesTheOldOneAndReadsTheNew)
{
    three();
    std::vector<std::string> order;
    hooks.profile_leaving = [&] {
        order.push_back("leave " + settings.profile);
        ini_put(settings.profile, "col_main", "1 2");
    };
    hooks.profile_entered = [&] {
        order.push_back("enter " + settings.profile + " " + std::to_string(settings.port));
    };
    profile_switch(2);
    EXPECT_EQ(order, (names{"leave B", "enter C 3"}));
    EXPECT_EQ(ini_get("Main", "Pr_act"), "C");
    EXPECT_EQ(ini_get("B", "col_main"), "1 2");
}

TEST_F(Profiles, SwitchingToAProfileThatIsNotThereDoesNothing)
{
    three();
    profile_switch(3);
    profile_switch(-1);
    EXPECT_EQ(settings.profile, "B");
    EXPECT_EQ(ini_get("Main", "Pr_act"), "B");
}

TEST_F(Profiles, ANewOneCopiesAllKeysAndBecomesActive)
{
    three();
    ini_put("B", "unknown key", "kept");
    bool left = false, entered = false;
    hooks.profile_leaving = [&] {
        left = true;
        ini_put("B", "col_main", "9");
    };
    hooks.profile_entered = [&] { entered = true; };
    user.inputs = {" New one "};
    profile_new();
    EXPECT_EQ(profile_names(), (names{"Standard", "B", "C", "New one"}));
    EXPECT_EQ(settings.profile, "New one");
    EXPECT_EQ(ini_get("Main", "Pr_act"), "New one");
    EXPECT_EQ(ini_keys("New one"), ini_keys("B"));
    EXPECT_EQ(ini_get("New one", "unknown key"), "kept");
    EXPECT_EQ(ini_get("New one", "col_main"), "9");
    EXPECT_EQ(user.beeps, 1);
    EXPECT_TRUE(left && entered);
}

TEST_F(Profiles, AnEmptyNameOrCancelEndsIt)
{
    three();
    user.inputs = {"   "};
    profile_new();
    user.inputs = {std::nullopt};
    profile_new();
    EXPECT_EQ(profile_names().size(), 3U);
    EXPECT_EQ(user.beeps, 0);
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(Profiles, MainIsRefusedInAnyCase)
{
    for (const char* name : {"main", "MAIN", "Main", " mAIN "}) {
        user.inputs = {name, std::nullopt};
        user.messages.clear();
        profile_new();
        EXPECT_EQ(user.numbers(), (std::vector<int>{7711})) << name;
        EXPECT_TRUE(user.inputs.empty()) << "the question comes again";
    }
}

TEST_F(Profiles, ATakenNameIsRefusedInAnyCaseAndAskedForAgain)
{
    three();
    user.inputs = {"b", "STANDARD", "a\tb", "D"};
    profile_new();
    EXPECT_EQ(user.count(7711), 3);
    EXPECT_EQ(profile_names(), (names{"Standard", "B", "C", "D"}));
}

TEST_F(Profiles, ANameWithBracketsQuotesAndUmlautsWorks)
{
    three();
    for (const std::string& name : {std::string("[x] y]"), std::string("\"q\""), "Zürich = ;"_w}) {
        user.inputs = {name};
        profile_new();
        ini_file = {}; // as the next start reads it
        EXPECT_EQ(profile_names().back(), name);
        EXPECT_EQ(ini_get(name, "Port"), "2");
    }
}

TEST_F(Profiles, ALeftOverSectionOfTheNewNameDoesNotShineThrough)
{
    three();
    ini_put("D", "Time", "+9");
    user.inputs = {"D"};
    profile_new();
    EXPECT_EQ(ini_get("D", "Time"), "");
}

TEST_F(Profiles, DeletingTheMiddleOfThreeMovesTheLastDown)
{
    three();
    profile_delete();
    EXPECT_EQ(user.numbers(), (std::vector<int>{7712}));
    EXPECT_EQ(profile_names(), (names{"Standard", "C"}));
    EXPECT_EQ(ini_get("Main", "Pr_2"), "");
    EXPECT_EQ(settings.profile, "C") << "the one that took the place";
    EXPECT_EQ(ini_get("Main", "Pr_act"), "C");
    EXPECT_EQ(settings.port, 3);
    EXPECT_EQ(ini_keys("B"), names{});
}

TEST_F(Profiles, DeletingTheLastActivatesTheOneBefore)
{
    three();
    profile_switch(2);
    profile_delete();
    EXPECT_EQ(profile_names(), (names{"Standard", "B"}));
    EXPECT_EQ(settings.profile, "B");
    EXPECT_EQ(settings.port, 2);
}

TEST_F(Profiles, CancelKeepsTheProfile)
{
    three();
    user.answers = {answer::cancel};
    profile_delete();
    EXPECT_EQ(profile_names().size(), 3U);
    EXPECT_EQ(ini_get("B", "Port"), "2");
}

TEST_F(Profiles, StandardCannotBeDeleted)
{
    three();
    EXPECT_TRUE(profile_deletable());
    profile_switch(0);
    EXPECT_FALSE(profile_deletable());
    profile_delete();
    EXPECT_EQ(user.numbers(), (std::vector<int>{7714}));
    EXPECT_EQ(profile_names().size(), 3U);
    EXPECT_EQ(ini_get("Standard", "Port"), "1");
}
