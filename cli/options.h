/// The options ahead of the command, and what they do to settings before it runs.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace velkoro {

struct cli_options {
    std::string home{};
    bool json = false;
    int lang = -1;                   ///< language column, -1 as in the settings
    std::vector<std::string> set{};  ///< KEY=VALUE, UTF-8 as given
    std::string on_conflict = "new"; ///< old, new, both
    bool yes = false, no = false;    ///< --yes is the default
};

/// "KEY=VALUE" cut at its first "="; both parts Windows-1252, quotes around the value removed.
/// An argument without a key gives an empty first part.
std::pair<std::string, std::string> split_setting(const std::string& argument);

/// True for the keys that belong to the section `Main`; all others are keys of a profile.
bool is_main_key(std::string_view key);

/// Brings the program up as the desktop's start does, without windows: program folder, new tables,
/// settings with those of `--set` on top, language, symbols, datums. Nothing is written to the
/// settings file.
void cli_prepare(const cli_options& options);

} // namespace velkoro
