#include "tools/receiver-sim/sim_faults.h"

#include <gtest/gtest.h>

namespace velkoro {
namespace {

using chunks = std::vector<sim_chunk>;

sim_faults with(const char* rule)
{
    sim_faults faults;
    faults.rules.push_back(*sim_fault_of(rule));
    return faults;
}

TEST(SimFaults, ReadsRulesByNumberByStepAndByChance)
{
    EXPECT_EQ(sim_fault_of("drop@3"), (sim_fault_rule{.what = sim_fault::drop, .at = 3}));
    EXPECT_EQ(sim_fault_of("delay=0.5@every4"),
              (sim_fault_rule{.what = sim_fault::delay, .seconds = 0.5, .every = 4}));
    EXPECT_EQ(sim_fault_of("corrupt@10%"),
              (sim_fault_rule{.what = sim_fault::corrupt, .probability = 0.1}));
}

TEST(SimFaults, RefusesWhatIsNoRule)
{
    for (const char* text : {"", "drop", "drop@", "drop@0", "drop@-1", "drop@3x", "lose@3",
                             "delay=@3", "delay=-1@3", "drop@every0", "drop@101%"})
        EXPECT_EQ(sim_fault_of(text), std::nullopt) << text;
}

TEST(SimFaults, HappenAtTheirPacketOnly)
{
    sim_faults faults = with("drop@2");
    EXPECT_EQ(sim_send(faults, "one"), (chunks{{0, "one"}}));
    EXPECT_EQ(sim_send(faults, "two"), chunks{});
    EXPECT_EQ(sim_send(faults, "three"), (chunks{{0, "three"}}));
}

TEST(SimFaults, ChangeTheBytesAsTheirNamesSay)
{
    sim_faults delay = with("delay=0.25@1"), corrupt = with("corrupt@1"), split = with("split=2@1"),
               repeat = with("repeat@1"), shorten = with("shorten@1");
    EXPECT_EQ(sim_send(delay, "abcd"), (chunks{{0.25, "abcd"}}));
    EXPECT_EQ(sim_send(corrupt, "abcd"), (chunks{{0, "abBd"}}));
    EXPECT_EQ(sim_send(split, "abcd"), (chunks{{0, "ab"}, {2, "cd"}}));
    EXPECT_EQ(sim_send(repeat, "abcd"), (chunks{{0, "abcd"}, {0, "abcd"}}));
    EXPECT_EQ(sim_send(shorten, "abcd"), (chunks{{0, "ab"}}));
}

TEST(SimFaults, ByChanceAreTheSameForTheSameSeed)
{
    sim_faults one = with("drop@30%"), other = with("drop@30%");
    int dropped = 0;
    for (int n = 0; n < 1000; ++n) {
        const chunks sent = sim_send(one, "x");
        EXPECT_EQ(sent, sim_send(other, "x"));
        dropped += sent.empty() ? 1 : 0;
    }
    EXPECT_GT(dropped, 250);
    EXPECT_LT(dropped, 350);
}

} // namespace
} // namespace velkoro
