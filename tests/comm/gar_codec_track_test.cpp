#include "comm/gar_codec_track.h"

#include "tests/comm/gar_codec_fixture.h"

namespace velkoro {
namespace {

class GarTrack : public GarCodec {
protected:
    static gar_track_in track_of(const std::string& data, int type)
    {
        gar_track_in in;
        EXPECT_TRUE(gar_track_decode(data, type, in));
        return in;
    }
    static gar_point_in point_of(const std::string& data, int type)
    {
        gar_point_in in;
        EXPECT_TRUE(gar_point_decode(data, type, in));
        return in;
    }
    static void set(const char* key, const char* value)
    {
        settings.overrides[{"main", key}] = value;
    }
};

const std::string time_bytes = raw("A6428B15");

// Headers
// -------------------------------------------------------------------------------------------------

TEST_F(GarTrack, OfTheActiveLogHasNoNameButItsColour)
{
    const std::string data = raw("01 FF") + "ACTIVE LOG" + zeros(1);
    for (const int type : {310, 312}) {
        EXPECT_EQ(track_of(data, type), (gar_track_in{"", 255}));
        EXPECT_EQ(gar_track_encode("ACTIVE LOG", 255, type), data);
    }
    EXPECT_EQ(track_of(raw("00 09") + "ACTIVE LOG" + zeros(1), 310), (gar_track_in{"", 9}));
}

TEST_F(GarTrack, NameTakesTheCodeOfItsColour)
{
    EXPECT_EQ(track_of(raw("01 09") + "RIDE" + zeros(1), 310), (gar_track_in{"RIDE&R", 9}));
    EXPECT_EQ(track_of(raw("01 00") + "RIDE" + zeros(1), 312), (gar_track_in{"RIDE&BL", 0}));
    EXPECT_EQ(track_of(raw("01 FF") + "RIDE" + zeros(1), 312), (gar_track_in{"RIDE", 255}));
    EXPECT_EQ(track_of(raw("01 10") + "RIDE" + zeros(1), 312), (gar_track_in{"RIDE", 16}));
    EXPECT_EQ(track_of(raw("01"), 310), (gar_track_in{"", 255})); // cut short
    EXPECT_EQ(gar_track_encode(std::string(60, 'T'), 1, 310),
              raw("01 01") + std::string(50, 'T') + zeros(1));
}

TEST_F(GarTrack, HeaderD311IsANumberAsHexadecimalText)
{
    EXPECT_EQ(track_of(raw("0200"), 311).name, "0200");
    EXPECT_EQ(track_of(raw("0200 0A1B 2C"), 311).name, "02000A1B");
    EXPECT_EQ(track_of(raw("02"), 311).name, "02");
    EXPECT_EQ(gar_track_encode("02000A1B", 255, 311), raw("0200"));
    EXPECT_EQ(gar_track_encode("FF01", 255, 311), raw("FF01"));
    EXPECT_EQ(gar_track_encode("RIDE", 255, 311), raw("0000"));
}

TEST_F(GarTrack, HeaderOfAnotherTypeOrWithoutDataIsRefused)
{
    gar_track_in in{"OLD", 1};
    EXPECT_FALSE(gar_track_decode(raw("01 FF"), 313, in));
    EXPECT_EQ(in, gar_track_in{});
    for (const int type : {310, 311, 312})
        EXPECT_FALSE(gar_track_decode("", type, in));
    EXPECT_EQ(gar_track_encode("RIDE", 1, 300), "");
}

TEST_F(GarTrack, ColourIsThatOfTheNameThenOfTheTrackThenOfTheSetting)
{
    const int by_index[] = {0, 10, 12, 9, 14, 13, 15};
    for (int i = 1; i <= 7; ++i) {
        std::string name = "RIDE";
        EXPECT_EQ(gar_track_colour(name, i), by_index[i - 1]);
        name = "RIDE&DG";
        EXPECT_EQ(gar_track_colour(name, i), 2);
        EXPECT_EQ(name, "RIDE");
    }
    std::string name = "RIDE";
    EXPECT_EQ(gar_track_colour(name, 0), 255);
    EXPECT_EQ(gar_track_colour(name, 8), 255);
    set("track_defcol", "12");
    EXPECT_EQ(gar_track_colour(name, 0), 12);
    set("track_defcol", "300");
    EXPECT_EQ(gar_track_colour(name, 0), 255);
    EXPECT_EQ(name, "RIDE");
}

TEST_F(GarTrack, WithoutANameIsNumbered)
{
    EXPECT_EQ(gar_track_auto_name(1, ""), "1VELKORO");
    EXPECT_EQ(gar_track_auto_name(12, "Over the mountains"), "12Over the m");
    EXPECT_EQ(gar_track_auto_name(2, "  "), "2VELKORO");
}

// Points
// -------------------------------------------------------------------------------------------------

TEST_F(GarTrack, PointD300IsPositionTimeAndSegment)
{
    const std::string data = pos_bytes + time_bytes + raw("01");
    EXPECT_EQ(point_of(data, 300),
              (gar_point_in{.pos = {578311978, 109908571}, .time = 361448102, .segment = true}));
    EXPECT_EQ(gar_point_encode({.pos = {578311978, 109908571}, .zeit = 361448102}, 300, true),
              data);
    EXPECT_EQ(point_of(pos_bytes + time_bytes + raw("00"), 300).segment, false);
}

TEST_F(GarTrack, PointD301HasHeightAndDepth)
{
    const std::string data = pos_bytes + time_bytes + metres_412 + no_value + raw("01");
    const gar_point_in in = point_of(data, 301);
    EXPECT_EQ(in.alt, 412);
    EXPECT_TRUE(in.segment);
    const trackp_rec point{.pos = {578311978, 109908571}, .zeit = 361448102, .alt = 412};
    EXPECT_EQ(gar_point_encode(point, 301, true), data);
    EXPECT_EQ(gar_point_encode({.zeit = 1}, 301, false),
              zeros(8) + raw("01000000") + no_value + no_value + zeros(1));
    EXPECT_EQ(point_of(gar_point_encode({}, 301, false), 301).alt, alt_unknown);
}

TEST_F(GarTrack, PointD302HasATemperatureThatIsPassedOver)
{
    const std::string data =
        pos_bytes + time_bytes + metres_412 + no_value + metres_500 + raw("01");
    EXPECT_TRUE(point_of(data, 302).segment);
    EXPECT_EQ(point_of(data, 302).alt, 412);
    const trackp_rec point{.pos = {578311978, 109908571}, .zeit = 361448102, .alt = 412};
    EXPECT_EQ(gar_point_encode(point, 302, false),
              pos_bytes + time_bytes + metres_412 + no_value + no_value + zeros(1));
}

TEST_F(GarTrack, PointTimesThatMeanNoneAreZero)
{
    EXPECT_EQ(point_of(pos_bytes + raw("FFFFFF7F") + raw("00"), 300).time, 0);
    EXPECT_EQ(point_of(pos_bytes + raw("FFFFFFFF") + raw("00"), 300).time, 0);
    EXPECT_EQ(gar_point_encode({}, 300, false), zeros(13)); // none goes out as 0
    trackp_rec flagged{.zeit = 361448102 | static_cast<std::int32_t>(0x80000000)};
    EXPECT_EQ(gar_point_encode(flagged, 300, false).substr(8, 4), time_bytes);
}

TEST_F(GarTrack, PointThatIsCutShortLacksOnlyWhatIsMissing)
{
    const std::string data = pos_bytes + time_bytes + metres_412 + no_value + raw("01");
    for (std::size_t n = 0; n <= data.size(); ++n) {
        gar_point_in in{.time = 7};
        const bool whole = gar_point_decode(std::string_view(data).substr(0, n), 301, in);
        EXPECT_EQ(whole, n >= 8);
        EXPECT_EQ(in.time, n >= 12 ? 361448102 : 0);
        EXPECT_EQ(in.alt, n >= 16 ? 412 : alt_unknown);
        EXPECT_EQ(in.segment, n == 21);
    }
}

TEST_F(GarTrack, PointWithoutAPlaceIsRefused)
{
    gar_point_in in;
    EXPECT_FALSE(gar_point_decode(raw("FFFFFF7F FFFFFF7F") + time_bytes + raw("01"), 300, in));
    EXPECT_FALSE(gar_point_decode(pos_bytes + time_bytes, 303, in));
    EXPECT_EQ(gar_point_encode({}, 299, false), "");
}

TEST_F(GarTrack, PointTypeStandsBehindTheProtocolOrItsHeader)
{
    auto& track = receiver.gar_proto[4];
    EXPECT_EQ(gar_point_type(), 0);
    track = {300, 300, 0, 0};
    EXPECT_EQ(gar_point_type(), 300);
    track = {301, 310, 301, 0};
    EXPECT_EQ(gar_point_type(), 301);
    track = {302, 311, 302, 0};
    EXPECT_EQ(gar_point_type(), 302);
    track = {303, 310, 301, 0};
    EXPECT_EQ(gar_point_type(), 0);
}

TEST_F(GarTrack, BytesBehindAPointBecomeATag)
{
    const std::string point = pos_bytes + time_bytes + metres_412 + no_value;
    EXPECT_EQ(gar_point_tag(point + raw("01 02 AB CD EF")), "0102ABCD/");
    EXPECT_EQ(gar_point_tag(point + raw("01")), "01/");
    EXPECT_EQ(gar_point_tag(point), "");
    EXPECT_EQ(gar_point_tag(""), "");
}

TEST_F(GarTrack, DepthOfAPointIsItsCommentByTheSetting)
{
    gar_point_in in{.depth = 3.456F};
    EXPECT_EQ(gar_point_comment(in, true), "");
    set("track_depth", "1");
    EXPECT_EQ(gar_point_comment(in, true), "$ 3.46 m");
    EXPECT_EQ(gar_point_comment(in, false), "");
    set("track_depth", "2");
    EXPECT_EQ(gar_point_comment(in, false), "$ 3.46 m");
    settings.alt_index = 1;
    settings.alt_unit = alt_factors[1];
    EXPECT_EQ(gar_point_comment(in, false), "$ 11.34 ft");
    EXPECT_EQ(gar_point_comment({}, true), "");
}

} // namespace
} // namespace velkoro
