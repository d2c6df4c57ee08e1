#include "core/settings.h"

#include "core/form1.h"
#include "core/symbols.h"
#include "tests/core/program_folder_fixture.h"

#include <set>

using namespace velkoro;

namespace {

class Settings : public ProgramFolder {
protected:
    void section(const std::string& keys)
    {
        write("velkoro.ini", "[Main]\r\nPr_act=Standard\r\nPr_0=Standard\r\n[Standard]\r\n" + keys);
        settings_read();
    }
    std::string key(std::string_view name) { return ini_get("Standard", name); }
};

} // namespace

// Flags
// ------------------------------------------------------------------------------------------------

TEST_F(Settings, AllSwitchesOfFlagsHaveTheirWeights)
{
    settings = {.ini_path = settings.ini_path};
    settings.printer_option = settings.km_grid = true;
    settings.utm_zero = settings.backup_on = false;
    EXPECT_EQ(flags_pack(), 0);
    settings.dist_index = 2;
    EXPECT_EQ(flags_pack(), 2);
    settings.printer_option = false;
    EXPECT_EQ(flags_pack(), 2 + 3);
    settings.utm_zero = true;
    EXPECT_EQ(flags_pack(), 2 + 3 + 6);
    settings.km_grid = false;
    EXPECT_EQ(flags_pack(), 2 + 3 + 6 + 12);
    settings.symbol_level = 3;
    EXPECT_EQ(flags_pack(), 2 + 3 + 6 + 12 + 72);
    settings.back_blue = true;
    EXPECT_EQ(flags_pack(), 2 + 3 + 6 + 12 + 72 + 120);
    settings.alt_kom = true;
    EXPECT_EQ(flags_pack(), 2 + 3 + 6 + 12 + 72 + 120 + 240);
    settings.backup_on = true;
    EXPECT_EQ(flags_pack(), 2 + 3 + 6 + 12 + 72 + 120 + 240 + 960);
    settings.pc_clock = true;
    EXPECT_EQ(flags_pack(), 2 + 3 + 6 + 12 + 72 + 120 + 240 + 960 + 1920);
}

TEST_F(Settings, EveryDigitOfFlagsIsRead)
{
    flags_unpack(0);
    EXPECT_TRUE(settings.printer_option && settings.utm_zero && settings.km_grid);
    EXPECT_FALSE(settings.back_blue || settings.alt_kom || settings.backup_on || settings.pc_clock);
    EXPECT_EQ(settings.symbol_level, 0);
    flags_unpack(1 + 3 + 6 + 12 + 48 + 120 + 240 + 960 + 1920);
    EXPECT_EQ(settings.dist_index, 1);
    EXPECT_FALSE(settings.printer_option || settings.utm_zero || settings.km_grid);
    EXPECT_EQ(settings.symbol_level, 2);
    EXPECT_TRUE(settings.back_blue && settings.alt_kom && settings.backup_on && settings.pc_clock);
    EXPECT_EQ(settings.list_back, 16776960U);
    flags_unpack(480); // the digit of weight 240 is 2, which is not "on"
    EXPECT_FALSE(settings.alt_kom);
    flags_unpack(3840); // Flags / 1920 is 2
    EXPECT_FALSE(settings.pc_clock);
    flags_unpack(-5);
    EXPECT_EQ(settings.dist_index, 0);
}

TEST_F(Settings, TheSwitchOfWeight6ChangesItsStateByBeingWrittenAndReadBack)
{
    section("Flags=0\r\nGarmin=512\r\n");
    EXPECT_TRUE(settings.utm_zero);
    for (const bool want : {false, true, false}) {
        settings_write();
        settings_read();
        EXPECT_EQ(settings.utm_zero, want);
    }
}

TEST_F(Settings, AllOtherSwitchesComeBackAsWritten)
{
    for (int n = 0; n < 1920 * 2; ++n) {
        flags_unpack(n);
        const settings_state before = settings;
        flags_unpack(flags_pack());
        const bool alt_kom = n % 960 / 240 == 1; // digits 2 and 3 read as off
        ASSERT_EQ(settings.utm_zero, !before.utm_zero) << n;
        ASSERT_EQ(settings.dist_index, before.dist_index) << n;
        ASSERT_EQ(settings.printer_option, before.printer_option) << n;
        ASSERT_EQ(settings.km_grid, before.km_grid) << n;
        ASSERT_EQ(settings.symbol_level, before.symbol_level) << n;
        ASSERT_EQ(settings.back_blue, before.back_blue) << n;
        ASSERT_EQ(settings.alt_kom, alt_kom) << n;
        ASSERT_EQ(settings.backup_on, before.backup_on) << n;
        ASSERT_EQ(settings.pc_clock, before.pc_clock) << n;
    }
}

// Units
// ------------------------------------------------------------------------------------------------

TEST_F(Settings, UnitsAbsentFallBackOnTheDigitOfFlags)
{
    settings.speed_index = settings.alt_index = 1;
    section("Flags=2\r\n");
    EXPECT_EQ(settings.dist_index, 2);
    EXPECT_EQ(settings.speed_index, 0);
    EXPECT_EQ(settings.alt_index, 0);
    EXPECT_FLOAT_EQ(settings.dist_unit, 1852);
}

TEST_F(Settings, UnitsComeAheadOfTheDigitOfFlags)
{
    section("Flags=2\r\nUnits=" + std::to_string(1 + 3 * 2 + 9 * 1) + "\r\n");
    EXPECT_EQ(settings.dist_index, 1);
    EXPECT_EQ(settings.speed_index, 2);
    EXPECT_EQ(settings.alt_index, 1);
    EXPECT_FLOAT_EQ(settings.dist_unit, 1609.344F);
    EXPECT_FLOAT_EQ(settings.speed_unit, 1852);
    EXPECT_FLOAT_EQ(settings.alt_unit, 0.3048F);
}

TEST_F(Settings, EveryChoiceOfUnitsComesBack)
{
    for (int n = 0; n < 18; ++n) {
        units_unpack(n);
        EXPECT_EQ(units_pack(), n);
    }
    units_unpack(1000);
    EXPECT_EQ(settings.alt_index, 0);
}

// Garmin
// ------------------------------------------------------------------------------------------------

TEST_F(Settings, WithoutGarminTheDefaultsHoldAndTheUtmSwitchIsOn)
{
    section("Flags=6\r\n");
    EXPECT_EQ(settings.garmin, (std::array<int, 12>{512, 0, 20, 30, 1024, 0, 0, 6, 0, 0, 0, 0}));
    EXPECT_TRUE(settings.utm_zero);
    EXPECT_EQ(store.wp_name_max, 6);
    EXPECT_FALSE(store.wp_ext_chars);
}

TEST_F(Settings, TheTwelveNumbersOfGarminAreRead)
{
    section("Flags=6\r\nGarmin=1000 10 50 125  2048 1 0 10 1 1 1 1\r\n");
    EXPECT_EQ(settings.garmin,
              (std::array<int, 12>{1000, 10, 50, 125, 2048, 1, 0, 10, 1, 1, 1, 1}));
    EXPECT_FALSE(settings.utm_zero);
    EXPECT_EQ(store.wp_name_max, 10);
    EXPECT_TRUE(store.wp_ext_chars);
}

TEST_F(Settings, MissingNumbersOfGarminAreTheDefaults)
{
    section("Garmin=1000\r\n");
    EXPECT_EQ(settings.garmin[0], 1000);
    EXPECT_EQ(gar_option(gar_place::mrou), 20);
    EXPECT_EQ(store.wp_name_max, 6);
}

TEST_F(Settings, ANameLengthThatNoNameCanHaveIsTheDefault)
{
    section("Garmin=512 0 20 30 1024 0 0 0 0 0 0 0\r\n");
    EXPECT_EQ(store.wp_name_max, 6);
    section("Garmin=512 0 20 30 1024 0 0 99999 0 0 0 0\r\n");
    EXPECT_EQ(store.wp_name_max, 32767);
}

TEST_F(Settings, WritingTakesNameLengthAndCharactersFromTheStore)
{
    section("");
    store.wp_name_max = 10;
    store.wp_ext_chars = true;
    settings_write();
    EXPECT_EQ(key("Garmin"), "512 0 20 30 1024 0 0 10 0 0 0 1");
}

TEST_F(Settings, TheReceiverMenuBearsTheMakersName)
{
    section("Garmin=512 0 20 30 1024 0 3 6 0 0 0 0\r\n");
    EXPECT_EQ(Form1.gar.caption, "&Magellan");
    section("");
    EXPECT_EQ(Form1.gar.caption, "&Garmin");
}

// Reading and writing
// ------------------------------------------------------------------------------------------------

TEST_F(Settings, AMissingFileGivesTheDefaults)
{
    settings_read();
    EXPECT_EQ(settings.home_zone, "+0");
    EXPECT_EQ(settings.port, 0);
    EXPECT_EQ(settings.st_options, -1);
    EXPECT_FALSE(settings.map_keys);
    EXPECT_TRUE(settings.printer_option && settings.utm_zero && settings.km_grid);
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(Settings, TimePortAndMapKeysAreRead)
{
    write("velkoro.ini",
          "[Main]\r\nmap_options=yes\r\n[Standard]\r\nTime=+1 L3 L10\r\nPort=100\r\n");
    settings_read();
    EXPECT_EQ(settings.home_zone, "+1 L3 L10");
    EXPECT_EQ(settings.port, 100);
    EXPECT_TRUE(settings.map_keys);
}

TEST_F(Settings, WritingRemovesTheKeysOfOldVersions)
{
    section("fil_k=1\r\nfil_t=2\r\nFIL_WP=3\r\nTime=+2\r\n");
    settings_write();
    EXPECT_EQ(ini_keys("Standard"), (std::vector<std::string>{"Time", "Flags", "Units", "Garmin"}));
}

TEST_F(Settings, TheChecksOfTheMenuEntriesFollow)
{
    section("Flags=" + std::to_string(3 + 12 + 120 + 960) +
            "\r\nUnits=" + std::to_string(2 + 3 * 1 + 9 * 1) + "\r\nPort=3\r\nGarmin=512\r\n");
    EXPECT_EQ(Form1.einh[2].checked, true);
    EXPECT_EQ(Form1.einh[0].checked, false);
    EXPECT_EQ(Form1.einh_s[1].checked, true);
    EXPECT_EQ(Form1.einh_alt[1].checked, true);
    EXPECT_EQ(Form1.ei_grid_u[0].checked, true);
    EXPECT_EQ(Form1.ei_grid_u[1].checked, false);
    EXPECT_EQ(Form1.ei_grid_u[3].checked, true);
    EXPECT_TRUE(Form1.backup.checked);
    EXPECT_TRUE(Form1.back_b.checked);
    EXPECT_FALSE(Form1.pc.checked);
    EXPECT_EQ(Form1.Waypl2.back, list_back_blue);
    for (const control& c : Form1.menu_com)
        EXPECT_EQ(c.checked, c.index == 3) << c.index;
}

TEST_F(Settings, AutomaticIsNoPort)
{
    section("Port=9\r\n");
    for (const control& c : Form1.menu_com)
        EXPECT_FALSE(c.checked) << c.index;
}

TEST_F(Settings, ReadingLoadsTheSymbolTableOfTheLevel)
{
    write("SYMBOL_3.INI", "00:10 Flag\r\n");
    section("Flags=" + std::to_string(24 * 3) + "\r\n");
    EXPECT_EQ(symb_ext(0), "Flag");
}

// Keys of old versions
// ------------------------------------------------------------------------------------------------

TEST_F(Settings, TheOlderMapOptionsAreReadOnceAndMoveToTheNewestKey)
{
    section("st_options=5\r\nst_options2=7\r\n");
    EXPECT_EQ(settings.st_options, 7);
    EXPECT_EQ(key("st_options"), "");
    EXPECT_EQ(key("st_options2"), "");
    EXPECT_EQ(key("st_options3"), "7");
    section("st_options=5\r\n");
    EXPECT_EQ(settings.st_options, 5);
}

TEST_F(Settings, TheNewestMapOptionsComeFirst)
{
    section("st_options3=9\r\nst_options2=7\r\n");
    EXPECT_EQ(settings.st_options, 9);
    EXPECT_EQ(key("st_options2"), "7") << "older forms are not looked at";
}

TEST_F(Settings, AnOldLanguageMovesToTheNewKeyAndSwapsSides)
{
    write("velkoro.ini", "[Main]\r\nLang=1\r\n");
    EXPECT_EQ(settings_read_language(), 0);
    EXPECT_EQ(read("velkoro.ini"), "[Main]\r\nLang3=0\r\n");
    write("velkoro.ini", "[Main]\r\nLang=0\r\n");
    EXPECT_EQ(settings_read_language(), 1);
}

TEST_F(Settings, AnOldLanguageBesideANewOneIsNotLookedAt)
{
    write("velkoro.ini", "[Main]\r\nLang=1\r\nLang3=1\r\n");
    EXPECT_EQ(settings_read_language(), 1);
}

TEST_F(Settings, WithoutALanguageNoneIsChosen)
{
    EXPECT_EQ(settings_read_language(), -1);
    EXPECT_FALSE(file_exists(settings.ini_path));
}

TEST_F(Settings, AnOldPortMovesIntoEveryProfile)
{
    write("velkoro.ini", "[Main]\r\nPort=2\r\nPr_act=B\r\nPr_0=Standard\r\nPr_1=B\r\n");
    profiles_load();
    settings_migrate_port();
    EXPECT_EQ(ini_get("Main", "Port"), "");
    EXPECT_EQ(ini_get("Standard", "Port"), "2");
    EXPECT_EQ(ini_get("B", "Port"), "2");
    EXPECT_EQ(settings.port, 2);
    settings_migrate_port();
    EXPECT_EQ(ini_get("B", "Port"), "2");
}

// Single keys
// ------------------------------------------------------------------------------------------------

TEST_F(Settings, AMapLimitOf0WorksAs4)
{
    EXPECT_EQ(settings_map_limit(), 4);
    section("K_MAX=0\r\n");
    EXPECT_EQ(settings_map_limit(), 4);
    section("K_MAX=9\r\n");
    EXPECT_EQ(settings_map_limit(), 9);
}

TEST_F(Settings, DefaultsOfAllKeysComeFromTheTable)
{
    EXPECT_EQ(setting_get("Font_size"), "8 8 8 8 6 5 6 6 6 6 12 12 2 2 1 3 0 0 0");
    for (const char* chart : {"Chart1", "Chart2", "Chart3", "Chart4"})
        EXPECT_EQ(setting_get(chart), "0 0 0 0 0 0 1 0");
    EXPECT_EQ(setting_get("Map_vals"), "30,60,500,-5,5");
    EXPECT_EQ(setting_get("user_form", key_place::main), "none");
    EXPECT_EQ(setting_get("maps_show", key_place::main), "0");
    EXPECT_EQ(setting_get("Time"), "+0");
    EXPECT_EQ(setting_get("Garmin"), "512 0 20 30 1024 0 0 6 0 0 0 0");
    EXPECT_EQ(setting_get("no such key"), "");
    section("Time=+3\r\n");
    EXPECT_EQ(setting_get("TIME"), "+3");
}

TEST_F(Settings, EveryKeyStandsOnceInItsPlace)
{
    std::set<std::pair<std::string, key_place>> seen;
    for (const setting_key& k : setting_keys()) {
        EXPECT_TRUE(seen.emplace(k.name, k.place).second) << k.name;
        EXPECT_EQ(setting_find(k.name, k.place), &k);
        EXPECT_NE(std::string(k.meaning), "");
    }
    EXPECT_NE(setting_find("Port", key_place::main), setting_find("Port", key_place::profile));
}

TEST_F(Settings, EveryKeyOfTheTableIsInTheDocument)
{
    const std::string page = read_file(VELKORO_SOURCE_DIR "/docs/settings.md").value_or("");
    for (const setting_key& k : setting_keys()) {
        const std::string name = std::string_view(k.name).starts_with("Com") ? "Com1" : k.name;
        EXPECT_NE(page.find("`" + name + "`"), std::string::npos) << k.name;
    }
}

// Last files
// ------------------------------------------------------------------------------------------------

TEST_F(Settings, LastFilesLieInTheProgramFolderWithoutAnAbsoluteFolder)
{
    EXPECT_EQ(last_path("Last_W0"), folders.program + "Waypoints/sample.wp");
    EXPECT_EQ(last_path("Last_T0"), folders.program + "Track/sample.t");
    std::filesystem::create_directory(folders.program + "waypoints");
    write("waypoints/Sample.WP", "");
    EXPECT_EQ(last_path("Last_W0"), folders.program + "waypoints/Sample.WP");
    EXPECT_EQ(last_path("Nothing"), "");
}

TEST_F(Settings, LastFilesKeepAnAbsoluteFolderAsStored)
{
    ini_put("Main", "Last_W0", "old.wp|C:\\data");
    EXPECT_EQ(last_path("Last_W0"), "C:\\data\\old.wp");
    ini_put("Main", "Last_W0", "old.wp|/data/");
    EXPECT_EQ(last_path("Last_W0"), "/data/old.wp");
}

TEST_F(Settings, AStoredLastFileComesBack)
{
    for (const std::string& path : {folders.program + "Waypoints/a.wp", folders.program + "a.wp",
                                    std::string("/a.wp"), std::string("/data/tours/a b.wp")}) {
        last_put("Last_W0", path);
        EXPECT_EQ(last_path("Last_W0"), path);
    }
    last_put("Last_W0", folders.program + "Waypoints/a.wp");
    EXPECT_EQ(ini_get("Main", "Last_W0"), "a.wp|Waypoints");
}
