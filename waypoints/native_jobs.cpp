#include "waypoints/native_jobs.h"

#include "core/files.h"
#include "core/form1.h"
#include "core/hooks.h"
#include "core/job.h"
#include "core/settings.h"
#include "core/shell.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"
#include "waypoints/backup.h"
#include "waypoints/native_t.h"
#include "waypoints/native_wp.h"

#include <optional>
#include <utility>

namespace velkoro {
namespace {

/// What the two kinds of file differ in around their jobs.
struct native_kind {
    const char* format;
    const char* extension;
    const char* backup_extension;
    const char* read_job;
    const char* write_job;
    const char* last_key;
    int not_native, newer; ///< text numbers
    std::string settings_state::*file;
    std::string settings_state::*other_file;
};
constexpr native_kind wp_kind{"Waypoints",
                              ".wp",
                              ".wpb",
                              "W_O",
                              "W_C",
                              "Last_W0",
                              2520,
                              2520,
                              &settings_state::wp_file,
                              &settings_state::trk_file};
constexpr native_kind t_kind{"Track",
                             ".t",
                             ".tb",
                             "T_O",
                             "T_C",
                             "Last_T0",
                             2380,
                             2390,
                             &settings_state::trk_file,
                             &settings_state::wp_file};

bool has(const std::string& flags, char part)
{
    return flags.find(part) != std::string::npos;
}

void show_end(native_end end, const native_kind& kind)
{
    switch (end) {
    case native_end::not_native: say(kind.not_native, buttons::ok, icon::critical); break;
    case native_end::newer: say(kind.newer, buttons::ok, icon::critical); break;
    case native_end::damaged: say(2430, buttons::ok, icon::critical); break;
    case native_end::broken_off: say(2420, buttons::ok, icon::exclamation); break;
    case native_end::full:
        say(2033, buttons::ok, icon::exclamation, std::to_string(wp_limit));
        break;
    case native_end::whole:
    case native_end::declined: break;
    }
}

/// The bytes of the job's file, or a message and nothing.
std::optional<std::string> job_file()
{
    native_job.done = false;
    op.akt.caption = shown_path(path_name(native_job.path));
    std::optional<std::string> bytes = read_file(native_job.path);
    if (!bytes)
        say(7740, buttons::ok, icon::critical, shown_path(native_job.path));
    return bytes;
}

void read_ended(native_end end, const native_kind& kind, bool was_empty)
{
    native_job.end = end;
    native_job.done = true;
    if (was_empty)
        settings.*kind.file =
            end == native_end::whole && path_extension(native_job.path) != kind.backup_extension
                ? native_job.path
                : std::string();
    if (end == native_end::whole)
        last_put(kind.last_key, native_job.path);
    show_end(end, kind);
}

/// Whether the target takes a section: it has content. A file that a reader would refuse or leave
/// ahead of its end takes none: `refused` says why.
bool takes_section(const native_kind& kind, native_end (*end_of)(std::string_view),
                   std::optional<native_end>& refused)
{
    if (!has(native_job.flags, 'A') && !has(native_job.flags, 'U'))
        return false;
    const std::optional<std::string> old = read_file(native_job.path);
    if (!old || old->empty())
        return false;
    if (const native_end end = end_of(*old); end != native_end::whole) {
        show_end(end, kind);
        refused = end;
    }
    return true;
}

void put_bytes(const std::string& bytes, bool section)
{
    if (section)
        append_file(native_job.path, bytes);
    else
        replace_file(native_job.path, bytes);
}

void write_ended(native_end end)
{
    native_job.end = end;
    native_job.done = true;
    if (end == native_end::broken_off)
        say(2500);
}

native_end wp_end(std::string_view bytes)
{
    return wp_info(bytes).end;
}

native_end t_end(std::string_view bytes)
{
    return t_info(bytes).end;
}

// Files and dialogs
// ---------------------------------------------------------------------------------------------------------------

file_request dialog(const native_kind& kind, int title)
{
    const std::string last = real_path(last_path(kind.last_key));
    file_request request;
    request.title = text(title);
    request.folder = path_folder(last);
    request.name = path_name(last);
    return request;
}

/// The name from the dialog with the extension of its kind; "" when cancelled or taken.
std::string ask_target(const native_kind& kind)
{
    file_request request = dialog(kind, 1950);
    request.filters = {{std::string("VELkoro ") + kind.format, std::string("*") + kind.extension}};
    const std::optional<std::string> chosen = platform.save_file(request);
    if (!chosen || chosen->empty())
        return {};
    std::string path = *chosen;
    if (path_extension(path) != kind.extension) {
        path += kind.extension;
        // The dialog has asked about the name that was typed, not about this one.
        if (file_exists(path) &&
            say(1970, buttons::yes_no, icon::question, shown_path(path)) != answer::yes)
            return {};
    }
    return path;
}

bool save(const native_kind& kind, int mode, bool& dirty)
{
    std::string path = settings.*kind.file;
    if (mode == 1 || path.empty() || path.ends_with('/') || path.ends_with('\\'))
        path = ask_target(kind);
    if (path.empty())
        return false;
    if (path == settings.*kind.other_file) {
        say(1960);
        return false;
    }
    native_job = {};
    native_job.path = path;
    native_job.format = kind.format;
    // What changes while the job serves events is not saved for sure, and sets the flag again.
    const bool was_dirty = std::exchange(dirty, false);
    run_job(kind.write_job);
    const bool saved = native_job.done && native_job.end == native_end::whole;
    if (saved) {
        settings.*kind.file = path;
        last_put(kind.last_key, path);
    } else {
        dirty = dirty || was_dirty;
    }
    shell_show_state();
    return saved;
}

std::vector<std::string> files_to_read()
{
    std::vector<std::string> paths;
    for (std::string* pending : {&settings.wp_pending, &settings.trk_pending})
        if (!pending->empty())
            paths.push_back(real_path(std::exchange(*pending, {})));
    if (!paths.empty())
        return paths;
    file_request request = dialog(wp_kind, 7655);
    request.name.clear();
    request.filters = {{text(7654), "*.wp *.wpb *.t *.tb"}};
    request.many = true;
    return platform.open_files(request);
}

} // namespace

void D_W_Lesen()
try {
    if (native_job.format != wp_kind.format)
        return;
    const std::optional<std::string> bytes = job_file();
    if (!bytes)
        return;
    const wp_read_result result = read_wp(*bytes);
    op2.anz.caption = result.report;
    read_ended(result.end, wp_kind, result.was_empty);
} catch (...) {
    trap("D_W_Lesen");
}

void D_T_Lesen()
try {
    if (native_job.format != t_kind.format)
        return;
    const std::optional<std::string> bytes = job_file();
    if (!bytes)
        return;
    const t_read_result result = read_t(*bytes);
    read_ended(result.end, t_kind, result.was_empty);
} catch (...) {
    trap("D_T_Lesen");
}

void D_W_Schreiben()
try {
    if (native_job.format != wp_kind.format)
        return;
    native_job.done = false;
    op.akt.caption = shown_path(path_name(native_job.path));
    std::optional<native_end> refused;
    wp_write_options options{.flags = native_job.flags, .routes = native_job.routes};
    options.section = takes_section(wp_kind, wp_end, refused);
    if (refused)
        return;
    const wp_write_result result = write_wp(options);
    put_bytes(result.bytes, options.section);
    write_ended(result.end);
} catch (...) {
    trap("D_W_Schreiben");
}

void D_T_Schreiben()
try {
    if (native_job.format != t_kind.format)
        return;
    native_job.done = false;
    op.akt.caption = shown_path(path_name(native_job.path));
    std::optional<native_end> refused;
    t_write_options options{.first = native_job.first, .last = native_job.last};
    options.section = takes_section(t_kind, t_end, refused);
    if (refused)
        return;
    const t_write_result result = write_t(options);
    put_bytes(result.bytes, options.section);
    write_ended(result.end);
} catch (...) {
    trap("D_T_Schreiben");
}

bool is_track_file(const std::string& path)
{
    const std::string extension = path_extension(path);
    if (extension == t_kind.extension || extension == t_kind.backup_extension)
        return true;
    if (extension == wp_kind.extension || extension == wp_kind.backup_extension)
        return false;
    return read_file(path).value_or("").starts_with(t_magic);
}

bool native_read(const std::vector<std::string>& paths)
{
    bool all = true;
    for (const std::string& path : paths) {
        const native_kind& kind = is_track_file(path) ? t_kind : wp_kind;
        native_job = {};
        native_job.path = path;
        native_job.format = kind.format;
        run_job(kind.read_job);
        const native_end end = native_job.end;
        all = all && native_job.done && (end == native_end::whole || end == native_end::declined);
        if (end == native_end::broken_off)
            break;
    }
    shell_show_state();
    return all;
}

bool native_write(const std::string& path)
{
    const native_kind& kind = is_track_file(path) ? t_kind : wp_kind;
    native_job.path = path;
    native_job.format = kind.format;
    native_job.done = false;
    run_job(kind.write_job);
    return native_job.done && native_job.end == native_end::whole;
}

bool wayp_save(int mode)
try {
    return save(wp_kind, mode, store.wp_dirty);
} catch (...) {
    trap("wayp_save");
    return false;
}

bool track_save(int mode)
try {
    return save(t_kind, mode, store.trk_dirty);
} catch (...) {
    trap("track_save");
    return false;
}

void native_files_install()
{
    job.jobs["W_O"] = D_W_Lesen;
    job.jobs["W_C"] = D_W_Schreiben;
    job.jobs["T_O"] = D_T_Lesen;
    job.jobs["T_C"] = D_T_Schreiben;
    Form1.Wayp_Datei_lesen.click = [] {
        try {
            native_read(files_to_read());
        } catch (...) {
            trap("Wayp_Datei_lesen");
        }
    };
    Form1.Wayp_Datei_Speich[0].click = [] { wayp_save(0); };
    Form1.Wayp_Datei_Speich[1].click = [] { wayp_save(1); };
    hooks.wayp_save = wayp_save;
    hooks.track_save = track_save;
}

} // namespace velkoro
