#include "interchange/foreign_jobs.h"

#include "core/cmd_open.h"
#include "core/files.h"
#include "core/form1.h"
#include "core/job.h"
#include "core/shell.h"
#include "core/store.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"
#include "interchange/import_job.h"
#include "waypoints/native_title.h"

#include <algorithm>
#include <optional>

namespace velkoro {
namespace {

constexpr const char* read_job = "D_W_Lesen";
constexpr const char* write_job = "D_W_Schreiben";

void show_end(const import_result& result)
{
    if (result.end == native_end::broken_off)
        say(2420, buttons::ok, icon::exclamation);
    else if (result.end == native_end::full)
        say(2033, buttons::ok, icon::exclamation, std::to_string(wp_limit));
    else if (result.end == native_end::not_native)
        platform.message({.text = result.remarks,
                          .icon = icon::critical,
                          .number = result.remarks_list.front().number});
}

void read_one()
try {
    foreign_job.done = false;
    op.akt.caption = shown_path(path_name(foreign_job.path));
    const std::optional<std::string> bytes = read_file(foreign_job.path);
    if (!bytes) {
        say(7740, buttons::ok, icon::critical, shown_path(foreign_job.path));
        return;
    }
    const std::string extension = path_extension(foreign_job.path);
    const format_row* format =
        foreign_job.format ? foreign_job.format : format_of_file(extension, *bytes);
    if (!format) {
        say(7962, buttons::ok, icon::critical);
        return;
    }
    const bool was_empty = store.wp_top < 0;
    import_result result = import_bytes(*format, *bytes, extension);
    refuse_if_nothing_read(result);
    foreign_job.end = result.end;
    foreign_job.done = true;
    if (!result.title.empty())
        Form1.wayp_titel.text = joined_title(Form1.wayp_titel.text, result.title, was_empty);
    op2.anz.caption = result.report;
    if (result.end == native_end::whole) // a remark alone takes the first line
        (result.report.empty() ? op2.anz : op2.anz2).caption = result.remarks;
    show_end(result);
} catch (...) {
    trap(read_job);
}

void write_one()
try {
    foreign_job.done = false;
    op.akt.caption = shown_path(path_name(foreign_job.path));
    const export_result result =
        export_bytes(*foreign_job.format, foreign_job.options, path_extension(foreign_job.path));
    write_file(foreign_job.path, result.bytes);
    foreign_job.end = result.end;
    foreign_job.done = true;
    if (result.end == native_end::whole)
        op.anz.caption = "OK";
    else
        say(2500);
} catch (...) {
    trap(write_job);
}

} // namespace

bool foreign_read(const std::vector<std::string>& paths, const format_row* format)
{
    bool all = true;
    for (const std::string& path : paths) {
        foreign_job = {};
        foreign_job.path = path;
        foreign_job.format = format;
        run_job(read_job);
        all = all && foreign_job.done && foreign_job.end == native_end::whole;
        if (foreign_job.end == native_end::broken_off)
            break;
    }
    shell_show_state();
    return all;
}

bool foreign_write(const std::string& path, const format_row& format, const export_options& options)
{
    foreign_job = {};
    foreign_job.path = path;
    foreign_job.format = &format;
    foreign_job.options = options;
    run_job(write_job);
    return foreign_job.done && foreign_job.end == native_end::whole;
}

bool foreign_open(const std::string& path)
{
    const std::string extension = path_extension(path);
    const bool known = std::ranges::any_of(formats(), [&](const format_row& row) {
        return row.read && has_pattern(row.import_patterns, extension);
    });
    if (known)
        foreign_read({path});
    return known;
}

void foreign_jobs_install()
{
    foreign_job = {};
    job.jobs[read_job] = read_one;
    job.jobs[write_job] = write_one;
    cmd_opens.other = foreign_open;
}

} // namespace velkoro
