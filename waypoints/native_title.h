/// Titles of lists and tracks that were read from several files.
#pragma once

#include <string>
#include <string_view>

namespace velkoro {

/// The title after a file was read: the file's own in an empty store, else the present one, " & "
/// and the file's. A title that would be empty becomes text 1330.
std::string joined_title(std::string_view present, std::string_view from_file, bool was_empty);

} // namespace velkoro
