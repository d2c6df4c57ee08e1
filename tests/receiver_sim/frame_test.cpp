#include "tools/receiver-sim/sim_frame.h"

#include <gtest/gtest.h>

#include <random>

namespace velkoro {
namespace {

std::string bytes(std::string_view hex)
{
    std::string out;
    for (std::size_t i = 0; i + 1 < hex.size() + 1; i += 3)
        out += static_cast<char>(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16));
    return out;
}

sim_take feed(sim_unframer& in, std::string_view data)
{
    sim_take last = sim_take::more;
    for (const char c : data)
        last = in.take(c);
    return last;
}

TEST(SimFrame, BuildsThePublishedFrames)
{
    EXPECT_EQ(sim_frame({254, ""}), bytes("10 FE 00 02 10 03"));
    EXPECT_EQ(sim_frame({6, std::string("\xFF\0", 2)}), bytes("10 06 02 FF 00 F9 10 03"));
    EXPECT_EQ(sim_frame({12, std::string("\x07\0", 2)}), bytes("10 0C 02 07 00 EB 10 03"));
}

TEST(SimFrame, DoublesATenInSizeDataAndChecksum)
{
    EXPECT_EQ(sim_frame({27, std::string("\x10\0", 2)}), bytes("10 1B 02 10 10 00 D3 10 03"));
    EXPECT_EQ(sim_frame({17, std::string(16, '\0')}).substr(0, 4), bytes("10 11 10 10"));
    EXPECT_EQ(sim_frame({0xEF, std::string("\0", 1)}), bytes("10 EF 01 00 10 10 10 03"));
}

TEST(SimFrame, ReadsBackEveryPacketThatItBuilds)
{
    std::mt19937 random(20261121);
    sim_unframer in;
    for (int n = 0; n < 3000; ++n) {
        sim_packet packet{static_cast<int>(random() % 256), {}};
        if (packet.id == 0x10 || packet.id == 0x03)
            continue; // no packet has these ids
        for (std::size_t size = random() % 256; size > 0; --size)
            packet.data += static_cast<char>(random() % 3 == 0 ? 0x10 : random());
        ASSERT_EQ(feed(in, sim_frame(packet)), sim_take::packet) << n;
        ASSERT_EQ(in.packet, packet) << n;
    }
}

TEST(SimFrame, SkipsBytesAheadOfAFrame)
{
    sim_unframer in;
    EXPECT_EQ(feed(in, "abc" + sim_frame({254, ""})), sim_take::packet);
    EXPECT_EQ(in.packet.id, 254);
}

TEST(SimFrame, ReportsABadChecksumAndReadsTheNextFrame)
{
    sim_unframer in;
    std::string frame = sim_frame({35, "ABC"});
    frame[4] = 'X';
    EXPECT_EQ(feed(in, frame), sim_take::damaged);
    EXPECT_EQ(in.packet.id, 35);
    EXPECT_EQ(feed(in, sim_frame({35, "ABC"})), sim_take::packet);
}

TEST(SimFrame, ReportsAFrameThatBreaksOffWhenTheNextOneBegins)
{
    sim_unframer in;
    EXPECT_EQ(feed(in, sim_frame({35, "ABCDEF"}).substr(0, 6)), sim_take::more);
    const std::string next = sim_frame({12, "X"});
    EXPECT_EQ(in.take(next[0]), sim_take::more);
    EXPECT_EQ(in.take(next[1]), sim_take::damaged);
    EXPECT_EQ(feed(in, next.substr(2)), sim_take::packet);
    EXPECT_EQ(in.packet, (sim_packet{12, "X"}));
}

} // namespace
} // namespace velkoro
