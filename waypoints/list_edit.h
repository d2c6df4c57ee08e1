/// Commands of the waypoint list that go beyond order and marks: renaming in place, marking a
/// group, and a new waypoint as the mean of the marked ones.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

/// Gives the waypoint of a row a new name: in upper case, cleaned, cut to the name limit, made
/// unique. Routes follow and are told of (text 4340). Nothing usable left of the text: a beep, the
/// name stays.
void row_rename(int row, const std::string& text);

/// Rows of the group that a row belongs to, in row order: those whose comment begins with the same
/// "@" and three characters; a row without such a comment goes by its name without the digits at
/// its end ("CAMP1" and "CAMP" belong to "CAMP12", "WAY7" does not). Fewer than two rows are no
/// group: empty.
std::vector<int> group_rows(int row);

/// Appends the mean of these waypoints, given by store index: mean position and mean of the known
/// altitudes, symbol of the first, today's date, a name of its own. Returns its index, -1 for fewer
/// than two.
int append_mean(const std::vector<int>& indexes);

/// Puts the handlers in place.
void list_edit_install();

} // namespace velkoro
