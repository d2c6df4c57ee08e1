#include "tools/receiver-sim/sim_magellan.h"

#include <utility>

namespace velkoro {
namespace {

void put(sim_magellan& r, const std::string& body)
{
    r.last_sum = sim_checksum(body);
    r.send(sim_sentence(body));
}

void send_next(sim_magellan& r)
{
    if (r.queue.empty())
        return;
    const std::string body = std::move(r.queue.front());
    r.queue.pop_front();
    put(r, body);
}

void send_list(sim_magellan& r, const std::vector<std::string>& list)
{
    r.queue.assign(list.begin(), list.end());
    r.queue.emplace_back("PMGNCMD,END");
    if (r.handshake)
        send_next(r);
    while (!r.handshake && !r.queue.empty())
        send_next(r);
}

/// A command of the host: what stands behind "PMGNCMD,".
void obey(sim_magellan& r, std::string_view command)
{
    if (command == "HANDON") {
        r.handshake = true;
    } else if (command == "HANDOFF") {
        r.handshake = false;
        r.queue.clear();
    } else if (command == "VERSION") {
        r.queue.clear();
        put(r, "PMGNVER," + r.version);
    } else if (command == "WAYPOINT") {
        send_list(r, r.waypoints);
    } else if (command == "ROUTE") {
        send_list(r, r.routes);
    } else if (command.starts_with("TRACK")) {
        send_list(r, r.track);
    } else if (command == "STOP") {
        r.queue.clear();
    } else if (command != "END") {
        put(r, "PMGNCMD,UNABLE");
    }
}

void take_sentence(sim_magellan& r, std::string_view body, std::string_view sum)
{
    if (sim_checksum(body) != sum) {
        ++r.damaged_in;
        return;
    }
    if (body.starts_with("PMGNCSM,")) {
        if (body.substr(8) == r.last_sum && r.handshake)
            send_next(r);
    } else if (body.starts_with("PMGNCMD,")) {
        if (r.handshake)
            r.send(sim_sentence("PMGNCSM," + std::string(sum)));
        obey(r, body.substr(8));
    } else if (body.starts_with("PMGNWPL,") || body.starts_with("PMGNRTE,") ||
               body.starts_with("PMGNTRK,") || body.starts_with("GPWPL,")) {
        r.received(std::string(body));
        if (r.handshake)
            r.send(sim_sentence("PMGNCSM," + std::string(sum)));
    }
}

} // namespace

std::string sim_checksum(std::string_view body)
{
    unsigned x = 0;
    for (const char c : body)
        x ^= static_cast<unsigned char>(c);
    constexpr std::string_view digits = "0123456789ABCDEF";
    return {digits[x >> 4], digits[x & 15]};
}

std::string sim_sentence(std::string_view body)
{
    return "$" + std::string(body) + "*" + sim_checksum(body) + "\r\n";
}

void sim_magellan_take(sim_magellan& receiver, std::string_view bytes)
{
    for (const char c : bytes) {
        if (c == '$')
            receiver.in.clear();
        if (c != '\n' && c != '\r') {
            receiver.in += c;
            continue;
        }
        const std::string line = std::exchange(receiver.in, {});
        const std::size_t star = line.rfind('*');
        if (line.size() > 1 && line[0] == '$' && star != std::string::npos)
            take_sentence(receiver, std::string_view(line).substr(1, star - 1),
                          std::string_view(line).substr(star + 1));
    }
}

} // namespace velkoro
