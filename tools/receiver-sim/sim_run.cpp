#include "tools/receiver-sim/sim_run.h"

#include "cli/reading.h"
#include "core/files.h"
#include "core/store.h"
#include "tools/receiver-sim/sim_memory.h"
#include "tools/receiver-sim/sim_pty.h"
#include "waypoints/native_t.h"
#include "waypoints/native_wp.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>

namespace velkoro {
namespace {

volatile std::sig_atomic_t stop_asked = 0;

void ask_to_stop(int)
{
    stop_asked = 1;
}

std::int64_t time_now()
{
    using namespace std::chrono;
    constexpr sys_days epoch = year{1989} / 12 / 31;
    return duration_cast<seconds>(system_clock::now() - sys_seconds(epoch)).count();
}

/// The symbolic link to the line, for as long as the receiver runs.
struct link_guard {
    std::string path{};

    explicit link_guard(const sim_line& line, const std::string& link)
    {
        namespace fs = std::filesystem;
        if (link.empty())
            return;
        if (fs::exists(fs::symlink_status(link)) && !fs::is_symlink(fs::symlink_status(link)))
            throw std::runtime_error(link + " is there and no link");
        fs::remove(link);
        fs::create_symlink(line.path, link);
        path = link;
    }
    ~link_guard()
    {
        std::error_code ignored;
        if (!path.empty())
            std::filesystem::remove(path, ignored);
    }
    link_guard(const link_guard&) = delete;
    link_guard& operator=(const link_guard&) = delete;
};

struct session {
    // GCC 12 warns of members that an aggregate would leave half made.
    explicit session(const sim_options& wanted) : options(wanted) {}
    const sim_options& options;
    sim_line line{};
    sim_faults faults{};
    sim_garmin garmin{};
    sim_magellan magellan{};
    sim_walk walk{};
    sim_route_drafts routes{};
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> log{nullptr, std::fclose};
    std::int64_t second = 0;  ///< of the walk
    std::int64_t clock_s = 0; ///< that the host set the clock forward by
    double last_traffic = -1; ///< none yet
    bool unsaved = false;
    int records = 0; ///< taken from the host
};

void write_log(session& s, const char* who, std::string_view bytes)
{
    if (s.options.log.empty())
        return;
    std::FILE* out = s.log ? s.log.get() : stdout;
    std::fprintf(out, "%s", who);
    for (const char c : bytes)
        std::fprintf(out, " %02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
    std::fputc('\n', out);
    std::fflush(out);
}

void send(session& s, std::string bytes)
{
    write_log(s, "unit", bytes);
    sim_put(s.line, sim_send(s.faults, std::move(bytes)));
}

void save(session& s)
{
    s.unsaved = false;
    for (const std::string& path : s.options.save)
        write_file(path,
                   kind_of_name(path) == file_kind::track ? write_t({}).bytes : write_wp({}).bytes);
}

void wire_garmin(session& s)
{
    s.garmin.identity = s.options.identity;
    sim_speak(s.garmin.identity);
    sim_fill(s.garmin);
    s.garmin.send = [&s](std::string frame) { send(s, std::move(frame)); };
    s.garmin.received = [&s](sim_list list) {
        s.records += static_cast<int>(s.garmin.arrived[list].size());
        sim_keep(s.garmin, list);
        save(s);
    };
    const auto has_position = [&s](int hundreds) {
        return s.walk.has_fix && sim_protocol(s.garmin.identity, 'A', hundreds) != 0;
    };
    s.garmin.clock_data = [&s] { return sim_d600(time_now() + s.clock_s); };
    s.garmin.position_data = [&s, has_position] {
        return has_position(7) ? sim_d700(s.walk, s.second) : std::string{};
    };
    s.garmin.live_data = [&s] { return sim_d800(s.walk, s.second); };
    s.garmin.clock_set = [&s](const std::string& data) {
        if (const auto time = sim_time_of_d600(data))
            s.clock_s = *time - time_now();
    };
}

void wire_magellan(session& s)
{
    s.magellan.version = s.options.magellan_version;
    sim_fill(s.magellan);
    s.magellan.send = [&s](std::string line) { send(s, std::move(line)); };
    s.magellan.received = [&s](const std::string& body) {
        s.records += sim_keep(body, s.routes) ? 1 : 0;
        s.unsaved = true;
    };
}

void take(session& s, const std::string& bytes)
{
    write_log(s, "host", bytes);
    s.last_traffic = sim_now();
    switch (s.options.speech) {
    case sim_speech::garmin: sim_garmin_take(s.garmin, bytes); break;
    case sim_speech::magellan: sim_magellan_take(s.magellan, bytes); break;
    case sim_speech::nmea: break; // speaks and does not listen
    }
}

void next_second(session& s)
{
    ++s.second;
    if (s.options.speech == sim_speech::garmin)
        sim_garmin_second(s.garmin);
    if (s.options.speech == sim_speech::nmea)
        send(s, sim_nmea(s.walk, s.second));
}

/// A Magellan host does not say when its list is whole: a pause does.
void after_pause(session& s)
{
    if (!s.unsaved || sim_now() - s.last_traffic < 0.3)
        return;
    sim_keep_routes(s.routes);
    sim_fill(s.magellan);
    save(s);
}

bool silent_too_long(const session& s)
{
    return s.options.exit_after > 0 && s.last_traffic >= 0 &&
           sim_now() - s.last_traffic > s.options.exit_after;
}

void play(session& s)
{
    double second_at = sim_now() + 1;
    while (stop_asked == 0 && s.garmin.powered && !silent_too_long(s)) {
        const double due = sim_write_due(s.line);
        const double pause = second_at - sim_now();
        const std::string bytes = sim_read(s.line, std::min({0.1, pause, due < 0 ? 0.1 : due}));
        if (!bytes.empty())
            take(s, bytes);
        if (sim_now() >= second_at) {
            second_at += 1;
            next_second(s);
        }
        after_pause(s);
    }
    sim_write_due(s.line);
}

} // namespace

int sim_run(const sim_options& options)
{
    if (!options.load.empty())
        read_files(options.load);
    session s(options);
    s.faults = {options.faults, options.seed, 0};
    s.walk.has_fix = options.has_fix;
    s.walk.datum = options.datum;
    s.walk.start_time =
        options.start.empty() ? time_now() : sim_time_of_text(options.start).value_or(0);
    sim_fill(s.walk);
    if (!options.log.empty() && options.log != "-")
        s.log.reset(std::fopen(options.log.c_str(), "w"));
    s.line = sim_open_line();
    s.line.bytes_per_s = options.baud / 10.0;
    const link_guard link(s.line, options.link);
    if (options.speech == sim_speech::garmin)
        wire_garmin(s);
    if (options.speech == sim_speech::magellan)
        wire_magellan(s);
    std::signal(SIGINT, ask_to_stop);
    std::signal(SIGTERM, ask_to_stop);
    std::printf("%s\n", options.link.empty() ? s.line.path.c_str() : options.link.c_str());
    std::fflush(stdout);
    play(s);
    if (s.unsaved) {
        sim_keep_routes(s.routes);
        save(s);
    }
    sim_close_line(s.line);
    return 0;
}

} // namespace velkoro
