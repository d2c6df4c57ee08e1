/// Files named on the command line, read as the desktop program reads them.
#pragma once

#include "core/window.h"
#include "interchange/formats.h"

#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
}

namespace velkoro {

enum class file_kind { unknown, waypoints, track, foreign };

/// What a file is.
struct source_kind {
    file_kind kind = file_kind::unknown;
    const format_row* format = nullptr; ///< of a foreign file
};

/// By the first bytes of a native file, else by `from` when that is given, else by extension and
/// content.
source_kind kind_of_file(std::string_view path, std::string_view bytes,
                         const format_row* from = nullptr);
/// The native kind of an extension.
file_kind kind_of_name(std::string_view path);

/// The row of the format table that an option names, in UTF-8: a name or a row text. Throws
/// CLI::ValidationError with the names that there are when it is none that can be read (written).
const format_row* format_option_row(const std::string& name, bool to_write);

/// Adds the option `--from ROW`, which leaves the row in `from`. `from` must outlive the command.
void declare_from(CLI::App& command, const format_row*& from);

/// Reads one file into the store. False when nothing could be read, or not all of it: the reason
/// has been reported then, and the run has failed.
bool read_one_file(const std::string& path, const format_row* from = nullptr);

/// Reads the files in order into the store. False when none of them gave anything.
bool read_files(const std::vector<std::string>& paths, const format_row* from = nullptr);

/// The chosen entry of a drop-down, "" when none is.
std::string chosen_item(const control& drop_down);

} // namespace velkoro
