/// Every waypoint record against bytes written by hand, in both directions.
#include "comm/gar_codec_wp.h"

#include "comm/gar_codec_layout.h"
#include "tests/comm/gar_codec_fixture.h"

#include <map>

namespace velkoro {
namespace {

class GarWaypoint : public GarCodec {};

std::string d150_tail()
{
    return blanks(2) + "\4" + pos_bytes + blanks(58) + packed("HUT ABOVE LAKE");
}

std::string facility_tail(char user_class)
{
    return metres_500 + blanks(56) + zeros(2) + blanks(2) + zeros(1) + user_class;
}

std::string d108_tail()
{
    return raw("0A00") + user_subclass + pos_bytes + metres_412 + no_value + metres_500 + blanks(4);
}

std::string texts()
{
    return "HUT" + zeros(1) + "HUT ABOVE LAKE" + zeros(5);
}

/// The data field of hut() as each type carries it.
std::map<int, std::string> hand_written()
{
    return {{100, base},
            {101, base + metres_500 + raw("0A")},
            {102, base + metres_500 + raw("0A00")},
            {103, base + raw("0A 02")},
            {104, base + metres_500 + raw("0A00 05")},
            {105, pos_bytes + raw("0A00") + "HUT" + zeros(1)},
            {106, zeros(14) + pos_bytes + raw("0A00") + "HUT" + zeros(2)},
            {107, base + raw("0A 02") + metres_500 + zeros(1)},
            {108, raw("00 FF 02 60") + d108_tail() + texts()},
            {109, raw("01 00 5F 70") + d108_tail() + zeros(4) + texts()},
            {110, raw("01 00 5F 80") + d108_tail() + zeros(4) + no_value + raw("A6428B15") +
                      zeros(2) + texts()},
            {150, "HUT   " + d150_tail()},
            {151, base + facility_tail(2)},
            {152, base + facility_tail(4)},
            {154, base + facility_tail(4) + raw("0A00")},
            {155, base + facility_tail(4) + raw("0A00 05")},
            {400, base + metres_500},
            {403, base + raw("0A 02") + metres_500},
            {450, zeros(2) + "HUT   " + d150_tail() + metres_500}};
}

TEST_F(GarWaypoint, IsEncodedByteByByteInEveryType)
{
    const auto expected = hand_written();
    EXPECT_EQ(expected.size(), gar_layouts.size());
    for (const auto& [type, bytes] : expected) {
        SCOPED_TRACE("D" + std::to_string(type));
        EXPECT_EQ(encoded(hut(), type), bytes);
    }
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(GarWaypoint, IsDecodedFromHandWrittenBytesOfEveryType)
{
    for (const auto& [type, bytes] : hand_written()) {
        SCOPED_TRACE("D" + std::to_string(type));
        // D103 and its like number 16 symbols and have their own display values.
        receiver.gar_symbol_set = type == 103 || type == 107 || type == 403 ? 1 : 2;
        gar_wp_in in;
        ASSERT_TRUE(gar_wp_decode(bytes, type, in));
        EXPECT_EQ(in.name, "HUT");
        EXPECT_EQ(in.comment, type == 105 || type == 106 ? "" : "HUT ABOVE LAKE");
        EXPECT_EQ(in.lat, 578311978);
        EXPECT_EQ(in.lon, 109908571);
        const bool no_prox =
            type == 100 || type == 103 || type == 105 || type == 106 || type == 150;
        EXPECT_EQ(in.prox, no_prox ? 0 : 5);
        const bool no_symbol =
            type == 100 || type == 400 || (type >= 150 && type <= 152) || type == 450;
        EXPECT_EQ(in.symbol & 0xFF, no_symbol ? 0 : 1);
        const bool display = type == 103 || type == 104 || (type >= 107 && type <= 110) ||
                             type == 155 || type == 403;
        EXPECT_EQ(in.symbol >> 8, display ? 2 : 0);
        const bool d108 = type >= 108 && type <= 110, facility = type >= 151 && type <= 155;
        EXPECT_EQ(in.alt, d108 ? 412 : facility ? 0 : alt_unknown);
        EXPECT_EQ(in.time, type == 110 ? 361448102 : now);
    }
}

TEST_F(GarWaypoint, HasThePublishedLengths)
{
    for (const gar_layout& l : gar_layouts) {
        SCOPED_TRACE("D" + std::to_string(l.type));
        std::size_t texts_length = 0;
        if (l.type == 105)
            texts_length = 4;
        else if (l.type == 106)
            texts_length = 5;
        else if (l.type >= 108 && l.type <= 110)
            texts_length = texts().size();
        EXPECT_EQ(encoded(hut(), l.type).size(), l.bytes + texts_length);
    }
}

TEST_F(GarWaypoint, OfAnOldReceiverIsTakenFromItsFrame)
{
    receiver.gar_symbol_set = 1;
    symbols_parse("00:00 Dot\n01:01 House\n", symbols);
    const std::string data = raw("485554202020 2A577822 5B128D06 00000000") + "HUT ABOVE LAKE" +
                             blanks(26) + raw("0100");
    gar_wp_in in;
    ASSERT_TRUE(gar_wp_decode(data, 103, in));
    EXPECT_EQ(in.name, "HUT");
    EXPECT_EQ(in.comment, "HUT ABOVE LAKE");
    EXPECT_EQ(in.symbol, 1);
}

TEST_F(GarWaypoint, OfANewerReceiverIsTakenFromItsFrame)
{
    const std::string data = raw(
        "00 FF 00 60 0A 00 00 00 00 00 00 00 FF FF FF FF FF FF FF FF FF FF FF FF 2A 57 78 22 5B "
        "12 8D 06 00 00 CE 43 51 59 04 69 51 59 04 69 20 20 20 20 48 55 54 00 41 42 4F 56 45 20 "
        "4C 41 4B 45 00 00 00 00 00");
    gar_wp_in in;
    ASSERT_TRUE(gar_wp_decode(data, 108, in));
    EXPECT_EQ(in, (gar_wp_in{.name = "HUT",
                             .comment = "ABOVE LAKE",
                             .lat = 578311978,
                             .lon = 109908571,
                             .time = now,
                             .symbol = 1,
                             .alt = 412}));
    wayp_rec back = gar_wp_record(in);
    EXPECT_EQ(encoded(back, 108), data);
}

TEST_F(GarWaypoint, OfAnUnknownTypeIsBlankAndToldOnceASession)
{
    gar_wp_in in{.name = "OLD"};
    EXPECT_FALSE(gar_wp_decode(base, 120, in));
    EXPECT_EQ(in, gar_wp_in{});
    EXPECT_EQ(encoded(hut(), 153), "");
    EXPECT_FALSE(gar_wp_decode(base, 0, in));
    ASSERT_EQ(user.numbers(), (std::vector<int>{1115}));
    EXPECT_EQ(user.messages[0].text, "1115 D120 # #");
    EXPECT_EQ(user.messages[0].icon, icon::exclamation);
    gar_codec = {};
    EXPECT_EQ(encoded(hut(), 153), "");
    EXPECT_EQ(user.count(1115), 2);
}

TEST_F(GarWaypoint, ThatEndsAheadOfNameAndPositionIsRefused)
{
    for (const auto& [type, bytes] : hand_written()) {
        const gar_layout* l = gar_layout_of(type);
        for (std::size_t n = 0; n <= bytes.size(); ++n) {
            SCOPED_TRACE("D" + std::to_string(type) + " of " + std::to_string(n) + " bytes");
            gar_wp_in in;
            const bool whole = gar_wp_decode(std::string_view(bytes).substr(0, n), type, in);
            EXPECT_EQ(whole, n >= l->needed);
            if (!whole) {
                EXPECT_EQ(in, gar_wp_in{});
            } else {
                EXPECT_EQ(in.lat, 578311978);
                EXPECT_EQ(in.name.substr(0, 1), "H");
            }
        }
    }
}

TEST_F(GarWaypoint, ThatIsCutShortLacksOnlyWhatIsMissing)
{
    const std::string full = hand_written().at(155);
    gar_wp_in in;
    ASSERT_TRUE(gar_wp_decode(std::string_view(full).substr(0, 60), 155, in)); // half a distance
    EXPECT_EQ(in.comment, "HUT ABOVE LAKE");
    EXPECT_EQ(in.prox, 0);
    EXPECT_EQ(in.alt, alt_unknown);
    EXPECT_EQ(in.symbol, 0);
    ASSERT_TRUE(gar_wp_decode(std::string_view(full).substr(0, 22), 155, in));
    EXPECT_EQ(in.comment, "HUT"); // "HUT " of the comment
}

TEST_F(GarWaypoint, WithoutALatitudeIsRefused)
{
    std::string data = base;
    data.replace(6, 4, raw("FFFFFF7F"));
    gar_wp_in in;
    EXPECT_FALSE(gar_wp_decode(data, 100, in));
    data.replace(6, 4, raw("01000040")); // one semicircle past the pole
    EXPECT_FALSE(gar_wp_decode(data, 100, in));
    data.replace(6, 4, raw("00000040"));
    EXPECT_TRUE(gar_wp_decode(data, 100, in));
    EXPECT_EQ(in.lat, 1 << 30);
}

// Names
// -------------------------------------------------------------------------------------------------

TEST_F(GarWaypoint, OfSixCharactersIsCutOnSendingAndKeepsItsLongNameInTheStore)
{
    store.wp_name_max = 10;
    wayp_rec rec = hut();
    rec.nam = "ZUGSPITZE";
    EXPECT_EQ(encoded(rec, 100).substr(0, 6), "ZUGSPI");
    EXPECT_EQ(rec.nam, "ZUGSPITZE");
}

TEST_F(GarWaypoint, NameGoesOutTrimmedInTextsAndWholeUpTo50)
{
    wayp_rec rec = hut();
    rec.nam = std::string(60, 'A');
    EXPECT_EQ(encoded(rec, 105), pos_bytes + raw("0A00") + std::string(50, 'A') + zeros(1));
    rec.nam = " HUT ";
    EXPECT_EQ(encoded(rec, 105), pos_bytes + raw("0A00") + "HUT" + zeros(1));
}

TEST_F(GarWaypoint, NameOfD105AndD106IsCutToTheNameLength)
{
    const std::string data = pos_bytes + raw("0A00") + "FELDBERG" + zeros(1);
    EXPECT_EQ(decoded(data, 105).name, "FELDBE");
    store.wp_name_max = 8;
    EXPECT_EQ(decoded(data, 105).name, "FELDBERG");
    EXPECT_EQ(decoded(zeros(14) + data + zeros(1), 106).name, "FELDBERG");
    store.wp_name_max = 6;
    const std::string d108 = raw("00 FF 00 60") + d108_tail() + "FELDBERG" + zeros(6);
    EXPECT_EQ(decoded(d108, 108).name, "FELDBERG"); // the store moves the tail into the comment
}

TEST_F(GarWaypoint, LinkOfD106StandsInTheCommentBehindAStroke)
{
    const std::string data =
        zeros(14) + pos_bytes + raw("0A00") + "HUT" + zeros(1) + "LINK 7" + zeros(1);
    gar_wp_in in = decoded(data, 106);
    EXPECT_EQ(in.name, "HUT");
    EXPECT_EQ(in.comment, "-LINK 7");
}

TEST_F(GarWaypoint, FieldsOfTextEndAtTheirFirstZeroByte)
{
    std::string data = "HU" + zeros(1) + "XYZ" + base.substr(6);
    data.replace(18, 40, "LAKE" + zeros(1) + std::string(35, 'x'));
    const gar_wp_in in = decoded(data, 100);
    EXPECT_EQ(in.name, "HU");
    EXPECT_EQ(in.comment, "LAKE");
}

// Distance and height
// -------------------------------------------------------------------------------------------------

TEST_F(GarWaypoint, ProximityOfNoneIsADistanceOfZeroInD101AndNoValueInD108)
{
    wayp_rec rec = hut();
    rec.prox = 0;
    EXPECT_EQ(encoded(rec, 101).substr(58, 4), zeros(4));
    for (const int type : {108, 109, 110}) {
        EXPECT_EQ(encoded(rec, type).substr(40, 4), no_value);
        rec.prox = -5; // switched off
        EXPECT_EQ(encoded(rec, type).substr(40, 4), no_value);
        rec.prox = 1;
        EXPECT_EQ(encoded(rec, type).substr(40, 4), raw("0000C842"));
        rec.prox = 0;
    }
}

TEST_F(GarWaypoint, DistanceIsRoundedToHundredsOfMetres)
{
    const struct {
        float metres;
        int prox;
    } cases[] = {{0, 0},       {49, 0},       {50, 0},     {51, 1},
                 {149.6F, 2},  {150, 2},      {250.4F, 2}, {251, 3},
                 {32767, 328}, {32767.5F, 0}, {99900, 0},  {gar_no_value, 0},
                 {-500, -5},   {-32767, 0},   {-1e25F, 0}, {__builtin_nanf(""), 0}};
    for (const auto& c : cases) {
        gar_field_writer dist;
        dist.real(c.metres);
        EXPECT_EQ(decoded(base + dist.out, 400).prox, c.prox) << c.metres;
    }
}

TEST_F(GarWaypoint, HeightIsRoundedToMetresAndUnknownOutsideTheirRange)
{
    const struct {
        float metres;
        int alt;
    } cases[] = {{0, 0},
                 {411.6F, 412},
                 {-12.4F, -12},
                 {412.5F, 412},
                 {32767, 32767},
                 {-32767, -32767},
                 {32768, alt_unknown},
                 {gar_no_value, alt_unknown},
                 {__builtin_nanf(""), alt_unknown}};
    for (const auto& c : cases) {
        gar_field_writer height;
        height.real(c.metres);
        std::string data = encoded(hut(), 109);
        data.replace(32, 4, height.out);
        EXPECT_EQ(decoded(data, 109).alt, c.alt) << c.metres;
    }
    wayp_rec rec = hut();
    rec.alt = alt_unknown;
    EXPECT_EQ(encoded(rec, 109).substr(32, 4), no_value);
}

TEST_F(GarWaypoint, HeightOfAFacilityRecordIsTakenAsItStands)
{
    std::string data = encoded(hut(), 152);
    data.replace(118, 2, raw("F4FF"));
    EXPECT_EQ(decoded(data, 152).alt, -12);
    data.replace(118, 2, raw("FF7F"));
    EXPECT_EQ(decoded(data, 152).alt, 32767);
}

// Symbol and display
// -------------------------------------------------------------------------------------------------

TEST_F(GarWaypoint, SymbolGoesThroughTheTableInBothDirections)
{
    wayp_rec rec = hut();
    rec.symb = 20;
    EXPECT_EQ(encoded(rec, 108).substr(4, 2), raw("3620"));
    EXPECT_EQ(decoded(encoded(rec, 108), 108).symbol & 0xFF, 20);
}

TEST_F(GarWaypoint, SymbolThatOneByteCannotCarryGoesAsAPlainWaypoint)
{
    wayp_rec rec = hut();
    rec.symb = 20;
    EXPECT_EQ(encoded(rec, 101).substr(62, 1), raw("12"));
    EXPECT_EQ(encoded(rec, 103).substr(58, 1), raw("00"));
    rec.symb = -1;
    EXPECT_EQ(encoded(rec, 102).substr(62, 2), raw("1200"));
}

TEST_F(GarWaypoint, UnknownSymbolKeepsItsValueWhenTheTableShallStay)
{
    user.answers = {answer::no};
    std::string data = encoded(hut(), 108);
    data.replace(4, 2, raw("7700"));
    EXPECT_EQ(decoded(data, 108).symbol & 0xFF, 0x77);
    EXPECT_EQ(user.numbers(), (std::vector<int>{7701}));
}

TEST_F(GarWaypoint, DisplayIsMappedByTheSymbolSet)
{
    const auto display = [](int type, int raw) {
        std::string data = encoded(hut(), type);
        data.back() = static_cast<char>(raw);
        return decoded(data, type).symbol >> 8;
    };
    const int mapped[] = {0, 1, 0, 0, 0, 2, 0};
    for (int raw = 0; raw < 7; ++raw)
        EXPECT_EQ(display(104, raw), mapped[raw]) << raw;
    receiver.gar_symbol_set = 1;
    const int plain[] = {0, 1, 2, 0};
    for (int raw = 0; raw < 4; ++raw)
        EXPECT_EQ(display(103, raw), plain[raw]) << raw;
    EXPECT_EQ(display(103, 255), 0);
}

TEST_F(GarWaypoint, DisplayOfTheD108FamilyComesThroughUnchanged)
{
    for (const int set : {0, 2}) {
        receiver.gar_symbol_set = static_cast<std::int16_t>(set);
        wayp_rec rec = hut();
        for (const int type : {108, 109, 110})
            for (std::int16_t mode = 0; mode < 3; ++mode) {
                rec.symbmode = mode;
                EXPECT_EQ(decoded(encoded(rec, type), type).symbol >> 8, mode) << type;
            }
    }
    std::string data = encoded(hut(), 109);
    data[2] = 0x7F; // display 3
    EXPECT_EQ(decoded(data, 109).symbol >> 8, 0);
}

TEST_F(GarWaypoint, DisplayGoesOutAs315InD104AndD155)
{
    const char digits[] = {3, 1, 5};
    wayp_rec rec = hut();
    for (std::int16_t mode = 0; mode < 3; ++mode) {
        rec.symbmode = mode;
        for (const int type : {104, 155}) {
            EXPECT_EQ(encoded(rec, type).back(), digits[mode]);
            EXPECT_EQ(decoded(encoded(rec, type), type).symbol >> 8, mode);
        }
        EXPECT_EQ(encoded(rec, 103).back(), static_cast<char>(mode));
    }
    rec.symbmode = 9;
    EXPECT_EQ(encoded(rec, 155).back(), 3);
}

// Time
// -------------------------------------------------------------------------------------------------

TEST_F(GarWaypoint, TimesThatMeanNoneAreStoredAsZero)
{
    std::string data = base;
    for (const char* none : {"FFFFFF7F", "FFFFFFFF"}) {
        data.replace(14, 4, raw(none));
        EXPECT_EQ(decoded(data, 100).time, 0);
    }
    data.replace(14, 4, raw("A6428B15"));
    EXPECT_EQ(decoded(data, 100).time, 361448102);
}

TEST_F(GarWaypoint, TimeOfD110GoesOut)
{
    wayp_rec rec = hut();
    EXPECT_EQ(encoded(rec, 110).substr(56, 4), raw("A6428B15"));
    EXPECT_EQ(encoded(rec, 100).substr(14, 4), zeros(4));
}

TEST_F(GarWaypoint, WithoutATimeTakesItFromTheDateInItsComment)
{
    store.wp_ext_chars = true;
    wayp_rec rec = hut();
    rec.kom = "14-JUN-01 10:15";
    EXPECT_EQ(decoded(encoded(rec, 100), 100).time, 361448100);
    settings.alt_kom = true; // a height in front does not hide it
    rec.alt = 412;
    const gar_wp_in in = decoded(encoded(rec, 100), 100);
    EXPECT_EQ(in.time, 361448100);
    EXPECT_EQ(in.comment, "14-JUN-01 10:15");
}

} // namespace
} // namespace velkoro
