/// Pieces of text files as values: what readers of foreign formats take lines apart with.
/// Everything works on views of the file's text and allocates nothing; a field that is no value of
/// the kind is told from a value. Numbers have a decimal point whatever the locale.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace velkoro {

// Fields
// -------------------------------------------------------------------------------------------------

/// Cuts a field off the front of the text. With the delimiter " " the text is trimmed first. The
/// field ends at the delimiter or at a carriage return, whichever comes first; the rest stays in
/// the text, without a line feed that follows directly.
std::string_view next_field(std::string_view& text, std::string_view delimiter);

/// Cuts a line into fields at a delimiter, each trimmed; returns how many there are, at most
/// fields.size(): a last field then holds the rest of the line, delimiters included. Fields that
/// the line lacks are empty.
std::size_t split_fields(std::string_view line, char delimiter, std::span<std::string_view> fields);
/// The same for fields that may stand in quotation marks, which keep delimiters and blanks and are
/// taken off; a mark within them is doubled in the file and stays doubled.
std::size_t split_quoted(std::string_view line, char delimiter, std::span<std::string_view> fields);
/// Words between blanks and TABs.
std::size_t split_words(std::string_view line, std::span<std::string_view> words);

/// What stands behind a number of up to three digits ("01 NAME"), trimmed; the whole text where no
/// such number and a blank begin it. A number alone leaves nothing.
std::string_view behind_number(std::string_view text);

/// Columns `first` to `last` of a line, from 1, trimmed; empty past its end.
std::string_view columns(std::string_view line, std::size_t first,
                         std::size_t last = std::string_view::npos);
/// True when the line begins with the word or head, whatever the case.
bool begins(std::string_view line, std::string_view head);

// Numbers and angles
// -------------------------------------------------------------------------------------------------

/// A whole field as a number, blanks and a plus sign around it allowed, point as decimal sign;
/// false (and the number untouched) when it is none, or not finite.
bool to_number(std::string_view field, double& number);
bool to_number(std::string_view field, int& number);

/// An altitude for the store: whole metres, unknown when outside 16 bits.
std::int16_t to_altitude(double metres);
std::int16_t feet_to_altitude(double feet);
/// A proximity distance in metres for the store (100 m steps; 1 to 99 m give one step).
std::int16_t to_proximity(double metres);

/// An angle in degrees, north and east positive, from text: decimal degrees, degrees and minutes,
/// or degrees, minutes and seconds, with "°", "'", "\"", colons or blanks behind each part; the
/// hemisphere letter in front or behind, or a sign. `letters` is "NS" or "EW". False for anything
/// else, minutes and seconds above 60 (rounding may have made 60 of them), and angles out of range.
bool to_angle(std::string_view text, std::string_view letters, double& degrees);

/// Finds a latitude and a longitude behind it in a row of words, letters in front
/// ("N48 07.4070 E011 34.0734", "N48.1 E11.5"): the first pair from place `from` on. What stands
/// ahead and behind comes trimmed. Nothing is written when there is no pair.
bool find_angles(std::string_view row, std::size_t from, double& lat, double& lon,
                 std::string_view& ahead, std::string_view& behind);

// Times: seconds since date_base, UTC; 0 stands for no time
// -------------------------------------------------------------------------------------------------

enum class date_order { day_month_year, month_day_year, year_month_day };

/// A day number with a fraction (days since 30 December 1899), rounded to the nearest second; 0
/// for 0 and numbers out of range.
std::int32_t day_number_time(double days);
std::int32_t day_number_time(std::string_view field);
/// A date, or date and time: three numbers, or two and the name of a month, with any of ".-/ ,"
/// between them, then h:mm or h:mm:ss, AM or PM behind it. Two-digit years lie in 1980 to 2079. A
/// year of four digits in front counts as such whatever the order says, and so does "yyyymmdd".
/// The epoch of the receivers (31-DEC-89 00:00:00) is no time. Nothing when it is no date.
std::optional<std::int32_t> to_time(std::string_view date, std::string_view time = {},
                                    date_order order = date_order::day_month_year);

} // namespace velkoro
