/// velkoro-receiver-sim: a receiver without hardware, on a pseudo terminal.
#include "cli/command.h"
#include "cli/messages.h"
#include "cli/options.h"
#include "comm/serial_line.h"
#include "coords/install.h"
#include "core/files.h"
#include "core/shell.h"
#include "core/text_tools.h"
#include "tools/receiver-sim/sim_run.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <map>
#include <memory>
#include <optional>

namespace velkoro {
namespace {

/// What CLI11 writes before it becomes sim_options.
struct raw_options {
    std::string kind = "old", name{}, version{}, protocols{};
    std::optional<int> product{};
    bool array = false, no_array = false;
    int extended = 0;
    std::vector<std::string> faults{};
    bool offer = false;
};

void declare(CLI::App& app, sim_options& o, raw_options& raw)
{
    const std::map<std::string, sim_speech> speeches = {{"garmin", sim_speech::garmin},
                                                        {"magellan", sim_speech::magellan},
                                                        {"nmea", sim_speech::nmea}};
    app.add_option("--protocol", o.speech, "garmin, magellan or nmea")
        ->transform(CLI::CheckedTransformer(speeches));
    app.add_option("--kind", raw.kind,
                   "kind of a Garmin: old, new (reports its protocols), aviation")
        ->check(CLI::IsMember({"old", "new", "aviation"}))
        ->capture_default_str();
    app.add_option("--product", raw.product, "product number; protocols from Garmin.ini");
    app.add_option("--version", raw.version, "software version (3.50)");
    app.add_option("--name", raw.name, "text of the product data, or the fields of PMGNVER");
    app.add_option("--protocols", raw.protocols, "\"L001 A010 A100 D103 ...\"");
    app.add_flag("--array", raw.array, "report the protocols");
    app.add_flag("--no-array", raw.no_array, "do not report them");
    app.add_option("--extended", raw.extended, "packets of extended product data ahead of them")
        ->check(CLI::Range(0, 99));
    app.add_option("--load", o.load, "native files that the receiver holds")
        ->check(CLI::ExistingFile);
    app.add_option("--save", o.save, "native files to write whenever a list has arrived");
    app.add_option("--link", o.link, "symbolic link to the line");
    app.add_flag("--offer", raw.offer, "link the line where velkoro looks for a simulator");
    app.add_option("--fault", raw.faults,
                   "drop, delay[=S], corrupt, split[=S], repeat or shorten, then @N (the packet), "
                   "@everyN or @P% (by chance)");
    app.add_option("--seed", o.seed, "of the faults by chance")->capture_default_str();
    app.add_option("--baud", o.baud, "pace of the line (default: none)")
        ->check(CLI::NonNegativeNumber);
    app.add_option("--exit-after", o.exit_after, "end after so many seconds of silence");
    app.add_flag("!--no-fix", o.has_fix, "the receiver does not know its position");
    app.add_option("--datum", o.datum, "datum that the NMEA stream names")->capture_default_str();
    app.add_option("--start", o.start, "first time of the live position, UTC")
        ->check([](const std::string& text) {
            return sim_time_of_text(text) ? "" : "expected \"yyyy-mm-dd hh:mm:ss\"";
        });
    app.add_option("--log", o.log, "file for the bytes in both directions, - for standard output");
    app.add_option("--home", o.home, "the program folder");
}

/// The identity that the options add up to; empty text, or what is wrong with them.
std::string complete(sim_options& o, const raw_options& raw)
{
    if (raw.offer)
        o.link = simulator_path();
    o.identity = *sim_kind(raw.kind);
    if (raw.product) {
        o.identity.product = *raw.product;
        o.identity.description = "Simulated GPS Software Version";
        o.identity.protocols.clear();
        o.identity.reports_protocols = false;
    }
    if (!raw.version.empty())
        o.identity.version =
            static_cast<int>(std::strtod(raw.version.c_str(), nullptr) * 100 + 0.5);
    if (!raw.name.empty())
        o.identity.description = o.magellan_version = raw.name;
    if (!raw.protocols.empty()) {
        o.identity.protocols.clear();
        std::string_view rest = raw.protocols;
        while (!(rest = trim_left(rest)).empty())
            o.identity.protocols.emplace_back(next_field(rest, ' '));
    }
    o.identity.extended_packets = raw.extended;
    if (raw.array || raw.no_array)
        o.identity.reports_protocols = raw.array;
    if (o.speech == sim_speech::garmin && o.identity.protocols.empty()) {
        const auto table = read_file(program_path("Garmin.ini"));
        if (!table)
            return "Garmin.ini cannot be read";
        o.identity.protocols = sim_protocols_of(*table, o.identity.product, o.identity.version);
        if (o.identity.protocols.empty())
            return "Garmin.ini does not know that product; name its --protocols";
    }
    for (const std::string& text : raw.faults) {
        const auto rule = sim_fault_of(text);
        if (!rule)
            return "\"" + text + "\" is no fault";
        o.faults.push_back(*rule);
    }
    return "";
}

int run(int argc, char** argv)
{
    sim_options options;
    raw_options raw;
    CLI::App app("Plays a receiver on a pseudo terminal, whose path it prints.");
    declare(app, options, raw);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        return app.exit(e) == 0 ? exit_done : exit_usage;
    }
    shell_install();
    coords_install();
    install_cli_platform();
    // Nothing of the user's receiver settings: all lists and names fit, facilities and the whole
    // character set pass.
    cli_prepare({.home = options.home, .set = {"Garmin=32767 0 999 999 32767 0 0 50 0 1 0 1"}});
    if (const std::string wrong = complete(options, raw); !wrong.empty()) {
        std::fprintf(stderr, "velkoro-receiver-sim: %s\n", wrong.c_str());
        return exit_usage;
    }
    return sim_run(options);
}

} // namespace
} // namespace velkoro

int main(int argc, char** argv)
try {
    return velkoro::run(argc, argv);
} catch (const std::exception& e) {
    std::fprintf(stderr, "velkoro-receiver-sim: %s\n", e.what());
    return velkoro::exit_failed;
}
