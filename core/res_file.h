/// velkoro.res, the language table in binary form, and velkoro.txt, its source.
/// The binary form is little-endian: an i16 length and as many header bytes, then records of an i16
/// number, an i16 length and as many text bytes, up to the end of the file. Header and texts are
/// tab-separated and every byte of them is rotated by two bits. The source is a text of lines:
/// first the header as it is, then "number<TAB>comment<TAB>column 1<TAB>column 2...".
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velkoro {

inline constexpr int res_format = 206; ///< first header field of the tables that are understood

/// One byte rotated as the file keeps it, and back: 65 is stored as 80.
unsigned char res_scramble(unsigned char c);
unsigned char res_unscramble(unsigned char c);

/// A text table as rows: number and one field per language. `header` holds the format number, an
/// unused field, then the languages' names.
struct res_table {
    std::vector<std::string> header{};
    std::vector<std::pair<int, std::vector<std::string>>> rows{};
    bool damaged = false; ///< the file ends inside a record
    bool operator==(const res_table&) const = default;
};

/// Decodes velkoro.res bytes; hostile input gives what could be read and `damaged`. Numbers come
/// as they stand, doubles too.
res_table res_decode(std::string_view bytes);

/// Builds velkoro.res bytes from the source: Windows-1252, or UTF-8 as told by source_text. Lines
/// of blanks are passed over; "\n" within a text stays these two characters. Throws
/// std::runtime_error with the line's number when the header is missing, a number is not 1 to
/// 32767, a line has no tab, a text is longer than 32767 bytes, or a character is not in
/// Windows-1252.
std::string res_build(std::string_view source);

/// A text file of the table's authors as Windows-1252: bytes with a byte order mark, or with
/// characters outside ASCII that are well-formed UTF-8, are converted; `unmapped` grows by the
/// characters that the code page lacks.
std::string source_text(std::string_view bytes, std::size_t& unmapped);

} // namespace velkoro
