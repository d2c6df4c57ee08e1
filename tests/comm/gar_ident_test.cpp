/// Identification over a scripted line.
#include "comm/gar_ident.h"

#include "comm/comm.h"
#include "comm/gar_codec_wp.h"
#include "comm/gar_proto.h"
#include "comm/garmin_link.h"
#include "comm/install.h"
#include "core/hooks.h"
#include "core/job.h"
#include "core/log.h"
#include "core/num_text.h"
#include "core/settings.h"
#include "core/shell.h"
#include "core/symbols.h"
#include "core/text_tools.h"
#include "tests/comm/scripted_line.h"
#include "tests/support/program_folder.h"

#include <algorithm>

namespace velkoro {
namespace {

std::string product(int id, int version, const std::string& words)
{
    return wire(255, le16(id) + le16(version) + words + std::string(1, '\0'));
}

/// The items of a protocol array from "L1 A10".
std::string items(const std::string& text)
{
    std::string out, rest = text;
    while (!rest.empty()) {
        const std::string token = cut_token(rest, " ");
        out += token.front() + le16(std::stoi(token.substr(1)));
    }
    return out;
}

const std::string request = wire(254, "");
const std::string ack_product = wire(6, le16(255)), ack_array = wire(6, le16(253)),
                  ack_extended = wire(6, le16(248));
const std::string etrex = "L1 A10 A100 D108 A201 D202 D108 D210 A301 D310 D301";

class GarIdent : public testing::Test {
protected:
    GarIdent()
    {
        scripted_platform::plain_texts();
        gar_ident_run = {};
        platform.busy = [this](bool on) { busy += on ? 1 : -1; };
        home.put("SYMBOL_2.INI", "00:00 Dot\r\n");
        home.put("SYMBOL_3.INI", "00:12 Waypoint\r\n01:A Residence\r\n");
        settings.symbol_level = 3;
        symbols_load();
    }
    ~GarIdent() override { gar_ident_run = {}; }

    /// Script of a receiver that tells its protocols.
    void telling(const std::string& array, const std::string& words = "eTrex Software Version 2.14")
    {
        line.expect(request, wire_ack(254) + product(130, 214, words));
        line.expect(ack_product, wire(253, items(array)));
        line.expect(ack_array);
    }
    /// Script of one that does not.
    void silent(int id, int version)
    {
        line.expect(request, wire_ack(254) + product(id, version, "GPS 12 Software Version 3.50"));
        line.expect(ack_product);
    }
    static const std::array<std::uint16_t, 4>& column(std::size_t c)
    {
        return receiver.gar_proto[c];
    }
    using cells = std::array<std::uint16_t, 4>;

    scripted_platform user{};
    scripted_line line{user};
    program_folder home{};
    int busy = 0;
};

TEST_F(GarIdent, AReceiverThatTellsItsProtocolsFillsTheTable)
{
    telling(etrex);
    EXPECT_EQ(garmin_ident(false), "eTrex");
    EXPECT_TRUE(line.done());
    EXPECT_EQ(column(0), (cells{1, 65535, 130, 214}));
    EXPECT_EQ(column(1), (cells{10, 0, 0, 0}));
    EXPECT_EQ(column(2), (cells{100, 108, 0, 0}));
    EXPECT_EQ(column(3), (cells{201, 202, 108, 210}));
    EXPECT_EQ(column(4), (cells{301, 310, 301, 0}));
    EXPECT_EQ(column(5), (cells{0, 0, 0, 0}));
    EXPECT_EQ(busy, 0);
    EXPECT_TRUE(user.messages.empty());
    EXPECT_TRUE(receiver.gar_has_alt && receiver.gar_has_prox && receiver.gar_has_avd);
    EXPECT_EQ(receiver.gar_symbol_set, 2);
    EXPECT_EQ(gar_ident_run.told, "eTrex Software Version 2.14");
}

TEST_F(GarIdent, TheFullNameHoldsTheWordsOnItsSoftware)
{
    telling(etrex);
    EXPECT_EQ(garmin_ident(true), "eTrex Software Version 2.14");
}

TEST_F(GarIdent, TheModelIsWhatStandsAheadOfTheWordsOnItsSoftware)
{
    const struct {
        const char* told;
        const char* name;
    } cases[] = {{"GPS 12 Software Version 3.50", "GPS 12"},
                 {"GPS 38 SOFT 1", "GPS 38"},
                 {"GPS 45 VERS. 2", "GPS 45"},
                 {"GPSMAP  76", "GPSMAP"},
                 {"Vers 2 Soft 1", "Vers 2"},
                 {"Software 2.0", "Software 2.0"},
                 {"StreetPilot", "StreetPilot"}};
    for (const auto& c : cases) {
        telling(etrex, c.told);
        EXPECT_EQ(garmin_ident(false), c.name);
    }
}

TEST_F(GarIdent, TheDescriptionEndsAtItsFirstZeroByte)
{
    telling(etrex, std::string("GPS V") + '\0' + "MORE");
    EXPECT_EQ(garmin_ident(true), "GPS V");
}

TEST_F(GarIdent, TagsWithoutAMeaningAndARestOfTheArrayArePassedOver)
{
    line.expect(request, wire_ack(254) + product(130, 214, "eTrex"));
    line.expect(ack_product, wire(253, items("P0 T1 L1 A10 A100 D108 X7") + "D" + '\x01'));
    line.expect(ack_array);
    EXPECT_EQ(garmin_ident(false), "eTrex");
    EXPECT_EQ(column(0), (cells{1, 65535, 130, 214}));
    EXPECT_EQ(column(2), (cells{100, 108, 0, 0}));
}

TEST_F(GarIdent, ProtocolsBehindTheTablesColumnsWriteNothing)
{
    telling("L1 A10 A100 D108 A300 D300 A500 D501 A600 D600 A700 D700 A800 D800 A900 A1000 D1");
    EXPECT_EQ(garmin_ident(false), "eTrex");
    EXPECT_EQ(column(4), (cells{300, 300, 0, 0}));
    EXPECT_EQ(column(5), (cells{0, 0, 0, 0}));
}

TEST_F(GarIdent, AlmanacBetweenTwoProtocolsTakesItsTypeAway)
{
    telling("L1 A10 A100 D103 A501 D501 A400 D403");
    EXPECT_EQ(garmin_ident(false), "eTrex");
    EXPECT_EQ(column(2), (cells{100, 103, 0, 0}));
    EXPECT_EQ(column(5), (cells{400, 403, 0, 0}));
}

TEST_F(GarIdent, AFourthTypeBehindOneProtocolIsAnError)
{
    telling("L1 A10 A201 D202 D108 D210 D211");
    EXPECT_EQ(garmin_ident(false), "");
    ASSERT_EQ(user.messages.size(), 1U);
    EXPECT_TRUE(user.messages[0].text.ends_with(" in garmin_ident"));
    EXPECT_EQ(column(3), (cells{201, 202, 108, 210}));
    EXPECT_EQ(busy, 0);
}

// The exchange
// -------------------------------------------------------------------------------------------------

TEST_F(GarIdent, ExtendedProductDataAreAcknowledgedOnce)
{
    line.expect(request, wire_ack(254) + product(130, 214, "eTrex"));
    line.expect(ack_product, wire(248, "MORE" + std::string(1, '\0')));
    line.expect(ack_extended, wire(253, items(etrex)));
    line.expect(ack_array);
    EXPECT_EQ(garmin_ident(false), "eTrex");
    EXPECT_TRUE(line.done());
    EXPECT_EQ(column(2), (cells{100, 108, 0, 0}));
}

TEST_F(GarIdent, WithoutAPortSaysSo)
{
    comm.comm_port = 0;
    EXPECT_EQ(garmin_ident(true), "");
    EXPECT_EQ(user.numbers(), (std::vector<int>{1000}));
    EXPECT_EQ(user.messages[0].icon, icon::exclamation);
    EXPECT_EQ(line.opens, 0);
}

TEST_F(GarIdent, WithoutAnAnswerNothingIsSaid)
{
    line.expect(request);
    EXPECT_EQ(garmin_ident(false), "");
    EXPECT_TRUE(user.messages.empty());
    EXPECT_EQ(busy, 0);
    EXPECT_EQ(column(0), (cells{0, 0, 0, 0}));
    EXPECT_TRUE(receiver.gar_has_prox && receiver.gar_has_avd);
}

TEST_F(GarIdent, AnAnswerWithoutATextIsNone)
{
    line.expect(request, wire_ack(254) + wire(255, le16(130) + le16(214))); // 10 bytes
    EXPECT_EQ(garmin_ident(false), "");
    EXPECT_TRUE(line.done());
    EXPECT_EQ(column(0), (cells{0, 0, 0, 0}));
}

TEST_F(GarIdent, AcknowledgedIdsPassTheCommandTableUnchanged)
{
    receiver.gar_proto[1][0] = 11;
    for (const int id : {248, 253, 255})
        EXPECT_EQ(cmd_map(id), id);
    EXPECT_EQ(cmd_map(8), 26);
}

TEST_F(GarIdent, StartsASessionInWhichAnUnknownTypeIsToldAgain)
{
    gar_codec.unknown_told = true;
    telling(etrex);
    garmin_ident(false);
    EXPECT_FALSE(gar_codec.unknown_told);
}

// Garmin.ini
// -------------------------------------------------------------------------------------------------

TEST_F(GarIdent, AReceiverThatTellsNothingIsLookedUp)
{
    home.put("GARMIN.INI", "13 L001 A010 A100 D100\r\n"
                           "77 <3.01 L001 A010 A100 D100 A200 D201 D100\r\n"
                           "77 <3.50 L001 A010 A100 D103 A200 D201 D103 A300 D300 A400 D403\r\n"
                           "77 L001 A010 A100 D103 A200 D201 D103 A300 D300 A500 D501\r\n");
    silent(77, 300);
    EXPECT_EQ(garmin_ident(false), "GPS 12");
    EXPECT_EQ(column(0), (cells{1, 0, 77, 300}));
    EXPECT_EQ(column(2), (cells{100, 100, 0, 0}));
    silent(77, 301);
    EXPECT_EQ(garmin_ident(false), "GPS 12");
    EXPECT_EQ(column(5), (cells{400, 403, 0, 0}));
    EXPECT_EQ(receiver.gar_symbol_set, 1);
    EXPECT_TRUE(receiver.gar_has_prox);
    silent(77, 350);
    EXPECT_EQ(garmin_ident(false), "GPS 12");
    EXPECT_EQ(column(5), (cells{0, 0, 0, 0}));
    EXPECT_FALSE(receiver.gar_has_prox);
    EXPECT_TRUE(line.done());
}

TEST_F(GarIdent, AVersionThatIsNotBelowTheLimitTakesTheNextLine)
{
    home.put("Garmin.ini", "5 <2.00 L001 A010 A100 D100\n5 L002 A011 A100 D150\n");
    silent(5, 250);
    EXPECT_EQ(garmin_ident(false), "GPS 12");
    EXPECT_EQ(column(0), (cells{2, 0, 5, 250}));
    EXPECT_EQ(column(1), (cells{11, 0, 0, 0}));
}

TEST_F(GarIdent, TheFirstEmptyLineEndsTheTable)
{
    home.put("Garmin.ini", "4 L001 A010\n\n5 L001 A010 A100 D100\n");
    silent(5, 250);
    EXPECT_EQ(garmin_ident(false), "");
    EXPECT_EQ(user.numbers(), (std::vector<int>{1550}));
}

TEST_F(GarIdent, AnUnknownReceiverIsToldByItsProductId)
{
    home.put("Garmin.ini", "4 L001 A010\n");
    silent(5, 250);
    EXPECT_EQ(garmin_ident(false), "");
    ASSERT_EQ(user.numbers(), (std::vector<int>{1550}));
    EXPECT_EQ(user.messages[0].text, "1550 5 # #");
    EXPECT_EQ(user.messages[0].icon, icon::critical);
    EXPECT_EQ(column(2), (cells{0, 0, 0, 0}));
    EXPECT_EQ(busy, 0);
    EXPECT_EQ(gar_ident_run.told, "GPS 12 Software Version 3.50");
}

TEST_F(GarIdent, AnUnknownCommandProtocolLeavesTheWaitCursorUntilThePortIsPutAway)
{
    home.put("Garmin.ini", "5 L001 A012\n");
    silent(5, 250);
    EXPECT_EQ(garmin_ident(false), "");
    EXPECT_EQ(user.numbers(), (std::vector<int>{1550}));
    EXPECT_EQ(busy, 1);
    silent(5, 250);
    EXPECT_EQ(garmin_ident(false), "");
    EXPECT_EQ(busy, 1);
    comm_port_set(false);
    EXPECT_EQ(busy, 0);
}

TEST_F(GarIdent, AMissingTableEndsTheProgramWhenNoJobIsUnderWay)
{
    comm_install();
    silent(5, 250);
    EXPECT_EQ(garmin_ident(false), "");
    ASSERT_EQ(user.numbers(), (std::vector<int>{1010}));
    EXPECT_TRUE(user.messages[0].text.starts_with("1010 Garmin.ini "));
    EXPECT_EQ(user.messages[0].icon, icon::critical);
    EXPECT_EQ(busy, 0);
    EXPECT_TRUE(gar_ident_run.end_wanted);
    int asked = 0;
    Form1.form.shown = true;
    Form1.form.query_close = [&] {
        ++asked;
        return true;
    };
    const auto tick = [] {
        for (const shell_step& step : shell.periodic)
            if (step.name == "receiver_table")
                step.run();
    };
    job.code = "W_L";
    tick();
    EXPECT_EQ(asked, 0);
    job.code.clear();
    tick();
    tick();
    EXPECT_EQ(asked, 1);
    EXPECT_FALSE(Form1.form.shown);
    Form1.form.query_close = nullptr;
}

TEST(GarIni, EveryShippedLineNamesProtocolsThatAreUnderstood)
{
    std::ifstream in(std::string(VELKORO_SOURCE_DIR) + "/data/Garmin.ini", std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(in), {}};
    int lines = 0;
    for (const std::string_view line : split_lines(text)) {
        SCOPED_TRACE(line);
        const int id = static_cast<int>(val(line));
        const std::size_t limit = line.find('<');
        const int version = limit == std::string_view::npos
                                ? 31999
                                : static_cast<int>(val(line.substr(limit + 1)) * 100) - 1;
        gar_table t{};
        ASSERT_TRUE(gar_proto_from_ini(text, id, version, t));
        std::string shown = gar_proto_text(t);
        EXPECT_NE(line.find(shown.substr(0, 15)), std::string_view::npos);
        EXPECT_EQ(t[0][0], t[1][0] - 9);
        EXPECT_TRUE(gar_wp_known(t[2][1]));
        EXPECT_TRUE(t[3][1] == 200 || t[3][1] == 201);
        EXPECT_TRUE(gar_wp_known(t[3][2]));
        EXPECT_TRUE(t[4][0] == 0 || (t[4][0] == 300 && t[4][1] == 300));
        EXPECT_TRUE(t[5][0] == 0 || (t[5][0] == 400 && gar_wp_known(t[5][1])));
        ++lines;
    }
    EXPECT_GE(lines, 50);
}

// What follows from the types
// -------------------------------------------------------------------------------------------------

TEST_F(GarIdent, AbilitiesFollowFromTheTypes)
{
    const std::vector<int> height{108, 109, 150, 151, 152, 154, 155},
        prox{101, 102, 104, 107, 108, 109, 151, 152, 154, 155},
        all{101, 102, 104, 105, 106, 108, 109, 154, 155}, sixteen{103, 107};
    const auto in = [](const std::vector<int>& list, int w) {
        return std::ranges::find(list, w) != list.end();
    };
    for (int w = 100; w <= 160; ++w) {
        SCOPED_TRACE(w);
        telling("L1 A10 A100 D" + std::to_string(w));
        garmin_ident(false);
        EXPECT_EQ(receiver.gar_has_alt, in(height, w));
        EXPECT_EQ(receiver.gar_has_avd, in(height, w));
        EXPECT_EQ(receiver.gar_has_prox, in(prox, w));
        EXPECT_EQ(receiver.gar_symbol_set, in(all, w) ? 2 : in(sixteen, w) ? 1 : 0);
    }
}

TEST_F(GarIdent, AProximityTypeGivesProximityToo)
{
    for (const int x : {400, 403, 450, 404}) {
        telling("L1 A10 A100 D100 A400 D" + std::to_string(x));
        garmin_ident(false);
        EXPECT_EQ(receiver.gar_has_prox, x != 404) << x;
        EXPECT_FALSE(receiver.gar_has_alt);
    }
}

TEST_F(GarIdent, D110CountsAsWithoutHeightAndProximity)
{
    receiver.gar_has_alt = true;
    telling("L1 A10 A100 D110 A400 D110");
    garmin_ident(false);
    EXPECT_FALSE(receiver.gar_has_alt || receiver.gar_has_prox || receiver.gar_has_avd);
    EXPECT_EQ(receiver.gar_symbol_set, 0);
}

TEST_F(GarIdent, AnotherSymbolSetLoadsItsTable)
{
    int redrawn = 0;
    hooks.row_changed = [&](int index, bool) { redrawn += index == -1; };
    telling(etrex);
    garmin_ident(false);
    EXPECT_EQ(symbols.level, 3);
    EXPECT_EQ(redrawn, 0);
    telling("L1 A10 A100 D103");
    garmin_ident(false);
    EXPECT_EQ(symbols.level, 2);
    EXPECT_EQ(symb_ext(0), "Dot");
    telling("L1 A10 A100 D100");
    garmin_ident(false);
    EXPECT_EQ(symbols.level, 0);
    EXPECT_TRUE(symbols.rows.empty());
    EXPECT_EQ(redrawn, 2);
}

TEST_F(GarIdent, ASymbolTableThatWasNeverLoadedIsLoaded)
{
    symbols = {};
    telling(etrex);
    garmin_ident(false);
    EXPECT_EQ(symb_ext(1), "Residence");
}

TEST_F(GarIdent, LongNamesAreWarnedOfWhereTheReceiverHasShortOnes)
{
    wayp_rec rec{.nam = "ZUGSPITZE"};
    store.wp_name_max = 10;
    wayp_insert(rec, -1);
    rec = {.nam = "ZUGSPITZE 2"};
    wayp_insert(rec, -1);
    user.messages.clear();
    for (int w = 100; w <= 110; ++w) {
        telling("L1 A10 A100 D" + std::to_string(w));
        garmin_ident(false);
        const bool long_ones = w == 105 || w == 106 || w == 108 || w == 109;
        EXPECT_EQ(user.count(2037), long_ones ? 0 : 1) << w;
        user.messages.clear();
    }
    store.wp_name_max = 6;
    telling("L1 A10 A100 D103");
    EXPECT_EQ(garmin_ident(false), "eTrex");
    EXPECT_EQ(user.count(2037), 0);
}

TEST_F(GarIdent, TheTableGoesToTheLog)
{
    log_open();
    telling(etrex);
    garmin_ident(false);
    log_close();
    const std::string log = home.get("velkoro.log");
    const std::size_t at = log.find(" protocols");
    ASSERT_NE(at, std::string::npos);
    for (const char* row : {"1 65535 130 214", "10 0 0 0", "100 108 0 0", "201 202 108 210",
                            "301 310 301 0", "0 0 0 0"})
        EXPECT_NE(log.find(row, at), std::string::npos) << row;
}

// Magellan
// -------------------------------------------------------------------------------------------------

class MagellanIdent : public GarIdent {
protected:
    MagellanIdent() { settings.garmin[static_cast<std::size_t>(gar_place::gar_wp_format)] = 1; }
    void answering(const std::string& reply)
    {
        line.expect(sentence("PMGNCMD,VERSION"), sentence(reply));
        const std::string whole = sentence(reply);
        line.expect(sentence("PMGNCSM," + whole.substr(whole.size() - 4, 2)));
    }
};

TEST_F(MagellanIdent, TellsTheModelAndTheVersionWithIt)
{
    answering("PMGNVER,024,1.10,MAP 330");
    EXPECT_EQ(garmin_ident(false), "MAP 330");
    answering("PMGNVER,024,1.10,MAP 330");
    EXPECT_EQ(garmin_ident(true), "1.10 MAP 330");
    EXPECT_TRUE(line.done());
    EXPECT_EQ(line.settings, "4800,n,8,1");
    EXPECT_EQ(busy, 0);
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(MagellanIdent, HasNeitherProximityNorSymbols)
{
    receiver.gar_has_alt = true;
    receiver.gar_has_prox = true;
    receiver.gar_proto[2] = {100, 108, 0, 0};
    answering("PMGNVER,024,1.10,MAP 330");
    garmin_ident(false);
    EXPECT_FALSE(receiver.gar_has_prox);
    EXPECT_TRUE(receiver.gar_has_avd);
    EXPECT_TRUE(receiver.gar_has_alt);
    EXPECT_EQ(receiver.gar_symbol_set, 0);
    EXPECT_EQ(symbols.level, 0);
    EXPECT_EQ(column(2), (cells{0, 0, 0, 0}));
}

TEST_F(MagellanIdent, WithoutAnAnswerHasNoName)
{
    line.expect(sentence("PMGNCMD,VERSION"));
    EXPECT_EQ(garmin_ident(true), "");
    EXPECT_TRUE(line.done());
    EXPECT_TRUE(user.messages.empty());
    EXPECT_GE(user.time_s, 36003.0);
}

TEST_F(MagellanIdent, WithAShortAnswerHasNoName)
{
    answering("PMGNVER,024");
    EXPECT_EQ(garmin_ident(false), "");
}

// The line of protocols
// -------------------------------------------------------------------------------------------------

TEST(GarProto, IsShownAsALine)
{
    gar_table t{};
    EXPECT_EQ(gar_proto_text(t), "");
    EXPECT_TRUE(
        gar_proto_from_ini("7 L002 A011 A100 D150 A200 D201 D150 A400 D450 A500 D550", 7, 1, t));
    EXPECT_EQ(gar_proto_text(t), "L002 A011 A100 D150 A200 D201 D150 A400 D450");
}

TEST(GarProto, IsReadFromTheTableByIdAndVersion)
{
    const std::string text =
        "5  <2.5   L001\tx\n5 <3,1 L002\n 6 L001 A010 A100 D100 \n65535 L002\n";
    gar_table t{};
    EXPECT_TRUE(gar_proto_from_ini(text, 5, 249, t));
    EXPECT_EQ(t[0][0], 1);
    EXPECT_TRUE(
        gar_proto_from_ini(text, 5, 299, t)); // "3,1" is 3: only the point is a decimal sign
    EXPECT_EQ(t[0][0], 2);
    EXPECT_FALSE(gar_proto_from_ini(text, 5, 300, t));
    EXPECT_TRUE(gar_proto_from_ini(text, 6, 31999, t));
    EXPECT_EQ(t[2][1], 100);
    EXPECT_FALSE(gar_proto_from_ini(text, 6, 32000, t));
    EXPECT_TRUE(gar_proto_from_ini(text, 65535, 0, t));
    EXPECT_FALSE(gar_proto_from_ini(text, 9, 0, t));
    EXPECT_FALSE(gar_proto_from_ini("", 9, 0, t));
}

} // namespace
} // namespace velkoro
