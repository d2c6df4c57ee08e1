#include "comm/port_menu.h"

#include "comm/com_ports.h"
#include "comm/comm.h"
#include "comm/gar_ident.h"
#include "core/form1.h"
#include "core/job.h"
#include "core/log.h"
#include "core/platform.h"
#include "core/profiles.h"
#include "core/settings.h"
#include "core/shell.h"
#include "core/texts.h"
#include "core/trap.h"

#include <array>
#include <string>

namespace velkoro {
namespace {

constexpr int search_entry = 9;
constexpr double look_every_s = 2; // a device that is plugged in shows itself after this time
constexpr std::size_t longest_name = 40;

struct port_menu_state {
    double last_look = 0; ///< platform.ticks
};
port_menu_state port_menu;

/// "COM&3: ttyUSB0". The "&" of a name are no access letters.
std::string caption_of(std::size_t i, const com_port& port)
{
    std::string caption = "COM&" + std::to_string(i + 1);
    if (port.device.empty())
        return caption;
    std::string name = port.simulator ? text(8045) : port.device.substr(port.device.rfind('/') + 1);
    if (name.size() > longest_name)
        name = "..." + name.substr(name.size() - longest_name);
    caption += ": ";
    for (const char c : name)
        caption.append(c == '&' ? 2 : 1, c);
    return caption;
}

void choose(std::int16_t port)
{
    comm.comm_port = port;
    settings.port = port;
}

std::int16_t usable_port(int stored)
{
    const bool known = (stored >= 1 && stored <= serial_ports) || stored == usb_port;
    return known ? static_cast<std::int16_t>(stored) : std::int16_t{0};
}

/// The port of the profile in use is the one in force.
bool port_of_profile()
{
    comm_port_set(false);
    comm.comm_port = usable_port(settings.port);
    return true;
}

bool show_devices()
{
    port_menu_show();
    return true;
}

bool look_for_devices()
{
    const double now = platform.ticks();
    if (!job.code.empty() ||
        (now - port_menu.last_look < look_every_s && now > port_menu.last_look))
        return true;
    port_menu.last_look = now;
    port_menu_show();
    return true;
}

void store_port()
{
    const std::string number = std::to_string(comm.comm_port);
    ini_put(settings.profile, "Port", number);
    if (settings.profile.empty() || comm.comm_port <= 0)
        return;
    if (say(1181, buttons::yes_no, icon::question, comm.comm_port == usb_port ? "USB" : number) !=
        answer::yes)
        return;
    for (const std::string& name : profile_names())
        ini_put(name, "Port", number);
}

} // namespace

void menu_com(int index)
try {
    log_line(" com port command " + std::to_string(index));
    comm_port_set(false);
    if (index < search_entry) {
        choose(static_cast<std::int16_t>(index));
    } else if (index == search_entry) {
        if (say(1180, buttons::ok_cancel, icon::question) != answer::ok)
            return;
        run_job("COM");
        choose(comm.comm_port);
    } else {
        choose(usb_port);
        if (gar_option(gar_place::gar_wp_format) > 0 || gar_option(gar_place::gar_pos_format) > 0)
            say(1125, buttons::ok, icon::critical);
    }
    if (Form1.gar_ident.click)
        Form1.gar_ident.click();
    settings_show();
    store_port();
} catch (...) {
    trap("menu_com");
}

void port_search()
try {
    const std::array<com_port, 8> ports = com_ports();
    for (std::int16_t n = serial_ports; n >= 1; --n) {
        comm_port_set(false);
        op.anz.caption = text(2370, n);
        if (!op_pump())
            break;
        if (ports[static_cast<std::size_t>(n - 1)].device.empty())
            continue;
        comm.comm_port = n;
        comm.quiet = true;
        const std::string name = garmin_ident(true);
        comm.quiet = false;
        if (!name.empty())
            return;
    }
    comm_port_set(false);
    comm.comm_port = 0;
} catch (...) {
    comm.quiet = false;
    trap("port_search");
}

void port_menu_show()
{
    const std::array<com_port, 8> ports = com_ports();
    for (std::size_t i = 0; i < ports.size(); ++i) {
        control& entry = Form1.menu_com[i];
        entry.caption = caption_of(i, ports[i]);
        entry.tooltip = ports[i].device;
    }
}

void port_menu_install()
{
    for (control& entry : Form1.menu_com)
        entry.click = [index = entry.index] { menu_com(index); };
    job.jobs["COM"] = port_search;
    port_menu = {};
    shell_add(shell.start, 14, "port_in_force", port_of_profile);
    shell_add(shell.start, 14, "port_devices", show_devices);
    shell_add(shell.profile_in, 1, "port_in_force", port_of_profile);
    shell_add(shell.periodic, 9, "port_devices", look_for_devices);
}

} // namespace velkoro
