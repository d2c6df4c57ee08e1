#include "core/position_formats.h"
#include "core/shell_parts.h"

#include "core/cmd_open.h"
#include "core/files.h"
#include "core/form1.h"
#include "core/hooks.h"
#include "core/ins_activate.h"
#include "core/num_text.h"
#include "core/platform.h"
#include "core/sellang.h"
#include "core/settings.h"
#include "core/shell.h"
#include "core/text_tools.h"
#include "core/texts.h"

#include <algorithm>
#include <filesystem>
#include <tuple>

namespace velkoro {
namespace {

// English, German, French, Italian, in groups of twelve, so that a month is its place modulo 12.
constexpr const char* built_in_months = "JAN,FEB,MAR,APR,MAY,JUN,JUL,AUG,SEP,OCT,NOV,DEC,"
                                        "JAN,FEB,MRZ,APR,MAJ,JUN,JUL,AUG,SEP,OKT,NOV,DEZ,"
                                        "JAN,FEV,MAR,AVR,MAI,JUI,JUL,AOU,SEP,OCT,NOV,DEC,"
                                        "GEN,FEB,MAR,APR,MAG,GIU,LUG,AGO,SET,OTT,NOV,DIC";
constexpr std::int32_t usual_scale = 50000, least_scale = 100, most_scale = 100000000;

bool remember_folders()
{
    store.refp_name = "??????";
    folders.start = std::filesystem::current_path().string();
    if (!folders.start.ends_with('/'))
        folders.start += '/';
    if (!folders.program.empty())
        std::filesystem::current_path(folders.program);
    return true;
}

bool empty_stores()
{
    settings.list_back = own_colour;
    store_reset();
    return true;
}

bool activate_tables()
{
    for (const char* name : {"Datum", "symbol_2", "symbol_3"})
        ins_activate(name);
    return true;
}

bool find_ini()
{
    settings.ini_path = folders.program + "velkoro.ini";
    return true;
}

bool keep_on_screen()
{
    window& w = Form1.form;
    const auto area = platform.screen();
    if (!area || w.width < 0)
        return true;
    const double excess = w.left + w.width - ((*area)[0] + (*area)[2]);
    if (excess > 0)
        w.left -= excess;
    return true;
}

bool read_months()
{
    std::string own = ini_get("Main", "Month");
    if (!own.empty() && !own.ends_with(','))
        own += ',';
    settings.month_names = own + built_in_months;
    return true;
}

// The language of the desktop where the table has it; it is proposed, not stored.
int locale_column()
{
    const std::string lang = platform.locale_language();
    const std::string_view name = lang == "de"   ? "Deutsch"
                                  : lang == "en" ? "English"
                                  : lang == "fr" ? "Fran"
                                  : lang == "it" ? "Italian"
                                                 : "";
    const auto& all = text_table.languages;
    const auto hit = std::ranges::find_if(
        all, [&](const std::string& l) { return !name.empty() && l.starts_with(name); });
    return hit == all.end() ? 0 : static_cast<int>(hit - all.begin());
}

bool choose_language()
{
    settings.lang = settings_read_language();
    if (settings.lang >= 0) {
        text_table.language = settings.lang;
        return true;
    }
    texts_load(); // for the names of the languages
    text_table.language = locale_column();
    if (platform.screen())
        run_window(sellang.form);
    return true;
}

bool load_texts()
{
    texts_load();
    language_menu();
    translate_form(Form1.form);
    return true;
}

bool default_files()
{
    const std::pair<const char*, const char*> defaults[] = {{"Last_W0", "sample.wp|Waypoints"},
                                                            {"Last_T0", "sample.t|Track"},
                                                            {"Last_K0", "sample.cal|maps"}};
    for (const auto& [key, value] : defaults)
        if (ini_get("Main", key).empty())
            ini_put("Main", key, value);
    return true;
}

bool decide_instance()
{
    if (!platform.instance_running()) {
        platform.instance_listen([](const std::string& line) {
            Form1.DDE_1.text = line;
            Form1.DDE_1.change();
        });
        return true;
    }
    const answer a = platform.message({.text = text(990),
                                       .buttons = buttons::yes_no,
                                       .icon = icon::question,
                                       .preset = 2,
                                       .number = 990});
    if (a == answer::yes) {
        Form1.form.caption = "VELkoro2";
        return true;
    }
    try {
        Form1.DDE_2.text = cmd_for_others(shell.command_line);
        platform.instance_send(Form1.DDE_2.text);
    } catch (...) {
        // A failed link ends this instance in silence.
    }
    return false;
}

bool fill_position_formats()
{
    Form1.posform.items = position_formats();
    Form1.posform.selected = 0;
    return true;
}

bool read_profiles()
{
    profiles_load();
    profile_menu();
    return true;
}

bool read_settings()
{
    settings_read();
    return true;
}

bool move_old_port()
{
    settings_migrate_port();
    settings_show();
    return true;
}

bool list_zone_from_home()
{
    settings.list_zone = settings.home_zone;
    return true;
}

bool read_datum_table()
{
    if (file_exists(program_path("Datum.ini")))
        hooks.read_datums();
    else
        platform.message({.text = text(1010, "Datum.ini", shown_path(folders.program)) +
                                  " - please follow the instructions in the file readme.txt",
                          .icon = icon::critical,
                          .number = 1010});
    return true;
}

bool read_scale()
{
    const double v = val(comma_to_dot(ini_get("Main", "Scale")));
    settings.scale = v == 0 ? usual_scale : to_i32(std::clamp<double>(v, least_scale, most_scale));
    return true;
}

bool read_options()
{
    std::string line = ini_get("Main", "Opt");
    for (control* c : {&Form1.sort, &Form1.posform, &Form1.Datum}) {
        const std::string part = cut_token(line, " ");
        const double n = val(part);
        if (!part.empty() && n >= 0 && n < static_cast<double>(c->items.size()))
            c->selected = static_cast<int>(n);
    }
    return true;
}

bool size_window()
{
    layout_read();
    columns_read();
    return true;
}

bool open_command_line()
{
    shell.running = true;
    cmd_open(shell.command_line, false);
    return true;
}

} // namespace

void shell_start_steps()
{
    const std::tuple<int, const char*, bool (*)()> steps[] = {
        {1, "folders", remember_folders},
        {2, "stores", empty_stores},
        {3, "ins_files", activate_tables},
        {4, "ini_path", find_ini},
        {5, "on_screen", keep_on_screen},
        {6, "month_names", read_months},
        {7, "language", choose_language},
        {8, "texts", load_texts},
        {9, "last_files", default_files},
        {10, "second_instance", decide_instance},
        {11, "position_formats", fill_position_formats},
        {12, "profiles", read_profiles},
        {13, "settings", read_settings},
        {14, "port", move_old_port},
        {15, "list_zone", list_zone_from_home},
        {16, "datums", read_datum_table},
        {17, "scale", read_scale},
        {18, "options", read_options},
        {19, "layout", size_window},
        {20, "command_line", open_command_line}};
    for (const auto& [number, name, run] : steps)
        shell_add(shell.start, number, name, run);
}

void layout_read()
{
    window& w = Form1.form;
    std::string line = ini_get("Main", "pos_main");
    line = line.substr(0, line.find(','));
    const bool stored = is_number(line.substr(0, line.find(' ')));
    if (stored)
        for (double* field : {&w.left, &w.top, &w.width, &w.height})
            *field = val(cut_token(line, " "));
    const auto area = platform.screen();
    if (!area || !stored)
        return;
    const double x = (*area)[0], y = (*area)[1], most_w = (*area)[2], most_h = (*area)[3];
    w.width = std::min(w.width, most_w);
    w.height = std::min(w.height, most_h);
    w.left = std::clamp(w.left, x, x + most_w - std::max(w.width, 0.0));
    w.top = std::clamp(w.top, y, y + most_h - std::max(w.height, 0.0));
}

void layout_write()
{
    const window& w = Form1.form;
    int list_width = 0;
    for (const list_column& c : Form1.Waypl2.rows.columns)
        list_width += c.width;
    if (w.width > 0) // never shown: nothing to remember
        ini_put("Main", "pos_main",
                pic(w.left, "0.0") + " " + pic(w.top, "0.0") + " " + pic(w.width, "0.0") + " " +
                    pic(w.height, "0.0") + "," + std::to_string(list_width));
    ini_put("Main", "scale", std::to_string(settings.scale));
    columns_write();
}

void columns_read()
{
    row_list& list = Form1.Waypl2.rows;
    std::string line = ini_get(settings.profile, "col_main");
    for (list_column& c : list.columns) {
        const double width = val(cut_token(line, " "));
        if (width >= 1 && width <= 10000) // anything else was never a width
            c.width = static_cast<int>(width);
    }
    list.changed();
}

void columns_write()
{
    std::string line;
    for (const list_column& c : Form1.Waypl2.rows.columns)
        line += (line.empty() ? "" : " ") + std::to_string(c.width);
    if (!line.empty())
        ini_put(settings.profile, "col_main", line);
}

} // namespace velkoro
