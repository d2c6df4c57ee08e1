/// The outside world, reached through one table of functions.
/// The desktop fills it with Qt, the command line with answers from its options, the tests with a
/// scripted user and a clock of their own. Every entry has a harmless default. All text is
/// Windows-1252; paths are the operating system's bytes.
#pragma once

#include <cstddef>
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

struct serial_device {
    std::string path{};
    bool simulator = false; ///< a simulated receiver offers itself there
    bool operator==(const serial_device&) const = default;
};

/// A serial line in the manner of a modem control: output does not wait for the device, and bytes
/// that have come in are told by an event as soon as so many of them are waiting. One line is open
/// at a time.
struct serial_seam {
    /// Opens a device. `settings` is "9600,n,8,1": speed, parity, data bits, stop bits, where any
    /// speed may stand. Empty when it is open now, else the reason why not. The threshold is 1
    /// then.
    std::function<std::string(const std::string& device, const std::string& settings)> open =
        [](const std::string&, const std::string&) { return std::string{"no serial lines"}; };
    std::function<void()> close = [] {};
    /// False also after the device has gone.
    std::function<bool()> is_open = [] { return false; };
    /// Bytes that must be waiting before the next event.
    std::function<void(int bytes)> threshold = [](int) {};
    std::function<void(const std::string& bytes)> output = [](const std::string&) {};
    /// Takes all bytes that are waiting.
    std::function<std::string()> input = [] { return std::string{}; };
    /// Serial devices of this computer, the likely ones first.
    std::function<std::vector<serial_device>()> devices = [] {
        return std::vector<serial_device>{};
    };
    /// The event, filled by the listener; it runs within `pump` only.
    std::function<void()> received = [] {};
};

/// A USB receiver in the manner of its maker's driver: a device interface that is found under a
/// class, opened as a file, and gives two pipes in and one out. Calls block, but never for ever.
struct usb_seam {
    /// The path of the first device of an interface class; nothing when none is connected.
    std::function<std::optional<std::string>(const std::string& class_guid)> find =
        [](const std::string&) { return std::nullopt; };
    /// A handle above 0, or 0.
    std::function<int(const std::string& path)> open = [](const std::string&) { return 0; };
    std::function<void(int handle)> close = [](int) {};
    /// The largest transfer out, in bytes.
    std::function<std::optional<std::uint32_t>(int handle)> packet_size = [](int) {
        return std::nullopt;
    };
    std::function<std::optional<std::uint32_t>(int handle)> api_version = [](int) {
        return std::nullopt;
    };
    /// One transfer out; how many bytes went, -1 after a failure.
    std::function<int(int handle, const std::string& bytes)> write = [](int, const std::string&) {
        return -1;
    };
    /// One transfer in from the interrupt or the bulk pipe; empty when nothing came in time,
    /// nothing after a failure.
    std::function<std::optional<std::string>(int handle, std::size_t most)> read_interrupt =
        [](int, std::size_t) { return std::nullopt; };
    std::function<std::optional<std::string>(int handle, std::size_t most)> read_bulk =
        [](int, std::size_t) { return std::nullopt; };
    /// Words for the last failure.
    std::function<std::string()> error_text = [] { return std::string{}; };
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
    /// Calls the procedure within `pump` whenever the descriptor has something to read; one
    /// procedure a descriptor. `pump` returns early for it.
    std::function<void(int fd, std::function<void()>)> watch = [](int,
                                                                  const std::function<void()>&) {};
    std::function<void(int fd)> unwatch = [](int) {};
    serial_seam serial{};
    usb_seam usb{};
    /// Ends the process after the shutdown sequence.
    std::function<void()> quit = [] {};
    platform_table(); ///< clock, ticks and now from the standard library
};
inline platform_table platform;

} // namespace velkoro
