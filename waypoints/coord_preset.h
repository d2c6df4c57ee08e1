/// The preset of leading coordinates: typing a coordinate by its last digits only.
/// The start of the text stands already; while the user types behind it, the marks of the format
/// (degree sign, point, minutes) come by themselves and missing digits are filled up. The form of a
/// text is told by a sample of the same format.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velkoro {

/// How much of a coordinate text stands ahead: the degrees with their mark, or a grid text without
/// its last five digits.
std::size_t preset_length(std::string_view sample, bool angle);

/// What becomes of a text to which the user has put one character at its end: a digit in the place
/// of a mark gets the mark in front; a mark (or a blank, point, comma) ahead of its place has its
/// missing digits filled up with "0"; a mark where one stands already is dropped. Any other change
/// stays as it is.
std::string preset_typed(std::string_view before, std::string_view now, std::string_view sample);

} // namespace velkoro
