/// Files: the program folder, names found case-blind, whole files in and out.
/// Paths inside the program are Windows-1252 text in settings and messages; at the operating system
/// they are the bytes that the platform gave. Stored paths may separate folders by "/" or "\"; new
/// ones use "/". The operations below take a path exactly as written, so that "A.wp" never stands in
/// for a user's "a.wp" (only "\" is read as "/" where no such file exists); whoever has a stored or
/// typed path passes it through real_path first, names of the program folder through program_path.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

struct folder_state {
    std::string program{}; ///< program folder, ends in "/"
    std::string start{};   ///< current folder at start
};
inline folder_state folders;

/// A path as the operating system wants it: "\" becomes "/", and every part that does not exist as
/// written is matched case-blind against the folder's entries, so that DATUM.INI finds Datum.ini.
/// Parts not found stay as they are.
std::string real_path(std::string_view path);
/// real_path of a name in the program folder; an absolute path stays absolute.
std::string program_path(std::string_view name);

/// A path as text for the user and for messages: Windows-1252.
std::string shown_path(std::string_view path);

/// False for folders.
bool file_exists(std::string_view path);
/// All bytes of a file, or nothing when it cannot be read.
std::optional<std::string> read_file(std::string_view path);
/// Writes a whole file: first beside the target, then renamed over it, so that a full disk leaves
/// the old file. The file keeps its permissions, a link its target. Throws std::runtime_error with
/// the path and the reason.
void write_file(std::string_view path, std::string_view bytes);
/// Appends to the file, which is made if need be. Throws like write_file.
void append_file(std::string_view path, std::string_view bytes);
/// False when there was nothing to delete or it could not be deleted.
bool delete_file(std::string_view path);
/// Renames; throws std::runtime_error with both names and the reason.
void rename_file(std::string_view from, std::string_view to);
/// Seconds since 1970 of the last change; -1 when the file is not there.
std::int64_t file_time(std::string_view path);

/// Folder part with the separator behind it, name part, extension with its point in lower case; each
/// is empty where the path has none.
std::string path_folder(std::string_view path);
std::string path_name(std::string_view path);
std::string path_extension(std::string_view path);

} // namespace velkoro
