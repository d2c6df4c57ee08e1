/// A batch of incoming waypoints: its memory between the calls of wayp_insert (core/store.h).
/// Files, the clipboard and receivers hand their records in one by one; each is normalised,
/// compared with the store and appended, taken over a stored one, or kept out. The batch counts
/// what happened, remembers answers, and knows which incoming key ended under which stored key, so
/// that the routes of the same source still find their points. Whoever opened a batch closes it,
/// also after batch_cancelled or another exception: the close shows the routes that were changed
/// and clears the memory.
#pragma once

#include "core/store.h"

#include <array>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace velkoro {

/// Modes of wayp_insert. Those of one record are 0, -1, -2 and -3: odd ones compare with the whole
/// store, those below -1 mark the row.
inline constexpr int batch_reconcile = -20;   ///< open; records without a match are dropped
inline constexpr int batch_open = -10;        ///< open; compare with the store as it is now
inline constexpr int batch_close = 1;         ///< report; empty when all records were new
inline constexpr int batch_close_changes = 2; ///< report without the count of unchanged ones
inline constexpr int batch_close_all = 3;     ///< report in any case

enum class conflict_kind { by_name = 0, by_position = 1 };

struct insert_batch {
    bool open = false;
    bool cancelled = false; ///< a question was answered by ending the batch
    bool reconcile = false;
    int last = -1; ///< highest index that incoming records are compared with
    int added = 0, changed_by_name = 0, changed_by_position = 0, unchanged = 0;
    /// Per conflict_kind. 0 to 2: ask. 3 to 5: the answer plus 3. From 6: ask only at a distance of
    /// 1 unit and more, else the answer plus 6.
    std::array<int, 2> memory{};
    bool warned_long = false, warned_characters = false;
    std::unordered_map<std::string, std::string> final_keys{}; ///< incoming key to stored key
    std::set<int> changed_routes{};                            ///< numbers, from 1
    std::vector<std::string> elsewhere{}; ///< names of kept-out records with another position
};
inline insert_batch batch;

/// Appends a waypoint whose name and comment give a new key, without a batch, and makes its row,
/// marked when asked. Under the reference's name its position becomes refp_pos. Returns its index;
/// throws std::overflow_error when the store is full.
int wp_append(const wayp_rec& rec, bool mark = false);

/// The key under which the store holds the incoming key; the key itself when nothing changed.
std::string_view batch_key(const std::string& incoming);

} // namespace velkoro
