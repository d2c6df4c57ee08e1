#include "core/ins_activate.h"

#include "tests/support/program_folder.h"
#include "tests/support/scripted_platform.h"

using namespace velkoro;

TEST(InsActivate, ANewTableBecomesTheIniWhenThereIsNone)
{
    const scripted_platform user;
    const program_folder home;
    home.put("Datum.ins", "new");
    ins_activate("Datum");
    EXPECT_EQ(home.get("Datum.ini"), "new");
    EXPECT_FALSE(home.has("Datum.ins"));
}

TEST(InsActivate, BesideTheUsersIniTheNewTableIsDeletedAndTheIniStays)
{
    const scripted_platform user;
    const program_folder home;
    home.put("Datum.ins", "new");
    home.put("Datum.ini", "mine");
    ins_activate("Datum");
    EXPECT_EQ(home.get("Datum.ini"), "mine");
    EXPECT_FALSE(home.has("Datum.ins"));
}

TEST(InsActivate, FindsNamesInAnyCase)
{
    const scripted_platform user;
    const program_folder home;
    home.put("SYMBOL_2.INS", "new");
    home.put("Symbol_2.Ini", "mine");
    ins_activate("symbol_2");
    EXPECT_EQ(home.get("Symbol_2.Ini"), "mine");
    EXPECT_FALSE(home.has("SYMBOL_2.INS"));

    home.put("SYMBOL_3.INS", "new");
    ins_activate("symbol_3");
    EXPECT_EQ(home.get("SYMBOL_3.ini"), "new");
}

TEST(InsActivate, WithoutANewTableNothingHappens)
{
    const scripted_platform user;
    const program_folder home;
    home.put("Datum.ini", "mine");
    ins_activate("Datum");
    ins_activate("symbol_2");
    EXPECT_EQ(home.get("Datum.ini"), "mine");
    EXPECT_FALSE(home.has("symbol_2.ini"));
}
