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
#include "interchange/export_job.h"
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
    const format_row* from = nullptr;
    const format_row* to = nullptr;
    export_options foreign{}; // what a foreign OUT takes beside the selection
};

/// A coordinate format that only the files of other programs have: degrees with a sign.
bool is_signed_format(const std::string& format)
{
    return from_utf8(format) == signed_format();
}

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
    // The format first: a grid brings a datum of its own.
    if (!o.format.empty() && !is_signed_format(o.format))
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
    if (section && kind_of_file("", *old).kind != kind)
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

/// The format of a foreign OUT; null for a native one. What is there decides when it is added to.
const format_row* foreign_target(const convert_options& o)
{
    const std::string& target = o.paths.back();
    if (o.to)
        return o.to;
    if (kind_of_name(target) != file_kind::unknown)
        return nullptr;
    const std::string extension = path_extension(target);
    if (o.append || o.reconcile)
        if (const std::optional<std::string> old = read_file(target))
            if (const format_row* row = format_of_file(extension, *old); row && row->write)
                return row;
    return format_to_write(extension);
}

void write_foreign(const convert_options& o, const format_row& format, const std::string& flags)
{
    const std::string& target = o.paths.back();
    export_options options = export_defaults(format);
    options.flags = flags;
    options.sign = is_signed_format(o.format);
    options.separator = o.foreign.separator != 0 ? o.foreign.separator : options.separator;
    if (!o.foreign.time_picture.empty())
        options.time_picture = o.foreign.time_picture;
    options.name_length = o.foreign.name_length;
    options.comments = o.foreign.comments;
    for (int i = 0; i <= store.rou_top; ++i)
        options.routes.push_back(i);
    if (!o.datum.empty() && !format.datum.empty() && from_utf8(o.datum) != format.datum)
        throw std::runtime_error("files of the format " + std::string(format.name) +
                                 " are always on " + std::string(format.datum));
    const export_result result = export_bytes(format, options, path_extension(target));
    end_progress();
    write_file(target, result.bytes);
    if (result.end != native_end::whole)
        say(2500);
}

int run_convert(const convert_options& o)
{
    const std::string& target = o.paths.back();
    const format_row* format = foreign_target(o);
    std::vector<std::string> sources(o.paths.begin(), o.paths.end() - 1);
    // A foreign file has no sections: what it holds is read first and written again.
    if (format && (o.append || o.reconcile) && file_exists(target))
        sources.insert(sources.begin(), target);
    if (!read_files(sources, o.from))
        return cli_fail("nothing was read, so nothing is written");
    apply_head_options(o);
    if (format)
        write_foreign(o, *format, flags_of(o));
    else
        write_target(target, kind_of_name(target), flags_of(o));
    if (cli.json)
        print_json({{"target", json_text(shown_path(target))}});
    return cli_exit_code();
}

/// "tab", "\\t" or the character itself.
std::string separator_problem(const std::string& text, char& separator)
{
    const std::string s = from_utf8(text);
    separator = s == "tab" || s == "\\t" ? '\t' : s.size() == 1 ? s.front() : '\0';
    return separator == 0 ? "expected one character or tab" : "";
}

} // namespace

cli_action declare_convert(CLI::App& command)
{
    const auto o = std::make_shared<convert_options>();
    o->foreign.separator = 0;
    o->foreign.time_picture.clear();
    declare_from(command, o->from);
    command
        .add_option_function<std::string>(
            "--to", [o](const std::string& name) { o->to = format_option_row(name, true); },
            "format of OUT: a name of the format table; default: by its extension")
        ->type_name("ROW");
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
    command.add_option("--format", o->format, "coordinate format of OUT: name or number")
        ->type_name("FMT");
    command.add_option("--datum", o->datum, "datum of OUT: a row of Datum.ini")->type_name("D");
    command
        .add_option_function<std::string>(
            "--title", [o](const std::string& text) { o->title = text, o->has_title = true; },
            "title of the list or the track")
        ->type_name("TEXT");
    command
        .add_option_function<std::string>(
            "--separator",
            [o](const std::string& text) {
                if (const std::string problem = separator_problem(text, o->foreign.separator);
                    !problem.empty())
                    throw CLI::ValidationError("--separator", problem);
            },
            "between the fields of a text file: a character or tab")
        ->type_name("CHAR");
    command
        .add_option_function<std::string>(
            "--time", [o](const std::string& text) { o->foreign.time_picture = from_utf8(text); },
            "times in a text file, as \"yyyy-mm-dd hh:nn\"")
        ->type_name("PICTURE");
    command
        .add_option("--name-length", o->foreign.name_length,
                    "names in a foreign file are cut to so many characters")
        ->check(CLI::NonNegativeNumber)
        ->type_name("N");
    command.add_flag_callback(
        "--no-comments", [o] { o->foreign.comments = false; },
        "leaves the descriptions out of a foreign file");
    command.callback([o] {
        if (!o->paths.empty() && !o->to && kind_of_name(o->paths.back()) == file_kind::unknown &&
            !format_to_write(path_extension(o->paths.back())))
            throw CLI::ValidationError(o->paths.back(),
                                       "the extension of OUT is of no known format");
    });
    return [o] { return run_convert(*o); };
}

} // namespace velkoro
