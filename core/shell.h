/// The life of the program around its main window: start-up, periodic tasks, ordered shutdown, and
/// the menu entries that belong to no other folder.
/// The three sequences are lists of numbered, named steps. The shell puts its own steps in;
/// folders above add theirs with shell_add before the start, and each takes its turn in the order
/// of the numbers.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace velkoro {

struct shell_step {
    int number = 0; ///< place in the sequence; steps of one number run in the order of adding
    std::string name{};
    std::function<bool()> run{}; ///< false ends the sequence
};

struct shell_state {
    std::vector<shell_step> start{};       ///< 1 to 20
    std::vector<shell_step> periodic{};    ///< at each tick of wayp_big_timer
    std::vector<shell_step> shutdown{};    ///< 1 to 7; false keeps the program open
    std::vector<shell_step> profile_out{}; ///< before a profile is left: its keys are written
    std::vector<shell_step> profile_in{};  ///< after a profile was read
    std::string command_line{};            ///< as given to shell_start
    int step = 0;                          ///< number of the start-up step that was reached
    bool running = false;                  ///< started and not shut down: events are served
    std::vector<std::string> trail{};   ///< names of the steps of start and shutdown, as they ran
    std::vector<std::string> waiting{}; ///< command lines that came while a job was under way
    double mark_defer = 0; ///< clock reading of the last change of the marks, 0 nothing pending
};
inline shell_state shell;

/// Adds a step behind those of the same and lower numbers.
void shell_add(std::vector<shell_step>& steps, int number, std::string name,
               std::function<bool()> run);

/// Puts the shell's steps and handlers in place. Call it once, before the install procedures of the
/// folders above; disable_uninstalled(Form1.form) comes after them.
void shell_install();

/// Runs the start-up and opens the main window. `command_line`: at most one path, with or without
/// double quotes. False when this instance has handed its command line to the running one: the
/// process ends then without a window. A failing step is reported as " in Form_Load at " and its
/// number, and ends the start-up; the window opens all the same.
bool shell_start(const std::string& command_line);

/// The close request of the main window: the save questions, then settings and window positions are
/// written and the process ends through platform.quit. False when the user wants to stay.
bool shell_close();

/// Chooses a language: stores it, reloads the texts, translates all windows, rebuilds the menus.
void language_select(int language);
/// Makes the entries of `m_lang` from the languages of the text table.
void language_menu();
/// Makes the entries of `pr` from the stored profiles and shows the active one.
void profile_menu();
/// Writes `Opt`: the chosen order, position format and datum.
void options_write();
/// Shows the names of file and profile and whether data are unsaved.
void shell_show_state();

} // namespace velkoro
