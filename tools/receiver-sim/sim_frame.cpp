#include "tools/receiver-sim/sim_frame.h"

namespace velkoro {
namespace {

constexpr char dle = 0x10;
constexpr char etx = 0x03;

void put_doubled(std::string& out, char c)
{
    out += c;
    if (c == dle)
        out += c;
}

} // namespace

std::string sim_frame(const sim_packet& packet)
{
    const std::string_view data = std::string_view(packet.data).substr(0, 255);
    std::string out{dle, static_cast<char>(packet.id)};
    unsigned sum = static_cast<unsigned char>(packet.id) + static_cast<unsigned>(data.size());
    put_doubled(out, static_cast<char>(data.size()));
    for (const char c : data) {
        put_doubled(out, c);
        sum += static_cast<unsigned char>(c);
    }
    put_doubled(out, static_cast<char>((256 - sum % 256) % 256));
    out += dle;
    out += etx;
    return out;
}

sim_take sim_unframer::take(char byte)
{
    const auto value = static_cast<std::uint8_t>(byte);
    const bool inside = state == at::size || state == at::data || state == at::checksum;
    if (inside && !doubled && byte == dle) {
        doubled = true;
        return sim_take::more;
    }
    if (doubled) {
        doubled = false;
        if (byte != dle) { // a lone DLE: the frame broke off, and a new one may have begun
            state = at::outside;
            packet.id = byte == etx ? packet.id : value;
            if (byte != etx) {
                packet.data.clear();
                sum = value;
                state = at::size;
            }
            return sim_take::damaged;
        }
    }
    switch (state) {
    case at::outside:
        if (byte == dle)
            state = at::id;
        break;
    case at::id:
        if (byte == dle || byte == etx) { // the tail of a frame whose head was lost
            state = byte == dle ? at::id : at::outside;
            break;
        }
        packet = {value, {}};
        sum = value;
        state = at::size;
        break;
    case at::size:
        size = value;
        sum = static_cast<std::uint8_t>(sum + value);
        state = size == 0 ? at::checksum : at::data;
        break;
    case at::data:
        packet.data += byte;
        sum = static_cast<std::uint8_t>(sum + value);
        if (packet.data.size() == size)
            state = at::checksum;
        break;
    case at::checksum:
        sum = static_cast<std::uint8_t>(sum + value);
        state = at::dle;
        break;
    case at::dle:
        if (byte == dle) {
            state = at::etx;
            break;
        }
        state = at::outside;
        return sim_take::damaged;
    case at::etx:
        state = at::outside;
        return byte == etx && sum == 0 ? sim_take::packet : sim_take::damaged;
    }
    return sim_take::more;
}

} // namespace velkoro
