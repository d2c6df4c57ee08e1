/// The window of the receiver's properties, without a screen.
#include "comm/garmin_prop.h"

#include "comm/comm.h"
#include "comm/gar_ident.h"
#include "comm/gar_proto.h"
#include "core/hooks.h"
#include "core/settings.h"
#include "core/store.h"
#include "core/symbols.h"
#include "core/wayp_insert.h"
#include "tests/comm/scripted_line.h"
#include "tests/support/program_folder.h"

namespace velkoro {
namespace {

const std::string request = wire(254, "");

class GarminProp : public testing::Test {
protected:
    GarminProp()
    {
        scripted_platform::plain_texts();
        gar_ident_run = {};
        home.put("SYMBOL_2.INI", "00:00 Dot\r\n");
        home.put("SYMBOL_3.INI", "00:12 Waypoint\r\n");
        home.put("Garmin.ini", "77 L001 A010 A100 D103 A200 D201 D103 A300 D300 A400 D403\r\n");
        settings.symbol_level = 3;
        symbols_load();
        garmin_prop_install();
        platform.wait_closed = [this](window& w) {
            EXPECT_EQ(&w, &Garmin_prop.form);
            EXPECT_TRUE(w.shown);
            ++opened;
            if (act)
                act();
        };
    }
    ~GarminProp() override
    {
        for (control* c : Garmin_prop.form.controls)
            static_cast<look&>(*c) = c->design;
        gar_ident_run = {};
        garmin_prop_run = {};
    }
    void gps_12()
    {
        line.expect(request, wire_ack(254) + wire(255, le16(77) + le16(350) + "GPS 12 Soft 3.50"));
        line.expect(wire(6, le16(255)));
    }
    void etrex(const std::string& waypoint_type = "l")
    {
        const std::string array = "L" + le16(1) + "A" + le16(10) + "A" + le16(100) + "D" +
                                  waypoint_type + '\0' + "A" + le16(201) + "D" + le16(202);
        line.expect(request,
                    wire_ack(254) + wire(255, le16(130) + le16(214) + "eTrex Software 2.14"));
        line.expect(wire(6, le16(255)), wire(253, array));
        line.expect(wire(6, le16(253)));
    }
    static void open() { Form1.gar_ident.click(); }
    static void type(control& field, const std::string& text)
    {
        field.text = text;
        if (field.change)
            field.change();
    }
    static void choose(control& combo, int entry)
    {
        combo.selected = entry;
        combo.change();
    }
    static int option(gar_place place) { return gar_option(place); }
    static std::string stored() { return ini_get(settings.profile, "Garmin"); }

    scripted_platform user{};
    scripted_line line{user};
    program_folder home{};
    std::function<void()> act{};
    int opened = 0;
};

// What it shows
// -------------------------------------------------------------------------------------------------

TEST_F(GarminProp, ShowsAReceiverThatWasLookedUp)
{
    gps_12();
    open();
    EXPECT_EQ(opened, 1);
    EXPECT_EQ(Garmin_prop.msg.caption, "COM1 (scripted1):  GPS 12,  ID 77. 3.50 L\n"
                                       "L001 A010 A100 D103 A200 D201 D103 A300 D300 A400 D403");
    EXPECT_TRUE(line.done());
    EXPECT_FALSE(line.opened) << "the port is put away";
}

TEST_F(GarminProp, ShowsAReceiverThatToldItsProtocols)
{
    etrex();
    open();
    EXPECT_EQ(Garmin_prop.msg.caption,
              "COM1 (scripted1):  eTrex,  ID 130. 2.14 G\nL001 A010 A100 D108 A201 D202");
}

TEST_F(GarminProp, ShowsAMagellanReceiverByItsNameAlone)
{
    settings.garmin[static_cast<std::size_t>(gar_place::gar_wp_format)] = 2;
    line.on_output = [this](const std::string& bytes) {
        if (bytes.find("VERSION") != std::string::npos)
            line.send(sentence("PMGNVER,024,1.10,MAP 330"));
    };
    open();
    EXPECT_EQ(Garmin_prop.msg.caption, "COM1 (scripted1):  MAP 330");
}

TEST_F(GarminProp, OpensWithoutAReceiverTooAsTheProtocolIsChosenThere)
{
    line.expect(request);
    open();
    EXPECT_EQ(opened, 1);
    EXPECT_EQ(Garmin_prop.msg.caption, "COM1 (scripted1):  1110 # # #");
    comm.comm_port = 0;
    open();
    EXPECT_EQ(opened, 2);
    EXPECT_EQ(user.numbers(), (std::vector<int>{1000}));
    EXPECT_EQ(Garmin_prop.msg.caption, "1000 # # #");
}

TEST_F(GarminProp, NamesAReceiverWhoseProtocolsAreUnknown)
{
    line.expect(request, wire_ack(254) + wire(255, le16(9) + le16(100) + "GPS 99 Soft 1"));
    line.expect(wire(6, le16(255)));
    open();
    EXPECT_EQ(user.numbers(), (std::vector<int>{1550}));
    EXPECT_EQ(Garmin_prop.msg.caption, "COM1 (scripted1):  GPS 99 Soft 1,  ID 9. 1.00 L\n");
}

TEST_F(GarminProp, ChosenAgainWhileTheReceiverIsAskedOpensOnce)
{
    line.expect(request);
    int again = 0;
    user.on_pump = [&] {
        ++again;
        open();
    };
    act = [] { open(); };
    open();
    EXPECT_GT(again, 0);
    EXPECT_EQ(opened, 1);
    EXPECT_EQ(line.sent.size(), 1U);
    user.on_pump = nullptr;
    act = nullptr;
    gps_12();
    open();
    EXPECT_EQ(opened, 2);
}

TEST_F(GarminProp, ShowsTheSettings)
{
    settings.garmin = {500, 9, 20, 30, 1024, 3, 0, 6, 1, 1, 1, 0};
    store.wp_name_max = 8;
    store.wp_ext_chars = true;
    settings.alt_kom = true;
    gps_12();
    act = [] {
        const garmin_prop_window& w = Garmin_prop;
        EXPECT_EQ(w.mwp.text, "500");
        EXPECT_EQ(w.mprox.text, "9");
        EXPECT_EQ(w.mrou.text, "20");
        EXPECT_EQ(w.mwp_rou.text, "30");
        EXPECT_EQ(w.mtrack.text, "1024");
        EXPECT_EQ(w.mnaml.text, "8");
        EXPECT_EQ(w.f_wp.selected, 0);
        EXPECT_EQ(w.f_pos.selected, 3);
        EXPECT_EQ(w.f_wp.items.size(), 7U);
        EXPECT_EQ(w.f_wp.items[6], "Magellan 128000 baud");
        EXPECT_EQ(w.f_pos.items[1], "NMEA 0183 2.0   4800 baud");
        EXPECT_TRUE(w.r_unique.checked && w.AVD.checked && w.Lokalz.checked && w.Zeichen.checked &&
                    w.alt_kom.checked);
    };
    open();
}

TEST_F(GarminProp, OffersWhatTheReceiverCan)
{
    gps_12(); // proximity, neither height nor aviation data
    act = [] {
        EXPECT_TRUE(Garmin_prop.mprox.visible);
        EXPECT_FALSE(Garmin_prop.AVD.enabled);
        EXPECT_TRUE(Garmin_prop.alt_kom.enabled);
    };
    open();
    etrex(); // D108
    act = [] {
        EXPECT_TRUE(Garmin_prop.mprox.visible);
        EXPECT_TRUE(Garmin_prop.AVD.enabled);
        EXPECT_FALSE(Garmin_prop.alt_kom.enabled);
    };
    open();
    etrex("d"); // D100
    act = [] {
        EXPECT_FALSE(Garmin_prop.mprox.visible);
        EXPECT_FALSE(Garmin_prop.AVD.enabled);
        EXPECT_TRUE(Garmin_prop.alt_kom.enabled);
    };
    open();
    EXPECT_EQ(opened, 3);
}

// What its controls do
// -------------------------------------------------------------------------------------------------

TEST_F(GarminProp, OKNeedsANameLengthAboveFive)
{
    gps_12();
    act = [] {
        EXPECT_TRUE(Garmin_prop.Command1.enabled);
        for (const char* no : {"5", "0", "", "-7", "six", "5.9"}) {
            type(Garmin_prop.mnaml, no);
            EXPECT_FALSE(Garmin_prop.Command1.enabled) << no;
            Garmin_prop.Command1.click();
            EXPECT_TRUE(Garmin_prop.form.shown);
        }
        for (const char* yes : {"6", "10", " 14 ", "99999"}) {
            type(Garmin_prop.mnaml, yes);
            EXPECT_TRUE(Garmin_prop.Command1.enabled) << yes;
        }
    };
    open();
}

TEST_F(GarminProp, TransferProtocolRenamesTheMenuAndTakesAwayWhatIsGarminsAlone)
{
    Form1.gar_off.click = [] {};
    gps_12();
    act = [] {
        choose(Garmin_prop.f_wp, 2);
        EXPECT_EQ(option(gar_place::gar_wp_format), 2);
        EXPECT_EQ(Form1.gar.caption, "&Magellan");
        EXPECT_FALSE(Form1.gar_off.enabled);
        EXPECT_TRUE(Garmin_prop.Label7.visible) << "Garmin's live position with a Magellan";
        choose(Garmin_prop.f_pos, 1);
        EXPECT_EQ(option(gar_place::gar_pos_format), 1);
        EXPECT_FALSE(Garmin_prop.Label7.visible);
        choose(Garmin_prop.f_wp, 0);
        EXPECT_EQ(Form1.gar.caption, "&Garmin");
        EXPECT_TRUE(Form1.gar_off.enabled);
        choose(Garmin_prop.f_pos, 0);
        EXPECT_FALSE(Garmin_prop.Label7.visible);
    };
    open();
    EXPECT_EQ(opened, 1);
    Form1.gar_off.click = nullptr;
}

TEST_F(GarminProp, SymbolBoxHasThreeStatesThatTheCaptionNames)
{
    etrex();
    act = [] {
        control& symb = Garmin_prop.symb;
        EXPECT_EQ(symb.value, 2);
        EXPECT_EQ(symb.caption, "8095 # # #");
        const int captions[] = {8097, 8096, 8095};
        for (const int state : {0, 1, 2, 0}) {
            symb.value = state;
            symb.click();
            EXPECT_EQ(receiver.gar_symbol_set, state);
            EXPECT_EQ(symb.caption, std::to_string(captions[state]) + " # # #");
            EXPECT_EQ(symb.checked, state != 0);
        }
        EXPECT_EQ(symbols.level, 3) << "the lists are made anew with OK";
        Garmin_prop.Command1.click();
        EXPECT_EQ(symbols.level, 0);
        EXPECT_EQ(settings.symbol_level, 0);
    };
    open();
    EXPECT_FALSE(Garmin_prop.form.shown);
}

TEST_F(GarminProp, OKWritesTheProperties)
{
    gps_12();
    act = [] {
        garmin_prop_window& w = Garmin_prop;
        type(w.mwp, "1000");
        type(w.mprox, "10");
        type(w.mrou, "50");
        type(w.mwp_rou, " 50 ");
        type(w.mtrack, "2048");
        type(w.mnaml, "10");
        choose(w.f_pos, 1);
        w.r_unique.checked = w.AVD.checked = w.Lokalz.checked = w.Zeichen.checked =
            w.alt_kom.checked = true;
        w.Command1.click();
    };
    open();
    EXPECT_FALSE(Garmin_prop.form.shown);
    EXPECT_EQ(stored(), "1000 10 50 50 2048 1 0 10 1 1 1 1");
    EXPECT_EQ(store.wp_name_max, 10);
    EXPECT_TRUE(store.wp_ext_chars);
    EXPECT_TRUE(settings.alt_kom);
    EXPECT_EQ(ini_get_int(settings.profile, "Flags", 0) % 960 / 240, 1);
    const settings_state written = settings;
    settings_read();
    EXPECT_EQ(settings.garmin, written.garmin);
}

TEST_F(GarminProp, NumbersThatAreNoneOrTooLargeDoNoHarm)
{
    gps_12();
    act = [] {
        garmin_prop_window& w = Garmin_prop;
        type(w.mwp, "many");
        type(w.mprox, "");
        type(w.mrou, "-3");
        type(w.mwp_rou, "99999");
        type(w.mtrack, "20.7");
        w.Command1.click();
    };
    open();
    EXPECT_EQ(stored(), "512 0 0 32767 20 0 0 6 0 0 0 0");
}

TEST_F(GarminProp, ClosedWithoutOKLeavesEverythingAsItWas)
{
    settings.garmin = {500, 9, 20, 30, 1024, 3, 0, 6, 1, 0, 1, 0};
    const auto before = settings.garmin;
    etrex();
    act = [] {
        type(Garmin_prop.mwp, "1");
        type(Garmin_prop.mnaml, "20");
        choose(Garmin_prop.f_wp, 4);
        choose(Garmin_prop.f_pos, 4);
        Garmin_prop.symb.value = 0;
        Garmin_prop.symb.click();
        Garmin_prop.Zeichen.checked = true;
        close_window(Garmin_prop.form);
    };
    open();
    EXPECT_EQ(settings.garmin, before);
    EXPECT_EQ(Form1.gar.caption, "&Garmin");
    EXPECT_EQ(receiver.gar_symbol_set, 2);
    EXPECT_EQ(store.wp_name_max, 6);
    EXPECT_FALSE(store.wp_ext_chars);
    EXPECT_EQ(stored(), "");
}

// Names
// -------------------------------------------------------------------------------------------------

class GarminPropNames : public GarminProp {
protected:
    GarminPropNames()
    {
        store.wp_name_max = 10;
        store.wp_ext_chars = true;
        for (const char* name : {"FELDBERG 1", "FELDBERG 2", "HUT", "A+B"})
            wp_append({.nam = name, .kom = "x"});
        route_add({.wps = "FELDBERG 2$HUT$"});
        hooks.row_changed = [this](int index, bool) { redrawn += index == -1; };
        settings.garmin[static_cast<std::size_t>(gar_place::mnaml)] = 10;
        settings.garmin[static_cast<std::size_t>(gar_place::Zeichen)] = 1;
    }
    void confirm(const std::string& mnaml, bool ext)
    {
        etrex();
        act = [=] {
            type(Garmin_prop.mnaml, mnaml);
            Garmin_prop.Zeichen.checked = ext;
            Garmin_prop.Command1.click();
        };
        open();
    }
    static std::vector<std::string> names()
    {
        std::vector<std::string> out;
        for (int i = 0; i <= store.wp_top; ++i)
            out.push_back(store.wp[static_cast<std::size_t>(i)].nam);
        return out;
    }
    using list = std::vector<std::string>;
    int redrawn = 0;
};

TEST_F(GarminPropNames, AreCutWhenTheyMustBeShorter)
{
    confirm("6", true);
    EXPECT_EQ(names(), (list{"FELDBE", "FELD1", "HUT", "A+B"}));
    EXPECT_EQ(store.wp[0].kom, "RG 1<x");
    EXPECT_EQ(store.rou[0].wps, "FELD1$HUT$");
    EXPECT_EQ(user.numbers(), (std::vector<int>{2035, 2040}));
    EXPECT_EQ(user.messages[0].text, "2035 6 # # 2760 # # #");
    EXPECT_EQ(user.messages[0].buttons, buttons::yes_no);
    EXPECT_EQ(user.messages[1].text, "2040 1 # #");
    EXPECT_EQ(redrawn, 1);
}

TEST_F(GarminPropNames, StayLongWhenTheUserWantsSo)
{
    user.answers = {answer::no};
    confirm("6", true);
    EXPECT_EQ(names(), (list{"FELDBERG 1", "FELDBERG 2", "HUT", "A+B"}));
    EXPECT_EQ(user.numbers(), (std::vector<int>{2035}));
    EXPECT_EQ(store.wp_name_max, 6);
}

TEST_F(GarminPropNames, AreLeftAloneWhenTheyMayBeLonger)
{
    confirm("14", true);
    EXPECT_EQ(names(), (list{"FELDBERG 1", "FELDBERG 2", "HUT", "A+B"}));
    EXPECT_TRUE(user.messages.empty());
    EXPECT_EQ(redrawn, 0);
}

TEST_F(GarminPropNames, LoseTheCharactersThatAreNoLongerTaken)
{
    confirm("10", false);
    EXPECT_EQ(names(), (list{"FELDBERG-1", "FELDBERG-2", "HUT", "A-B"}));
    EXPECT_EQ(store.rou[0].wps, "FELDBERG-2$HUT$");
    EXPECT_EQ(user.numbers(), (std::vector<int>{2038, 2040}));
}

TEST_F(GarminPropNames, AreCheckedWhenTheCharacterSetBecomesTheExtendedOne)
{
    store.wp_ext_chars = false;
    wp_append({.nam = "a%b", .kom = ""});
    confirm("10", true);
    EXPECT_EQ(names().back(), "A-B");
    EXPECT_EQ(user.numbers(), (std::vector<int>{2038}));
    EXPECT_EQ(redrawn, 1);
}

TEST_F(GarminPropNames, StayUniqueAcrossTheCheck)
{
    wp_append({.nam = "A-B", .kom = ""});
    confirm("10", false);
    EXPECT_EQ(names()[3], "A-B1");
    EXPECT_EQ(names()[4], "A-B");
}

} // namespace
} // namespace velkoro
