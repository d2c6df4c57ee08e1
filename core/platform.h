/// The outside world, reached through one table of functions.
/// The desktop fills it with Qt, the command line with answers from its options, the tests with a
/// scripted user and a clock of their own. Every entry has a harmless default. All text is
/// Windows-1252; paths are the operating system's bytes.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace velkoro {

struct window;
struct control;

enum class answer { ok, cancel, yes, no };
enum class buttons { ok, ok_cancel, yes_no, yes_no_cancel };
enum class icon { none, information, question, exclamation, critical };

struct message_box {
    std::string text{};
    std::string title = "VELkoro";
    enum buttons buttons = buttons::ok;
    enum icon icon = icon::none;
    int preset = 1; ///< the button that Enter presses, 1 the first
    int number = 0; ///< text number, 0 for texts without one; the command line prints it
};

struct input_box {
    std::string prompt{}, title = "VELkoro", text{};
};

struct file_request {
    std::string title{}, folder{}, name{}; ///< name: proposed
    std::vector<std::pair<std::string, std::string>>
        filters{}; ///< caption, patterns ("*.wp *.wpb")
    bool many = false;
};

/// Local calendar date and time of day, and the offset from UTC in force.
struct date_time {
    int year = 1989, month = 12, day = 31, hour = 0, minute = 0, second = 0;
    int utc_offset_s = 0;
};

struct platform_table {
    /// Shows a box and waits for the answer.
    std::function<answer(const message_box&)> message = [](const message_box& m) {
        return m.buttons == buttons::ok || m.buttons == buttons::ok_cancel ? answer::ok
                                                                           : answer::yes;
    };
    /// Asks for a line of text; nothing when cancelled.
    std::function<std::optional<std::string>(const input_box&)> input = [](const input_box&) {
        return std::nullopt;
    };
    /// Shows, hides or brings forward a window by its `shown`.
    std::function<void(window&)> show = [](window&) {};
    /// Serves events until `shown` of the window is false.
    std::function<void(window&)> wait_closed = [](window&) {};
    /// Shows pending changes and serves pending events; waits up to `ms` milliseconds for the first
    /// one.
    std::function<void(int ms)> pump = [](int) {};
    /// Seconds since midnight, local; falls back to 0 at midnight.
    std::function<double()> clock;
    /// Seconds of a clock that only rises, for measuring.
    std::function<double()> ticks;
    std::function<date_time()> now;
    std::function<std::string()> clipboard = [] { return std::string{}; };
    std::function<void(const std::string&)> set_clipboard = [](const std::string&) {};
    std::function<void()> beep = [] {};
    /// Wait cursor on or off; calls nest.
    std::function<void(bool)> busy = [](bool) {};
    /// Opens a menu as a pop-up at the pointer.
    std::function<void(control&)> popup = [](control&) {};
    std::function<std::vector<std::string>(const file_request&)> open_files =
        [](const file_request&) { return std::vector<std::string>{}; };
    std::function<std::optional<std::string>(const file_request&)> save_file =
        [](const file_request&) { return std::nullopt; };
    /// Sends a text to the running first instance of the same user; false when there is none.
    std::function<bool(const std::string&)> instance_send = [](const std::string&) {
        return false;
    };
    /// True when another instance of the same user runs.
    std::function<bool()> instance_running = [] { return false; };
    /// Starts to listen; each text that arrives is given to the procedure.
    std::function<void(std::function<void(const std::string&)>)> instance_listen =
        [](const std::function<void(const std::string&)>&) {};
    /// Opens the help at a topic.
    std::function<void(const std::string& topic)> help = [](const std::string&) {};
    /// Usable area of the screen: left, top, width, height in logical pixels; nothing without a
    /// screen.
    std::function<std::optional<std::vector<double>>()> screen = [] { return std::nullopt; };
    /// The language of the desktop as "de", "en", ...
    std::function<std::string()> locale_language = [] { return std::string{"en"}; };
    /// Ends the process after the shutdown sequence.
    std::function<void()> quit = [] {};
    platform_table(); ///< clock, ticks and now from the standard library
};
inline platform_table platform;

} // namespace velkoro
