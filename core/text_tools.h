/// The small text tools of all parsers, on Windows-1252 text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

/// Returns the text up to the first separator and removes it, with the separator, from `text`. A
/// text without the separator is returned whole and left empty.
std::string cut_token(std::string& text, std::string_view separator);

/// Like cut_token for a single delimiter character, on a view: for line parsers that must not copy.
std::string_view next_field(std::string_view& text, char delimiter);

/// Blanks (only the character 32) off both ends (trim), the left or the right end.
std::string_view trim(std::string_view text);
std::string_view trim_left(std::string_view text);
std::string_view trim_right(std::string_view text);

/// Upper and lower case by the code page's own table, never the C locale: "ä" and "Ä", "ÿ" and "Ÿ";
/// "ß" stays.
char upper(char c);
char lower(char c);
std::string upper(std::string_view text);
std::string lower(std::string_view text);

/// Equality and search without regard to case, by the tables above.
bool equal_nocase(std::string_view a, std::string_view b);
bool ends_with_nocase(std::string_view text, std::string_view end);
/// Position of `part` in `text`, or npos.
std::size_t find_nocase(std::string_view text, std::string_view part);

/// The tokens of a "$"-ended list ("A$B$" gives A and B); a rest without "$" counts as a token too.
std::vector<std::string> list_tokens(std::string_view list);

/// The text cut, or padded with blanks, to exactly n characters.
std::string fixed_text(std::string_view text, std::size_t n);

/// All lines of a text; a line ends in CR LF, LF or CR, a missing end of the last line does not
/// matter.
std::vector<std::string_view> split_lines(std::string_view text);

} // namespace velkoro
