/// The command line's platform: boxes become lines on standard error, questions are answered by the
/// options, jobs show a bar on a terminal. It never waits for a person.
#pragma once

#include "core/hooks.h"

#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

struct shown_message {
    int number = 0;     ///< text number, 0 for a message without one
    std::string text{}; ///< Windows-1252, as shown
    bool operator==(const shown_message&) const = default;
};

struct cli_state {
    bool json = false;
    bool answer_yes = true;                                  ///< to every question
    conflict_answer on_conflict = conflict_answer::take_new; ///< to every insert conflict
    std::vector<shown_message> messages{};                   ///< shown so far
    bool failed = false; ///< something was reported that makes the exit code 1
};
inline cli_state cli;

/// Fills `platform` and the conflict hook.
void install_cli_platform();

/// Prints "velkoro-cli: reason" on standard error and marks the run as failed; returns
/// exit_failed.
int cli_fail(std::string_view reason);

/// Prints a line on standard error: something to know, no failure.
void cli_note(std::string_view text);

/// The exit code that follows from what was reported so far.
int cli_exit_code();

/// Takes the progress bar off the terminal. Done before every other output to standard error.
void end_progress();

} // namespace velkoro
