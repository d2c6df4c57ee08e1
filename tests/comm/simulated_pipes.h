/// A USB receiver played by a script: what the pipes give, and a record of what was written.
#pragma once

#include "comm/comm.h"
#include "comm/gar_proto.h"
#include "tests/support/scripted_platform.h"

#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace velkoro {

/// A packet as it stands on the pipes.
inline std::string usb_wire(int type, int id, const std::string& data)
{
    const auto byte = [](std::size_t n) { return static_cast<char>(n & 0xFF); };
    std::string out{byte(static_cast<std::size_t>(type)), 0, 0, 0,
                    byte(static_cast<std::size_t>(id)),   0, 0, 0};
    for (int shift = 0; shift < 32; shift += 8)
        out += byte(data.size() >> shift);
    return out + data;
}

struct simulated_pipes {
    using piece = std::optional<std::string>; ///< nothing: the call fails
    std::deque<piece> interrupt{}, bulk{};    ///< then empty transfers
    std::optional<std::string> on_class[2] = {"/dev/bus/usb/001/002", std::nullopt};
    bool opens = true;
    std::optional<std::uint32_t> size = 64, version = 300;
    int write_result = -2; ///< -2: all of it
    // The record.
    std::vector<std::string> asked{}, written{};
    std::string reads{}; ///< one letter a read: i, b
    int closes = 0, sizes_read = 0;

    simulated_pipes()
    {
        comm = {};
        receiver = {};
        comm.comm_port = usb_port;
        usb_seam& u = platform.usb;
        u.find = [this](const std::string& guid) {
            asked.push_back(guid);
            return on_class[asked.size() % 2 == 1 ? 0 : 1];
        };
        u.open = [this](const std::string&) { return opens ? 7 : 0; };
        u.close = [this](int) { ++closes; };
        u.packet_size = [this](int) {
            ++sizes_read;
            return size;
        };
        u.api_version = [this](int) { return version; };
        u.write = [this](int, const std::string& bytes) {
            written.push_back(bytes);
            return write_result == -2 ? static_cast<int>(bytes.size()) : write_result;
        };
        u.read_interrupt = [this](int, std::size_t) {
            reads += 'i';
            return take(interrupt);
        };
        u.read_bulk = [this](int, std::size_t) {
            reads += 'b';
            return take(bulk);
        };
        u.error_text = [] { return std::string("no such device"); };
    }
    ~simulated_pipes()
    {
        comm = {};
        receiver = {};
    }
    simulated_pipes(const simulated_pipes&) = delete;
    simulated_pipes& operator=(const simulated_pipes&) = delete;

    /// Opens and forgets what the opening wrote and read.
    void open()
    {
        comm_port_set(true);
        written.clear();
        reads.clear();
    }

private:
    static piece take(std::deque<piece>& pipe)
    {
        if (pipe.empty())
            return std::string{};
        const piece front = pipe.front();
        pipe.pop_front();
        return front;
    }
};

} // namespace velkoro
