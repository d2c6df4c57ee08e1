/// Files named from outside: the command line, a second instance, a drop on the list.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace velkoro {

struct cmd_open_state {
    /// A file from outside that is no native one: true when somebody has opened it.
    std::function<bool(const std::string& path)> other = [](const std::string&) { return false; };
};
inline cmd_open_state cmd_opens;

/// Opens what the text names. Double quotes around it go. A path ending in ".wp" becomes the
/// pending waypoint file, one ending in ".t" the pending track file; a bare name lies in the folder
/// of the last file of its kind. A file of another kind goes to cmd_opens.other. Then the waypoint
/// read runs if a waypoint file is pending or `force` is on, and the map window or the track read
/// if a track file is. While a job is under way the text waits until the job has ended.
void cmd_open(const std::string& text, bool force);

/// The text that cmd_open of another process understands: a relative path that names a file from
/// the folder where this process was started becomes absolute; anything else stays.
std::string cmd_for_others(const std::string& text);

} // namespace velkoro
