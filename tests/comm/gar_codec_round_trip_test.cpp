/// Random waypoints to the receiver and back, with fixed seeds: what a type can carry comes back.
#include "comm/gar_codec_comment.h"
#include "comm/gar_codec_layout.h"
#include "tests/comm/gar_codec_fixture.h"

#include <random>

namespace velkoro {
namespace {

class GarRoundTrip : public GarCodec {
protected:
    std::mt19937 dice{20260517};

    int pick(int from, int to) { return std::uniform_int_distribution<int>(from, to)(dice); }
    std::string letters(int least, int most)
    {
        std::string out;
        for (int n = pick(least, most); n > 0; --n)
            out += static_cast<char>(pick('A', 'Z'));
        return out;
    }
    /// Words of capitals, as every receiver takes them.
    std::string words(std::size_t most)
    {
        std::string out;
        for (int n = pick(0, 5); n > 0; --n)
            out += (out.empty() ? "" : " ") + letters(1, 8);
        return std::string(trim(out.substr(0, most)));
    }
    wayp_rec random_record(std::size_t name_most)
    {
        constexpr int shown[] = {0, 1, 2, 20};
        return {.nam = letters(1, static_cast<int>(name_most)),
                .kom = words(40),
                .pos = {pick(-(1 << 30), 1 << 30), pick(-2147483647 - 1, 2147483647)},
                .dat = pick(1, 2147483646),
                .prox = static_cast<std::int16_t>(pick(0, 3) == 0 ? 0 : pick(1, 327)),
                .symb = static_cast<std::int16_t>(shown[pick(0, 3)]),
                .symbmode = static_cast<std::int16_t>(pick(0, 2)),
                .alt =
                    static_cast<std::int16_t>(pick(0, 3) == 0 ? alt_unknown : pick(-32767, 32767))};
    }
};

bool holds(int type, fld f)
{
    for (const fld have : gar_layout_of(type)->fields)
        if (have == f)
            return true;
    return false;
}

TEST_F(GarRoundTrip, EveryTypeBringsBackWhatItCarries)
{
    for (const gar_layout& l : gar_layouts) {
        SCOPED_TRACE("D" + std::to_string(l.type));
        const bool sixteen = l.type == 103 || l.type == 107 || l.type == 403;
        receiver.gar_symbol_set = sixteen ? 1 : 2;
        symbols_parse(sixteen ? "00:00 Dot\n01:01 House\n02:02 Gas\n20:0F TracBack\n"
                              : "00:12 Waypoint\n01:A Residence\n02:8 Gas Station\n20:36 Summit\n",
                      symbols);
        store.wp_name_max = 20;
        for (int i = 0; i < 300; ++i) {
            const bool short_name = holds(l.type, fld::ident6);
            const wayp_rec rec = random_record(short_name ? 6 : 20);
            const std::string data = encoded(rec, l.type, pick(0, 1) == 1);
            gar_wp_in in;
            ASSERT_TRUE(gar_wp_decode(data, l.type, in));
            const wayp_rec back = gar_wp_record(in);
            ASSERT_EQ(back.nam, rec.nam);
            ASSERT_EQ(back.pos, rec.pos);
            const bool text = holds(l.type, fld::comment40) || holds(l.type, fld::comment_z);
            ASSERT_EQ(back.kom, text ? rec.kom : "");
            ASSERT_EQ(back.prox, holds(l.type, fld::dist) ? rec.prox : 0);
            const bool symbol = holds(l.type, fld::symb8) || holds(l.type, fld::symb16);
            ASSERT_EQ(back.symb, symbol ? rec.symb : 0);
            const bool display = holds(l.type, fld::disp8) || holds(l.type, fld::packed8);
            ASSERT_EQ(back.symbmode, display ? rec.symbmode : 0);
            ASSERT_EQ(back.alt, holds(l.type, fld::alt32)   ? rec.alt
                                : holds(l.type, fld::alt16) ? 0
                                                            : alt_unknown);
            ASSERT_EQ(back.dat, l.type == 110 ? rec.dat : now);
            // A second journey changes nothing any more.
            ASSERT_EQ(decoded(encoded(back, l.type), l.type).comment, back.kom);
        }
    }
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(GarRoundTrip, MarkersOfTheD108FamilyComeBackTogether)
{
    settings.garmin[static_cast<std::size_t>(gar_place::AVD)] = 1;
    const std::string classes = "AINVRTD";
    for (int i = 0; i < 500; ++i) {
        const int type = pick(108, 110);
        wayp_rec rec = random_record(6);
        rec.kom = words(20);
        if (pick(0, 1) == 1)
            rec.kom = std::string("@") + classes[static_cast<std::size_t>(pick(0, 6))] + "DE " +
                      (rec.kom.empty() ? "X" : rec.kom);
        if (pick(0, 1) == 1)
            rec.kom += (rec.kom.empty() ? "$ " : " $ ") + std::to_string(pick(0, 99)) + "." +
                       std::to_string(pick(0, 9)) + " m";
        if (pick(0, 1) == 1)
            rec.kom +=
                (rec.kom.find('$') == std::string::npos ? "" : " ") + gar_color_code(pick(0, 15));
        ASSERT_EQ(decoded(encoded(rec, type, true), type).comment, rec.kom) << type;
    }
}

TEST_F(GarRoundTrip, RandomBytesGiveARecordThatTheStoreCanHold)
{
    user.answers.assign(5, answer::no);
    for (const bool alt_kom : {false, true}) {
        settings.alt_kom = alt_kom;
        for (int i = 0; i < 4000; ++i) {
            std::string data;
            for (int n = pick(0, 140); n > 0; --n)
                data += static_cast<char>(pick(0, 3) == 0 ? pick(0, 255) : pick(32, 126));
            const int type = gar_layouts[static_cast<std::size_t>(pick(0, 18))].type;
            gar_wp_in in;
            if (!gar_wp_decode(data, type, in)) {
                ASSERT_EQ(in, gar_wp_in{});
                continue;
            }
            ASSERT_LE(in.lat, 1 << 30);
            ASSERT_GE(in.lat, -(1 << 30));
            ASSERT_LE(in.symbol >> 8, 2);
            ASSERT_EQ(in.name, trim(in.name));
            ASSERT_EQ(in.comment.find('\0'), std::string::npos);
            const wayp_rec rec = gar_wp_record(in);
            for (const gar_layout& l : gar_layouts)
                ASSERT_GE(encoded(rec, l.type).size(), l.bytes);
        }
    }
}

} // namespace
} // namespace velkoro
