#include "comm/mag_link.h"

#include "comm/comm.h"
#include "core/log.h"
#include "core/platform.h"
#include "core/settings.h"

#include <algorithm>

namespace velkoro {
namespace {

constexpr double sentence_wait_s = 3.0;
constexpr int pump_ms = 20; // bytes wake the pump; this is how late a time-out may be noticed
constexpr std::string_view head = "$PMGN", line_end = "\r\n";

/// Where the line that is waited for begins in the bytes received, npos when it is not there.
std::size_t find_reply(const std::string& tag)
{
    const std::string& got = comm.comm_rx_frame;
    std::size_t at = got.find(tag);
    if (at == std::string::npos && tag == "$PMGNWPL")
        at = got.find("$GPWPL");
    return at != std::string::npos ? at : got.find("$PMGNCMD,END");
}

/// The acknowledgement names the two digits of the line that was sent.
bool acknowledges(std::string_view reply, std::string_view sent)
{
    return reply.substr(std::min<std::size_t>(9, reply.size()), 2) ==
           sent.substr(sent.size() - 4, 2);
}

} // namespace

std::string mag_comm(std::string_view text, std::string_view tag)
{
    if (comm.comm_port == 0)
        return {};
    if (!comm_serial_open(comm_settings(gar_option(gar_place::gar_wp_format))))
        return {}; // reported by comm_serial_open
    const std::string line = mag_sentence(text);
    platform.serial.threshold(1);
    log_line(" Mag transmit " + line);
    comm.comm_rx_frame.clear();
    platform.serial.output(line);
    const double t0 = platform.clock();
    if (tag.empty())
        return comm.comm_rx_frame;
    const std::string full_tag = std::string(head).append(tag);
    std::size_t at = find_reply(full_tag);
    while (at == std::string::npos) {
        platform.pump(pump_ms);
        at = find_reply(full_tag);
        if (at == std::string::npos && platform.clock() - t0 > sentence_wait_s) {
            log_line(" Mag timeout");
            return {};
        }
    }
    std::string& got = comm.comm_rx_frame;
    if (full_tag == "$PMGNCSM" && !acknowledges(std::string_view(got).substr(at), line)) {
        log_line(" Mag bad acknowledge response " + hex_text(got));
        return {};
    }
    got.erase(0, at);
    got.resize(std::min(got.find(line_end), got.size()));
    return got;
}

std::string mag_sentence(std::string_view text)
{
    const std::string body = std::string(head.substr(1)).append(text);
    std::string line =
        "$" + body + "*" + hex_text(std::string{static_cast<char>(nmea_checksum(body))});
    return line.append(line_end);
}

std::uint8_t nmea_checksum(std::string_view bytes)
{
    unsigned x = 0;
    for (const char c : bytes)
        x ^= static_cast<unsigned char>(c);
    return static_cast<std::uint8_t>(x);
}

} // namespace velkoro
