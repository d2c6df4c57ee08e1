/// A pseudo terminal whose far end a test holds, and a platform on the real clock with the
/// program's own serial line.
#pragma once

#include "comm/comm.h"
#include "comm/gar_proto.h"
#include "comm/serial_line.h"
#include "core/poll_watch.h"
#include "core/settings.h"
#include "tests/support/scripted_platform.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <functional>
#include <string>

namespace velkoro {

struct pty_line {
    int far = -1;                          ///< the receiver's end, does not block
    std::string path{};                    ///< of the program's end
    std::function<void()> receiver_turn{}; ///< runs at each pump, ahead of the program

    pty_line()
    {
        comm = {};
        receiver = {};
        far = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
        ::grantpt(far);
        ::unlockpt(far);
        path = ::ptsname(far);
        const platform_table real;
        platform.clock = real.clock;
        platform.ticks = real.ticks;
        poll_watch_install();
        serial_line_install();
        comm_listen();
        platform.pump = [this](int ms) {
            if (receiver_turn)
                receiver_turn();
            poll_serve(ms);
        };
        comm.comm_port = 1;
        settings.overrides[{"main", "com1"}] = path;
    }
    ~pty_line()
    {
        platform.serial.close();
        drop();
        comm = {};
        receiver = {};
    }
    pty_line(const pty_line&) = delete;
    pty_line& operator=(const pty_line&) = delete;

    void drop() ///< the device goes away
    {
        if (far >= 0)
            ::close(far);
        far = -1;
    }
    std::string take() const ///< what the program has sent
    {
        std::string bytes(65536, '\0');
        const ssize_t n = ::read(far, bytes.data(), bytes.size());
        bytes.resize(n > 0 ? static_cast<std::size_t>(n) : 0);
        return bytes;
    }
    void put(const std::string& bytes) const
    {
        [[maybe_unused]] const ssize_t n = ::write(far, bytes.data(), bytes.size());
    }
};

} // namespace velkoro
