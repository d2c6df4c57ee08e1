/// The diagnostic log velkoro.log in the program folder: a support tool, appended to and read by
/// nobody else. It is opened only on request and stays open to the end of the process. An error
/// while writing is not reported.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace velkoro {

struct log_state {
    bool log_on = false;
    std::FILE* file = nullptr;
};
inline log_state log_book;

/// Opens the log after a confirmation (OK, Cancel). A log older than a day offers to be deleted.
/// Writes the head: "***** open", date, time, 206 and an empty field; the system; the receiver's
/// port settings. Does nothing when the log is open already.
void log_open();

/// Closes the file (process end, tests).
void log_close() noexcept;

/// One line: the clock as hh:mm:ss, a blank and the text. Does nothing while the log is off. Never
/// throws.
void log_line(std::string_view text) noexcept;

/// The bytes as two-digit hexadecimal numbers, blank-separated, for the log.
std::string hex_text(std::string_view bytes);

} // namespace velkoro
