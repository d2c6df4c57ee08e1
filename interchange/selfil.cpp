#include "interchange/selfil.h"

#include "coords/coord_text.h"
#include "core/files.h"
#include "core/form1.h"
#include "core/hooks.h"
#include "core/num_text.h"
#include "core/platform.h"
#include "core/settings.h"
#include "core/store.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"
#include "interchange/foreign_jobs.h"
#include "waypoints/native_jobs.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace velkoro {
namespace {

constexpr const char* native_rows[] = {"VELkoro Waypoints *.wp", "VELkoro Waypoints Backup *.wpb"};
constexpr const char* time_pictures[] = {"yyyy-mm-dd hh:nn:ss", "dd.mm.yyyy hh:nn:ss",
                                         "dd-mmm-yy hh:nn:ss"};
constexpr char separators[] = {';', ',', '\t'};
constexpr int most_name_length = 99;

const char* last_key()
{
    return selfil_run.saving ? "Last_W_C" : "Last_W_O";
}

/// The format of the chosen row; null: native.
const format_row* chosen_format()
{
    const int i = selfil.filform.selected;
    return i >= 0 && i < static_cast<int>(selfil_run.rows.size())
               ? selfil_run.rows[static_cast<std::size_t>(i)]
               : nullptr;
}

bool routes_wanted()
{
    return selfil.ausw_r.checked || selfil.ausw_rm.checked;
}

/// "*.wp;*.wpb", the patterns at the end of a row text.
std::string_view patterns_of(std::string_view row)
{
    const std::size_t blank = row.rfind(' ');
    return blank == std::string_view::npos ? row : row.substr(blank + 1);
}

/// Good until the rows are filled anew.
std::string_view chosen_row()
{
    const control& c = selfil.filform;
    return c.selected >= 0 && c.selected < static_cast<int>(c.items.size())
               ? std::string_view(c.items[static_cast<std::size_t>(c.selected)])
               : std::string_view{};
}

// Rows, folder and name
// -------------------------------------------------------------------------------------------------

void fill_rows()
{
    selfil_run.rows.clear();
    selfil.filform.items.clear();
    const auto put = [](const std::string& row, const format_row* format) {
        selfil.filform.items.push_back(row);
        selfil_run.rows.push_back(format);
    };
    put(native_rows[0], nullptr);
    if (!selfil_run.saving)
        put(native_rows[1], nullptr);
    for (const format_row& row : formats())
        if (selfil_run.saving ? row.write != nullptr : row.read != nullptr)
            put(selfil_run.saving ? export_text(row) : import_text(row), &row);
    selfil.filform.selected = 0;
}

void choose_row(const std::string& row)
{
    const auto hit = std::ranges::find(selfil.filform.items, row);
    if (hit != selfil.filform.items.end())
        selfil.filform.selected = static_cast<int>(hit - selfil.filform.items.begin());
}

void choose_row(const format_row* format)
{
    const auto hit = std::ranges::find(selfil_run.rows, format);
    if (hit != selfil_run.rows.end())
        selfil.filform.selected = static_cast<int>(hit - selfil_run.rows.begin());
}

/// The row and the folder of the last time; before the first one those of the native files.
void recall_last()
{
    std::string folder = ini_get("Main", last_key());
    const std::string row(trim(cut_token(folder, "|")));
    choose_row(row);
    const std::string last = real_path(last_path("Last_W0"));
    selfil.pathnam.text = shown_path(folder.empty() ? path_folder(last) : folder);
    if (selfil_run.saving && !chosen_format())
        selfil.filnam.text = shown_path(
            path_name(settings.wp_file.empty() ? last : std::string_view(settings.wp_file)));
}

void keep_last(const std::string& path)
{
    ini_put("Main", last_key(), std::string(chosen_row()) + "|" + path_folder(path));
}

/// The extension that a file of the chosen row has.
std::string_view row_extension()
{
    const format_row* format = chosen_format();
    if (format && routes_wanted() && !format->route_extension.empty())
        return format->route_extension;
    std::string_view patterns = patterns_of(chosen_row());
    std::string_view first = next_field(patterns, ';');
    if (first.starts_with('*'))
        first.remove_prefix(1);
    return first;
}

bool extension_fits(std::string_view extension)
{
    const format_row* format = chosen_format();
    if (format && !format->route_extension.empty())
        return extension == row_extension();
    return has_pattern(patterns_of(chosen_row()), extension);
}

/// A name for saving gets the extension of its row.
void mend_extension()
{
    std::string& name = selfil.filnam.text;
    if (!selfil_run.saving || trim(name).empty())
        return;
    const std::string extension = path_extension(name);
    if (extension_fits(extension))
        return;
    const bool foreign_one =
        equal_nocase(extension, ".wp") || std::ranges::any_of(formats(), [&](const format_row& r) {
            return has_pattern(r.export_patterns, extension);
        });
    if (foreign_one)
        name.resize(name.size() - extension.size());
    name += row_extension();
}

// What shows
// -------------------------------------------------------------------------------------------------

/// Of a row of options one is on: the first one that can be, when the chosen one cannot.
void mend_selection()
{
    control* const options[] = {&selfil.ausw_b, &selfil.ausw_w, &selfil.ausw_wm, &selfil.ausw_r,
                                &selfil.ausw_rm};
    const auto on =
        std::ranges::find_if(options, [](const control* c) { return c->checked && c->enabled; });
    control* const stays =
        on != std::end(options)
            ? *on
            : *std::ranges::find_if(options, [](const control* c) { return c->enabled; });
    for (control* c : options)
        c->checked = c == stays;
}

void show_selection()
{
    const format_row* format = chosen_format();
    const bool routes = store.rou_top >= 0 && (!format || format->holds.routes);
    const bool together = !format || (format->holds.routes && format->route_extension.empty());
    selfil.ausw_wm.enabled = !hooks.marked_rows().empty();
    selfil.ausw_r.enabled = selfil.ausw_rm.enabled = routes;
    selfil.ausw_b.enabled = together;
    mend_selection();
    selfil.routen_m.enabled = selfil.ausw_rm.checked;
}

void show_options()
{
    const format_row* format = chosen_format();
    const unsigned options = format ? format->options : 0;
    const auto has = [options](unsigned o) { return (options & o) != 0; };
    selfil.posform.visible = has(opt_posform);
    selfil.Trenn.visible = has(opt_separator);
    selfil.Zeitf.visible = has(opt_time);
    selfil.naml.visible = has(opt_name_length);
    selfil.beschr.visible = has(opt_comment);
    selfil.gestalt.visible = selfil_run.saving;
    selfil.inhalt.visible = selfil_run.saving;
    // A grid that the list is shown in is a further entry where the format can hold it.
    std::vector<std::string> forms = {signed_format()};
    const auto& of_list = Form1.posform.items;
    for (std::size_t i = 0; i < of_list.size() && i <= fmt_seconds; ++i)
        forms.push_back(of_list[i]);
    const int shown = Form1.posform.selected;
    const bool grid = has(opt_grids) && shown > fmt_seconds && shown < std::ssize(of_list);
    if (grid)
        forms.push_back(of_list[static_cast<std::size_t>(shown)]);
    if (forms != selfil.posform.items) {
        selfil.posform.items = forms;
        selfil.posform.selected = grid                                 ? fmt_seconds + 2
                                  : shown >= 0 && shown <= fmt_seconds ? shown + 1
                                                                       : 1;
    }
}

std::vector<int> marked_routes()
{
    std::vector<int> chosen;
    for (const list_row& row : selfil.routen_m.rows.rows)
        if (row.marked)
            chosen.push_back(row.data);
    return chosen;
}

void show_count()
{
    const int waypoints = store.wp_top + 1, routes = store.rou_top + 1;
    std::string& shown = selfil.akt.caption;
    shown.clear();
    if (!selfil_run.saving) {
        if (selfil_run.chosen.size() > 1)
            shown = text(8009, static_cast<long long>(selfil_run.chosen.size()));
        return;
    }
    if (selfil.ausw_w.checked)
        shown = text(8004, waypoints);
    else if (selfil.ausw_wm.checked)
        shown = text(8005, static_cast<long long>(hooks.marked_rows().size()));
    else if (selfil.ausw_r.checked)
        shown = text(8006, routes);
    else if (selfil.ausw_rm.checked)
        shown = text(8007, static_cast<long long>(marked_routes().size()));
    else
        shown = text(8008, waypoints, routes);
}

void show_all()
{
    show_selection();
    show_options();
    mend_extension();
    show_count();
}

void fill_routes()
{
    row_list& list = selfil.routen_m.rows;
    list.columns = {{.heading = text(7990), .width = 200, .stretch = true}};
    list.rows.clear();
    for (int r = 0; r <= store.rou_top; ++r)
        list.rows.push_back(
            {.data = r,
             .cells = {pic(r, "00") + ": " +
                       std::string(trim(store.rou[static_cast<std::size_t>(r)].nam))}});
    list.changed();
}

void fill_lists()
{
    const std::string tab = text(8010);
    selfil.Trenn.items = {";", ",", tab};
    if (selfil.Trenn.selected < 0)
        selfil.Trenn.selected = 0;
    selfil.Zeitf.items.clear();
    for (const std::string picture : time_pictures) {
        std::string shown = picture; // as users know it: minutes are "mm" behind the hours
        std::ranges::replace(shown, 'n', 'm');
        for (std::size_t i = 0; i < std::min(shown.find(' '), shown.size()); ++i)
            shown[i] = upper(shown[i]);
        selfil.Zeitf.items.push_back(shown);
    }
    if (selfil.Zeitf.selected < 0)
        selfil.Zeitf.selected = 0;
    fill_routes();
}

void load()
{
    selfil.form.tag = selfil_run.saving ? "7656" : "7655";
    selfil.form.width = selfil.form.height = -1; // reading takes less room than saving
    selfil_run.chosen.clear();
    fill_rows();
    fill_lists();
    recall_last();
    // All of it, unless something is marked by the user.
    for (control* c : {&selfil.ausw_w, &selfil.ausw_wm, &selfil.ausw_r, &selfil.ausw_rm})
        c->checked = false;
    selfil.ausw_b.checked = true;
    show_all();
    selfil.form.focus = &selfil.filnam;
}

// Browsing
// -------------------------------------------------------------------------------------------------

/// Patterns for a file dialog: blanks between them.
std::string dialog_patterns(std::string_view patterns)
{
    std::string out(patterns);
    std::ranges::replace(out, ';', ' ');
    return out;
}

void take_chosen(std::vector<std::string> paths)
{
    if (paths.empty())
        return;
    selfil.pathnam.text = shown_path(path_folder(paths.front()));
    selfil.filnam.text.clear();
    for (const std::string& path : paths)
        selfil.filnam.text.append(selfil.filnam.text.empty() ? "" : "; ")
            .append(shown_path(path_name(path)));
    selfil_run.chosen = std::move(paths);
    selfil_run.chosen_name = selfil.filnam.text;
    selfil_run.chosen_folder = selfil.pathnam.text;
}

/// The row that a file belongs to, when the chosen one does not fit.
void follow_file(const std::string& path)
{
    const std::string extension = path_extension(path);
    if (has_pattern(patterns_of(chosen_row()), extension))
        return;
    if (const format_row* format = format_of_file(extension, read_file(path).value_or("")))
        choose_row(format);
    else if (extension == ".wpb")
        choose_row(native_rows[1]);
    else
        selfil.filform.selected = 0;
}

void browse()
try {
    file_request request;
    request.title = text(selfil_run.saving ? 7656 : 7655);
    request.folder = real_path(selfil.pathnam.text);
    if (selfil_run.saving) {
        request.name = selfil.filnam.text;
        request.filters = {{std::string(chosen_row()), dialog_patterns(patterns_of(chosen_row()))}};
        if (const auto path = platform.save_file(request); path && !path->empty())
            take_chosen({*path});
        mend_extension();
        return;
    }
    request.many = true;
    std::string all = "*.wp *.wpb *.t *.tb";
    for (const format_row* format : selfil_run.rows)
        if (format)
            all += " " + dialog_patterns(format->import_patterns);
    request.filters = {{text(8011), all}, {text(7654), "*.wp *.wpb *.t *.tb"}};
    for (std::size_t i = 0; i < selfil_run.rows.size(); ++i)
        if (const format_row* format = selfil_run.rows[i])
            request.filters.push_back(
                {selfil.filform.items[i], dialog_patterns(format->import_patterns)});
    take_chosen(platform.open_files(request));
    if (!selfil_run.chosen.empty())
        follow_file(selfil_run.chosen.front());
    show_all();
} catch (...) {
    trap("durch_Click");
}

// OK
// -------------------------------------------------------------------------------------------------

/// The files that name and folder stand for.
std::vector<std::string> named_files()
{
    if (!selfil_run.chosen.empty() && selfil.filnam.text == selfil_run.chosen_name &&
        selfil.pathnam.text == selfil_run.chosen_folder)
        return selfil_run.chosen;
    const std::string name(trim(selfil.filnam.text));
    if (name.empty())
        return {};
    if (name.starts_with('/'))
        return {selfil_run.saving ? name : real_path(name)};
    std::string folder(trim(selfil.pathnam.text));
    if (!folder.empty() && !folder.ends_with('/'))
        folder += '/';
    if (selfil_run.saving)
        return {real_path(folder) + name};
    return {real_path(folder + name)};
}

bool is_native(const std::string& path)
{
    const std::string extension = path_extension(path);
    return extension == ".wp" || extension == ".wpb" || extension == ".t" || extension == ".tb";
}

void read_files(const std::vector<std::string>& paths, const format_row* format)
{
    for (const std::string& path : paths)
        if (is_native(path) ||
            (!format && !format_of_file(path_extension(path), read_file(path).value_or(""))))
            native_read({path});
        else
            foreign_read({path},
                         format && has_pattern(format->import_patterns, path_extension(path))
                             ? format
                             : nullptr);
}

std::string flags_of_selection()
{
    if (selfil.ausw_w.checked)
        return "W";
    if (selfil.ausw_wm.checked)
        return "WM";
    if (selfil.ausw_r.checked)
        return "R";
    return selfil.ausw_rm.checked ? "RM" : "WR";
}

export_options chosen_options(const format_row& format)
{
    export_options o = export_defaults(format);
    o.flags = flags_of_selection();
    o.routes = marked_routes();
    if ((format.options & opt_posform) != 0) {
        const int i = selfil.posform.selected;
        o.sign = i == 0;
        o.fmt = i > fmt_seconds + 1 ? Form1.posform.selected : std::max(i - 1, 0);
    }
    if ((format.options & opt_separator) != 0 && selfil.Trenn.selected >= 0)
        o.separator = separators[selfil.Trenn.selected % std::ssize(separators)];
    if ((format.options & opt_time) != 0 && selfil.Zeitf.selected >= 0)
        o.time_picture = time_pictures[selfil.Zeitf.selected % std::ssize(time_pictures)];
    if ((format.options & opt_name_length) != 0)
        o.name_length = static_cast<int>(
            std::clamp(val(selfil.naml.text), 0.0, static_cast<double>(most_name_length)));
    if ((format.options & opt_comment) != 0)
        o.comments = selfil.beschr.checked;
    return o;
}

/// The whole list becomes the file in use; a part of it is a copy beside.
bool write_native(const std::string& path)
{
    if (selfil.ausw_b.checked || (selfil.ausw_w.checked && store.rou_top < 0)) {
        const std::string before = std::exchange(settings.wp_file, path);
        if (wayp_save(0))
            return true;
        settings.wp_file = before;
        return false;
    }
    if (path == settings.wp_file) {
        say(8012, buttons::ok, icon::exclamation);
        return false;
    }
    native_job = {};
    native_job.flags = flags_of_selection();
    native_job.routes = marked_routes();
    return native_write(path);
}

bool write_file_named(const std::string& path)
{
    const format_row* format = chosen_format();
    return format ? foreign_write(path, *format, chosen_options(*format)) : write_native(path);
}

/// Whether a file in the way may be replaced. The dialog behind `durch` has asked already.
bool may_replace(const std::string& path)
{
    return !file_exists(path) || selfil_run.chosen == std::vector<std::string>{path} ||
           say(1970, buttons::yes_no, icon::question, shown_path(path)) == answer::yes;
}

void accept()
try {
    mend_extension();
    const std::vector<std::string> paths = named_files();
    if (paths.empty()) {
        selfil.form.focus = &selfil.filnam;
        say(8013);
        return;
    }
    if (selfil_run.saving) {
        if (!may_replace(paths.front()))
            return;
        keep_last(paths.front());
        close_window(selfil.form);
        write_file_named(paths.front());
        return;
    }
    for (const std::string& path : paths)
        if (!file_exists(path)) {
            say(7740, buttons::ok, icon::critical, shown_path(path));
            selfil.form.focus = &selfil.filnam;
            return;
        }
    keep_last(paths.front());
    const format_row* format = chosen_format();
    close_window(selfil.form);
    read_files(paths, format);
} catch (...) {
    trap("selfil_OK");
}

} // namespace

selfil_window selfil;

selfil_window::selfil_window()
{
    form.load = load;
    form.translated = [] {
        fill_lists();
        show_count();
    };
    filform.click = show_all;
    for (control* c : {&ausw_w, &ausw_wm, &ausw_r, &ausw_rm, &ausw_b})
        c->click = show_all;
    routen_m.row_click = [](int) { show_count(); };
    durch.click = browse;
    OK.click = accept;
    Abbr.click = [] { close_window(selfil.form); };
}

void selfil_read()
try {
    selfil_run.saving = false;
    run_window(selfil.form);
} catch (...) {
    trap("selfil_read");
}

void selfil_write()
try {
    selfil_run.saving = true;
    run_window(selfil.form);
} catch (...) {
    trap("selfil_write");
}

void selfil_install()
{
    selfil_run = {};
    // Files that another instance, the command line or a drop named are read without the window.
    Form1.Wayp_Datei_lesen.click = [named = Form1.Wayp_Datei_lesen.click] {
        const bool pending = !settings.wp_pending.empty() || !settings.trk_pending.empty();
        if (pending && named)
            named();
        else
            selfil_read();
    };
    Form1.Wayp_Datei_Speich[1].click = selfil_write;
}

} // namespace velkoro
