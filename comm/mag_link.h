/// Exchange of Magellan sentences: "$PMGN", text, "*", two hexadecimal digits, CR, LF.
/// Source: Magellan data transmission document 21-00091-000.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velkoro {

/// Sends "$PMGN" and the text as a sentence and waits up to 3 s for a line with the tag ("WPL" also
/// takes "$GPWPL"; the end line "$PMGNCMD,END" always counts). The result is the line without CR,
/// LF. It is empty without a port and after a time-out, and what has come so far when `tag` is
/// empty, as nothing is waited for then. With the tag "CSM" the receiver's acknowledgement must
/// name the checksum of the line sent, else the result is empty. Opens the port at the speed of
/// gar_wp_format.
std::string mag_comm(std::string_view text, std::string_view tag);

/// A sentence with its checksum, CR and LF: mag_sentence("CMD,STOP") is "$PMGNCMD,STOP*6A\r\n".
std::string mag_sentence(std::string_view text);

/// XOR of all bytes: of what stands between "$" and "*".
std::uint8_t nmea_checksum(std::string_view bytes);

} // namespace velkoro
