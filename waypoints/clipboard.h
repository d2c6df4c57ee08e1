/// Waypoints on the clipboard, as plain text: copy, cut, paste and test.
/// The text starts with a line "Velkoro waypoints", tab, checksum; each further line is one
/// waypoint, its fields separated by tabs: name, comment, latitude and longitude (semicircles),
/// date (seconds since 31 December 1989), proximity (100 m), altitude (metres) and symbol word (low
/// byte the symbol, high byte its mode), the numbers as decimal integers. Pieces of track travel
/// under "Velkoro track" with a body of their own. The writers and parsers here touch no window;
/// the handlers are at the end.
#pragma once

#include "core/store.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

inline constexpr std::string_view clip_waypoints_word = "Velkoro waypoints";
inline constexpr std::string_view clip_track_word = "Velkoro track";

/// Modes of clip_check, to be added.
inline constexpr int clip_report = 1;         ///< only show what the clipboard holds
inline constexpr int clip_ask = 2;            ///< ask before a text with a wrong checksum is used
inline constexpr int clip_waypoints_only = 4; ///< a track text counts as nothing
inline constexpr int clip_track_only = 8;     ///< a waypoint text counts as nothing

/// A clipboard text taken apart; `body` is a part of the text given.
struct clip_text {
    bool track = false;         ///< a piece of track, else waypoints
    bool checksum_good = false; ///< the checksum is there and is that of the body
    std::string_view body{};    ///< the lines behind the first one
    bool operator==(const clip_text&) const = default;
};

/// Checksum of a body: for each byte c, h becomes (h + c) x 2, brought back into -1000000000 to
/// 1000000000 by 2000000000.
std::int32_t clip_checksum(std::string_view body);

/// The clipboard text of a body under a word, with its checksum.
std::string clip_compose(std::string_view word, std::string_view body);

/// Takes a clipboard text apart; nothing when the text up to its first tab is neither word. With
/// only_waypoints or only_track in `mode` the other kind is nothing too. The first line may end in
/// CR LF, LF or CR.
std::optional<clip_text> clip_parse(std::string_view text, int mode = 0);

/// Names of a body, the first field of each line, blank-separated and cut as in all messages.
std::string clip_names(std::string_view body);

/// The line of a waypoint, with its end. Tabs and line breaks within a text become blanks.
std::string clip_line(const wayp_rec& w);
/// The waypoint of a line without its end. A line is refused (nothing) without a name, without a
/// latitude or longitude that is a number, or with a number outside the range of its field; date,
/// proximity, altitude or symbol that are missing or no integers keep their defaults. Fields behind
/// the eighth are ignored.
std::optional<wayp_rec> clip_waypoint(std::string_view line);

/// Looks at the platform's clipboard and returns the body of its text. Nothing when there is no
/// such text, or the user says no to a wrong checksum (clip_ask). With clip_report the number of
/// lines and the names are shown, with a line about a wrong checksum.
std::optional<std::string> clip_check(int mode);

/// Puts the waypoints of these store indexes on the clipboard; none at all leave it as it is.
void clip_copy(const std::vector<int>& indexes);

/// Puts handlers on B_kop, B_aus, B_einfüg and B_test.
void clipboard_install();

} // namespace velkoro
