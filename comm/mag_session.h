/// Lists of sentences from and to a Magellan receiver: what the transfers of waypoints, routes and
/// tracks have in common, and the fields that their sentences share.
/// A session switches the handshake on, asks for a list or sends its lines, each acknowledged by
/// its checksum, and switches the handshake off.
/// Source: Magellan data transmission document 21-00091-000.
#pragma once

#include "comm/transfer.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

inline constexpr std::string_view mag_end_line = "$PMGNCMD,END*3D";

struct mag_list {
    std::vector<std::string> lines{}; ///< as received, without CR, LF
    transfer_end end = transfer_end::whole;
};

/// Asks for a list ("CMD,WAYPOINT") and takes its lines of that tag ("WPL"). `number`: text that
/// tells count and receiver while it runs. Ends with whole, cancelled, broken_off, or no_receiver
/// when not even a first line came.
mag_list mag_read_list(const std::string& command, const std::string& tag, int number);

/// Sends the lines, each to be acknowledged, and the hand-off. `number`: text that counts them.
/// Ends with whole, cancelled or broken_off, which the result window tells; with empty, told too,
/// when there are no lines, and then nothing goes out.
transfer_end mag_write_list(const std::vector<std::string>& lines, int number);

/// A whole reading: hand-on, `read`, hand-off, which goes out whatever happens in between. The
/// result of `read` becomes transfer.end; no_receiver and empty are told.
void mag_reading(const std::function<transfer_end()>& read);

// Fields
// ---------------------------------------------------------------------------------------------------------------

/// The fields of a sentence behind its tag, in order. What stands from the last "*" on is no field.
struct mag_fields {
    explicit mag_fields(std::string_view sentence);
    /// The next field; empty past the end.
    std::string next();
    /// All that is left, commas included.
    std::string rest_of() const { return rest; }
    bool at_end() const { return ended; }
    std::string tag{}; ///< "$PMGNWPL"

private:
    std::string rest{};
    bool ended = false;
};

/// The next four fields as a position: ddmm.mmm, N or S, dddmm.mmm, E or W. Nothing outside the
/// globe.
std::optional<pos_rec> mag_position(mag_fields& fields);
/// The next two fields as metres: an integer and M or F; alt_unknown for an empty one.
std::int16_t mag_height(mag_fields& fields);

/// "4828.413,N,00912.746,E".
std::string mag_position_text(const pos_rec& pos);
/// "0000412,M" with so many digits, or "," for an unknown height.
std::string mag_height_text(std::int16_t alt, int digits);
/// A text without the characters that end a field or a sentence.
std::string mag_text(std::string_view text);
/// Letter of a symbol; "a" for one beyond the letters.
char mag_icon(std::int16_t symbol);

} // namespace velkoro
