#include "comm/usb_link.h"

#include "comm/comm.h"
#include "comm/garmin_link.h"
#include "core/byte_io.h"
#include "core/log.h"
#include "core/platform.h"

#include <optional>

namespace velkoro {
namespace {

constexpr const char* classes[] = {"{2C9C45C2-8E7D-4C08-A12D-816BBAE722C0}",
                                   "{A12A4C5A-E1A3-4151-9927-7F724CA5DC92}"};
constexpr std::uint8_t usb_layer = 0, application = 20;
constexpr std::uint8_t id_data_available = 2, id_start_session = 5;
constexpr std::size_t head_size = 12, interrupt_max = 64, bulk_max = 4096;
constexpr std::uint32_t usual_packet_size = 64; // of a device that does not tell
constexpr std::size_t frame_end = 3;            // where a serial frame has checksum, DLE and ETX
constexpr int most_empty_reads = 2;

std::string usb_packet(std::uint8_t type, int id, std::string_view data)
{
    byte_writer w;
    w.u8(type);
    w.out.append(3, '\0');
    w.u8(static_cast<std::uint8_t>(id));
    w.out.append(3, '\0');
    w.le(static_cast<std::uint32_t>(data.size()));
    return w.out.append(data);
}

void complain(const char* words)
{
    log_line(std::string(" USB ") + words);
    platform.message({.text = words, .icon = icon::critical});
}

void log_failure()
{
    if (log_book.log_on)
        log_line("   " + platform.usb.error_text());
}

void write_checked(std::string_view piece)
{
    const int went = platform.usb.write(comm.usb_handle, std::string(piece));
    if (went < 0 || static_cast<std::size_t>(went) < piece.size())
        complain("WriteFile error");
}

/// A piece shorter than the largest ends the packet, so a packet that fills its last piece is
/// followed by an empty one.
void write_packet(const std::string& packet)
{
    const std::size_t most = comm.usb_packet_size != 0 ? comm.usb_packet_size : usual_packet_size;
    for (std::size_t at = 0;; at += most) {
        const std::string_view piece = std::string_view(packet).substr(at, most);
        if (log_book.log_on)
            log_line(" USB transmit " + hex_text(piece));
        write_checked(piece);
        if (piece.size() < most)
            return;
    }
}

std::optional<std::string> read_piece()
{
    const bool bulk = comm.usb_bulk;
    std::optional<std::string> piece =
        bulk ? platform.usb.read_bulk(comm.usb_handle, bulk_max)
             : platform.usb.read_interrupt(comm.usb_handle, interrupt_max);
    if (log_book.log_on) {
        log_line(std::string(" USB receive ") + (bulk ? "Bulk " : "Int ") +
                 std::to_string(piece ? piece->size() : 0) + " " + hex_text(piece.value_or("")));
        if (!piece)
            log_failure();
    }
    return piece;
}

bool announces_data(std::string_view packet)
{
    return packet.size() > 4 && packet[0] == usb_layer && packet[4] == id_data_available;
}

/// Reads one packet and gives it the form of a serial frame.
std::string read_packet()
{
    std::string frame;
    std::size_t taken = 0, size = 0;
    for (int empty_reads = 0; empty_reads < most_empty_reads;) {
        const std::optional<std::string> piece = read_piece();
        if (!piece)
            break;
        if (piece->empty()) {
            ++empty_reads;
            continue;
        }
        if (frame.empty() &&
            announces_data(*piece)) { // further pieces are data, whatever they hold
            comm.usb_bulk = true;
            ++empty_reads;
            continue;
        }
        empty_reads = 0;
        if (frame.empty()) {
            if (piece->size() < head_size)
                return {};
            byte_reader head(*piece);
            head.seek(8);
            size = head.le<std::uint32_t>();
            frame = std::string{dle, (*piece)[4], (*piece)[8]} + piece->substr(head_size);
            taken = piece->size() - head_size;
        } else {
            frame += *piece;
            taken += piece->size();
        }
        if (comm.usb_bulk || piece->size() != interrupt_max)
            break;
    }
    if (frame.empty() || taken != size)
        return {};
    return frame.append(frame_end, '\0');
}

std::optional<std::string> find_device()
{
    for (const char* guid : classes) {
        log_line(std::string(" USB open: SetupDiGetClassDevs ") + guid);
        std::optional<std::string> path = platform.usb.find(guid);
        log_line(std::string("  SetupDiEnumDeviceInterfaces ") + (path ? "1" : "0"));
        if (path) {
            log_line("  SetupDiGetDeviceInterfaceDetail " + std::to_string(path->size()));
            log_line("  SetupDiGetDeviceInterfaceDetail (2) 1");
            return path;
        }
        log_failure();
    }
    return std::nullopt;
}

void read_packet_size()
{
    if (comm.usb_packet_size == 0) {
        const std::optional<std::uint32_t> size = platform.usb.packet_size(comm.usb_handle);
        if (size)
            comm.usb_packet_size = *size;
        else
            complain("PacketSize not received");
    }
    if (!log_book.log_on)
        return;
    log_line("  USBPacketSize " + std::to_string(comm.usb_packet_size));
    if (const auto version = platform.usb.api_version(comm.usb_handle))
        log_line("  APIVersion " + std::to_string(*version));
}

} // namespace

void usb_open()
{
    comm.usb_handle = 0;
    const std::optional<std::string> path = find_device();
    if (!path)
        return;
    log_line("  HidName " + *path);
    comm.usb_handle = platform.usb.open(*path);
    log_line("  USBHandle " + std::to_string(comm.usb_handle));
    if (comm.usb_handle == 0) {
        log_failure();
        return;
    }
    read_packet_size();
    write_checked(usb_packet(usb_layer, id_start_session, ""));
    platform.usb.read_interrupt(comm.usb_handle, interrupt_max); // "session started"; nothing in it
                                                                 // is needed
    comm.usb_bulk = false;
}

void usb_close()
{
    if (comm.usb_handle == 0)
        return;
    platform.usb.close(comm.usb_handle);
    comm.usb_handle = 0;
    log_line(" USB closed");
}

std::string usb_comm(int packet_id, std::string_view data, int expected)
{
    if (comm.usb_handle == 0)
        return {};
    if (packet_id != pid_ack)
        write_packet(usb_packet(application, packet_id, data));
    if (expected == pid_ack)
        return {' ', static_cast<char>(pid_ack)};
    if (expected == no_wait)
        return {};
    return read_packet();
}

} // namespace velkoro
