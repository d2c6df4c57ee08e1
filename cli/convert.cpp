#include "cli/command.h"
#include "cli/json_out.h"
#include "cli/messages.h"
#include "cli/reading.h"
#include "core/code_page.h"
#include "core/files.h"
#include "core/form1.h"
#include "core/job.h"
#include "core/num_text.h"
#include "core/store.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "waypoints/backup.h"
#include "waypoints/native_t.h"
#include "waypoints/native_wp.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <memory>
#include <optional>
#include <stdexcept>

namespace velkoro {
namespace {

struct convert_options {
    std::vector<std::string> paths{}; // IN... OUT
    std::vector<std::string> select{};
    bool append = false, reconcile = false;
    std::string format{}, datum{}, title{}; // UTF-8
    bool has_title = false;
};

/// Chooses an entry by its text or its number; the handler runs as for the user's choice.
void choose(control& drop_down, const std::string& wanted, const char* what)
{
    const auto place = std::ranges::find(drop_down.items, wanted);
    int index = static_cast<int>(place - drop_down.items.begin());
    if (place == drop_down.items.end() && is_number(wanted))
        index = to_i32(val(wanted));
    if (index < 0 || index >= static_cast<int>(drop_down.items.size()))
        throw std::runtime_error(std::string(what) + " \"" + wanted + "\" is not in the list");
    if (drop_down.selected == index)
        return;
    drop_down.selected = index;
    if (drop_down.change)
        drop_down.change();
}

void apply_head_options(const convert_options& o)
{
    if (!o.format.empty()) // the format first: a grid brings a datum of its own
        choose(Form1.posform, from_utf8(o.format), "the coordinate format");
    if (!o.datum.empty())
        choose(Form1.Datum, from_utf8(o.datum), "the datum");
    if (o.has_title)
        Form1.wayp_titel.text = store.trk_title = from_utf8(o.title);
}

/// The writers' flags: what is to be written, and "A" or "U" behind it.
std::string flags_of(const convert_options& o)
{
    std::string flags;
    for (const std::string& part : o.select)
        flags += part;
    if (flags.find_first_of("WR") == std::string::npos)
        flags += "WR";
    if (o.append)
        flags += 'A';
    if (o.reconcile)
        flags += 'U';
    return flags;
}

bool add_to_existing(const std::string& flags)
{
    return flags.find_first_of("AU") != std::string::npos;
}

/// The bytes for the target and whether they are all that was asked for.
std::pair<std::string, bool> bytes_for(file_kind kind, const std::string& flags, bool section)
{
    if (kind == file_kind::track) {
        t_write_result result = write_t({.section = section});
        return {std::move(result.bytes), result.end == native_end::whole};
    }
    wp_write_options options{.flags = flags, .section = section};
    // Without a list of routes on a screen every route counts as marked.
    for (int i = 0; i <= store.rou_top; ++i)
        options.routes.push_back(i);
    wp_write_result result = write_wp(options);
    return {std::move(result.bytes), result.end == native_end::whole};
}

void write_target(const std::string& path, file_kind kind, const std::string& flags)
{
    const std::optional<std::string> old = read_file(path);
    const bool section = add_to_existing(flags) && old && !old->empty();
    if (section && kind_of_file("", *old) != kind)
        throw std::runtime_error(shown_path(path) + ": not a file to append to");
    const auto [bytes, whole] = bytes_for(kind, flags, section);
    end_progress();
    if (section)
        append_file(path, bytes);
    else
        replace_file(path, bytes);
    if (!whole)
        say(2500);
}

int run_convert(const convert_options& o)
{
    const std::string& target = o.paths.back();
    const file_kind kind = kind_of_name(target);
    if (!read_files({o.paths.begin(), o.paths.end() - 1}))
        return cli_fail("nothing was read, so nothing is written");
    apply_head_options(o);
    write_target(target, kind, flags_of(o));
    if (cli.json)
        print_json({{"target", json_text(shown_path(target))}});
    return cli_exit_code();
}

} // namespace

cli_action declare_convert(CLI::App& command)
{
    const auto o = std::make_shared<convert_options>();
    command.add_option("FILE", o->paths, "IN... OUT: files to read, in this order, and the target")
        ->required()
        ->expected(2, 1 << 20)
        ->type_name("IN... OUT");
    command
        .add_option("--select", o->select,
                    "what is written: W, WM (marked), R, RM, U, A; several with commas")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->check(CLI::IsMember({"W", "WM", "R", "RM", "U", "A"}))
        ->type_name("LIST");
    auto* append = command.add_flag("--append", o->append, "OUT keeps what it holds");
    command
        .add_flag("--reconcile", o->reconcile,
                  "OUT keeps what it holds; when it is read, the added part updates it")
        ->excludes(append);
    command.add_option("--format", o->format, "coordinate format of OUT's head: name or number")
        ->type_name("FMT");
    command.add_option("--datum", o->datum, "datum of OUT's head: a row of Datum.ini")
        ->type_name("D");
    command
        .add_option_function<std::string>(
            "--title", [o](const std::string& text) { o->title = text, o->has_title = true; },
            "title of the list or the track")
        ->type_name("TEXT");
    command.callback([o] {
        if (!o->paths.empty() && kind_of_name(o->paths.back()) == file_kind::unknown)
            throw CLI::ValidationError(o->paths.back(),
                                       "the extension of OUT is of no known format");
    });
    return [o] { return run_convert(*o); };
}

} // namespace velkoro
