// clang-format off
/// A serial line played by a script, on the clock of the scripted_platform.
///
///     scripted_platform user;
///     scripted_line line(user);            // port 1, reset comm and receiver state, Garmin protocol
///     line.play(R"(> 10 FE 00 02 10 03     what must be sent next, in hexadecimal
///                  < 10 06 02 FE 00 FA 10 03   what the receiver answers
///                  ! 0.2                   seconds of silence before the next "<"
///                  < 10 FF ...
///                  > "$PMGNCMD,HANDON*70"  a sentence; CR LF belong to it
///                  < "$PMGNVER,024,1.10,MAP 330*1D")");
///     garmin_comm(254, "", 255, false);
///     EXPECT_TRUE(line.done());            // everything was sent that the script waits for
///
/// Words behind the bytes of a line, from "#" on, are remarks. Something sent that the script does
/// not expect is a failure of the test; with `on_output` a procedure answers instead of a script.
/// Faults: `piece` splits what comes in into events of so many bytes, `byte_time_s` makes each byte
/// take its time, `refuse` is a reason not to open, hang_up() takes the device away.
/// The pump of the user jumps to the next byte that is due, or by the time waited.
// clang-format on
#pragma once

#include "comm/comm.h"
#include "tests/support/scripted_platform.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

/// A frame with its checksum and doubled DLEs, as a receiver sends it; independent of the program's
/// own encoder.
std::string wire(int packet_id, std::string_view data);
/// An acknowledgement with two data bytes.
std::string wire_ack(int packet_id);
/// Little-endian 16 and 32 bits.
std::string le16(int value);
std::string le32(std::int64_t value);
/// "10 FE 00": for messages of tests.
std::string hex(std::string_view bytes);
/// Bytes of hexadecimal numbers.
std::string unhex(std::string_view text);
/// "$" + text + "*" + checksum + CR LF.
std::string sentence(std::string_view text);

struct scripted_line {
    explicit scripted_line(scripted_platform& platform_of_test);
    ~scripted_line();
    scripted_line(const scripted_line&) = delete;
    scripted_line& operator=(const scripted_line&) = delete;

    /// Adds the lines of a transcript to the script.
    void play(std::string_view transcript);
    /// Adds one exchange: what must be sent, and what comes back at once.
    void expect(std::string bytes, std::string answer = {});
    /// Bytes come in after so many seconds.
    void send(std::string bytes, double delay_s = 0);
    /// The device goes away.
    void hang_up();
    /// True when the script has nothing left that should have been sent.
    bool done() const { return script.empty(); }
    std::string sent_text() const; ///< everything sent, one write a line, in hexadecimal

    std::function<void(const std::string& bytes)> on_output{}; ///< answers instead of the script
    std::size_t piece = 0;                       ///< bytes of one event at most, 0 no limit
    double byte_time_s = 0;                      ///< 0.00104 at 9600 baud
    std::string refuse{};                        ///< what open says
    std::vector<std::string> refused_settings{}; ///< settings that open refuses
    // The record.
    bool opened = false;
    std::string device{}, settings{}; ///< of the last open
    int opens = 0, closes = 0, events = 0;
    int threshold = 1;
    std::vector<int> thresholds{};   ///< as they were set
    std::vector<std::string> sent{}; ///< one entry a write
    std::string waiting{};           ///< come in and not taken yet

private:
    struct coming {
        double at = 0;
        std::string bytes{};
    };
    struct step {
        std::string wanted{};
        std::vector<coming> answers{}; ///< `at` counts from the write
    };
    scripted_platform& user;
    std::deque<step> script{};
    std::deque<coming> on_the_way{};
    double line_free_at = 0;

    void output(const std::string& bytes);
    void pump(int ms);
    void deliver();
};

} // namespace velkoro
