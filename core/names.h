/// Names of waypoints: their keys, the characters they may hold, and making them unique.
/// The key is what a route holds and what tells waypoints apart: the name, with the first four
/// characters of a comment that starts with "@" put in front. Such a comment is a namespace: two
/// waypoints of one name live side by side when their comments start differently.
#pragma once

#include <string>
#include <string_view>

namespace velkoro {

/// The part of a comment that belongs to the key: its first four characters when it starts with
/// "@", else nothing.
std::string_view key_prefix(std::string_view comment);

/// The key of a name with the comment it came with, or of a stored waypoint.
std::string wp_key(std::string_view name, std::string_view comment);
std::string wp_key(int index);

/// The normalised name: trimmed, in upper case, umlauts as one letter, what a receiver cannot show
/// replaced by "-". Mode 0 is for names, 1 for comments (a leading "@" and, with the extended
/// character set, punctuation stay), 2 keeps blanks but no punctuation. The extended character set
/// is store.wp_ext_chars.
std::string name_clean(std::string_view name, int mode);

/// What a name field holds while it is typed into: every character as name_clean has it in names.
/// None is added or dropped, so that the cursor keeps its place; blanks at the ends stay until the
/// name is taken.
std::string name_typed(std::string_view text);

/// Moves what a name holds past store.wp_name_max to the front of the comment, with a "<" behind
/// it, but behind the part of the comment that belongs to the key. False when the name is short
/// enough.
bool name_cut(std::string& name, std::string& comment);

/// Rewrites the name until wp_find_key no longer finds it in the whole store, leaving out
/// skip_index (-1 none): a number at its end is counted up, or a 1 is put there; a name too long
/// for wp_name_max loses characters ahead of the number. A name that is nothing but digits is the
/// one that may pass the limit, when all numbers of that length are taken.
void name_unique(std::string& name, std::string_view comment, int skip_index);

} // namespace velkoro
