#include "coords/units.h"

#include "coords/coord_text.h"
#include "core/form1.h"
#include "core/hooks.h"
#include "core/num_text.h"
#include "core/platform.h"
#include "core/settings.h"
#include "core/shell.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"

#include <algorithm>
#include <array>

namespace velkoro {
namespace {

constexpr std::array<float, 3> lengths = {1000.0F, 1609.344F, 1852.0F}; // km, statute, nautical
constexpr std::array<float, 2> heights = {1.0F, 0.3048F};
constexpr const char* zone_rules[] = {"+0", "+1 L3 L10", "+0 L3 L10", "-5 F4 L10", "+10 L10 L3"};
constexpr int other_zone = 5;

template <std::size_t N> void tick(control (&menu)[N], int chosen)
{
    for (control& c : menu)
        c.checked = c.index == chosen;
}

std::size_t unit(int index, std::size_t count)
{
    return static_cast<std::size_t>(std::clamp(index, 0, static_cast<int>(count) - 1));
}

void set_dist(int index)
{
    settings.dist_index = index;
    settings.dist_unit = lengths[unit(index, lengths.size())];
    tick(Form1.einh, index);
}

void set_speed(int index)
{
    settings.speed_index = index;
    settings.speed_unit = lengths[unit(index, lengths.size())];
    tick(Form1.einh_s, index);
}

bool follows(int question)
{
    return settings.dist_index != settings.speed_index &&
           say(question, buttons::yes_no, icon::question) == answer::yes;
}

void units_done()
{
    settings_write();
    hooks.units_changed();
    hooks.row_changed(-1, false);
}

void format_done()
{
    options_write();
    hooks.row_changed(-1, false);
}

void Datum_click()
try {
    format_done();
} catch (...) {
    trap("Datum");
}

int row_of_rule(const std::string& rule)
{
    const auto hit = std::ranges::find(zone_rules, rule);
    return hit == std::end(zone_rules) ? other_zone
                                       : static_cast<int>(hit - std::begin(zone_rules));
}

} // namespace

const char* dist_label()
{
    constexpr std::array labels = {"km", "mi", "NM"};
    return labels[unit(settings.dist_index, labels.size())];
}

const char* speed_label()
{
    constexpr std::array labels = {"km/h", "mph", "kt"};
    return labels[unit(settings.speed_index, labels.size())];
}

const char* alt_label()
{
    constexpr std::array labels = {"m", "ft"};
    return labels[unit(settings.alt_index, labels.size())];
}

void einh_click(int index)
try {
    set_dist(index);
    if (follows(746))
        set_speed(index);
    units_done();
} catch (...) {
    trap("einh");
}

void einh_s_click(int index)
try {
    set_speed(index);
    if (follows(745))
        set_dist(index);
    units_done();
} catch (...) {
    trap("einh_s");
}

void einh_alt_click(int index)
try {
    settings.alt_index = index;
    settings.alt_unit = heights[unit(index, heights.size())];
    tick(Form1.einh_alt, index);
    units_done();
} catch (...) {
    trap("einh_alt");
}

void ei_grid_u_click(int index)
try {
    if (index == 3)
        settings.utm_zero = !settings.utm_zero;
    else
        settings.km_grid = index == 1;
    Form1.ei_grid_u[0].checked = !settings.km_grid;
    Form1.ei_grid_u[1].checked = settings.km_grid;
    Form1.ei_grid_u[3].checked = settings.utm_zero;
    settings_write();
    if (index != 3)
        hooks.row_changed(-1, false);
} catch (...) {
    trap("ei_grid_u");
}

void zone_fill()
{
    control& z = Form1.zone;
    const int fmt = Form1.posform.selected;
    z.items.clear();
    int chosen = 0;
    const auto numbers = [](int first, int last) {
        for (int n = first; n <= last; ++n)
            Form1.zone.items.push_back("Zone " + pic(n, "0"));
    };
    if (fmt == fmt_utm || fmt == fmt_mgrs || fmt == fmt_gk || fmt == fmt_lambert)
        z.items.emplace_back("Zone auto");
    if (fmt == fmt_utm || fmt == fmt_mgrs) {
        numbers(1, 60);
    } else if (fmt == fmt_gk) {
        numbers(0, 5);
    } else if (fmt == fmt_lambert) {
        numbers(1, 4);
        z.items[2] = "Zone 2 étd"_w;
        chosen = 2;
    }
    z.visible = !z.items.empty();
    z.selected = z.visible ? chosen : -1;
    coord.zone_choice = coord.zone = chosen;
    coord.zone_fmt = -1;
    coord.zone_held = {};
}

void posform_click()
try {
    zone_fill();
    const auto fmt = static_cast<std::size_t>(std::max(0, Form1.posform.selected));
    if (fmt < datums.grid_datum.size())
        if (const int row = datum_find(datums.grid_datum[fmt]); row >= 0)
            Form1.Datum.selected = row;
    format_done();
} catch (...) {
    trap("posform");
}

void zone_click()
try {
    const int chosen = std::max(0, Form1.zone.selected);
    const bool changed = chosen != coord.zone_choice;
    coord.zone_choice = coord.zone = chosen;
    if (changed)
        hooks.row_changed(-1, false);
} catch (...) {
    trap("zone");
}

std::string zone_menu_rule(int row, const std::string& old)
{
    if (row >= 0 && row < other_zone)
        return zone_rules[row];
    const auto given = platform.input({.prompt = text(1380), .title = "UTC +-", .text = old});
    if (!given || trim(*given).empty())
        return old;
    return comma_to_dot(trim(*given));
}

void zone_menu_checks()
{
    tick(Form1.Zeit_Z, row_of_rule(settings.home_zone));
    tick(Form1.Zeit_LZ, row_of_rule(settings.list_zone));
}

void Zeit_Z_click(int row)
try {
    settings.home_zone = zone_menu_rule(row, settings.home_zone);
    ini_put(settings.profile, "Time", settings.home_zone);
    zone_menu_checks();
    hooks.row_changed(-1, false);
} catch (...) {
    trap("Zeit_Z");
}

void Zeit_LZ_click(int row)
try {
    const std::string old = settings.list_zone;
    settings.list_zone = zone_menu_rule(row, old);
    if (settings.list_zone != old)
        store.wp_dirty = true; // the zone is kept with the list
    zone_menu_checks();
    hooks.row_changed(-1, false);
} catch (...) {
    trap("Zeit_LZ");
}

void units_install()
{
    for (control& c : Form1.einh)
        c.click = [i = c.index] { einh_click(i); };
    for (control& c : Form1.einh_s)
        c.click = [i = c.index] { einh_s_click(i); };
    for (control& c : Form1.einh_alt)
        c.click = [i = c.index] { einh_alt_click(i); };
    for (control& c : Form1.ei_grid_u)
        if (c.caption != "-")
            c.click = [i = c.index] { ei_grid_u_click(i); };
    for (control& c : Form1.Zeit_Z)
        c.click = [i = c.index] { Zeit_Z_click(i); };
    for (control& c : Form1.Zeit_LZ)
        c.click = [i = c.index] { Zeit_LZ_click(i); };
    Form1.Zeit_H.click = Form1.Zeit_LH.click = [] { platform.help("time_zones"); };
    Form1.posform.change = posform_click;
    Form1.Datum.change = Datum_click;
    Form1.zone.change = zone_click;
    // Behind the step that reads the chosen format.
    shell_add(shell.start, 18, "zones", [] {
        zone_fill();
        zone_menu_checks();
        return true;
    });
    shell_add(shell.profile_in, 1, "zones", [] {
        zone_menu_checks();
        return true;
    });
}

} // namespace velkoro
