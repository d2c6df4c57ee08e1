#include "cli/reading.h"

#include "cli/messages.h"
#include "core/files.h"
#include "core/job.h"
#include "core/texts.h"
#include "waypoints/native_t.h"
#include "waypoints/native_wp.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace velkoro {
namespace {

/// Reports how a file ended, by the texts of the desktop. True when it was read whole.
bool report_end(native_end end, file_kind kind)
{
    const bool is_track = kind == file_kind::track;
    switch (end) {
    case native_end::whole:
    case native_end::declined: return true; // the answer was --no
    case native_end::not_native: say(is_track ? 2380 : 2520, buttons::ok, icon::critical); break;
    case native_end::newer: say(is_track ? 2390 : 2520, buttons::ok, icon::critical); break;
    case native_end::damaged: say(2430, buttons::ok, icon::critical); break;
    case native_end::broken_off: say(2420, buttons::ok, icon::exclamation); break;
    case native_end::full: break; // the line below says it
    }
    return false;
}

/// The report of a batch is a result, not a failure: on the desktop it stands in a window of its
/// own.
void print_report(const std::string& report)
{
    if (!report.empty())
        cli_note(report);
}

native_end read_bytes(file_kind kind, std::string_view bytes)
{
    if (kind == file_kind::track)
        return read_t(bytes).end;
    const wp_read_result result = read_wp(bytes);
    print_report(result.report);
    return result.end;
}

} // namespace

file_kind kind_of_name(std::string_view path)
{
    const std::string extension = path_extension(path);
    if (extension == ".wp" || extension == ".wpb")
        return file_kind::waypoints;
    if (extension == ".t" || extension == ".tb")
        return file_kind::track;
    return file_kind::unknown;
}

file_kind kind_of_file(std::string_view path, std::string_view bytes)
{
    if (bytes.starts_with(wp_magic))
        return file_kind::waypoints;
    if (bytes.starts_with(t_magic))
        return file_kind::track;
    return kind_of_name(path);
}

bool read_one_file(const std::string& path)
{
    const std::optional<std::string> bytes = read_file(path);
    if (!bytes) {
        cli_fail(shown_path(path) + ": cannot be read");
        return false;
    }
    const file_kind kind = kind_of_file(path, *bytes);
    if (kind == file_kind::unknown) {
        cli_fail(shown_path(path) + ": not a file of a known kind");
        return false;
    }
    const native_end end = read_bytes(kind, *bytes);
    end_progress();
    if (report_end(end, kind))
        return true;
    const bool nothing = end == native_end::not_native || end == native_end::newer;
    cli_fail(shown_path(path) + (nothing                   ? ": not read"
                                 : end == native_end::full ? ": the list takes no more waypoints"
                                                           : ": not all of it was read"));
    return false;
}

bool read_files(const std::vector<std::string>& paths)
{
    bool any = false;
    for (const std::string& path : paths) {
        const auto before = std::pair{store.wp_top + store.rou_top, store.trk_top};
        const bool whole = read_one_file(path);
        any = any || whole || before != std::pair{store.wp_top + store.rou_top, store.trk_top};
    }
    return any;
}

std::string chosen_item(const control& drop_down)
{
    const auto i = static_cast<std::size_t>(std::max(drop_down.selected, 0));
    return drop_down.selected >= 0 && i < drop_down.items.size() ? drop_down.items[i] : "";
}

} // namespace velkoro
