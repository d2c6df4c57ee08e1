#include "comm/garmin_link.h"

#include "comm/comm.h"
#include "comm/gar_proto.h"
#include "comm/usb_link.h"
#include "core/job.h"
#include "core/log.h"
#include "core/platform.h"
#include "core/settings.h"
#include "core/texts.h"

#include <algorithm>
#include <utility>

namespace velkoro {
namespace {

constexpr double packet_wait_s = 1.0;
constexpr int most_naks = 3;
constexpr int pump_ms = 20; // bytes wake the pump; this is how late a time-out may be noticed
constexpr std::size_t data_max = 255;
constexpr std::size_t frame_overhead = 6;                      // DLE, id, size, checksum, DLE, ETX
constexpr const char* nak_bytes = "10 15 02 22 00 C7 10 03";   // names 34 whatever was lost
constexpr const char* cmplt_bytes = "10 0C 02 07 00 EB 10 03"; // carries 7 in all transfers

std::size_t byte_at(std::string_view bytes, std::size_t i)
{
    return static_cast<unsigned char>(bytes[i]);
}

unsigned byte_sum(std::string_view bytes)
{
    unsigned sum = 0;
    for (const char c : bytes)
        sum += static_cast<unsigned char>(c);
    return sum & 0xFFU;
}

void send_nak()
{
    ++comm.naks;
    platform.serial.output(hex_to_bytes(nak_bytes));
    log_line(" transmit nak");
}

/// True: the packet was asked for again and the wait goes on.
bool retry_after_timeout(int& retries, bool ask)
{
    log_line(" Garmin timeout");
    if (ask && !job.op_cancel && !comm.comm_retry)
        comm.comm_retry = say(1530, buttons::yes_no, icon::critical) == answer::yes;
    if (!comm.comm_retry || retries >= most_naks || job.op_cancel) {
        if (ask) {
            platform.serial.output(hex_to_bytes(cmplt_bytes));
            log_line(" transmit Xfer_Cmplt");
        }
        return false;
    }
    ++retries;
    comm.comm_rx_frame.clear();
    platform.serial.threshold(1);
    send_nak();
    return true;
}

std::string wait_for_frame(int expected, int stop_id, bool ask)
{
    double t0 = platform.clock();
    int retries = 0;
    for (;;) {
        const int received = gar_id(comm.comm_rx_frame);
        if (received == expected || (expected == any_packet && received > 0) ||
            received == stop_id || expected == no_wait)
            return comm.comm_rx_frame;
        platform.pump(pump_ms);
        if (platform.clock() - t0 > packet_wait_s) {
            if (!retry_after_timeout(retries, ask))
                return {};
            t0 = platform.clock();
        }
    }
}

std::string exchange(int packet_id, std::string_view data, int expected, bool ask)
{
    const int stop_id = expected == 253 || expected == 255 ? 255 : pid_xfer_cmplt;
    if (!comm_port_set(true) && comm.comm_port != usb_port)
        return {}; // reported by comm_port_set
    packet_id = pid_map(packet_id);
    expected = pid_map(expected);
    if (comm.comm_port == usb_port) {
        std::string frame = usb_comm(packet_id, data, expected);
        const int id = gar_id(frame);
        if (!frame.empty() && id != stop_id && id != expected && expected >= 0)
            frame.clear();
        return frame;
    }
    const std::string frame = gar_frame(packet_id, data);
    platform.serial.threshold(1);
    if (log_book.log_on)
        log_line(" transmit " + hex_text(frame));
    platform.serial.output(frame);
    comm.comm_rx_frame.clear();
    comm.comm_strip_ack = expected != pid_ack;
    return wait_for_frame(expected, stop_id, ask);
}

// Received bytes
// ---------------------------------------------------------------------------------------------------------------

void log_bytes(const char* what, std::string_view bytes)
{
    if (log_book.log_on)
        log_line(what + hex_text(bytes));
}

/// Halves the doubled DLEs of the first frame in the bytes; what follows it stays as it is. `end`
/// is the length of the frame without doubling.
std::string unstuffed(std::string bytes, std::size_t end)
{
    // Positions count from 1, as the frame's length does.
    for (std::size_t from = 2;;) {
        const std::size_t at = bytes.find(std::string(2, dle), from - 1);
        if (at == std::string::npos || at + 1 >= end - 1)
            return bytes;
        bytes.erase(at, 1);
        from = at + 2;
    }
}

void cut_leading_ack(std::string& buf)
{
    if (!comm.comm_strip_ack || buf.size() < 8 || byte_at(buf, 1) != pid_ack)
        return;
    log_bytes("OKcut ", buf);
    std::size_t n = byte_at(buf, 2);
    if (n > 4 || n < 1)
        n = 1; // some receivers name the packet in one byte, and some miscount
    buf.erase(0, n + frame_overhead);
}

/// Takes one frame off the buffer. True: the buffer changed and is to be looked at again.
bool take_frame(std::string& buf)
{
    cut_leading_ack(buf);
    std::size_t missing = 1;
    if (buf.size() >= 3 && byte_at(buf, 2) + frame_overhead > buf.size())
        missing = byte_at(buf, 2) + frame_overhead - buf.size();
    platform.serial.threshold(static_cast<int>(missing));
    if (buf.size() < frame_overhead)
        return false;
    const std::size_t end = byte_at(buf, 2) + frame_overhead;
    std::string copy = unstuffed(buf, end);
    if (copy.size() < end)
        return false;
    if (copy[end - 2] != dle || copy[end - 1] != etx) {
        log_bytes(" Frame Error ", copy);
        buf.erase(0, 1);
        return true;
    }
    buf = std::move(copy);
    if (byte_sum(std::string_view(buf).substr(1, end - 3)) != 0) {
        log_bytes(" checksum error ", buf);
        buf.clear();
        if (comm.comm_retry)
            send_nak();
    }
    comm.comm_rx_frame = buf.substr(0, end);
    buf.erase(0, end);
    log_bytes(" receive ", comm.comm_rx_frame);
    return false;
}

bool resynchronise(std::string& buf)
{
    while (!buf.empty() && buf.front() != dle) {
        log_bytes("cut ", buf);
        buf.erase(0, 1);
    }
    return !buf.empty();
}

int hex_digit(char c)
{
    return c >= '0' && c <= '9'   ? c - '0'
           : c >= 'A' && c <= 'F' ? c - 'A' + 10
           : c >= 'a' && c <= 'f' ? c - 'a' + 10
                                  : -1;
}

/// The number at the front of two characters; what is no digit ends it.
int hex_number(std::string_view two)
{
    int number = 0;
    for (const char c : two) {
        if (hex_digit(c) < 0)
            break;
        number = number * 16 + hex_digit(c);
    }
    return number;
}

/// Sentences without "*" are not checked.
bool sentences_good(std::string_view bytes)
{
    bool good = true;
    unsigned x = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] == '$') {
            x = 0;
        } else if (bytes[i] == '*') {
            if (static_cast<unsigned>(hex_number(bytes.substr(i + 1, 2))) != x)
                good = false;
            i += 2;
        } else {
            x ^= static_cast<unsigned char>(bytes[i]);
        }
    }
    return good;
}

void take_sentences(std::string& buf)
{
    buf.erase(0, std::min(buf.find('$'), buf.size()));
    if (!buf.ends_with("\r\n"))
        return;
    comm.comm_rx_frame = std::exchange(buf, {});
    log_bytes(" nmea receive ", comm.comm_rx_frame);
    if (sentences_good(comm.comm_rx_frame))
        return;
    log_bytes(" checksum error ", comm.comm_rx_frame);
    comm.comm_rx_frame.clear();
}

} // namespace

std::string garmin_comm(int packet_id, std::string_view data, int expected, bool ask)
{
    return comm.comm_port == 0 ? std::string{} : exchange(packet_id, data, expected, ask);
}

std::string garmin_comm(int packet_id, int command, int expected, bool ask)
{
    const std::string word{static_cast<char>(cmd_map(command)), '\0'};
    return garmin_comm(packet_id, std::string_view(word), expected, ask);
}

void Garmin_OnComm(std::string_view input)
{
    std::string& buf = comm.comm_rx_buf;
    buf += input;
    do {
        if (buf.empty())
            return;
        if (gar_option(gar_place::gar_wp_format) > 0 || comm.nmea_live) {
            take_sentences(buf);
            return;
        }
    } while (resynchronise(buf) && take_frame(buf));
}

int pid_map(int id)
{
    if (receiver.gar_proto[0][0] != 2)
        return id;
    switch (id) {
    case 10: return 11; // command data
    case 14: return 20; // date and time
    case 17: return 24; // position
    case 27: return 35; // records
    case 29: return 37; // route header
    case 30: return 39; // route waypoint
    case 35: return 43; // waypoint
    default: return id;
    }
}

int cmd_map(int command)
{
    if (receiver.gar_proto[1][0] != 11)
        return command;
    switch (command) {
    case 4: return 8;  // routes
    case 5: return 20; // time
    case 7: return 21; // waypoints
    case 8: return 26; // power off
    default: return command;
    }
}

int gar_id(std::string_view frame)
{
    return frame.size() >= 2 ? static_cast<int>(byte_at(frame, 1)) : 0;
}

std::string gar_data(std::string_view frame)
{
    return frame.size() > frame_overhead
               ? std::string(frame.substr(3, frame.size() - frame_overhead))
               : std::string{};
}

std::string gar_frame(int packet_id, std::string_view data)
{
    data = data.substr(0, data_max);
    std::string body{static_cast<char>(packet_id), static_cast<char>(data.size())};
    body += data;
    body += static_cast<char>((256U - byte_sum(body)) & 0xFFU);
    std::string frame{dle};
    for (const char c : body)
        frame.append(c == dle ? 2 : 1, c);
    return frame + dle + etx;
}

std::string hex_to_bytes(std::string_view text)
{
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (hex_digit(text[i]) < 0)
            continue;
        bytes += static_cast<char>(hex_number(text.substr(i, 2)));
        ++i;
    }
    return bytes;
}

} // namespace velkoro
