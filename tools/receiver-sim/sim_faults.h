/// Line faults of the simulated receiver: what it sends is dropped, delayed, corrupted, split,
/// repeated or shortened, at chosen packets or at random with a fixed seed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

enum class sim_fault { drop, delay, corrupt, split, repeat, shorten };

/// When a fault happens.
struct sim_fault_rule {
    sim_fault what = sim_fault::drop;
    double seconds = 1.5;   ///< of a delay, and between the two halves of a split
    int at = 0;             ///< the packet counted from 1, 0 not by number
    int every = 0;          ///< each n-th packet, 0 not
    double probability = 0; ///< of each packet, 0 to 1
    bool operator==(const sim_fault_rule&) const = default;
};

/// Reads "drop@3", "delay=0.5@every4", "corrupt@10%"; nothing when the text is none of them.
std::optional<sim_fault_rule> sim_fault_of(std::string_view text);

/// Bytes for the line, and how long after the ones ahead of them they leave.
struct sim_chunk {
    double delay_s = 0;
    std::string bytes{};
    bool operator==(const sim_chunk&) const = default;
};

struct sim_faults {
    std::vector<sim_fault_rule> rules{};
    std::uint64_t seed = 1;
    int count = 0; ///< packets so far
};

/// The packet's bytes as they leave the receiver; nothing when the packet is lost. The first rule
/// that applies is the one.
std::vector<sim_chunk> sim_send(sim_faults& faults, std::string bytes);

} // namespace velkoro
