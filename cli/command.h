/// The commands of velkoro-cli as a table: one row a command.
/// A new command is one file with its `declare` procedure, its prototype here and its row in
/// commands.cpp.
#pragma once

#include <functional>
#include <span>

namespace CLI {
class App;
}

namespace velkoro {

/// Exit codes.
inline constexpr int exit_done = 0;
inline constexpr int exit_failed = 1;
inline constexpr int exit_usage = 2;

/// What a command does once its options are read; the result is the exit code. An exception that
/// leaves it fails the command with the exception's text.
using cli_action = std::function<int()>;

struct cli_command {
    const char* name;
    const char* help; ///< one line for the list of commands
    /// Adds the command's options and positional arguments; returns the action. Values that CLI11
    /// writes live in a record that the action shares.
    cli_action (*declare)(CLI::App& command);
    /// True: program folder, settings, texts, symbols and datums stand before the action runs.
    bool needs_program_folder;
};

/// All commands, in the order of the help.
std::span<const cli_command> cli_commands();

cli_action declare_convert(CLI::App& command);
cli_action declare_dump(CLI::App& command);
cli_action declare_info(CLI::App& command);
cli_action declare_text(CLI::App& command);
cli_action declare_res(CLI::App& command);
cli_action declare_coord(CLI::App& command);
cli_action declare_distance(CLI::App& command);
cli_action declare_project(CLI::App& command);
cli_action declare_receiver(CLI::App& command);

/// The whole run: reads the command line, prepares, acts. Returns the exit code of the process.
int cli_run(int argc, const char* const* argv);

} // namespace velkoro
