/// velkoro.ini: sections of keys in a text file.
/// The form is that of private-profile files: "[section]", then "key=value" lines. Section and key
/// names are case-blind, the first section and the first key of a name win, values are trimmed and
/// lose one pair of quotes around them. Comments (";"), order, spacing and every line that is not
/// understood survive a change. Lines end in CR LF when written; LF and CR alone are read too.
/// The file is read anew whenever its time or size has changed, as a second instance may write it,
/// and is replaced as a whole through a temporary file.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velkoro {

inline constexpr std::size_t ini_value_max = 1024; ///< characters of a value that are read

/// One line. A key line has its section, key and value (trimmed, unquoted); a heading has its
/// section; all others, and every line ahead of the first heading, only `raw`, the line as it
/// stands in the file.
struct ini_line {
    std::string section{}, key{}, value{}, raw{};
    bool heading = false;
    bool operator==(const ini_line&) const = default;
};

struct ini_state {
    std::string path{};             ///< the path that `lines` belong to
    std::vector<ini_line> lines{};  ///< as in the file, with changes that could not be written
    std::int64_t time_ns = -1;      ///< of the file when it was read; -1: it was not there
    std::int64_t size = -1, id = 0; ///< bytes; the file's number in its folder
    bool locked = false;            ///< there but not readable: it is never replaced
};
inline ini_state ini_file;

// The text itself
// ---------------------------------------------------------------------------------------------------------------

/// Parses any bytes. A text with a byte order mark is UTF-8 and converted.
std::vector<ini_line> ini_parse(std::string_view text);
/// The text of the lines, each with CR LF.
std::string ini_text(const std::vector<ini_line>& lines);

// velkoro.ini of the path in settings.ini_path. An empty path keeps all keys in memory.
// ---------------------------------------------------------------------------------------------------------------

/// Text of a key, up to 1024 characters, trimmed; empty when absent. A value of
/// settings.overrides comes ahead of the file's.
std::string ini_get(std::string_view section, std::string_view key);
/// The integer at the front of the text, within 32 bits; the fallback when the key is absent or
/// empty, 0 when it holds no number.
int ini_get_int(std::string_view section, std::string_view key, int fallback);
/// Stores a key. An absent text removes the key, an absent key the section. Line breaks within the
/// text become blanks. A file that cannot be written stops nothing: the change holds for this run.
/// A key with an override changes the override only and never the file. Names that no line can hold
/// (empty, with a line break, keys with "=") are ignored.
void ini_put(std::string_view section, std::optional<std::string_view> key,
             std::optional<std::string_view> value);
/// Keys of a section in file order, overrides left out.
std::vector<std::string> ini_keys(std::string_view section);
/// Makes section `to` a copy of all keys of `from` as the file holds them; an older `to` goes.
void ini_copy(std::string_view from, std::string_view to);

} // namespace velkoro
