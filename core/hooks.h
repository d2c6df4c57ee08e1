/// What lower folders call and upper folders fill.
/// A hook is named after what happened or what is asked, not after who listens. Every default is
/// harmless.
#pragma once

#include "core/store.h"

#include <functional>
#include <string>
#include <vector>

namespace velkoro {

/// Answers to a conflict between a stored and an incoming waypoint.
enum class conflict_answer : std::int8_t {
    keep_old = 0,
    take_new = 1,
    keep_both = 2,
    cancel_batch = 3
};

struct conflict_question {
    int old_index = -1;
    wayp_rec* incoming = nullptr; ///< name and comment may be changed when both are kept
    bool by_position = false;
    bool silent = false;   ///< asked by the editor: the new one cannot replace the old one
    int skip_index = -1;   ///< stored waypoint that a new name may equal, -1 none
    bool remember = false; ///< set by the answer: the batch asks no more for this kind
};

/// A track that came from a receiver: its name, with a colour code behind it, and its points.
struct received_track {
    std::string name{};
    std::int32_t first = 0, last = -1; ///< store indexes
    bool operator==(const received_track&) const = default;
};

struct hook_table {
    /// A waypoint was appended: make its row; marked when asked.
    std::function<void(int index, bool marked)> row_added = [](int, bool) {};
    /// A waypoint's data changed: redraw its row; -1 all rows. `mark`: also mark it.
    std::function<void(int index, bool mark)> row_changed = [](int, bool) {};
    /// Waypoints were deleted and the store compacted. new_index[i] says where the record of the
    /// old index i stands now, -1 when it is gone; its size is the old wp_top + 1. Called once per
    /// deletion, so a list goes through its rows once: rows that are gone are erased, the others
    /// take their new index (and with it their key) and keep their place and mark.
    std::function<void(const std::vector<int>& new_index)> rows_compacted =
        [](const std::vector<int>&) {};
    /// All rows are to be made anew from the store.
    std::function<void()> rows_reset = [] {};
    /// Store indexes of the marked waypoints in row order.
    std::function<std::vector<int>()> marked_rows = [] { return std::vector<int>{}; };
    /// Store indexes of all waypoints in row order; default: store order.
    std::function<std::vector<int>()> list_order = {};
    std::function<void()> sort_rows = [] {};
    /// Counts the marks, shows the count and keeps them for mark_recover.
    std::function<void()> mark_count = [] {};
    /// Saves the waypoints and routes, or the track, to the file in use (mode 0; a missing name is
    /// asked for). False when nothing was saved.
    std::function<bool(int mode)> wayp_save = [](int) { return false; };
    std::function<bool(int mode)> track_save = [](int) { return false; };
    std::function<void()> map_changed = [] {};
    std::function<void()> route_refresh = [] {};
    /// Decides a conflict; the default takes the new one.
    std::function<conflict_answer(conflict_question&)> conflict_ask = [](conflict_question&) {
        return conflict_answer::take_new;
    };
    /// Distance between two positions in the selected distance unit.
    std::function<double(const pos_rec& target, const pos_rec& origin)> distance =
        [](const pos_rec&, const pos_rec&) { return 0.0; };
    /// Tracks were read from a receiver and stand in the store: choose among them. The default keeps
    /// them all.
    std::function<void(const std::vector<received_track>&)> tracks_received =
        [](const std::vector<received_track>&) {};
    /// Data are about to be read from the receiver at the user's command.
    std::function<void()> receiver_read_begins = [] {};
    /// Indexes of the routes that are chosen in the map's route filter.
    std::function<std::vector<int>()> chosen_routes = [] { return std::vector<int>{}; };
    /// Symbols are in use (symbol level above 0).
    std::function<bool()> symbols_in_use = [] { return true; };
    /// Reads Datum.ini and fills `Datum` and `posform`.
    std::function<void()> read_datums = [] {};
    /// Position of a waypoint as text in the active format and datum.
    std::function<std::string(const pos_rec&)> position_text = [](const pos_rec&) {
        return std::string{};
    };
    /// Units changed: rows and windows show them anew.
    std::function<void()> units_changed = [] {};
    /// The texts are those of another language now.
    std::function<void()> language_changed = [] {};
    /// The active profile is about to be left: write what belongs to it (window positions, column
    /// widths, map settings) into its section.
    std::function<void()> profile_leaving = [] {};
    /// Another profile's settings were read: redraw the list, apply its column widths.
    std::function<void()> profile_entered = [] {};
};
inline hook_table hooks;

} // namespace velkoro
