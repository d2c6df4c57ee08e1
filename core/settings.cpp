#include "core/settings.h"

#include "core/files.h"
#include "core/form1.h"
#include "core/num_text.h"
#include "core/symbols.h"
#include "core/text_tools.h"

#include <algorithm>

namespace velkoro {
namespace {

// Weights of `Flags`.
constexpr int w_printer_off = 3, w_utm_zero = 6, w_km_off = 12, w_symbols = 24, w_blue = 120,
              w_alt_kom = 240, w_backup = 960, w_pc_clock = 1920;

int digit(int flags, int modulus, int weight)
{
    return flags % modulus / weight;
}

std::size_t within(int index, std::size_t count)
{
    return index >= 0 && static_cast<std::size_t>(index) < count ? static_cast<std::size_t>(index)
                                                                 : 0;
}

std::size_t at(gar_place place)
{
    return static_cast<std::size_t>(place);
}

int whole(std::string_view text)
{
    return static_cast<int>(std::clamp(fix(val(text)), -2147483648.0, 2147483647.0));
}

void read_garmin()
{
    settings.garmin = garmin_defaults;
    std::string line = ini_get(settings.profile, "Garmin");
    if (line.empty())
        settings.utm_zero = true;
    for (int& number : settings.garmin) {
        line = trim_left(line);
        if (line.empty())
            break;
        number = whole(cut_token(line, " "));
    }
    // A name has at least one character; the width is that of the record's field.
    const int length = gar_option(gar_place::mnaml);
    store.wp_name_max = static_cast<std::int16_t>(
        length >= 1 ? std::min(length, 32767) : garmin_defaults[at(gar_place::mnaml)]);
    store.wp_ext_chars = gar_option(gar_place::Zeichen) != 0;
}

std::string garmin_text()
{
    std::string out;
    for (const int number : settings.garmin)
        out += (out.empty() ? "" : " ") + std::to_string(number);
    return out;
}

/// The map options of the newest form that is there. Older forms move to the newest key, so that
/// nothing is lost while the map window stays closed.
int read_map_options()
{
    const std::string& profile = settings.profile;
    if (!ini_get(profile, "st_options3").empty())
        return ini_get_int(profile, "st_options3", -1);
    int value = -1;
    for (const char* old : {"st_options", "st_options2"}) { // the later one wins
        value = ini_get_int(profile, old, value);
        ini_put(profile, old, std::nullopt);
    }
    if (value != -1)
        ini_put(profile, "st_options3", std::to_string(value));
    return value;
}

/// Stored folders of either system.
bool is_absolute(std::string_view path)
{
    return path.starts_with('/') || path.starts_with('\\') ||
           (path.size() >= 2 && path[1] == ':' && lower(path[0]) >= 'a' && lower(path[0]) <= 'z');
}

} // namespace

int gar_option(gar_place place)
{
    return settings.garmin[at(place)];
}

void settings_read()
{
    const std::string& profile = settings.profile;
    flags_unpack(ini_get_int(profile, "Flags", 0));
    settings.st_options = read_map_options();
    const int units = ini_get_int(profile, "Units", -1);
    units_unpack(units >= 0 ? units : settings.dist_index);
    read_garmin();
    settings.home_zone = setting_get("Time");
    settings.port = ini_get_int(profile, "Port", 0);
    settings.map_keys = equal_nocase(ini_get("Main", "map_options"), "yes");
    symbols_load();
    settings_show();
}

void settings_write()
{
    settings.garmin[at(gar_place::mnaml)] = store.wp_name_max;
    settings.garmin[at(gar_place::Zeichen)] = store.wp_ext_chars ? 1 : 0;
    const std::string& profile = settings.profile;
    ini_put(profile, "Flags", std::to_string(flags_pack()));
    ini_put(profile, "Units", std::to_string(units_pack()));
    ini_put(profile, "Garmin", garmin_text());
    for (const char* old : {"fil_k", "fil_t", "fil_wp"})
        ini_put(profile, old, std::nullopt);
}

void settings_show()
{
    for (control& c : Form1.einh)
        c.checked = c.index == settings.dist_index;
    for (control& c : Form1.einh_s)
        c.checked = c.index == settings.speed_index;
    for (control& c : Form1.einh_alt)
        c.checked = c.index == settings.alt_index;
    Form1.ei_grid_u[0].checked = !settings.km_grid;
    Form1.ei_grid_u[1].checked = settings.km_grid;
    Form1.ei_grid_u[3].checked = settings.utm_zero;
    Form1.backup.checked = settings.backup_on;
    Form1.back_b.checked = settings.back_blue;
    Form1.pc.checked = settings.pc_clock;
    for (control& c : Form1.menu_com)
        c.checked = c.index == settings.port && c.index != 9; // "automatic" is no port
    const bool magellan = gar_option(gar_place::gar_wp_format) > 0;
    Form1.gar.caption = magellan ? "&Magellan" : "&Garmin";
    Form1.gar_off.enabled = Form1.gar_off.click && !magellan; // Garmin's protocol alone has it
    Form1.Waypl2.back = settings.list_back;
}

int flags_pack()
{
    const settings_state& s = settings;
    return s.dist_index + (s.printer_option ? 0 : w_printer_off) + (s.utm_zero ? w_utm_zero : 0) +
           (s.km_grid ? 0 : w_km_off) + s.symbol_level * w_symbols + (s.back_blue ? w_blue : 0) +
           (s.alt_kom ? w_alt_kom : 0) + (s.backup_on ? w_backup : 0) +
           (s.pc_clock ? w_pc_clock : 0);
}

void flags_unpack(int flags)
{
    flags = std::max(flags, 0);
    settings.dist_index = digit(flags, 3, 1);
    settings.printer_option = digit(flags, 6, w_printer_off) == 0;
    settings.utm_zero = digit(flags, 12, w_utm_zero) == 0;
    settings.km_grid = digit(flags, 24, w_km_off) == 0;
    settings.symbol_level = digit(flags, 120, w_symbols);
    settings.back_blue = digit(flags, 240, w_blue) == 1;
    settings.alt_kom = digit(flags, 960, w_alt_kom) == 1;
    settings.backup_on = digit(flags, 1920, w_backup) == 1;
    settings.pc_clock = flags / w_pc_clock == 1;
    settings.list_back = settings.back_blue ? list_back_blue : own_colour;
}

int units_pack()
{
    return settings.dist_index + 3 * settings.speed_index + 9 * settings.alt_index;
}

void units_unpack(int units)
{
    units = std::max(units, 0);
    const std::size_t dist = within(units % 3, dist_factors.size());
    const std::size_t speed = within(units / 3 % 3, dist_factors.size());
    const std::size_t alt = within(units / 9, alt_factors.size());
    settings.dist_index = static_cast<int>(dist);
    settings.speed_index = static_cast<int>(speed);
    settings.alt_index = static_cast<int>(alt);
    settings.dist_unit = dist_factors[dist];
    settings.speed_unit = dist_factors[speed];
    settings.alt_unit = alt_factors[alt];
}

int settings_read_language()
{
    if (ini_get("Main", "Lang3").empty()) {
        const std::string old = ini_get("Main", "Lang");
        ini_put("Main", "Lang", std::nullopt);
        if (!old.empty())
            ini_put("Main", "Lang3", std::to_string(1 - std::max(whole(old), -1000)));
    }
    return std::max(ini_get_int("Main", "Lang3", -1), -1);
}

void settings_migrate_port()
{
    const std::string old = ini_get("Main", "Port");
    if (old.empty())
        return;
    ini_put("Main", "Port", std::nullopt);
    for (const std::string& name : profile_names())
        ini_put(name, "Port", old);
    settings.port = ini_get_int(settings.profile, "Port", 0);
}

int settings_map_limit()
{
    const int limit = ini_get_int(settings.profile, "K_MAX", 4);
    return limit == 0 ? 4 : limit;
}

std::string last_path(std::string_view key)
{
    std::string folder = setting_get(key, key_place::main);
    const std::string file(trim(cut_token(folder, "|")));
    folder = trim(folder);
    if (file.empty() && folder.empty())
        return {};
    if (!folder.empty() && !folder.ends_with('/') && !folder.ends_with('\\'))
        folder += folder.find('\\') != std::string::npos ? '\\' : '/';
    const std::string path = folder + file;
    if (!is_absolute(path))
        return program_path(path);
    const std::string found = real_path(path);
    return file_exists(found) ? found : path;
}

void last_put(std::string_view key, std::string_view path)
{
    std::string folder = path_folder(path);
    if (!folders.program.empty() && folder.starts_with(folders.program))
        folder.erase(0, folders.program.size());
    if (folder.size() > 1)
        folder.pop_back();
    ini_put("Main", key, path_name(path) + "|" + folder);
}

} // namespace velkoro
