#include "tests/comm/transfer_rig.h"

#include "comm/gar_codec_track.h"
#include "comm/gar_codec_wp.h"
#include "comm/gar_ident.h"
#include "comm/install.h"
#include "core/job.h"
#include "core/num_text.h"
#include "core/settings.h"
#include "core/text_tools.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace velkoro {
namespace {

/// A frame as hexadecimal, a sentence as it stands.
std::string shown(const std::string& bytes)
{
    if (!bytes.starts_with('$'))
        return hex(bytes);
    return bytes.substr(0, bytes.find('\r'));
}

} // namespace

transfer_rig::transfer_rig()
{
    scripted_platform::plain_texts();
    home.put("SYMBOL_2.INI", "00:00 Dot\r\n03:03 Boat\r\n");
    home.put("SYMBOL_3.INI", "00:12 Waypoint\r\n03:03 Boat\r\n");
    transfer = {};
    gar_ident_run = {};
    store.wp_name_max = 6;
    comm_install();
    const auto to_host = [this](const std::string& bytes) {
        for (const sim_chunk& chunk : sim_send(faults, bytes)) {
            transcript += "< " + shown(chunk.bytes) + "\n";
            line.send(chunk.bytes, chunk.delay_s);
        }
    };
    garmin.send = magellan.send = to_host;
    magellan.received = [this](const std::string& body) { sentences.push_back(body); };
    line.on_output = [this](const std::string& bytes) {
        ++writes;
        transcript += "> " + shown(bytes) + "\n";
        if (on_write && !on_write(writes, bytes))
            return;
        if (speaks_sentences)
            sim_magellan_take(magellan, bytes);
        else
            sim_garmin_take(garmin, bytes);
    };
    protocols("L001 A010 A100 D103 A201 D202 D103 D210 A301 D310 D301 A400 D403");
}

void transfer_rig::protocols(std::string_view tokens)
{
    garmin.identity.protocols.clear();
    std::string rest(tokens);
    while (!rest.empty())
        garmin.identity.protocols.push_back(cut_token(rest, " "));
    garmin.identity.reports_protocols = true;
}

void transfer_rig::holds(sim_list list, std::vector<sim_packet> packets)
{
    garmin.memory[list] = std::move(packets);
}

void transfer_rig::speak_sentences()
{
    speaks_sentences = true;
    settings.garmin[static_cast<std::size_t>(gar_place::gar_wp_format)] = 1;
}

double transfer_rig::run(const std::string& code)
{
    const double before = user.time_s;
    transfer.last_pump = 0;
    run_job(code);
    return user.time_s - before;
}

std::string transfer_rig::names()
{
    std::string out;
    for (int i = 0; i <= store.wp_top; ++i)
        out += (out.empty() ? "" : " ") + store.wp[static_cast<std::size_t>(i)].nam;
    return out;
}

wayp_rec some_waypoint(int n)
{
    wayp_rec w;
    w.nam = "W" + pic(n, "0000");
    w.kom = "POINT " + std::to_string(n);
    w.pos = {500000000 + n * 4096, 100000000 - n * 8192};
    w.dat = 361448102 + n;
    return w;
}

sim_packet waypoint_packet(int n, int type, int id)
{
    sim_packet p{.id = id};
    wayp_rec w = some_waypoint(n);
    if (id == 19)
        w.prox = static_cast<std::int16_t>(n + 1);
    gar_wp_encode(w, type, id == 19, p.data);
    return p;
}

std::vector<sim_packet> waypoint_packets(int count, int type)
{
    std::vector<sim_packet> out;
    for (int n = 0; n < count; ++n)
        out.push_back(waypoint_packet(n, type));
    return out;
}

trackp_rec some_point(int n)
{
    trackp_rec p;
    p.pos = {500000000 + n * 64, 100000000 - n * 32};
    p.zeit = 361448102 + n * 10;
    p.alt = static_cast<std::int16_t>(400 + n % 200);
    return p;
}

sim_packet point_packet(int n, int type, bool segment)
{
    return {34, gar_point_encode(some_point(n), type, segment)};
}

sim_packet header_packet(const std::string& name, int type)
{
    return {99, gar_track_encode(name, 255, type)};
}

void expect_golden_text(const std::string& folder, const std::string& name,
                        const std::string& actual)
{
    const std::string path =
        std::string(VELKORO_SOURCE_DIR) + "/tests/golden/" + folder + "/" + name;
    const char* write = std::getenv("VELKORO_GOLDEN");
    if (write && std::string(write) == "write") {
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        std::ofstream(path, std::ios::binary) << actual;
        return;
    }
    std::ifstream in(path, std::ios::binary);
    EXPECT_EQ(actual, std::string(std::istreambuf_iterator<char>(in), {})) << path;
}

} // namespace velkoro
