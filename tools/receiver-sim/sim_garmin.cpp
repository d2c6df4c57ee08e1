#include "tools/receiver-sim/sim_garmin.h"

#include "core/byte_io.h"

#include <array>
#include <charconv>
#include <utility>

namespace velkoro {
namespace {

// Packet ids that both link protocols share.
constexpr int pid_ack = 6, pid_nak = 21, pid_complete = 12;
constexpr int pid_extended = 248, pid_protocols = 253, pid_product_request = 254, pid_product = 255;
// Those of L001.
constexpr int pid_command = 10, pid_clock = 14, pid_position = 17, pid_proximity = 19,
              pid_records = 27, pid_route_header = 29, pid_route_waypoint = 30,
              pid_track_point = 34, pid_waypoint = 35, pid_live = 51, pid_route_link = 98,
              pid_track_header = 99;

/// L001 and L002 number of the packets that differ.
constexpr std::array<std::pair<int, int>, 9> l002_ids = {
    {{10, 11}, {14, 20}, {17, 24}, {19, 27}, {27, 35}, {29, 37}, {30, 39}, {31, 4}, {35, 43}}};
/// A010 and A011 number of the commands that A011 has.
constexpr std::array<std::pair<int, int>, 7> a011_commands = {
    {{0, 0}, {1, 4}, {3, 17}, {4, 8}, {5, 20}, {7, 21}, {8, 26}}};

int protocol_number(std::string_view token)
{
    int n = 0;
    if (!token.empty())
        std::from_chars(token.data() + 1, token.data() + token.size(), n);
    return n;
}

bool is_l002(const sim_garmin& r)
{
    return sim_protocol(r.identity, 'L', 0) == 2;
}

int to_line(const sim_garmin& r, int id)
{
    if (is_l002(r))
        for (const auto& [one, two] : l002_ids)
            if (one == id)
                return two;
    return id;
}

int from_line(const sim_garmin& r, int id)
{
    if (is_l002(r))
        for (const auto& [one, two] : l002_ids)
            if (two == id)
                return one;
    return id;
}

/// The A010 number of a command word, -1 when the receiver does not know it.
int command_of(const sim_garmin& r, int word)
{
    if (sim_protocol(r.identity, 'A', 0) != 11)
        return word;
    for (const auto& [one, two] : a011_commands)
        if (two == word)
            return one;
    return -1;
}

int command_word(const sim_garmin& r, int command)
{
    if (sim_protocol(r.identity, 'A', 0) == 11)
        for (const auto& [one, two] : a011_commands)
            if (one == command)
                return two;
    return command;
}

std::string word(int value)
{
    byte_writer w;
    w.le(static_cast<std::uint16_t>(value));
    return w.out;
}

int word_of(std::string_view data)
{
    byte_reader in(data);
    return data.size() == 1 ? in.u8() : in.le<std::uint16_t>();
}

void put(sim_garmin& r, const sim_packet& packet, bool wants_ack)
{
    r.last = sim_frame({to_line(r, packet.id), packet.data});
    r.waits = wants_ack;
    r.send(r.last);
}

void acknowledge(sim_garmin& r, int line_id)
{
    put(r, {pid_ack, word(line_id)}, r.waits);
}

void send_next(sim_garmin& r)
{
    if (r.queue.empty())
        return;
    const sim_packet packet = std::move(r.queue.front());
    r.queue.pop_front();
    put(r, packet, true);
}

void queue_list(sim_garmin& r, sim_list list)
{
    const std::vector<sim_packet>& packets = r.memory[list];
    r.queue.push_back({pid_records, word(static_cast<int>(packets.size()))});
    r.queue.insert(r.queue.end(), packets.begin(), packets.end());
    r.queue.push_back({pid_complete, word(command_word(r, static_cast<int>(list)))});
}

/// Whether the receiver has a protocol for that list.
bool has_list(const sim_garmin& r, sim_list list)
{
    switch (list) {
    case sim_list::waypoints: return sim_protocol(r.identity, 'A', 1) != 0;
    case sim_list::routes: return sim_protocol(r.identity, 'A', 2) != 0;
    case sim_list::track: return sim_protocol(r.identity, 'A', 3) != 0;
    case sim_list::proximity: return sim_protocol(r.identity, 'A', 4) != 0;
    }
    return false;
}

void queue_answer(sim_garmin& r, int id, std::string data)
{
    if (!data.empty())
        r.queue.push_back({id, std::move(data)});
}

void obey(sim_garmin& r, int command)
{
    r.queue.clear();
    r.waits = false;
    switch (command) {
    case 0: r.live = false; break; // abort
    case 2: queue_answer(r, pid_position, r.position_data()); break;
    case 3:
    case 4:
    case 6:
    case 7:
        if (has_list(r, static_cast<sim_list>(command)))
            queue_list(r, static_cast<sim_list>(command));
        break;
    case 5: queue_answer(r, pid_clock, r.clock_data()); break;
    case 8: r.powered = false; break;
    case 49: r.live = sim_protocol(r.identity, 'A', 8) != 0; break;
    case 50: r.live = false; break;
    default: break; // acknowledged and not known, as receivers do
    }
    send_next(r);
}

void queue_identity(sim_garmin& r)
{
    byte_writer w;
    w.le(static_cast<std::uint16_t>(r.identity.product));
    w.le(static_cast<std::uint16_t>(r.identity.version));
    w.out += r.identity.description + '\0';
    r.queue.clear();
    r.queue.push_back({pid_product, w.out});
    for (int i = 0; i < r.identity.extended_packets; ++i)
        r.queue.push_back({pid_extended, std::string("SIMULATED\0", 10)});
    if (!r.identity.reports_protocols)
        return;
    byte_writer array;
    for (const std::string& token : r.identity.protocols) {
        array.u8(static_cast<std::uint8_t>(token.empty() ? ' ' : token[0]));
        array.le(static_cast<std::uint16_t>(protocol_number(token)));
    }
    r.queue.push_back({pid_protocols, array.out});
}

/// The list that packets of a kind belong to.
std::optional<sim_list> list_of(int id)
{
    switch (id) {
    case pid_waypoint: return sim_list::waypoints;
    case pid_proximity: return sim_list::proximity;
    case pid_route_header:
    case pid_route_waypoint:
    case pid_route_link: return sim_list::routes;
    case pid_track_header:
    case pid_track_point: return sim_list::track;
    default: return std::nullopt;
    }
}

void end_of_list(sim_garmin& r)
{
    if (!r.arriving)
        return;
    const std::vector<sim_packet> packets = std::move(*r.arriving);
    r.arriving.reset();
    if (packets.empty())
        return;
    const sim_list list = *list_of(packets.front().id);
    std::vector<sim_packet>& kept = r.arrived[list];
    kept.insert(kept.end(), packets.begin(), packets.end());
    r.received(list);
}

void take_packet(sim_garmin& r, const sim_packet& packet)
{
    ++r.frames_in;
    const int id = from_line(r, packet.id);
    if (id == pid_ack) {
        if (r.waits) {
            r.waits = false;
            send_next(r);
        }
        return;
    }
    if (id == pid_nak) {
        if (!r.last.empty())
            r.send(r.last);
        return;
    }
    acknowledge(r, packet.id);
    if (id == pid_product_request) {
        r.waits = false;
        queue_identity(r);
        send_next(r);
    } else if (id == pid_command && packet.data.size() >= 1) {
        obey(r, command_of(r, word_of(packet.data)));
    } else if (id == pid_records) {
        r.queue.clear();
        r.waits = false;
        r.announced = word_of(packet.data);
        r.arriving.emplace();
    } else if (id == pid_complete) {
        r.queue.clear(); // of a host that breaks off
        r.waits = false;
        end_of_list(r);
    } else if (id == pid_clock) {
        r.clock_set(packet.data);
    } else if (r.arriving && list_of(id)) {
        r.arriving->push_back({id, packet.data});
    }
}

} // namespace

void sim_garmin_take(sim_garmin& receiver, std::string_view bytes)
{
    for (const char c : bytes) {
        if (!receiver.powered)
            return;
        switch (receiver.in.take(c)) {
        case sim_take::more: break;
        case sim_take::packet: take_packet(receiver, sim_packet(receiver.in.packet)); break;
        case sim_take::damaged:
            ++receiver.damaged_in;
            put(receiver, {pid_nak, word(receiver.in.packet.id)}, receiver.waits);
            break;
        }
    }
}

void sim_garmin_second(sim_garmin& receiver)
{
    if (!receiver.live || !receiver.powered || !receiver.queue.empty())
        return;
    const std::string data = receiver.live_data();
    if (!data.empty())
        put(receiver, {pid_live, data}, true);
}

int sim_protocol(const sim_identity& identity, char letter, int hundreds)
{
    for (const std::string& token : identity.protocols)
        if (!token.empty() && token[0] == letter) {
            const int n = protocol_number(token);
            if (letter == 'L' || n / 100 == hundreds)
                return n;
        }
    return 0;
}

int sim_record(const sim_identity& identity, int a_hundreds, int n)
{
    bool inside = false;
    for (const std::string& token : identity.protocols) {
        if (token.empty())
            continue;
        if (token[0] == 'A')
            inside = protocol_number(token) / 100 == a_hundreds && a_hundreds > 0;
        else if (token[0] == 'D' && inside && --n == 0)
            return protocol_number(token);
    }
    return 0;
}

} // namespace velkoro
