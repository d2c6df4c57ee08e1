#include "comm/serial_line.h"

#include "core/code_page.h"
#include "core/num_text.h"
#include "core/text_tools.h"
#include "core/texts.h"

// <termios.h> and these cannot stand in one file.
#include <asm/ioctls.h>
#include <asm/termbits.h>

#include <fcntl.h>
#include <sys/eventfd.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <utility>

namespace velkoro {
namespace {

constexpr double speed_tolerance = 0.03; // a receiver does not understand what is further off
constexpr int flush_both = 2;            // TCIOFLUSH of <termios.h>

struct line_state {
    int fd = -1;
    int wake_fd = -1; ///< raised when the threshold falls below what is waiting
    int threshold = 1;
    bool in_event = false;
    std::string waiting{}; ///< come in and not taken yet
    std::string to_send{}; ///< what the device had no room for
};
line_state line;

void line_close()
{
    for (int* fd : {&line.fd, &line.wake_fd}) {
        if (*fd < 0)
            continue;
        platform.unwatch(*fd);
        ::close(*fd);
        *fd = -1;
    }
    line.waiting.clear();
    line.to_send.clear();
}

bool would_block()
{
    return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

/// Gives the device what it has room for.
void send_rest()
{
    while (line.fd >= 0 && !line.to_send.empty()) {
        const ssize_t n = ::write(line.fd, line.to_send.data(), line.to_send.size());
        if (n > 0)
            line.to_send.erase(0, static_cast<std::size_t>(n));
        else if (n == 0 || would_block())
            return;
        else
            line_close();
    }
}

/// The event, when enough bytes are there. A listener that fails to take them is not asked again
/// before more come.
void tell()
{
    if (line.in_event || line.waiting.empty() ||
        line.waiting.size() < static_cast<std::size_t>(line.threshold))
        return;
    line.in_event = true;
    platform.serial.received();
    line.in_event = false;
}

void on_ready()
{
    bool gone = false;
    std::array<char, 4096> bytes{};
    for (;;) {
        const ssize_t n = ::read(line.fd, bytes.data(), bytes.size());
        if (n > 0) {
            line.waiting.append(bytes.data(), static_cast<std::size_t>(n));
            if (static_cast<std::size_t>(n) == bytes.size())
                continue;
            break;
        }
        gone = n == 0 || !would_block();
        break;
    }
    send_rest();
    tell(); // the last bytes of a device that has gone count too
    if (gone)
        line_close();
}

void on_wake()
{
    std::uint64_t count = 0;
    if (::read(line.wake_fd, &count, sizeof count) > 0)
        tell();
}

void set_threshold(int bytes)
{
    line.threshold = bytes;
    if (!line.in_event && line.wake_fd >= 0 && !line.waiting.empty() &&
        line.waiting.size() >= static_cast<std::size_t>(bytes)) {
        const std::uint64_t one = 1;
        [[maybe_unused]] const ssize_t n = ::write(line.wake_fd, &one, sizeof one);
    }
}

struct line_settings {
    unsigned speed = 0;
    unsigned flags = 0; ///< parity, data bits, stop bits
};

/// "9600,n,8,1"; a part that is missing is as there.
line_settings parse_settings(const std::string& text)
{
    std::string rest = text;
    const double speed = val(cut_token(rest, ","));
    const std::string parity = lower(cut_token(rest, ","));
    const std::string bits = cut_token(rest, ",");
    line_settings s;
    s.speed = speed >= 1 && speed <= 10e6 ? static_cast<unsigned>(speed) : 0;
    s.flags |= bits == "5" ? CS5 : bits == "6" ? CS6 : bits == "7" ? CS7 : CS8;
    if (parity == "e" || parity == "o")
        s.flags |= PARENB;
    if (parity == "o")
        s.flags |= PARODD;
    if (rest == "2")
        s.flags |= CSTOPB;
    return s;
}

/// Empty, or the reason why the device does not take the settings.
std::string apply(int fd, const std::string& settings)
{
    const line_settings wanted = parse_settings(settings);
    termios2 t{};
    if (::ioctl(fd, TCGETS2, &t) != 0)
        return text(8043);
    t.c_iflag = IGNBRK;
    t.c_oflag = 0;
    t.c_lflag = 0;
    t.c_cflag = CREAD | CLOCAL | BOTHER | (BOTHER << IBSHIFT) | wanted.flags;
    t.c_ispeed = t.c_ospeed = wanted.speed;
    t.c_cc[VMIN] = 1; // a read of 0 bytes is the end then, and nothing else
    t.c_cc[VTIME] = 0;
    const bool taken =
        wanted.speed != 0 && ::ioctl(fd, TCSETS2, &t) == 0 && ::ioctl(fd, TCGETS2, &t) == 0 &&
        std::fabs(t.c_ospeed / static_cast<double>(wanted.speed) - 1) < speed_tolerance;
    return taken ? std::string{} : text(8042, std::to_string(wanted.speed));
}

std::string line_open(const std::string& device, const std::string& settings)
{
    line_close();
    const int fd = ::open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
        return from_utf8(std::strerror(errno));
    std::string reason;
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        reason = text(8044);
    else
        reason = apply(fd, settings);
    if (!reason.empty()) {
        ::close(fd);
        return reason;
    }
    const int lines = TIOCM_DTR | TIOCM_RTS;
    ::ioctl(fd, TIOCMBIS, &lines); // a device without these lines needs none
    ::ioctl(fd, TCFLSH, flush_both);
    line.fd = fd;
    line.wake_fd = ::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    line.threshold = 1;
    platform.watch(fd, on_ready);
    if (line.wake_fd >= 0)
        platform.watch(line.wake_fd, on_wake);
    return {};
}

} // namespace

void serial_line_install()
{
    line_close();
    serial_seam& s = platform.serial;
    s.open = line_open;
    s.close = line_close;
    s.is_open = [] { return line.fd >= 0; };
    s.threshold = set_threshold;
    s.output = [](const std::string& bytes) {
        if (line.fd < 0)
            return;
        line.to_send += bytes;
        send_rest();
    };
    s.input = [] { return std::exchange(line.waiting, {}); };
    s.devices = [] { return serial_devices("/"); };
}

} // namespace velkoro
