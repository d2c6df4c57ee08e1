#include "core/log.h"

#include "core/files.h"
#include "core/num_text.h"
#include "core/platform.h"
#include "core/res_file.h"
#include "core/settings.h"
#include "core/texts.h"
#include "core/trap.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>
#include <sys/utsname.h>
#include <vector>

namespace velkoro {
namespace {

constexpr const char* log_name = "velkoro.log";
constexpr std::string_view line_end = "\r\n";
constexpr std::size_t zone_width = 14; // columns of a print zone
constexpr std::int64_t day_s = 86400;
constexpr int text_ask_open = 7720, text_ask_delete = 7721;

std::string two(int n)
{
    return pic(n, "00");
}

std::string date_text(int year, int month, int day)
{
    return pic(year, "0000") + "-" + two(month) + "-" + two(day);
}

/// The fields, each at the start of the next free zone of 14 columns.
std::string print_zones(const std::vector<std::string>& fields)
{
    std::string line;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        line += fields[i];
        if (i + 1 < fields.size())
            line.resize((line.size() / zone_width + 1) * zone_width, ' ');
    }
    return line;
}

/// "Linux 6/1/0": name, major and minor version and build of the system.
std::string system_text()
{
    utsname system{};
    if (::uname(&system) != 0)
        return "unknown system";
    std::array<int, 3> numbers{};
    std::string_view release = system.release;
    for (int& n : numbers) {
        n = static_cast<int>(std::clamp(
            val(release.substr(0, release.find_first_not_of("0123456789"))), 0.0, 999999.0));
        const std::size_t digit = release.find_first_not_of("0123456789");
        release = digit == std::string_view::npos ? std::string_view{} : release.substr(digit + 1);
    }
    return std::string(system.sysname) + " " + std::to_string(numbers[0]) + "/" +
           std::to_string(numbers[1]) + "/" + std::to_string(numbers[2]);
}

/// "port 3 9600,N,8,1"
std::string port_text()
{
    constexpr std::array<int, 7> bauds{9600, 4800, 9600, 19200, 28800, 56000, 128000};
    if (settings.port == 0)
        return "no port";
    if (settings.port == 100)
        return "port USB";
    const auto format = static_cast<std::size_t>(
        std::clamp(gar_option(gar_place::gar_wp_format), 0, static_cast<int>(bauds.size()) - 1));
    return "port " + std::to_string(settings.port) + " " + std::to_string(bauds[format]) + ",N,8,1";
}

void put(std::string_view line)
{
    std::fwrite(line.data(), 1, line.size(), log_book.file);
    std::fwrite(line_end.data(), 1, line_end.size(), log_book.file);
    std::fflush(log_book.file); // the last lines before a crash are the ones that matter
}

void offer_to_delete(const std::string& path)
{
    const std::int64_t changed = file_time(path);
    const std::int64_t now = std::chrono::duration_cast<std::chrono::seconds>(
                                 std::chrono::system_clock::now().time_since_epoch())
                                 .count();
    if (changed < 0 || now - changed <= day_s)
        return;
    const std::time_t t = changed;
    std::tm local{};
    ::localtime_r(&t, &local);
    const std::string date = date_text(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
    if (say(text_ask_delete, buttons::ok_cancel, icon::question, date) == answer::ok)
        delete_file(path);
}

std::string clock_text()
{
    const int s = static_cast<int>(std::clamp(platform.clock(), 0.0, 86399.0));
    return two(s / 3600) + ":" + two(s / 60 % 60) + ":" + two(s % 60);
}

} // namespace

void log_open()
try {
    if (log_book.log_on || say(text_ask_open, buttons::ok_cancel, icon::question) != answer::ok)
        return;
    const std::string path = program_path(log_name);
    offer_to_delete(path);
    log_book.file = std::fopen(path.c_str(), "ab");
    if (log_book.file == nullptr)
        return;
    log_book.log_on = true;
    const date_time now = platform.now();
    put("");
    put(print_zones({"***** open", date_text(now.year, now.month, now.day),
                     two(now.hour) + ":" + two(now.minute) + ":" + two(now.second),
                     " " + std::to_string(res_format), ""}));
    put(system_text());
    put(port_text());
} catch (...) {
    trap("log_open");
}

void log_close() noexcept
{
    if (log_book.file != nullptr)
        std::fclose(log_book.file);
    log_book = {};
}

void log_line(std::string_view text) noexcept
try {
    if (!log_book.log_on || log_book.file == nullptr)
        return;
    std::string line(text);
    std::ranges::replace_if(
        line, [](char c) { return c == '\r' || c == '\n'; }, ' ');
    put(clock_text() + (line.starts_with(' ') ? "" : " ") + line);
} catch (...) {
    // A log that cannot be written is not reported.
}

std::string hex_text(std::string_view bytes)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string out;
    for (const char c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        if (!out.empty())
            out += ' ';
        out += digits[b >> 4U];
        out += digits[b & 15U];
    }
    return out;
}

} // namespace velkoro
