#include "cli/options.h"

#include "cli/command.h"
#include "cli/json_out.h"
#include "cli/messages.h"
#include "core/code_page.h"
#include "core/files.h"
#include "core/form1.h"
#include "core/program_folder.h"
#include "core/settings.h"
#include "core/shell.h"
#include "core/symbols.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <stdexcept>

namespace velkoro {
namespace {

constexpr const char* usage_head =
    "velkoro-cli [--home DIR] [--json] [--lang N] [--set KEY=VALUE]...";

// Without a number behind it; "Pr_" and "pos_" stand for their families.
constexpr std::string_view main_keys[] = {
    "lang3",  "lang",  "month", "last_w0", "last_w_o",    "last_w_c",  "last_t0",  "last_k0",
    "pr_act", "scale", "opt",   "col_wp",  "map_options", "maps_show", "user_form"};

// The steps of the desktop's start that read tables and settings. The others place windows, ask,
// change the current folder or write to the settings file.
constexpr int start_steps[] = {2, 3, 4, 6, 8, 11, 13, 15, 16, 17, 18};

void override_setting(const std::string& section, const std::string& key, const std::string& value)
{
    settings.overrides[{lower(section), lower(key)}] = value;
}

void declare_globals(CLI::App& app, cli_options& o)
{
    app.add_option("--home", o.home, "the program folder (settings and tables)")->type_name("DIR");
    app.add_flag("--json", o.json, "one JSON document on standard output instead of text");
    app.add_option("--lang", o.lang, "language column of the text table")
        ->type_name("N")
        ->check(CLI::NonNegativeNumber);
    app.add_option("--set", o.set, "a key of the active profile or of Main, for this run only")
        ->type_name("KEY=VALUE")
        ->take_all()
        ->allow_extra_args(false)
        ->check([](const std::string& argument) {
            return split_setting(argument).first.empty() ? "expected KEY=VALUE" : "";
        });
    app.add_option("--on-conflict", o.on_conflict, "the answer to every insert conflict")
        ->type_name("old|new|both")
        ->check(CLI::IsMember({"old", "new", "both"}))
        ->capture_default_str();
    auto* yes = app.add_flag("--yes", o.yes, "answer every other question with Yes (default)");
    app.add_flag("--no", o.no, "answer every other question with No")->excludes(yes);
}

/// The usage line of the command that was being read.
std::string usage_line(const CLI::App& app)
{
    const CLI::App* deepest = &app;
    std::string names;
    for (auto chosen = deepest->get_subcommands(); !chosen.empty();
         chosen = deepest->get_subcommands()) {
        deepest = chosen.front();
        names += " " + deepest->get_name();
    }
    if (deepest == &app)
        return std::string("usage: ") + usage_head + " COMMAND [ARGS]";
    std::string line = "usage: velkoro-cli" + names;
    if (!deepest->get_options([](const CLI::Option* o) { return o->nonpositional(); }).empty())
        line += " [OPTIONS]";
    if (!deepest->get_subcommands([](const CLI::App*) { return true; }).empty())
        line += " COMMAND";
    for (const CLI::Option* o :
         deepest->get_options([](const CLI::Option* each) { return each->get_positional(); })) {
        const std::string name = o->get_name(true, false);
        const std::string more = o->get_expected_max() > 1 ? "..." : "";
        line += o->get_required() ? " " + name + more : " [" + name + more + "]";
    }
    return line;
}

int usage_error(const CLI::App& app, const std::string& reason)
{
    std::fprintf(stderr, "velkoro-cli: %s\n%s\n", reason.c_str(), usage_line(app).c_str());
    return exit_usage;
}

conflict_answer conflict_option(const std::string& word)
{
    if (word == "old")
        return conflict_answer::keep_old;
    return word == "both" ? conflict_answer::keep_both : conflict_answer::take_new;
}

int run_command(const cli_command& command, const cli_action& action, const cli_options& options)
try {
    if (command.needs_program_folder)
        cli_prepare(options);
    const int code = action();
    end_progress();
    return code == exit_done ? cli_exit_code() : code;
} catch (...) {
    const std::string reason = current_exception_text();
    cli_fail(reason);
    if (cli.json) // whoever reads the output gets a document in every case
        print_json({{"error", json_text(reason)}});
    return exit_failed;
}

} // namespace

std::pair<std::string, std::string> split_setting(const std::string& argument)
{
    const std::size_t cut = argument.find('=');
    if (cut == std::string::npos)
        return {};
    const std::string key(trim(from_utf8(argument.substr(0, cut))));
    std::string value(trim(from_utf8(argument.substr(cut + 1))));
    if (value.size() >= 2 && value.front() == '"' && value.back() == '"')
        value = value.substr(1, value.size() - 2);
    return {key, value};
}

bool is_main_key(std::string_view key)
{
    const std::string k = lower(key);
    return std::ranges::find(main_keys, k) != std::end(main_keys) || k.starts_with("pr_") ||
           k.starts_with("pos_");
}

void cli_prepare(const cli_options& options)
{
    set_program_folder(options.home);
    settings.ini_path = folders.program + "velkoro.ini";

    for (const std::string& argument : options.set) {
        const auto [key, value] = split_setting(argument);
        if (is_main_key(key))
            override_setting("main", key, value);
    }
    // A folder without settings works as after the desktop's first start.
    const bool fresh = ini_get("Main", "Pr_act").empty();
    // The profile's name may itself have been set.
    if (const std::string active = ini_get("Main", "Pr_act"); !active.empty())
        settings.profile = active;
    for (const std::string& argument : options.set) {
        const auto [key, value] = split_setting(argument);
        if (!is_main_key(key))
            override_setting(settings.profile, key, value);
    }
    settings.lang = text_table.language =
        options.lang >= 0 ? options.lang : std::max(0, ini_get_int("Main", "Lang3", 0));

    for (const shell_step& step : shell.start)
        if (std::ranges::find(start_steps, step.number) != std::end(start_steps) && !step.run())
            throw std::runtime_error("the start ended in the step " + step.name);
    if (fresh && ini_get(settings.profile, "Flags").empty()) {
        first_switches();
        symbols_load();
    }
    if (Form1.Datum.items.empty()) { // without a table everything is on WGS 84
        Form1.Datum.items = {"WGS 84"};
        Form1.Datum.selected = 0;
    }
    // The heads of files choose format and datum as a user would; the desktop's own choice stays.
    override_setting("Main", "Opt", ini_get("Main", "Opt"));
    // What is missing there (a table) fails the commands that need it, not the others.
    cli.failed = false;
}

int cli_run(int argc, const char* const* argv)
{
    cli_options options;
    CLI::App app{"VELkoro without windows: reads, converts and prints the files of GPS receivers.",
                 "velkoro-cli"};
    app.set_version_flag("--version", "velkoro-cli " VELKORO_VERSION, "print the version");
    app.set_help_flag("-h,--help", "print this help");
    app.require_subcommand(1);
    app.fallthrough(); // the options above are understood behind the command too
    declare_globals(app, options);

    std::vector<std::pair<const CLI::App*, std::pair<const cli_command*, cli_action>>> declared;
    for (const cli_command& command : cli_commands()) {
        CLI::App* sub = app.add_subcommand(command.name, command.help);
        declared.push_back({sub, {&command, command.declare(*sub)}});
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        if (e.get_exit_code() == 0) // --help and --version
            return app.exit(e);
        return usage_error(app, e.what());
    }

    cli.json = options.json;
    cli.answer_yes = !options.no;
    cli.on_conflict = conflict_option(options.on_conflict);
    install_cli_platform();
    for (const auto& [sub, what] : declared)
        if (sub->parsed())
            return run_command(*what.first, what.second, options);
    return usage_error(app, "no command");
}

} // namespace velkoro
