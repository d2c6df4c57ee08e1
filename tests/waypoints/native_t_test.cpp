#include "waypoints/native_t.h"

#include "core/byte_io.h"
#include "core/job.h"
#include "core/store.h"
#include "tests/waypoints/native_support.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

using namespace velkoro;

namespace {

trackp_rec point(std::int32_t lat, std::int32_t zeit = 0)
{
    trackp_rec p;
    p.pos = {lat, 7};
    p.zeit = zeit;
    return p;
}

void add_points(int n)
{
    for (int i = 0; i < n; ++i)
        track_append(point(i, 100 + i));
}

std::string old_head(int version)
{
    byte_writer w;
    w.fixed(t_magic, t_magic.size());
    w.i16(static_cast<std::int16_t>(version));
    w.lstr("old");
    return w.out;
}

std::string old_point(std::mt19937& random, bool comment = false)
{
    byte_writer w;
    w.i32(static_cast<std::int32_t>(random() % 1000000000) + 1);
    w.i32(static_cast<std::int32_t>(random()));
    w.i32(1000000000 + static_cast<std::int32_t>(random() % 100000));
    w.u8(0);
    if (comment)
        w.lstr("on the way");
    return w.out;
}

} // namespace

TEST(WriteTrack, ANegativeTimeLosesItsSignInTheStoreToo)
{
    native_fixture f;
    track_append(point(1, std::numeric_limits<std::int32_t>::min() + 1000));
    track_append(point(2, -1));
    const std::string bytes = write_t({}).bytes;
    EXPECT_EQ(store.trk[0].zeit, 1000);
    EXPECT_EQ(store.trk[1].zeit, 2147483647);
    track_clear();
    read_t(bytes);
    EXPECT_EQ(store.trk[0].zeit, 1000);
    EXPECT_EQ(store.trk[1].zeit, 0);
}

TEST(WriteTrack, HoldsTheRangeAskedFor)
{
    native_fixture f;
    add_points(10);
    EXPECT_EQ(write_t({.first = 3, .last = 6}).points, 4);
    EXPECT_EQ(write_t({.first = 8, .last = 60}).points, 2);
    EXPECT_EQ(write_t({.first = 11}).points, 0);
    EXPECT_EQ(write_t({.first = -5}).points, 10);
}

TEST(WriteTrack, ASectionHasNoTitle)
{
    native_fixture f;
    add_points(2);
    store.trk_title = "title";
    const std::string bytes = write_t({}).bytes + write_t({.section = true}).bytes;
    const t_summary sum = t_info(bytes);
    EXPECT_EQ(sum.end, native_end::whole);
    EXPECT_EQ(sum.title, "title");
    EXPECT_EQ(sum.points, 4);
    EXPECT_EQ(sum.sections, 1);
}

TEST(WriteTrack, ValuesThatAReaderTakesForDamageAreBroughtIntoRange)
{
    native_fixture f;
    trackp_rec p = point(std::numeric_limits<std::int32_t>::min(), 5);
    p.art = 300;
    p.kom = std::string(40000, 'x');
    track_append(p);
    p = point(5, 6);
    p.art = -3;
    p.neu = 1;
    track_append(p);
    const std::string bytes = write_t({}).bytes;
    track_clear();
    EXPECT_EQ(read_t(bytes).end, native_end::whole);
    ASSERT_EQ(store.trk_top, 1);
    EXPECT_EQ(store.trk[0].pos.lat, -(1 << 30));
    EXPECT_EQ(store.trk[0].art, 7);
    EXPECT_EQ(store.trk[0].kom.view().size(), 32767U);
    EXPECT_EQ(store.trk[1].art, 0);
    EXPECT_EQ(store.trk[1].neu, -1);
}

TEST(WriteTrack, CancelKeepsWhatWasWritten)
{
    native_fixture f;
    add_points(5000);
    f.user.on_pump = [] { job.op_cancel = true; };
    make_progress_due();
    const t_write_result r = write_t({});
    EXPECT_EQ(r.end, native_end::broken_off);
    EXPECT_LT(r.points, 5000);
    EXPECT_EQ(t_info(r.bytes).points, r.points);
    EXPECT_EQ(op.anz.caption.substr(0, 5), "2490 ");
}

TEST(WriteTrack, AStoreThatShrinksInAPumpIsNoHarm)
{
    native_fixture f;
    add_points(5000);
    f.user.on_pump = [] { track_clear(); };
    make_progress_due();
    const t_write_result r = write_t({});
    EXPECT_EQ(r.end, native_end::whole);
    EXPECT_EQ(t_info(r.bytes).points, r.points);
}

TEST(ReadTrack, AFirstPointOfClassZeroBecomesClassOneAndStartsASegment)
{
    native_fixture f;
    read_t(golden_bytes("t", "class_zero_first.t"));
    EXPECT_EQ(store.trk[0].art, 1);
    EXPECT_EQ(store.trk[0].neu, -1);
    EXPECT_EQ(store.trk[1].art, 0);
    EXPECT_EQ(store.trk[1].neu, 0);
}

TEST(ReadTrack, ASecondFileGoesBehindTheFirstAndJoinsTheTitles)
{
    native_fixture f;
    read_t(golden_bytes("t", "v203.t"));
    EXPECT_FALSE(store.trk_dirty);
    read_t(golden_bytes("t", "class_zero_first.t"));
    EXPECT_EQ(store.trk_top, 10);
    EXPECT_EQ(store.trk[9].neu, -1);
    EXPECT_EQ(store.trk_title, "Golden track & Golden track");
    EXPECT_TRUE(store.trk_dirty);
}

TEST(ReadTrack, AnEmptyStoreKeepsItsChangedMark)
{
    native_fixture f;
    store.trk_dirty = true;
    read_t(golden_bytes("t", "v203.t"));
    EXPECT_TRUE(store.trk_dirty);
}

TEST(ReadTrack, AFileWithoutTagsGoesOnWithATaggedSection)
{
    native_fixture f;
    EXPECT_EQ(read_t(golden_bytes("t", "append_202_then_203.t")).end, native_end::whole);
    EXPECT_EQ(store.trk_top, 9);
    EXPECT_EQ(store.trk[5].alt, 755);
}

TEST(ReadTrack, ABadOldPointThatCannotBePutRightDropsTheFileButNotTheStore)
{
    native_fixture f;
    read_t(golden_bytes("t", "v203.t"));
    const t_read_result r = read_t(golden_bytes("t", "bad_point_199.t"));
    EXPECT_EQ(r.end, native_end::damaged);
    EXPECT_EQ(store.trk_top, 8);
    EXPECT_EQ(store.trk_title, "Golden track");
    EXPECT_FALSE(store.trk_dirty);
}

TEST(ReadTrack, CancelKeepsThePointsSoFar)
{
    native_fixture f;
    add_points(5000);
    const std::string bytes = write_t({}).bytes;
    track_clear();
    f.user.on_pump = [] { job.op_cancel = true; };
    make_progress_due();
    const t_read_result r = read_t(bytes);
    EXPECT_EQ(r.end, native_end::broken_off);
    EXPECT_GE(r.points, 1);
    EXPECT_LT(r.points, 5000);
    EXPECT_EQ(store.trk_top + 1, r.points);
    EXPECT_EQ(op.anz.caption.substr(0, 5), "2410 ");
}

TEST(ReadTrack, TheArrayFitsTheFile)
{
    native_fixture f;
    add_points(100000);
    const std::string bytes = write_t({}).bytes;
    track_clear();
    read_t(bytes);
    EXPECT_LE(store.trk.capacity() * sizeof(trackp_rec), 64U * 100000U);
}

TEST(ReadTrack, RecoveryOfALargeHostileFileEnds)
{
    native_fixture f;
    // Every place looks like the start of points with comments, and none of them leads to the end.
    std::string bytes = old_head(150) + std::string(13 * 200000, '\0') + std::string(13, '\xFF');
    EXPECT_EQ(t_info(bytes).end, native_end::damaged);
}

TEST(ReadTrack, RecoveryFindsALateStart)
{
    native_fixture f;
    std::mt19937 random(3);
    std::string bytes = old_head(150);
    for (int i = 0; i < 1000; ++i)
        bytes += old_point(random);
    for (int i = 0; i < 1000; ++i)
        bytes += old_point(random, true);
    const t_read_result r = read_t(bytes);
    EXPECT_EQ(r.end, native_end::whole);
    ASSERT_EQ(r.points, 2000);
    EXPECT_EQ(store.trk[999].kom.view(), "");
    EXPECT_EQ(store.trk[1000].kom.view(), "on the way");
}
