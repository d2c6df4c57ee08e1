#include "comm/mag_session.h"

#include "comm/mag_link.h"
#include "coords/coord_text.h"
#include "core/job.h"
#include "core/num_text.h"
#include "core/text_tools.h"
#include "core/texts.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace velkoro {
namespace {

constexpr double semi_per_degree = 2147483648.0 / 180.0;

std::string last_two(const std::string& line)
{
    return line.size() < 2 ? line : line.substr(line.size() - 2);
}

/// Semicircles of "ddmm.mmm" with so many digits of degrees; nothing beyond the limit.
std::optional<std::int32_t> angle(const std::string& field, std::size_t digits, bool negative,
                                  double limit_degrees)
{
    const double degrees = val(std::string_view(field).substr(0, digits));
    const double minutes =
        field.size() > digits ? val(std::string_view(field).substr(digits)) : 0.0;
    double semi = semi_per_degree * degrees + semi_per_degree * minutes / 60;
    if (std::abs(semi) > semi_per_degree * limit_degrees)
        return std::nullopt;
    if (negative)
        semi = -semi;
    semi = round_even(semi);
    // 180 degrees east are those of the west.
    return semi > std::numeric_limits<std::int32_t>::max()
               ? std::numeric_limits<std::int32_t>::min()
               : to_i32(semi);
}

/// "4828.413" of an angle in degrees: the coordinate text "N48°28.413'" without its signs.
std::string angle_text(double degrees, char letter, int digits)
{
    const std::string shown = angle_to_text(degrees, letter, fmt_minutes);
    const std::size_t cut = shown.find('\xB0');
    const std::size_t number = shown.find_first_of("0123456789");
    if (cut == std::string::npos || number == std::string::npos)
        return {};
    const std::string whole(static_cast<std::size_t>(digits), '0');
    return pic(val(std::string_view(shown).substr(number, cut - number)), whole) +
           pic(val(comma_to_dot(shown.substr(cut + 1))), "00.000");
}

void mag_hand_on()
{
    mag_comm("CMD,HANDON", "");
}

void mag_hand_off()
{
    mag_comm("CMD,HANDOFF", "");
}

} // namespace

void mag_reading(const std::function<transfer_end()>& read)
{
    mag_hand_on();
    try {
        transfer.end = read();
    } catch (...) {
        mag_hand_off();
        throw;
    }
    mag_hand_off();
    if (transfer.end == transfer_end::no_receiver)
        transfer_no_answer();
    if (transfer.end == transfer_end::empty)
        transfer_nothing_there();
}

mag_list mag_read_list(const std::string& command, const std::string& tag, int number)
{
    mag_list list;
    op_progress(-1); // nobody says how many there are
    std::string line = mag_comm(command, tag);
    if (line.empty())
        list.end = transfer_end::no_receiver;
    while (line != mag_end_line && !line.empty()) {
        // A line that came twice is one line.
        if (list.lines.empty() || list.lines.back() != line)
            list.lines.push_back(line);
        if (const std::size_t n = list.lines.size(); n == 1 || n % 16 == 0)
            op.anz.caption = text(number, std::to_string(n), transfer.receiver);
        if (!transfer_step(list.lines.size(), 0)) {
            mag_comm("CMD,STOP", "");
            list.end = transfer_end::cancelled;
            return list;
        }
        line = mag_comm("CSM," + last_two(line), tag);
        if (line.empty())
            list.end = transfer_end::broken_off;
    }
    if (!line.empty())
        mag_comm("CSM," + last_two(line), "");
    transfer.records += static_cast<int>(list.lines.size());
    return list;
}

transfer_end mag_write_list(const std::vector<std::string>& lines, int number)
{
    if (lines.empty()) {
        op2.anz.caption = text(8122);
        return transfer_end::empty;
    }
    transfer_end end = transfer_end::whole;
    std::size_t sent = 0;
    mag_hand_on();
    for (const std::string& line : lines) {
        if (sent % 16 == 0)
            op.anz.caption = text(number, static_cast<long long>(sent));
        if (!transfer_step(sent, lines.size())) {
            end = transfer_end::cancelled;
            break;
        }
        if (mag_comm(line, "CSM").empty()) {
            end = job.op_cancel ? transfer_end::cancelled : transfer_end::broken_off;
            break;
        }
        ++sent;
        ++transfer.records;
    }
    if (end == transfer_end::broken_off)
        transfer_silent_at(sent);
    mag_hand_off();
    return end;
}

mag_fields::mag_fields(std::string_view sentence) : rest(sentence.substr(0, sentence.rfind('*')))
{
    tag = next();
}

std::string mag_fields::next()
{
    ended = ended || rest.find(',') == std::string::npos;
    return cut_token(rest, ",");
}

std::optional<pos_rec> mag_position(mag_fields& fields)
{
    const std::string lat = fields.next();
    const bool south = fields.next() == "S";
    const std::string lon = fields.next();
    const bool west = fields.next() == "W";
    const auto y = angle(lat, 2, south, 90);
    const auto x = angle(lon, 3, west, 180);
    if (lat.empty() || lon.empty() || !y || !x)
        return std::nullopt;
    return pos_rec{*y, *x};
}

std::int16_t mag_height(mag_fields& fields)
{
    const std::string height = fields.next();
    const std::string unit = fields.next();
    if (trim(height).empty())
        return alt_unknown;
    const double metres = fix(val(height)) * (unit == "F" ? 0.3048 : 1.0);
    return std::abs(metres) > 32766 ? alt_unknown : to_i16(metres);
}

std::string mag_position_text(const pos_rec& pos)
{
    const double lat = pos.lat / semi_per_degree;
    const double lon = pos.lon / semi_per_degree;
    return angle_text(lat, 'N', 2) + (lat < 0 ? ",S," : ",N,") + angle_text(lon, 'E', 3) +
           (lon < 0 ? ",W" : ",E");
}

std::string mag_height_text(std::int16_t alt, int digits)
{
    return alt == alt_unknown ? ","
                              : pic(alt, std::string(static_cast<std::size_t>(digits), '0')) + ",M";
}

std::string mag_text(std::string_view text)
{
    std::string out(text);
    std::ranges::replace_if(
        out,
        [](char c) {
            return c == ',' || c == '*' || c == '$' || static_cast<unsigned char>(c) < ' ';
        },
        ' ');
    return std::string(trim(out));
}

char mag_icon(std::int16_t symbol)
{
    return symbol >= 0 && symbol < 26 ? static_cast<char>('a' + symbol) : 'a';
}

} // namespace velkoro
