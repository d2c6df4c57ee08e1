/// The order of the waypoint list: by the entries of the drop-down `sort` or a click on a heading.
/// A sort prepares one text for each row, so that comparing plain texts gives the order of names,
/// numbers and dates alike. It serves events when it takes long; the rows are exchanged in one go
/// at its end, so a sort that is broken off leaves them as they were.
#pragma once

#include "core/form1.h"

namespace velkoro {

struct list_sort_state {
    bool sorting = false;    ///< wayp_sort_do is under way and may be pumping
    bool no_sort = false;    ///< sort_apply does nothing
    bool break_sort = false; ///< the running sort stops, the rows keep their order
    bool sort_again = false; ///< it starts anew with the order then in force
    double progress_due = 0; ///< platform.ticks when a sort next shows how far it is
};
inline list_sort_state list_sort;

/// Puts handlers and hooks of the order in place; part of wayp_list_install.
void list_sort_install();

/// The order chosen in the drop-down.
sort_entry order_in_force();
/// True when the order's variable column shows a distance.
bool depends_on_unit(sort_entry order);
/// Headings, alignment of the variable column and the arrow, as the order in force has them.
void show_headings();

/// Sorts the rows by an order, equal ones keep their places. A change of the rows or `break_sort`
/// (the Escape key) meanwhile ends it, and the rows stay as they are.
void wayp_sort_do(sort_entry order);
/// Sorts by the order in force unless sorting is suppressed.
void sort_apply();

} // namespace velkoro
