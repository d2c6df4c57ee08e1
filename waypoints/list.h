/// `Waypl2`, the waypoint list: the user's order of the waypoints, and their marks.
/// A row is the bridge from a place on the screen to a record: its data is the store index. Rows
/// are cheap, one small record each; what they say is made when they are shown (row_text.h). The
/// store tells the list what happened through hooks; everything that works on marked waypoints
/// asks it through hooks.marked_rows.
#pragma once

#include "core/window.h"
#include "waypoints/row_text.h"

#include <cstdint>
#include <vector>

namespace velkoro {

struct wayp_list_state {
    std::vector<int> row_of{};    ///< row by store index; valid while `row_of_good`
    bool row_of_good = false;     ///< false after rows changed their places
    std::vector<char> snapshot{}; ///< marks by store index, for mark_recover
    int marked_now = 0;           ///< marked rows as of `states_version`
    std::uint64_t states_version = 0;
    std::vector<int> refp_index{};  ///< store indexes behind the entries of `refp`
    std::uint64_t refp_version = 0; ///< version of the rows that `refp` was made from
    int marks = 0;                  ///< marked rows at the last count
    bool said_empty = false;        ///< the status line says that there are no waypoints
};
inline wayp_list_state wayp_list;

/// Makes the columns and puts handlers and hooks in place.
void wayp_list_install();

/// True when the row is marked; false outside the list.
bool wp_mark(int row);
/// Store index of a row, -1 outside the list.
int wp_index(int row);
/// Row of a store index, -1 when it has none.
int wp_row(int index);

/// Shows one waypoint's row anew, and marks it when asked; index -1: all rows.
void row_refresh(int index, bool mark);
/// Makes all rows anew, in store order and unmarked.
void list_refill();
/// Adds rows of records that have none and drops rows without a record.
void list_update();

/// Counts the marks; with more than one, shows the count and keeps the marks for mark_recover.
void mark_count();
/// To be called after every change of marks: the commands follow at once, the count when the user
/// pauses.
void marks_changed();
/// Keeps the present marks by store index.
void mark_snapshot();
/// Enables the commands that need rows or marks.
void list_states();
/// The words of an empty list in the status line come and go with its rows.
void status_line();
/// Makes the entries of the reference drop-down if the rows have changed since.
void refp_fill();

} // namespace velkoro
