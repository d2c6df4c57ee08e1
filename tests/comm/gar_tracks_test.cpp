// Tracks from and to a Garmin receiver, as whole sessions over the line.
#include "comm/comm.h"
#include "comm/gar_codec_track.h"
#include "comm/gar_tracks.h"
#include "core/hooks.h"
#include "core/job.h"
#include "core/settings.h"
#include "tests/comm/transfer_rig.h"

#include <gtest/gtest.h>

using namespace velkoro;

namespace {

class GarTracks : public testing::Test {
protected:
    transfer_rig rig{};

    static const trackp_rec& point(int i) { return store.trk[static_cast<std::size_t>(i)]; }
    static void add_track(const std::string& name, int first, int count)
    {
        for (int n = first; n < first + count; ++n) {
            trackp_rec p = some_point(n);
            if (n == first) {
                p.neu = -1;
                p.art = 1;
                p.kom = name;
            }
            track_append(p);
        }
    }
    std::vector<sim_packet>& arrived() { return rig.garmin.arrived[sim_list::track]; }
    std::vector<std::string> arrived_names()
    {
        std::vector<std::string> out;
        for (const sim_packet& p : arrived())
            if (p.id == 99)
                out.push_back(p.data.substr(2, p.data.size() - 3));
        return out;
    }
    std::vector<int> arrived_segments()
    {
        std::vector<int> out;
        for (const sim_packet& p : arrived())
            if (p.id == 34)
                out.push_back(p.data.back());
        return out;
    }
    static void limit(gar_place place, int value)
    {
        settings.garmin[static_cast<std::size_t>(place)] = value;
    }
};

} // namespace

TEST_F(GarTracks, AreReadBehindThePointsOfTheStore)
{
    add_track("", 90, 2);
    rig.holds(sim_list::track,
              {header_packet("ACTIVE LOG"), point_packet(0, 301), point_packet(1, 301, true),
               header_packet("TOUR"), point_packet(2, 301), point_packet(3, 301)});
    std::vector<received_track> offered;
    hooks.tracks_received = [&](const std::vector<received_track>& t) { offered = t; };
    rig.run("T_L");
    EXPECT_EQ(transfer.end, transfer_end::whole);
    ASSERT_EQ(store.trk_top, 5);
    EXPECT_EQ(point(2).kom, ""); // the active log has no name
    EXPECT_EQ(point(2).neu, -1); // the first point behind a header, whatever its byte says
    EXPECT_EQ(point(3).neu, -1);
    EXPECT_EQ(point(4).kom, "TOUR");
    EXPECT_EQ(point(4).neu, -1);
    EXPECT_EQ(point(5).neu, 0);
    EXPECT_EQ(point(5).pos, some_point(3).pos);
    EXPECT_EQ(point(5).alt, some_point(3).alt);
    EXPECT_EQ(offered, (std::vector<received_track>{{"", 2, 3}, {"TOUR", 4, 5}}));
    EXPECT_EQ(op2.anz.caption, "8126 4 2 #");
    EXPECT_TRUE(store.trk_dirty);
    EXPECT_FALSE(rig.line.opened);
}

TEST_F(GarTracks, OfTheOldKindAreReadWithoutHeaders)
{
    rig.protocols("L001 A010 A100 D103 A300 D300");
    rig.holds(sim_list::track,
              {point_packet(0, 300, true), point_packet(1, 300), point_packet(2, 300, true)});
    rig.run("T_L");
    ASSERT_EQ(store.trk_top, 2);
    EXPECT_EQ(point(0).alt, alt_unknown);
    EXPECT_EQ(point(1).neu, 0);
    EXPECT_EQ(point(2).neu, -1);
}

TEST_F(GarTracks, OfTheThirdKindBearTheBytesBehindTheirFirstPoint)
{
    rig.protocols("L001 A010 A100 D103 A302 D311 D301");
    rig.holds(sim_list::track, {{99, le16(5)}, point_packet(0, 301), point_packet(1, 301, true)});
    rig.run("T_L");
    ASSERT_EQ(store.trk_top, 1);
    EXPECT_EQ(point(0).neu, -1);
    EXPECT_EQ(point(1).neu, 0); // the byte is not used
    EXPECT_NE(point(0).kom.view().find("0500"), std::string_view::npos) << point(0).kom.str();
}

TEST_F(GarTracks, OfAnEmptyReceiverGiveAMessage)
{
    rig.run("T_L");
    EXPECT_EQ(transfer.end, transfer_end::empty);
    EXPECT_EQ(op2.anz.caption, "2670 " + transfer.receiver + " # #");
    EXPECT_EQ(store.trk_top, -1);
}

TEST_F(GarTracks, OfAReceiverWithAnUnknownTrackProtocolGoNowhere)
{
    rig.protocols("L001 A010 A100 D103 A303 D310 D301");
    rig.holds(sim_list::track, {point_packet(0, 301), point_packet(1, 301)});
    rig.run("T_L");
    EXPECT_EQ(store.trk_top, -1);
    EXPECT_FALSE(store.trk_dirty);
    EXPECT_EQ(op2.anz.caption, "8120 " + transfer.receiver + " # #");
}

TEST_F(GarTracks, APointThatTheReceiverRepeatsOnItsOwnCostsNoOtherOne)
{
    rig.holds(sim_list::track, {header_packet("A"), point_packet(0, 301), point_packet(1, 301),
                                header_packet("B"), point_packet(2, 301), point_packet(3, 301)});
    rig.protocols("L001 A010 A100 D103 A301 D310 D301");
    const std::string twice = wire(34, point_packet(1, 301).data);
    rig.garmin.send = [&](const std::string& frame) {
        rig.line.send(frame);
        if (frame == twice)
            rig.line.send(frame);
    };
    std::vector<received_track> offered;
    hooks.tracks_received = [&](const std::vector<received_track>& t) { offered = t; };
    rig.run("T_L");
    EXPECT_EQ(transfer.end, transfer_end::whole);
    ASSERT_EQ(store.trk_top, 3);
    for (int n = 0; n < 4; ++n)
        EXPECT_EQ(point(n).pos, some_point(n).pos) << n;
    EXPECT_EQ(offered, (std::vector<received_track>{{"A", 0, 1}, {"B", 2, 3}}));
}

TEST_F(GarTracks, EqualPointsWithoutANakAreBothTaken)
{
    rig.holds(sim_list::track, {header_packet("A"), point_packet(0, 301), point_packet(0, 301)});
    rig.run("T_L");
    EXPECT_EQ(store.trk_top, 1);
}

TEST_F(GarTracks, WithNamesGoOutBehindTheirHeaders)
{
    add_track("TOUR", 0, 3);
    add_track("BACK", 10, 2);
    rig.run("T_S");
    EXPECT_EQ(transfer.end, transfer_end::whole);
    EXPECT_EQ(arrived_names(), (std::vector<std::string>{"TOUR", "BACK"}));
    EXPECT_EQ(arrived_segments(), (std::vector<int>{1, 0, 0, 1, 0}));
    EXPECT_NE(rig.transcript.find("> " + hex(wire(27, le16(7)))), std::string::npos);
    EXPECT_NE(rig.transcript.find("> " + hex(wire(12, le16(6)))), std::string::npos);
    EXPECT_TRUE(rig.user.messages.empty());
}

TEST_F(GarTracks, AFurtherSegmentOfANamedTrackNeedsNoHeader)
{
    add_track("TOUR", 0, 2);
    add_track("", 10, 2);
    rig.run("T_S");
    EXPECT_EQ(arrived_names(), (std::vector<std::string>{"TOUR"}));
    EXPECT_EQ(arrived_segments(), (std::vector<int>{1, 0, 1, 0}));
    EXPECT_TRUE(rig.user.messages.empty());
}

TEST_F(GarTracks, WithoutANameGoOutAsTheActiveLogWhenTheUserWantsIt)
{
    add_track("", 0, 2);
    add_track("", 10, 2);
    rig.user.answers = {answer::yes};
    rig.run("T_S");
    EXPECT_EQ(rig.user.numbers(), (std::vector<int>{2865}));
    EXPECT_EQ(arrived_names(), (std::vector<std::string>{"ACTIVE LOG"}));
    EXPECT_EQ(arrived_segments(), (std::vector<int>{1, 0, 1, 0}));
}

TEST_F(GarTracks, WithoutANameAreNumberedWhenTheUserSaysNo)
{
    add_track("", 0, 2);
    add_track("", 10, 2);
    add_track("TOUR", 20, 1);
    rig.user.answers = {answer::no};
    rig.run("T_S");
    EXPECT_EQ(rig.user.numbers(), (std::vector<int>{2865}));
    EXPECT_EQ(arrived_names(), (std::vector<std::string>{gar_track_auto_name(1, ""),
                                                         gar_track_auto_name(2, ""), "TOUR"}));
    rig.garmin.arrived.clear();
    store.trk_title = "OVER THE ALPS";
    rig.user.answers = {answer::no};
    rig.run("T_S");
    EXPECT_EQ(arrived_names().at(0), gar_track_auto_name(1, "OVER THE ALPS"));
}

TEST_F(GarTracks, OfTheOldKindGoOutWithoutHeadersAndQuestions)
{
    rig.protocols("L001 A010 A100 D103 A300 D300");
    add_track("TOUR", 0, 2);
    add_track("", 10, 1);
    rig.run("T_S");
    EXPECT_EQ(arrived().size(), 3U);
    EXPECT_EQ(arrived_segments(), (std::vector<int>{1, 0, 1}));
    EXPECT_TRUE(rig.user.messages.empty());
}

TEST_F(GarTracks, OnlyTheChosenRangeGoesOut)
{
    rig.protocols("L001 A010 A100 D103 A300 D300");
    add_track("TOUR", 0, 9);
    transfer.choice.first = 3;
    transfer.choice.last = 5;
    rig.run("T_S");
    ASSERT_EQ(arrived().size(), 3U);
    EXPECT_EQ(arrived()[0].data, gar_point_encode(some_point(3), 300, true));
    EXPECT_EQ(arrived()[2].data, gar_point_encode(some_point(5), 300, false));
}

TEST_F(GarTracks, AMarkOfTheTrackOperationsDoesNotReachTheReceiver)
{
    rig.protocols("L001 A010 A100 D103 A300 D300");
    add_track("", 0, 1);
    store.trk[0].zeit |= static_cast<std::int32_t>(0x80000000U);
    rig.run("T_S");
    EXPECT_EQ(arrived().at(0).data, gar_point_encode(some_point(0), 300, true));
}

TEST_F(GarTracks, MorePointsThanTheReceiverHoldsAreAskedAbout)
{
    add_track("TOUR", 0, 5);
    limit(gar_place::mtrack, 4);
    rig.user.answers = {answer::no};
    rig.run("T_S");
    EXPECT_EQ(rig.user.messages.at(0).text, "2830 5 4 # 2760 # # #");
    EXPECT_EQ(transfer.end, transfer_end::declined);
    EXPECT_TRUE(rig.garmin.arrived.empty());
}

TEST_F(GarTracks, MorePacketsThanACountCanSayAreRefused)
{
    rig.protocols("L001 A010 A100 D103 A300 D300");
    limit(gar_place::mtrack, 100000);
    trackp_rec p = some_point(0);
    for (int n = 0; n < 65536; ++n)
        track_append(p);
    rig.run("T_S");
    EXPECT_EQ(op2.anz.caption, "8121 65536 65535 #");
    EXPECT_TRUE(rig.garmin.arrived.empty());
}

TEST_F(GarTracks, ReadBackAsTheyWereWritten)
{
    add_track("TOUR&R ", 0, 3);
    add_track("", 10, 2);
    add_track("BACK", 20, 2);
    const std::vector<trackp_rec> before(store.trk.begin(), store.trk.begin() + 7);
    rig.run("T_S");
    rig.holds(sim_list::track, arrived());
    track_clear();
    rig.run("T_L");
    ASSERT_EQ(store.trk_top, 6);
    for (int n = 0; n < 7; ++n) {
        EXPECT_EQ(point(n).pos, before[static_cast<std::size_t>(n)].pos) << n;
        EXPECT_EQ(point(n).zeit, before[static_cast<std::size_t>(n)].zeit) << n;
        EXPECT_EQ(point(n).alt, before[static_cast<std::size_t>(n)].alt) << n;
        EXPECT_EQ(point(n).neu, before[static_cast<std::size_t>(n)].neu) << n;
    }
    EXPECT_EQ(point(5).kom, "BACK&BL"); // its colour came back as a code
}

TEST_F(GarTracks, CancelOnReadingKeepsThePointsThatCame)
{
    std::vector<sim_packet> packets{header_packet("TOUR")};
    for (int n = 0; n < 9; ++n)
        packets.push_back(point_packet(n, 301));
    rig.holds(sim_list::track, packets);
    int acks = 0;
    rig.on_write = [&](int, const std::string& bytes) {
        if (bytes == wire(6, le16(34)) && ++acks == 3)
            op.Abbr.click();
        return true;
    };
    rig.run("T_L");
    EXPECT_EQ(transfer.end, transfer_end::cancelled);
    EXPECT_EQ(store.trk_top, 3);
    EXPECT_NE(rig.transcript.find("> " + hex(wire(12, le16(6)))), std::string::npos);
    EXPECT_FALSE(rig.line.opened);
}
