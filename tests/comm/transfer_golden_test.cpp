// What goes over the line in each session, byte by byte in both directions.
// tests/golden/transfers holds a transcript a session; VELKORO_GOLDEN=write writes them anew.
#include "comm/gar_codec_route.h"
#include "comm/gar_codec_wp.h"
#include "core/settings.h"
#include "tests/comm/transfer_rig.h"

#include <gtest/gtest.h>

using namespace velkoro;

namespace {

void a_small_store()
{
    const char* const names[] = {"HUT", "QUAY", "PASS"};
    for (int n = 0; n < 3; ++n) {
        wayp_rec w = some_waypoint(n);
        w.nam = names[n];
        w.kom = "";
        w.alt = static_cast<std::int16_t>(412 + n);
        w.prox = static_cast<std::int16_t>(n == 1 ? 5 : 0);
        wayp_insert(w, 0);
    }
    route_add({.nam = "HOME", .wps = "HUT$QUAY$PASS$", .anw = "$TRAIL&B$$"});
    for (int n = 0; n < 3; ++n) {
        trackp_rec p = some_point(n);
        if (n != 1) {
            p.neu = -1;
            p.kom = n == 0 ? "TOUR" : "";
        }
        track_append(p);
    }
}

class TransferGolden : public testing::Test {
protected:
    transfer_rig rig{};

    void SetUp() override
    {
        settings.garmin[static_cast<std::size_t>(gar_place::mprox)] = 10;
        rig.protocols("L001 A010 A100 D108 A201 D202 D108 D210 A301 D310 D301 A400 D108");
        a_small_store();
    }
    /// What the receiver was sent becomes what it holds.
    void swap_sides()
    {
        for (const auto& [list, packets] : rig.garmin.arrived)
            rig.garmin.memory[list] = packets;
        for (const std::string& s : rig.sentences)
            (s[5] == 'P'   ? rig.magellan.waypoints
             : s[4] == 'R' ? rig.magellan.routes
                           : rig.magellan.track)
                .push_back(s);
        rig.garmin.arrived.clear();
        rig.sentences.clear();
    }
    void check(const std::string& job, const std::string& name)
    {
        rig.transcript.clear();
        transfer.choice.routes = job == "R_S";
        rig.run(job);
        EXPECT_EQ(transfer.end, transfer_end::whole) << job;
        expect_golden_text("transfers", name + ".txt", rig.transcript);
    }
};

} // namespace

TEST_F(TransferGolden, OfAGarminReceiver)
{
    check("W_S", "garmin_write_waypoints");
    check("R_S", "garmin_write_routes");
    check("T_S", "garmin_write_tracks");
    swap_sides();
    check("W_L", "garmin_read_waypoints");
    check("R_L", "garmin_read_routes");
    check("T_L", "garmin_read_tracks");
}

TEST_F(TransferGolden, OfAMagellanReceiver)
{
    rig.speak_sentences();
    check("W_S", "magellan_write_waypoints");
    check("R_S", "magellan_write_routes");
    check("T_S", "magellan_write_tracks");
    swap_sides();
    check("W_L", "magellan_read_waypoints");
    check("R_L", "magellan_read_routes");
    check("T_L", "magellan_read_tracks");
}
