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
    bool sorting = false;         ///< wayp_sort_do is under way and may be pumping
    bool no_sort = false;         ///< sort_apply does nothing
    bool break_sort = false;      ///< the running sort stops, the rows keep their order
    bool sort_again = false;      ///< it starts anew with the order then in force
    double progress_due = 0;      ///< platform.ticks when a sort next shows how far it is
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

/// Sorts the rows by the order of the drop-down `sort`, equal ones keep their places. Serves events
/// when it takes long; a change of the rows or `break_sort` (the Escape key) meanwhile ends it, and
/// the rows stay as they are.
void wayp_sort_do(sort_entry order);
/// Sorts by the order in force unless sorting is suppressed.
void sort_apply();

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
/// Makes the entries of the reference drop-down if the rows have changed since.
void refp_fill();

} // namespace velkoro
