/// Hash tables beside the waypoint array: one over the keys, one over the positions without their
/// ten low bits. A search gives exactly what a walk over the array from index 0 gives, whatever the
/// number of waypoints that share a key or a position; the work is that of one look-up. The store's
/// own operations keep the tables: they drop a record before its name, comment or position changes
/// and put it back afterwards.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace velkoro {

struct pos_rec;

/// Groups of array indexes whose records are equal in what the table is about. Within a group the
/// indexes ascend, so that the first of the array is found without a walk; a group of one, the
/// common case, needs no memory of its own.
struct record_groups {
    struct group {
        std::uint32_t hash = 0;
        std::int32_t next = -1;           ///< in the same bucket, or in the free list
        std::int16_t first = -1;          ///< lowest index
        std::vector<std::int16_t> rest{}; ///< all others, ascending
    };
    std::vector<group> groups{};
    std::vector<std::int32_t> buckets{}; ///< first group, -1 none; the size is a power of two
    std::int32_t free_group = -1;
};

struct store_index {
    record_groups keys{}, places{};
    int count = 0; ///< records in the tables; -1: made anew at the next search
    /// Key of a name that was taken, and the last candidate that name_unique found taken on its way
    /// from there. Good until a key leaves the store.
    std::unordered_map<std::string, std::string> taken{};
};

/// Enters a record as it stands in the array; its index is at most wp_top.
void index_put(int index);
/// Takes a record out; it still has the name, comment and position it was put with.
void index_drop(int index);
/// Makes both tables anew from the array.
void index_rebuild();

/// First index in 0 to last_index other than skip_index with the key of name and comment, else -1.
int index_find_key(std::string_view name, std::string_view comment, int skip_index, int last_index);
/// First index in 0 to last_index with that position but for its ten low bits, else -1.
int index_find_pos(const pos_rec& pos, int last_index);

} // namespace velkoro
