/// Files named on the command line, read as the desktop program reads them.
#pragma once

#include "core/window.h"

#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

enum class file_kind { unknown, waypoints, track };

/// What a file is: by its first bytes when they are known; else by its extension.
file_kind kind_of_file(const std::string& path, std::string_view bytes);

/// Reads one file into the store. False when nothing or not all of it could be read: the reason has
/// been reported then.
bool read_one_file(const std::string& path);

/// Reads the files in order into the store. True when all were read whole.
bool read_files(const std::vector<std::string>& paths);

/// Empties stores, title and marks, as if nothing had been read.
void empty_everything();

/// The chosen entry of a drop-down, "" when none is.
std::string chosen_item(const control& drop_down);

} // namespace velkoro
