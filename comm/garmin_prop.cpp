#include "comm/garmin_prop.h"

#include "comm/comm.h"
#include "comm/gar_ident.h"
#include "comm/gar_proto.h"
#include "core/files.h"
#include "core/form1.h"
#include "core/hooks.h"
#include "core/log.h"
#include "core/num_text.h"
#include "core/platform.h"
#include "core/route_lists.h"
#include "core/settings.h"
#include "core/store.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

namespace velkoro {
namespace {

constexpr double most = 32767; // the width of the numbers that the settings hold
/// Captions of `symb` by its state.
constexpr std::array<int, 3> symbol_captions{8097, 8096, 8095};

const std::vector<std::string> transfer_formats{
    "Garmin (GRMN)",        "Magellan   4800 baud", "Magellan   9600 baud", "Magellan  19200 baud",
    "Magellan  28800 baud", "Magellan  56000 baud", "Magellan 128000 baud"};
const std::vector<std::string> position_formats{"Garmin (GRMN)",
                                                "NMEA 0183 2.0   4800 baud",
                                                "NMEA 0183 2.0   9600 baud",
                                                "NMEA 0183 2.0  19200 baud",
                                                "NMEA 0183 2.0  28800 baud",
                                                "NMEA 0183 2.0  56000 baud",
                                                "NMEA 0183 2.0 128000 baud"};

int& option(gar_place place)
{
    return settings.garmin[static_cast<std::size_t>(place)];
}

/// The fields for numbers with their places.
std::array<std::pair<control*, gar_place>, 5> limits()
{
    garmin_prop_window& w = Garmin_prop;
    return {{{&w.mwp, gar_place::mwp},
             {&w.mprox, gar_place::mprox},
             {&w.mrou, gar_place::mrou},
             {&w.mwp_rou, gar_place::mwp_rou},
             {&w.mtrack, gar_place::mtrack}}};
}

std::int16_t symbol_set_in_use()
{
    const int level = settings.symbol_level;
    return static_cast<std::int16_t>(level == 2 || level == 3 ? level - 1 : 0);
}

/// What a field for a number says; what it said before when that is no number.
int number_in(const control& field, int before)
{
    const std::string number = comma_to_dot(field.text);
    return is_number(number) ? static_cast<int>(std::clamp(fix(val(number)), 0.0, most)) : before;
}

std::string port_text()
{
    if (comm.comm_port == usb_port)
        return "USB";
    const std::string device = comm_device(comm.comm_port);
    return "COM" + std::to_string(comm.comm_port) +
           (device.empty() ? "" : " (" + shown_path(path_name(device)) + ")");
}

/// Who answered on which port, and with which protocols.
std::string receiver_text(const std::string& name)
{
    if (comm.comm_port == 0)
        return text(1000);
    const std::string& told = gar_ident_run.told;
    if (told.empty())
        return port_text() + ":  " + text(1110);
    std::string out = port_text() + ":  " + (name.empty() ? told : name);
    if (option(gar_place::gar_wp_format) > 0)
        return out;
    const auto& head = receiver.gar_proto[0];
    const bool by_receiver = head[1] == told_by_receiver;
    out += ",  ID " + std::to_string(head[2]) + ". " + pic(head[3] / 100.0, "0.00") +
           (by_receiver ? " G" : " L");
    return out + "\n" + gar_proto_text(receiver.gar_proto);
}

void symbols_show()
{
    control& c = Garmin_prop.symb;
    c.value = std::clamp<int>(receiver.gar_symbol_set, 0, 2);
    c.checked = c.value != 0;
    c.caption = text(symbol_captions[static_cast<std::size_t>(c.value)]);
}

void warning_show()
{
    Garmin_prop.Label7.visible =
        option(gar_place::gar_pos_format) == 0 && option(gar_place::gar_wp_format) > 0;
}

void name_length_change()
{
    Garmin_prop.Command1.enabled = number_in(Garmin_prop.mnaml, 0) >= mnaml_least;
}

/// The window from the settings and from what is known of the receiver.
void load()
{
    garmin_prop_window& w = Garmin_prop;
    garmin_prop_run = {.asking = garmin_prop_run.asking,
                       .who = garmin_prop_run.who,
                       .garmin = settings.garmin,
                       .symbol_set = symbol_set_in_use(),
                       .name_max = store.wp_name_max,
                       .ext_chars = store.wp_ext_chars};
    w.msg.caption = garmin_prop_run.who;
    w.f_wp.items = transfer_formats;
    w.f_pos.items = position_formats;
    const int last = static_cast<int>(transfer_formats.size()) - 1;
    w.f_wp.selected = std::clamp(option(gar_place::gar_wp_format), 0, last);
    w.f_pos.selected = std::clamp(option(gar_place::gar_pos_format), 0, last);
    for (const auto& [field, place] : limits())
        field->text = std::to_string(option(place));
    w.mnaml.text = std::to_string(store.wp_name_max);
    w.r_unique.checked = option(gar_place::r_unique) != 0;
    w.AVD.checked = option(gar_place::AVD) != 0;
    w.Lokalz.checked = option(gar_place::Lokalz) != 0;
    w.Zeichen.checked = store.wp_ext_chars;
    w.alt_kom.checked = settings.alt_kom;
    w.mprox.visible = receiver.gar_has_prox;
    w.AVD.enabled = receiver.gar_has_avd;
    w.alt_kom.enabled = !receiver.gar_has_alt;
    receiver.gar_symbol_set = symbol_set_in_use();
    symbols_show();
    warning_show();
    name_length_change();
}

void f_wp_change()
{
    option(gar_place::gar_wp_format) = Garmin_prop.f_wp.selected;
    settings_show(); // the menu bears the maker's name
    warning_show();
}

void f_pos_change()
{
    option(gar_place::gar_pos_format) = Garmin_prop.f_pos.selected;
    warning_show();
}

void symb_click()
{
    receiver.gar_symbol_set = static_cast<std::int16_t>(Garmin_prop.symb.value);
    symbols_show();
}

void Command1_click()
try {
    const garmin_prop_window& w = Garmin_prop;
    if (!w.Command1.enabled)
        return;
    for (const auto& [field, place] : limits())
        option(place) = number_in(*field, option(place));
    store.wp_name_max = static_cast<std::int16_t>(number_in(w.mnaml, store.wp_name_max));
    option(gar_place::r_unique) = w.r_unique.checked ? 1 : 0;
    option(gar_place::AVD) = w.AVD.checked ? 1 : 0;
    option(gar_place::Lokalz) = w.Lokalz.checked ? 1 : 0;
    store.wp_ext_chars = w.Zeichen.checked;
    settings.alt_kom = w.alt_kom.checked;
    garmin_prop_run.confirmed = true;
    gar_symbols_use(receiver.gar_symbol_set);
    settings_write();
    close_window(Garmin_prop.form);
} catch (...) {
    trap("Command1_Click");
}

/// Closed without OK: what held at once is as it was.
void closed()
{
    if (garmin_prop_run.confirmed)
        return;
    settings.garmin = garmin_prop_run.garmin;
    receiver.gar_symbol_set = garmin_prop_run.symbol_set;
    settings_show();
}

bool too_long(const wayp_rec& w)
{
    return static_cast<int>(w.nam.size()) > store.wp_name_max;
}

/// True when names may be cut: none is too long, or the user agrees.
bool cutting_allowed()
{
    bool any = false;
    for (int i = 0; i <= store.wp_top && !any; ++i)
        any = too_long(store.wp[static_cast<std::size_t>(i)]);
    return !any || platform.message({.text = text(2035, store.wp_name_max) + " " + text(2760),
                                     .buttons = buttons::yes_no,
                                     .icon = icon::exclamation,
                                     .number = 2035}) == answer::yes;
}

} // namespace

garmin_prop_window Garmin_prop;

garmin_prop_window::garmin_prop_window()
{
    form.modal = true;
    form.load = load;
    form.closed = closed;
    form.translated = symbols_show;
    f_wp.change = f_wp_change;
    f_pos.change = f_pos_change;
    mnaml.change = name_length_change;
    symb.click = symb_click;
    Command1.click = Command1_click;
}

void gar_ident_click()
try {
    if (garmin_prop_run.asking)
        return;
    garmin_prop_run.asking = true;
    log_line(" receiver properties command");
    garmin_prop_run.who = receiver_text(garmin_ident(false));
    run_window(Garmin_prop.form);
    if (store.wp_name_max < garmin_prop_run.name_max ||
        store.wp_ext_chars != garmin_prop_run.ext_chars)
        gar_names_check();
    comm_port_set(false);
    garmin_prop_run.asking = false;
} catch (...) {
    garmin_prop_run.asking = false;
    comm_port_set(false);
    trap("gar_ident_Click");
}

void gar_names_check()
{
    const bool cut = cutting_allowed();
    bool replaced = false;
    std::set<int> routes;
    for (int i = 0; i <= store.wp_top; ++i) {
        wayp_rec w = store.wp[static_cast<std::size_t>(i)];
        if (cut && too_long(w))
            name_cut(w.nam, w.kom);
        std::string clean = name_clean(w.nam, 0);
        if (clean.empty())
            clean = "-";
        replaced = replaced || clean != w.nam;
        const wayp_rec& old = store.wp[static_cast<std::size_t>(i)];
        if (clean == old.nam)
            continue;
        name_unique(clean, w.kom, i);
        std::string changed = wp_rename(i, clean, w.kom);
        while (!changed.empty())
            routes.insert(static_cast<int>(val(cut_token(changed, ","))));
    }
    hooks.row_changed(-1, false);
    if (replaced)
        say(2038);
    if (routes.empty())
        return;
    hooks.route_refresh();
    say(2040, buttons::ok, icon::information, number_list({routes.begin(), routes.end()}));
}

void garmin_prop_install()
{
    garmin_prop_run = {};
    Form1.gar_ident.click = gar_ident_click;
}

} // namespace velkoro
