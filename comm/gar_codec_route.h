/// Route headers (D200 to D202) and route links (D210) of Garmin receivers.
/// Source: Garmin interface document 001-00063-00.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velkoro {

struct gar_route_in {
    std::int16_t number = 0;
    std::string name = std::string(16, ' '); ///< 16 characters, blank-padded
    bool operator==(const gar_route_in&) const = default;
};

/// Decodes the data field of a route header. D200 brings a number only, D201 a number and a comment
/// that serves as the name, D202 a name, with the number 1. False, with a blank result, for another
/// type or an empty field. A "$" of the name becomes "-".
bool gar_route_decode(std::string_view data, int type, gar_route_in& result);
/// Encodes a route header; `number` is the route's place. Empty for an unknown type.
std::string gar_route_encode(std::string_view name, int number, int type);

/// Decodes a link to the text of the leg, which is the token of `anw` for the point where the leg
/// ends, without its "$": the identifier, trimmed and cut to 18 characters, and "&" with a letter
/// (A line, B link, C net) when the leg is not a direct one.
std::string gar_link_decode(std::string_view data);
/// Encodes the text of a leg as a link; without a class letter the leg is a direct one.
std::string gar_link_encode(std::string_view leg);

} // namespace velkoro
