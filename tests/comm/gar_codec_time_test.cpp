#include "comm/gar_codec_time.h"

#include "tests/comm/gar_codec_fixture.h"

namespace velkoro {
namespace {

class GarTime : public GarCodec {
protected:
    static std::int32_t time_of(const std::string& bytes, const std::string& comment)
    {
        std::int32_t time = -7;
        gar_wp_time(bytes, comment, time);
        return time;
    }
};

TEST_F(GarTime, IsThatOfTheRecordWhenItHasOne)
{
    EXPECT_EQ(time_of(raw("A6428B15"), "14-JUN-02"), 361448102);
    EXPECT_EQ(time_of(raw("A6428B15 FFFF"), ""), 361448102); // four bytes count
    EXPECT_EQ(time_of(raw("FFFFFFFF"), ""), -1);
}

TEST_F(GarTime, IsThatOfADateInTheComment)
{
    EXPECT_EQ(time_of(zeros(4), "14-JUN-01 10:15"), 361448100);
    EXPECT_EQ(time_of("", "14.6.2001"), 361448100 - 10 * 3600 - 15 * 60);
}

TEST_F(GarTime, OfADateInTheCommentIsLocalTimeOfTheListWithItsOption)
{
    settings.list_zone = "+1 L3 L10";
    EXPECT_EQ(time_of(zeros(4), "14-JUN-01 10:15"), 361448100);
    settings.garmin[static_cast<std::size_t>(gar_place::Lokalz)] = 1;
    EXPECT_EQ(time_of(zeros(4), "14-JUN-01 10:15"), 361448100 - 2 * 3600);
    EXPECT_EQ(time_of(raw("A6428B15"), "14-JUN-01 10:15"), 361448102);
}

TEST_F(GarTime, IsThePresentInUtcOtherwise)
{
    EXPECT_EQ(time_of(zeros(4), "HUT"), now);
    user.today.utc_offset_s = 7200;
    EXPECT_EQ(time_of(zeros(4), ""), now - 7200);
    EXPECT_EQ(time_of(raw("0100"), ""), now - 7200); // not four bytes
}

TEST_F(GarTime, OfNoneIsZero)
{
    EXPECT_EQ(gar_time_known(0x7FFFFFFF), 0);
    EXPECT_EQ(gar_time_known(-1), 0);
    EXPECT_EQ(gar_time_known(-2), -2);
    EXPECT_EQ(gar_time_known(0), 0);
}

TEST_F(GarTime, OfTheReceiversClockIsReadAndWritten)
{
    const std::string data = raw("06 0E D107 0A00 0F 02");
    EXPECT_EQ(gar_clock_decode(data), 361448102);
    EXPECT_EQ(gar_clock_encode(361448102), data);
    for (const std::int32_t t : {0, 1, 86399, 86400, 1147946400, 0x7FFFFFFF, -1})
        EXPECT_EQ(gar_clock_decode(gar_clock_encode(t)), t);
}

TEST_F(GarTime, OfAClockThatIsNoneIsNothing)
{
    for (const char* bytes :
         {"", "06 0E D107 0A00 0F", "00 0E D107 0A00 0F 02", "0D 0E D107 0A00 0F 02",
          "06 00 D107 0A00 0F 02", "06 20 D107 0A00 0F 02", "06 0E D107 1800 0F 02",
          "06 0E D107 FFFF 0F 02", "06 0E D107 0A00 3C 02", "06 0E D107 0A00 0F 3D",
          "06 0E 0000 0A00 0F 02", "06 0E FFFF 0A00 0F 02"})
        EXPECT_EQ(gar_clock_decode(raw(bytes)), std::nullopt) << bytes;
}

} // namespace
} // namespace velkoro
