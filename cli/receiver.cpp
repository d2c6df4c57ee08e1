// What velkoro-cli does with a receiver: identify it, read from it, write to it, its clock, off.
#include "cli/command.h"
#include "cli/json_out.h"
#include "cli/messages.h"
#include "cli/reading.h"
#include "comm/comm.h"
#include "comm/gar_codec_time.h"
#include "comm/gar_ident.h"
#include "comm/gar_proto.h"
#include "comm/gar_session.h"
#include "comm/garmin_link.h"
#include "comm/transfer.h"
#include "coords/times.h"
#include "core/code_page.h"
#include "core/files.h"
#include "core/job.h"
#include "core/platform.h"
#include "core/settings.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "waypoints/backup.h"
#include "waypoints/native_t.h"
#include "waypoints/native_wp.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <stdexcept>

namespace velkoro {
namespace {

constexpr int garmin_baud = 9600;
constexpr std::array<int, 6> magellan_bauds{4800, 9600, 19200, 28800, 56000, 128000};
constexpr int cmd_time = 5, cmd_off = 8, pid_clock = 14;

struct receiver_options {
    std::string port{}, protocol = "garmin";
    int baud = 0;       // 0: what the protocol usually has
    std::string what{}; // waypoints, routes, tracks
    std::string file{};
};

bool is_magellan(const receiver_options& o)
{
    return o.protocol == "magellan";
}

/// Why the options do not go together; empty when they do.
std::string usage_fault(const receiver_options& o)
{
    if (is_magellan(o) && o.port == "usb")
        return "a Magellan receiver is not reached over USB";
    if (is_magellan(o) && o.baud != 0 &&
        std::ranges::find(magellan_bauds, o.baud) == magellan_bauds.end())
        return "--baud: a Magellan receiver knows 4800, 9600, 19200, 28800, 56000 and 128000";
    if (!is_magellan(o) && o.baud != 0 && o.baud != garmin_baud)
        return "--baud: the Garmin protocol runs at 9600";
    return {};
}

/// Chooses port and protocol for this run, whatever the profile says.
void choose_receiver(const receiver_options& o)
{
    if (o.port == "usb") {
        comm.comm_port = usb_port;
    } else {
        settings.overrides[{"main", "com1"}] = o.port;
        comm.comm_port = 1;
    }
    const auto at = std::ranges::find(magellan_bauds, o.baud);
    const int format =
        at == magellan_bauds.end() ? 1 : static_cast<int>(at - magellan_bauds.begin()) + 1;
    settings.garmin[static_cast<std::size_t>(gar_place::gar_wp_format)] =
        is_magellan(o) ? format : 0;
}

/// The port goes away whatever ends the command.
struct open_receiver {
    explicit open_receiver(const receiver_options& o) { choose_receiver(o); }
    ~open_receiver() { comm_port_set(false); }
    open_receiver(const open_receiver&) = delete;
    open_receiver& operator=(const open_receiver&) = delete;

    /// Its name, or an exception that says that it does not answer.
    static std::string name(bool full)
    {
        const std::string found = garmin_ident(full);
        if (found.empty() && cli.messages.empty())
            throw std::runtime_error(text(1110));
        return found;
    }
};

std::string yes_or_no(bool value)
{
    return value ? "yes" : "no";
}

int run_ident(const receiver_options& o)
{
    const open_receiver line(o);
    const std::string name = open_receiver::name(true);
    if (name.empty())
        return cli_fail("the receiver was not identified");
    const gar_table& t = receiver.gar_proto;
    if (cli.json && is_magellan(o)) {
        print_json({{"name", json_text(name)}});
    } else if (cli.json) {
        json protocols = json::array();
        std::string rest = gar_proto_text(t);
        while (!rest.empty())
            protocols.push_back(cut_token(rest, " "));
        print_json({{"name", json_text(name)},
                    {"product", t[0][2]},
                    {"version", t[0][3] / 100.0},
                    {"protocols", std::move(protocols)},
                    {"reported", t[0][1] == told_by_receiver},
                    {"proximity", receiver.gar_has_prox},
                    {"altitude", receiver.gar_has_alt},
                    {"facilities", receiver.gar_has_avd},
                    {"symbols", receiver.gar_symbol_set}});
    } else {
        std::printf("name       %s\n", to_utf8(name).c_str());
        if (!is_magellan(o)) {
            std::printf("product    %d\nversion    %.2f\nprotocols  %s\n", t[0][2], t[0][3] / 100.0,
                        gar_proto_text(t).c_str());
            std::printf("proximity  %s\naltitude   %s\nfacilities %s\nsymbols    %d\n",
                        yes_or_no(receiver.gar_has_prox).c_str(),
                        yes_or_no(receiver.gar_has_alt).c_str(),
                        yes_or_no(receiver.gar_has_avd).c_str(), receiver.gar_symbol_set);
        }
    }
    return cli_exit_code();
}

/// Runs the job and says how it went; false when it failed.
bool run_transfer(const std::string& code)
{
    const bool failed_before = cli.failed;
    run_job(code);
    end_progress();
    const bool good = transfer.end == transfer_end::whole || transfer.end == transfer_end::empty;
    std::string result = op2.anz.caption;
    if (!op2.anz2.caption.empty())
        result += "\n" + op2.anz2.caption;
    if (good) {
        cli.failed = failed_before; // a receiver that had to be asked twice has not failed
        if (!result.empty())
            cli_note(result);
    } else {
        cli_fail(result.empty() ? "the transfer did not come to its end" : result);
    }
    return good;
}

int run_get(const receiver_options& o)
{
    choose_receiver(o);
    transfer.waypoints_first = true; // there is no list to look names up in
    const char* code = o.what == "routes" ? "R_L" : o.what == "tracks" ? "T_L" : "W_L";
    const bool good = run_transfer(code);
    const bool anything = store.wp_top >= 0 || store.rou_top >= 0 || store.trk_top >= 0;
    if (good || anything) {
        // What came ahead of a break is kept, as of a damaged file.
        const std::string bytes = o.what == "tracks" ? write_t({}).bytes : write_wp({}).bytes;
        replace_file(o.file, bytes);
    }
    if (cli.json)
        print_json({{"receiver", json_text(transfer.receiver)},
                    {"target", json_text(shown_path(o.file))},
                    {"waypoints", store.wp_top + 1},
                    {"routes", store.rou_top + 1},
                    {"points", store.trk_top + 1}});
    return cli_exit_code();
}

int run_put(const receiver_options& o)
{
    if (!read_files({o.file}))
        return cli_fail("nothing was read, so nothing is sent");
    choose_receiver(o);
    transfer.choice = {};
    const char* code = "W_S";
    if (o.what == "tracks") {
        code = "T_S";
    } else if (o.what == "routes") {
        transfer.choice.waypoints = false;
        transfer.choice.routes = true;
        // A Garmin route carries its waypoints, a Magellan one only their names.
        code = is_magellan(o) ? "W_S" : "R_S";
    }
    run_transfer(code);
    if (cli.json)
        print_json({{"receiver", json_text(transfer.receiver)}, {"records", transfer.records}});
    return cli_exit_code();
}

int run_time(const receiver_options& o)
{
    if (is_magellan(o))
        return cli_fail("a Magellan receiver does not tell its clock");
    const open_receiver line(o);
    if (open_receiver::name(false).empty())
        return cli_fail("the receiver was not identified");
    const std::string frame = garmin_comm(pid_command, cmd_time, pid_clock, false);
    const auto seconds = gar_clock_decode(gar_data(frame));
    if (!seconds)
        return cli_fail("the receiver does not tell its clock");
    const date_time t = seconds_date(*seconds);
    if (cli.json)
        print_json({{"time", date_pic(t, "yyyy-mm-dd") + "T" + date_pic(t, "hh:nn:ss") + "Z"},
                    {"seconds", *seconds}});
    else
        std::printf("%s UTC\n", date_pic(t, "yyyy-mm-dd hh:nn:ss").c_str());
    return cli_exit_code();
}

int run_off(const receiver_options& o)
{
    if (is_magellan(o))
        return cli_fail("a Magellan receiver is not switched off over the line");
    const open_receiver line(o);
    if (open_receiver::name(false).empty())
        return cli_fail("the receiver was not identified");
    garmin_comm(pid_command, cmd_off, no_wait, false);
    platform.pump(100); // the command is on its way before the port closes
    return cli_exit_code();
}

void check_file(const receiver_options& o)
{
    const file_kind wanted = o.what == "tracks" ? file_kind::track : file_kind::waypoints;
    if (kind_of_name(o.file) != wanted)
        throw CLI::ValidationError(o.file, wanted == file_kind::track
                                               ? "OUT for tracks ends in .t"
                                               : "OUT for waypoints and routes ends in .wp");
}

void declare_what(CLI::App& command, receiver_options& o, const char* file_name,
                  const char* file_help)
{
    command.add_option("WHAT", o.what, "waypoints, routes or tracks")
        ->required()
        ->check(CLI::IsMember({"waypoints", "routes", "tracks"}))
        ->type_name("WHAT");
    command.add_option(file_name, o.file, file_help)->required()->type_name("FILE");
}

} // namespace

cli_action declare_receiver(CLI::App& command)
{
    const auto o = std::make_shared<receiver_options>();
    command.add_option("--port", o->port, "the device of the serial line, or usb")
        ->required()
        ->type_name("PATH|usb");
    command.add_option("--protocol", o->protocol, "what the receiver speaks")
        ->check(CLI::IsMember({"garmin", "magellan"}))
        ->capture_default_str()
        ->type_name("garmin|magellan");
    command.add_option("--baud", o->baud, "speed of the line; default: 9600, Magellan 4800")
        ->type_name("N");
    command.require_subcommand(1);
    CLI::App* ident = command.add_subcommand("ident", "name, product, version, protocols, flags");
    CLI::App* get = command.add_subcommand("get", "reads from the receiver into a native file");
    declare_what(*get, *o, "OUT", "native file to write");
    get->callback([o] { check_file(*o); });
    CLI::App* put = command.add_subcommand("put", "reads a file and writes it to the receiver");
    declare_what(*put, *o, "IN", "file to read");
    CLI::App* time = command.add_subcommand("time", "the receiver's clock, in UTC");
    command.add_subcommand("off", "switches the receiver off");
    command.callback([o] {
        if (const std::string fault = usage_fault(*o); !fault.empty())
            throw CLI::ValidationError("receiver", fault);
    });
    return [o, ident, get, put, time] {
        return ident->parsed()  ? run_ident(*o)
               : get->parsed()  ? run_get(*o)
               : put->parsed()  ? run_put(*o)
               : time->parsed() ? run_time(*o)
                                : run_off(*o);
    };
}

} // namespace velkoro
