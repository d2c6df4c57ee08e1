/// Numbers as text and back, whatever the locale of the process.
/// `val` reads, `pic` writes by a picture; the rounding rules have names, so that a reader sees
/// which one is meant.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velkoro {

/// The number at the front of a text: leading blanks are skipped, then sign, digits, point, digits
/// and an exponent (E or D) as far as they go; the rest is ignored. No number gives 0. Only the
/// point is a decimal sign (see comma_to_dot). Always finite.
double val(std::string_view text);

/// Replaces the first comma by a point, as number text may follow the locale.
std::string comma_to_dot(std::string_view text);

/// True when the whole text, apart from blanks around it, is one number in the form that val reads.
bool is_number(std::string_view text);

/// A number by a picture: "0" is a digit that always stands, "#" one that stands when needed, "."
/// the decimal point; any other characters around the digits are copied ("0 ", "000°"). Rounds half
/// away from zero on the last digit shown; a value that rounds to zero has no sign. Not-a-number
/// and infinity give an empty text.
std::string pic(double value, std::string_view picture);

/// The engine of `pic`, for texts put together without a picture: writes a magnitude (finite, 0 or
/// more) with at least `whole` digits ahead of the point and exactly `decimals` (0 to 15) behind
/// it, and returns the end. A value counts as half when its first 15 digits say so (1.005
/// gives 1.01). Up to 330 characters.
char* put_fixed(char* out, double magnitude, int whole, int decimals);

/// Rounds to the nearest integer, halves to the even one.
double round_even(double value);
/// Cuts the fraction off, towards zero.
double fix(double value);

/// Narrows an integer or rounds a number (round_even) to the width; throws std::overflow_error
/// ("Overflow") outside the range.
std::int16_t to_i16(double value);
std::int32_t to_i32(double value);
std::int16_t to_i16(std::int64_t value);
std::int32_t to_i32(std::int64_t value);

} // namespace velkoro
