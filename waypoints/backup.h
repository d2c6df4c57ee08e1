/// Backups: the former version of a native file, one generation, beside the file.
#pragma once

#include <string>
#include <string_view>

namespace velkoro {

/// The name of a file's backup: "x.wp" gives "x.wpb", "x.t" gives "x.tb".
std::string backup_name(std::string_view path);

/// Takes the file away from its path ahead of its replacement. A `.wp` or `.t` file becomes the
/// backup, an older backup goes. Any other file, and every file while backups are off, is deleted.
/// Nothing happens when there is no file. Throws std::runtime_error when it cannot be renamed.
void backup_rename(const std::string& path);

/// Puts new bytes at a path, the former file having become the backup. The new bytes are on the
/// disk before the former file is touched, so that a failure leaves that one where it is. Throws
/// std::runtime_error.
void replace_file(const std::string& path, std::string_view bytes);

} // namespace velkoro
