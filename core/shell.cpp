#include "core/shell.h"

#include "core/cmd_open.h"
#include "core/files.h"
#include "core/form1.h"
#include "core/hooks.h"
#include "core/job.h"
#include "core/log.h"
#include "core/platform.h"
#include "core/settings.h"
#include "core/shell_parts.h"
#include "core/texts.h"
#include "core/trap.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace velkoro {
namespace {

constexpr double mark_delay_s = 0.5;  // after the last change of a sweep of clicks
constexpr double midnight_gap_s = 10; // less than that is the clock being set, not midnight
constexpr int last_save_step = 2;     // the shutdown steps that ask

bool waypoints_unsaved()
{
    return store.wp_dirty && (store.wp_top >= 0 || store.rou_top >= 0);
}

bool track_unsaved()
{
    return store.trk_dirty && store.trk_top >= 0;
}

// The question before data are lost. False: stay.
bool save_before_end(bool changed, int question, int failure, const std::string& path,
                     const std::function<bool(int)>& save)
{
    if (!changed)
        return true;
    const std::string name = path.empty() ? text(1330) : shown_path(path_name(path));
    switch (platform.message({.text = text(question, name),
                              .title = text(1040),
                              .buttons = buttons::yes_no_cancel,
                              .icon = icon::question,
                              .number = question})) {
    case answer::no: return true;
    case answer::yes:
        if (save(0))
            return true;
        say(failure, buttons::ok, icon::critical);
        return false;
    default: return false;
    }
}

std::string home_as_tilde(const std::string& path)
{
    const char* home = std::getenv("HOME");
    const std::string folder = home ? std::string(home) + "/" : "/";
    return folder != "/" && path.starts_with(folder) ? "~/" + path.substr(folder.size()) : path;
}

bool save_waypoints()
{
    return save_before_end(waypoints_unsaved(), 1030, 1050, settings.wp_file, hooks.wayp_save);
}

bool save_track()
{
    return save_before_end(track_unsaved(), 1060, 1070, settings.trk_file, hooks.track_save);
}

bool back_to_start_folder()
{
    std::error_code gone; // the folder may have been removed meanwhile
    if (!folders.start.empty())
        std::filesystem::current_path(folders.start, gone);
    return true;
}

bool write_options()
{
    options_write();
    return true;
}

bool write_layout()
{
    layout_write();
    return true;
}

bool end_program()
{
    shell.running = false;
    Form1.wayp_big_timer.enabled = false;
    log_close();
    platform.quit();
    return true;
}

bool open_waiting()
{
    while (job.code.empty() && !shell.waiting.empty()) {
        const std::string text = shell.waiting.front();
        shell.waiting.erase(shell.waiting.begin());
        cmd_open(text, false);
    }
    return true;
}

bool count_marks_when_due()
{
    if (shell.mark_defer == 0)
        return true;
    const double now = platform.clock();
    if (now > shell.mark_defer + mark_delay_s || now <= shell.mark_defer - midnight_gap_s)
        hooks.mark_count(); // clears it, unless the rows are just being made
    return true;
}

bool show_state()
{
    shell_show_state();
    return true;
}

void tick()
try {
    if (!shell.running)
        return;
    for (std::size_t i = 0; i < shell.periodic.size(); ++i)
        if (!shell.periodic[i].run())
            return;
} catch (...) {
    trap("wayp_big_timer");
}

void link_change()
{
    const std::string text = Form1.DDE_1.text;
    if (shell.running)
        cmd_open(text, false);
    else
        shell.waiting.push_back(text); // start-up has not come to its command line yet
    if (Form1.form.shown)
        platform.show(Form1.form);
}

} // namespace

void shell_add(std::vector<shell_step>& steps, int number, std::string name,
               std::function<bool()> run)
{
    const auto behind =
        std::ranges::find_if(steps, [&](const shell_step& s) { return s.number > number; });
    steps.insert(behind, {number, std::move(name), std::move(run)});
}

void shell_install()
{
    shell = {};
    shell_start_steps();

    shell_add(shell.periodic, 1, "waiting", open_waiting);
    shell_add(shell.periodic, 3, "mark_count", count_marks_when_due);
    shell_add(shell.periodic, 4, "state", show_state);

    shell_add(shell.shutdown, 1, "save_waypoints", save_waypoints);
    shell_add(shell.shutdown, 2, "save_track", save_track);
    shell_add(shell.shutdown, 3, "start_folder", back_to_start_folder);
    shell_add(shell.shutdown, 4, "options", write_options);
    shell_add(shell.shutdown, 5, "layout", write_layout);
    shell_add(shell.shutdown, 7, "end", end_program);

    shell_menu_handlers();
    Form1.form.keeps_state = true; // start-up has filled it before it is shown
    Form1.form.query_close = shell_close;
    Form1.Ende.click = [] { close_window(Form1.form); };
    Form1.DDE_1.change = link_change;
    Form1.wayp_big_timer.enabled = false;
    Form1.wayp_big_timer.tick = tick;
}

bool shell_start(const std::string& command_line)
{
    shell.command_line = command_line;
    text_table.regenerate = command_line == res_gen_command;
    try {
        bool opened = false;
        // By index: a step may pump events, and handlers may add steps.
        for (std::size_t i = 0; i < shell.start.size(); ++i) {
            const shell_step& step = shell.start[i];
            if (step.number >= 20 && !opened) { // only the command line comes after the load
                open_window(Form1.form);
                opened = true;
            }
            shell.step = step.number;
            shell.trail.push_back(step.name);
            if (!std::function(step.run)())
                return false;
        }
    } catch (...) {
        trap(("Form_Load at " + std::to_string(shell.step)).c_str());
    }
    if (!Form1.form.shown)
        open_window(Form1.form);
    shell_show_state();
    shell.running = true;
    Form1.wayp_big_timer.enabled = true;
    return true;
}

bool shell_close()
try {
    if (!job.code.empty()) { // the job ends first; the user asks again
        job.op_cancel = true;
        return false;
    }
    // By index: a step may pump events, and handlers may add steps.
    for (std::size_t i = 0; i < shell.shutdown.size(); ++i) {
        const shell_step step = shell.shutdown[i];
        shell.trail.push_back(step.name);
        try {
            if (!step.run())
                return false;
        } catch (...) {
            trap("Form_Unload");
            if (step.number <= last_save_step) // the data are not safe
                return false;
        }
    }
    return true;
} catch (...) {
    trap("Form_Unload");
    return false;
}

void options_write()
{
    ini_put("Main", "Opt",
            std::to_string(Form1.sort.selected) + " " + std::to_string(Form1.posform.selected) +
                " " + std::to_string(Form1.Datum.selected));
}

void shell_show_state()
{
    // The mark promises the question at the end: an empty list has nothing to save.
    const bool dirty = waypoints_unsaved() || track_unsaved();
    Form1.form.modified = dirty;
    const std::string& path = settings.wp_file.empty() ? settings.trk_file : settings.wp_file;
    Form1.form.text = shown_path(path_name(path)); // the title names it
    Form1.filnam.caption = shown_path(home_as_tilde(path)) + (dirty ? " *" : "");
    Form1.profil_anz.caption = text(7650, settings.profile);
}

} // namespace velkoro
