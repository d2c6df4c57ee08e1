/// Files named on the command line, read as the desktop program reads them.
#pragma once

#include "core/window.h"

#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

enum class file_kind { unknown, waypoints, track };

/// What a file is: by its first bytes when they are known, else by its extension.
file_kind kind_of_file(std::string_view path, std::string_view bytes);
/// By the extension alone.
file_kind kind_of_name(std::string_view path);

/// Reads one file into the store. False when nothing could be read, or not all of it: the reason
/// has been reported then, and the run has failed.
bool read_one_file(const std::string& path);

/// Reads the files in order into the store. False when none of them gave anything.
bool read_files(const std::vector<std::string>& paths);

/// The chosen entry of a drop-down, "" when none is.
std::string chosen_item(const control& drop_down);

} // namespace velkoro
