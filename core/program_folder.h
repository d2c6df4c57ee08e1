/// The program folder: where velkoro.ini, the symbol, datum and text tables and the samples stand.
/// Three places, in this order: the folder that the user names (`--home`, VELKORO_HOME); the folder
/// of the executable when it holds velkoro.res (a build tree, a portable copy); else
/// `$XDG_DATA_HOME/velkoro`, which each start completes from the installed `share/velkoro`, since a
/// user cannot write there.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

/// What the search looks at. All folders are paths of the operating system, with or without "/" at
/// their ends.
struct folder_question {
    std::string named{};                  ///< by option or environment, "" none
    std::string executable{};             ///< folder of the executable
    std::string data_home{};              ///< the user's data folder
    std::vector<std::string> installed{}; ///< candidates for share/velkoro, the best one first
    bool operator==(const folder_question&) const = default;
};

/// The question of this process: VELKORO_HOME when `home` is empty, /proc/self/exe, XDG_DATA_HOME,
/// and `../share/velkoro` beside the executable ahead of XDG_DATA_DIRS.
folder_question folder_question_of_process(std::string_view home);

/// Answers it; the result ends in "/". Creates and completes the user's own folder when the answer
/// is that one; a folder that cannot be written is taken as it is.
std::string find_program_folder(const folder_question& question);

/// Copies what is missing in `folder` from `installed`, sub-folders too. Tables that a user may
/// change come as `.ins` and not at all beside an `.ini` of the same name (case-blind); the text
/// table and the help are replaced when the installed ones are newer. Errors stop nothing.
void complete_program_folder(const std::string& installed, const std::string& folder);

/// Finds the program folder of this process and sets `folders`. Does not change the current folder.
void set_program_folder(std::string_view home = {});

} // namespace velkoro
