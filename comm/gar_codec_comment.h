/// The comment of a waypoint as receivers hold it, and the marker texts in it.
/// What a receiver's record holds and the store does not stands in the comment: at its start the
/// class of a facility ("@", a letter, two characters of the country, a blank), behind the words
/// the depth ("$ 3.5 m"), at its end the colour ("&DR"). With the option `alt_kom` the height
/// stands in front, for receivers whose records have none.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velkoro {

inline constexpr int gar_no_colour = 255;

// Text between the store and the receiver
// -------------------------------------------------------------------------------------------------

/// A comment as the receiver takes it, trimmed: with `Zeichen` as it stands, without control
/// characters; else in capitals, digits, blanks and "-". Commas may be among it.
std::string gar_text_out(std::string_view comment);
/// A name as the receiver takes it, trimmed: as name_clean has it, without control characters.
std::string gar_name_out(std::string_view name);
/// A comment as the store takes it: up to its first 0 byte, control characters as blanks, trimmed;
/// empty when it is nothing but "_".
std::string gar_text_in(std::string_view comment);

/// The comment as text of a record: translated, trimmed; an empty one is 16 "_", as receivers keep
/// the old comment where a blank one comes.
std::string gar_comment_text(std::string_view comment);
/// The 40 bytes of a comment field: gar_comment_text, a 0 byte, blanks.
void gar_comment_pack(std::string_view comment, std::string& result);

// Colour
// -------------------------------------------------------------------------------------------------

/// Strips a colour code, and a "&" left in front of it, from the end of a comment; the index is 0
/// to 15, gar_no_colour without a code.
void gar_color_cut(std::string& comment, int& color);
/// The code of a colour index, trimmed; empty for all others.
std::string gar_color_code(int color);
/// D107 knows no colour (0), red, green and blue (1 to 3): its code is stripped and told.
int gar_color_cut_107(std::string& comment);
std::string gar_color_code_107(int color);

// Height and depth
// -------------------------------------------------------------------------------------------------

/// Puts the height in the chosen unit in front of a comment, but behind the part of it that belongs
/// to the key: "412 m HUT". An unknown height changes nothing.
void gar_alt_to_comment(std::string& comment, std::int16_t alt);
/// Takes a height, as gar_alt_to_comment writes it, out of a comment; metres. False, with both
/// unchanged, when there is none.
bool gar_alt_from_comment(std::string& comment, std::int16_t& alt);

/// "$ ", the depth by the picture in the chosen unit of heights, the unit: "$ 3.5 m".
std::string gar_depth_text(double depth_m, std::string_view picture);
/// Takes the depth text out of a comment; metres, gar_no_value without one. Behind the "$" stands a
/// number and then "m" or "ft", small letters.
float gar_depth_cut(std::string& comment);

// Facilities
// -------------------------------------------------------------------------------------------------

/// Letter of a class byte; 0 for user waypoints, unknown classes and types without classes.
char gar_class_letter(int type, int klass);
/// Class byte of a letter, -1 when the type has no such class.
int gar_class_of(int type, char letter);
/// The class byte of a user waypoint.
std::uint8_t gar_class_default(int type);

} // namespace velkoro
