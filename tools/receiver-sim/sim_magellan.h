/// A Magellan receiver as seen from its serial connector: sentences with and without handshake,
/// identification, lists to and from the host.
/// Sources: Magellan data transmission document 21-00091-000 (1999, 2003); NMEA 0183 for the frame.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

struct sim_magellan {
    std::string version = "024,1.10,MAP 330"; ///< fields of PMGNVER: product, version, model
    /// Bodies of the sentences that the receiver holds ("PMGNWPL,4828.413,N,..."), without "$" and
    /// checksum.
    std::vector<std::string> waypoints{}, routes{}, track{};
    std::function<void(std::string)> send = [](const std::string&) {};
    /// A record of the host has arrived; the body, without "$" and checksum.
    std::function<void(const std::string&)> received = [](const std::string&) {};

    // What happens on the line
    std::string in{};                ///< bytes of a sentence under way
    std::deque<std::string> queue{}; ///< bodies still to be sent
    std::string last_sum{};          ///< checksum digits of the sentence sent last
    bool handshake = false;
    int damaged_in = 0;
};

/// "$" + body + "*" + checksum + CR LF. The checksum is the XOR of the body's characters.
std::string sim_sentence(std::string_view body);
/// The two upper-case checksum digits of a body.
std::string sim_checksum(std::string_view body);

/// Takes bytes from the host; answers through `send`, one call a sentence.
void sim_magellan_take(sim_magellan& receiver, std::string_view bytes);

} // namespace velkoro
