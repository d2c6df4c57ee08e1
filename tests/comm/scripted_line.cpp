#include "tests/comm/scripted_line.h"

#include "comm/gar_proto.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace velkoro {
namespace {

std::string_view trimmed(std::string_view s)
{
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t' || s.front() == '\r'))
        s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r'))
        s.remove_suffix(1);
    return s;
}

/// Hexadecimal numbers, or a sentence in quotes.
std::string line_bytes(std::string_view s)
{
    s = trimmed(s);
    if (s.starts_with('"'))
        return std::string(s.substr(1, s.rfind('"') - 1)) + "\r\n";
    return unhex(s.substr(0, s.find('#')));
}

} // namespace

std::string unhex(std::string_view text)
{
    std::string bytes;
    std::string token;
    for (const char c : std::string(text) + " ") {
        if (c != ' ') {
            token += c;
        } else if (!token.empty()) {
            bytes += static_cast<char>(std::strtol(token.c_str(), nullptr, 16));
            token.clear();
        }
    }
    return bytes;
}

std::string hex(std::string_view bytes)
{
    std::string out;
    for (const char c : bytes) {
        char two[4];
        std::snprintf(two, sizeof two, "%02X ",
                      static_cast<unsigned>(static_cast<unsigned char>(c)));
        out += two;
    }
    if (!out.empty())
        out.pop_back();
    return out;
}

std::string wire(int packet_id, std::string_view data)
{
    int sum = packet_id + static_cast<int>(data.size());
    for (const char c : data)
        sum += static_cast<unsigned char>(c);
    std::string inner;
    inner += static_cast<char>(packet_id);
    inner += static_cast<char>(data.size());
    inner += data;
    inner += static_cast<char>(-sum & 0xFF);
    std::string out = "\x10";
    for (const char c : inner) {
        out += c;
        if (c == '\x10')
            out += c;
    }
    return out + "\x10\x03";
}

std::string wire_ack(int packet_id)
{
    return wire(6, le16(packet_id));
}

std::string le16(int value)
{
    return {static_cast<char>(value & 0xFF), static_cast<char>((value >> 8) & 0xFF)};
}

std::string le32(std::int64_t value)
{
    return le16(static_cast<int>(value & 0xFFFF)) + le16(static_cast<int>((value >> 16) & 0xFFFF));
}

std::string sentence(std::string_view text)
{
    unsigned x = 0;
    for (const char c : text)
        x ^= static_cast<unsigned char>(c);
    char end[6];
    std::snprintf(end, sizeof end, "*%02X", x);
    return "$" + std::string(text) + end + "\r\n";
}

scripted_line::scripted_line(scripted_platform& platform_of_test) : user(platform_of_test)
{
    comm = {};
    receiver = {};
    comm.comm_port = 1;
    comm_listen();
    serial_seam& s = platform.serial;
    s.open = [this](const std::string& name, const std::string& set) -> std::string {
        ++opens;
        device = name;
        settings = set;
        if (!refuse.empty())
            return refuse;
        if (std::ranges::find(refused_settings, set) != refused_settings.end())
            return "the speed is refused";
        opened = true;
        threshold = 1;
        waiting.clear();
        on_the_way.clear();
        return {};
    };
    s.close = [this] {
        ++closes;
        opened = false;
    };
    s.is_open = [this] { return opened; };
    s.threshold = [this](int n) {
        threshold = n;
        thresholds.push_back(n);
    };
    s.output = [this](const std::string& bytes) { output(bytes); };
    s.input = [this] { return std::exchange(waiting, {}); };
    s.devices = [] {
        std::vector<serial_device> all;
        for (int n = 1; n <= 8; ++n)
            all.push_back({"/dev/scripted" + std::to_string(n)});
        return all;
    };
    platform.pump = [this](int ms) { pump(ms); };
}

scripted_line::~scripted_line()
{
    comm = {};
    receiver = {};
}

void scripted_line::play(std::string_view transcript)
{
    double silence = 0;
    while (!transcript.empty()) {
        const std::size_t end = std::min(transcript.find('\n'), transcript.size());
        const std::string_view line = trimmed(transcript.substr(0, end));
        transcript.remove_prefix(std::min(end + 1, transcript.size()));
        if (line.starts_with('>')) {
            script.push_back({line_bytes(line.substr(1)), {}});
            silence = 0;
        } else if (line.starts_with('!')) {
            silence += std::strtod(std::string(line.substr(1)).c_str(), nullptr);
        } else if (line.starts_with('<')) {
            if (script.empty())
                send(line_bytes(line.substr(1)), silence);
            else
                script.back().answers.push_back({silence, line_bytes(line.substr(1))});
        }
    }
}

void scripted_line::expect(std::string bytes, std::string answer)
{
    script.push_back({std::move(bytes), {}});
    if (!answer.empty())
        script.back().answers.push_back({0, std::move(answer)});
}

void scripted_line::send(std::string bytes, double delay_s)
{
    const std::size_t size = piece != 0 ? piece : bytes.size();
    double at = std::max(user.time_s + delay_s, line_free_at);
    for (std::size_t i = 0; i < bytes.size(); i += size) {
        const std::string part = bytes.substr(i, size);
        at += byte_time_s * static_cast<double>(part.size());
        on_the_way.push_back({at, part});
    }
    line_free_at = at;
}

void scripted_line::hang_up()
{
    opened = false;
    on_the_way.clear();
    waiting.clear();
}

std::string scripted_line::sent_text() const
{
    std::string out;
    for (const std::string& s : sent)
        out += hex(s) + "\n";
    return out;
}

void scripted_line::output(const std::string& bytes)
{
    if (!opened)
        return;
    sent.push_back(bytes);
    if (on_output) {
        on_output(bytes);
        return;
    }
    if (script.empty()) {
        ADD_FAILURE() << "nothing more was to be sent, but " << hex(bytes) << " \"" << bytes << '"';
        return;
    }
    const step now = script.front();
    script.pop_front();
    EXPECT_EQ(hex(bytes), hex(now.wanted)) << bytes << "\ninstead of\n" << now.wanted;
    for (const coming& c : now.answers)
        send(c.bytes, c.at);
}

void scripted_line::deliver()
{
    if (!waiting.empty() && static_cast<int>(waiting.size()) >= threshold) {
        ++events; // the threshold was lowered
        platform.serial.received();
    }
    while (!on_the_way.empty() && on_the_way.front().at <= user.time_s + 1e-9) {
        waiting += on_the_way.front().bytes;
        on_the_way.pop_front();
        // Each piece is an event of its own when the threshold is reached with it.
        if (static_cast<int>(waiting.size()) >= threshold) {
            ++events;
            platform.serial.received();
        }
    }
}

void scripted_line::pump(int ms)
{
    ++user.pumps;
    const double until = user.time_s + ms / 1000.0;
    if (!on_the_way.empty() && on_the_way.front().at < until)
        user.time_s = std::max(user.time_s, on_the_way.front().at);
    else
        user.time_s = until;
    if (user.on_pump)
        user.on_pump();
    if (opened)
        deliver();
}

} // namespace velkoro
