#include "comm/comm.h"

#include "comm/gar_ident.h"
#include "comm/garmin_link.h"
#include "comm/usb_link.h"
#include "core/log.h"
#include "core/platform.h"
#include "core/texts.h"
#include "core/trap.h"

#include <array>

namespace velkoro {
namespace {

/// Tells once why the port cannot be used.
void report_refusal(const std::string& device, const std::string& reason)
{
    const std::string name = "COM" + std::to_string(comm.comm_port);
    const std::string line = text(8040, device.empty() ? name : name + " (" + device + ")", reason);
    log_line(" " + line);
    if (!comm.quiet)
        platform.message({.text = line, .icon = icon::critical, .number = 8040});
}

void on_comm()
try {
    Garmin_OnComm(platform.serial.input());
} catch (...) {
    trap("garmin_OnComm");
}

} // namespace

bool comm_serial_open(const std::string& settings)
{
    if (platform.serial.is_open())
        return true;
    if (comm.refused)
        return false;
    const std::string device = comm_device(comm.comm_port);
    const std::string reason = device.empty() ? text(8041) : platform.serial.open(device, settings);
    if (reason.empty())
        return true;
    comm.refused = true;
    report_refusal(device, reason);
    return false;
}

bool comm_port_set(bool open)
{
    if (!open) {
        comm.refused = false;
        if (platform.serial.is_open())
            platform.serial.close();
        usb_close();
        gar_ident_done();
        return false;
    }
    if (comm.comm_port == usb_port) {
        if (comm.usb_handle == 0)
            usb_open();
        return comm.usb_handle != 0;
    }
    return comm.comm_port != 0 && comm_serial_open(comm_settings(0));
}

void comm_listen()
{
    platform.serial.received = on_comm;
}

std::string comm_settings(int format)
{
    constexpr std::array<const char*, 7> bauds{"9600",  "4800",  "9600",  "19200",
                                               "28800", "56000", "128000"};
    const auto i = static_cast<std::size_t>(format);
    return std::string(bauds[format >= 0 && i < bauds.size() ? i : 0]) + ",n,8,1";
}

} // namespace velkoro
