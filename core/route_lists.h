/// The four parallel lists of a route: keys, speeds, corrections and instructions.
/// Each is a text of tokens, each ended by "$"; the n-th token of each belongs to the n-th point. A
/// list may end early, its missing tokens are empty.
#pragma once

#include "core/store.h"

#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

/// True when the list holds the token.
bool list_holds(std::string_view list, std::string_view token);

/// The list with every token that equals `from` replaced by `to`.
std::string list_replace(std::string_view list, std::string_view from, std::string_view to);

/// Drops the points n whose keep[n] is false from all four lists. Points past the end of `keep`
/// stay, so that what a list holds beyond the last key keeps its order.
void route_keep(route_rec& route, const std::vector<bool>& keep);

/// Store indexes of a route's points in their order; a key without a waypoint has none.
std::vector<int> route_points(const route_rec& route);

/// Numbers as text, "1, 2, 5".
std::string number_list(const std::vector<int>& numbers);

/// Longest list of names that a message shows.
inline constexpr std::size_t name_list_limit = 140;
/// Names for a message: cut at name_list_limit characters, with " ..." behind.
std::string shown_names(std::string_view names);

/// Rewrites the key in every route that holds it. Returns the numbers of those routes, from 1.
std::vector<int> routes_rename(std::string_view old_key, std::string_view new_key);

} // namespace velkoro
