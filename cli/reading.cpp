#include "cli/reading.h"

#include "cli/messages.h"
#include "core/code_page.h"
#include "core/files.h"
#include "core/form1.h"
#include "core/job.h"
#include "core/texts.h"
#include "interchange/import_job.h"
#include "waypoints/native_t.h"
#include "waypoints/native_wp.h"

#include <CLI/CLI.hpp>

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

/// Reads a file of another program. A malformed line is left out and told; the file counts as read.
native_end read_foreign(const format_row& format, std::string_view bytes, const std::string& path)
{
    const bool was_empty = store.wp_top < 0;
    import_result result = import_bytes(format, bytes, path_extension(path));
    refuse_if_nothing_read(result);
    end_progress();
    print_report(result.report);
    if (was_empty && !result.title.empty())
        Form1.wayp_titel.text = result.title;
    for (const import_remark& r : result.remarks_list)
        platform.message({.text = r.text,
                          .icon = r.number == 7960 ? icon::exclamation : icon::critical,
                          .number = r.number});
    if (result.end == native_end::broken_off)
        say(2420, buttons::ok, icon::exclamation);
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

source_kind kind_of_file(std::string_view path, std::string_view bytes, const format_row* from)
{
    if (bytes.starts_with(wp_magic))
        return {file_kind::waypoints};
    if (bytes.starts_with(t_magic))
        return {file_kind::track};
    if (from)
        return {file_kind::foreign, from};
    if (const file_kind native = kind_of_name(path); native != file_kind::unknown)
        return {native};
    if (const format_row* format = format_of_file(path_extension(path), bytes))
        return {file_kind::foreign, format};
    return {};
}

const format_row* format_option_row(const std::string& name, bool to_write)
{
    const format_row* row = format_of_text(from_utf8(name), true);
    if (row && (to_write ? row->write != nullptr : row->read != nullptr))
        return row;
    std::string names;
    for (const format_row& each : formats())
        if (to_write ? each.write != nullptr : each.read != nullptr)
            names.append(names.empty() ? "" : ", ").append(each.name);
    throw CLI::ValidationError(name, "no format of that name can be " +
                                         std::string(to_write ? "written" : "read") +
                                         "; there are: " + names);
}

void declare_from(CLI::App& command, const format_row*& from)
{
    command
        .add_option_function<std::string>(
            "--from", [&from](const std::string& name) { from = format_option_row(name, false); },
            "format of the foreign files: a name of the format table; default: by extension and "
            "content")
        ->type_name("ROW");
}

bool read_one_file(const std::string& path, const format_row* from)
{
    const std::optional<std::string> bytes = read_file(path);
    if (!bytes) {
        cli_fail(shown_path(path) + ": cannot be read");
        return false;
    }
    const auto [kind, format] = kind_of_file(path, *bytes, from);
    if (kind == file_kind::unknown) {
        cli_fail(shown_path(path) + ": not a file of a known kind");
        return false;
    }
    const bool foreign = kind == file_kind::foreign;
    const native_end end = foreign ? read_foreign(*format, *bytes, path) : read_bytes(kind, *bytes);
    end_progress();
    if (foreign ? end == native_end::whole : report_end(end, kind))
        return true;
    const bool nothing = end == native_end::not_native || end == native_end::newer;
    cli_fail(shown_path(path) + (nothing                   ? ": not read"
                                 : end == native_end::full ? ": the list takes no more waypoints"
                                                           : ": not all of it was read"));
    return false;
}

bool read_files(const std::vector<std::string>& paths, const format_row* from)
{
    bool any = false;
    for (const std::string& path : paths) {
        const auto before = std::pair{store.wp_top + store.rou_top, store.trk_top};
        const bool whole = read_one_file(path, from);
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
