#include "comm/gar_codec_track.h"

#include "comm/gar_codec_comment.h"
#include "comm/gar_codec_layout.h"
#include "comm/gar_codec_time.h"
#include "comm/gar_proto.h"
#include "core/num_text.h"
#include "core/settings.h"
#include "core/text_tools.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace velkoro {
namespace {

constexpr std::int32_t lat_most = 1 << 30; // 90 degrees
constexpr std::size_t tag_place = 20, tag_bytes = 4;
constexpr std::size_t auto_name_room = 10;
constexpr int none = 255; // the receiver's own colour
/// Receiver's colours of the track colours 1 to 7.
constexpr std::array<int, 7> track_colours{0, 10, 12, 9, 14, 13, 15};

std::string hex_text(std::string_view bytes)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string out;
    for (const char c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        out += digits[b >> 4];
        out += digits[b & 15];
    }
    return out;
}

int hex_digit(char c)
{
    const std::size_t at = std::string_view("0123456789ABCDEF").find(upper(c));
    return at == std::string_view::npos ? -1 : static_cast<int>(at);
}

/// The index that the name of a track read as D311 begins with.
std::uint16_t index_of_name(std::string_view name)
{
    std::array<int, 4> d{};
    if (name.size() < d.size())
        return 0;
    for (std::size_t i = 0; i < d.size(); ++i) {
        d[i] = hex_digit(name[i]);
        if (d[i] < 0)
            return 0;
    }
    return static_cast<std::uint16_t>(d[0] << 4 | d[1] | d[2] << 12 | d[3] << 8);
}

std::int16_t whole_metres(float height)
{
    if (!(height >= -32767.0F && height <= 32767.0F))
        return alt_unknown;
    return to_i16(static_cast<double>(height));
}

} // namespace

bool gar_track_decode(std::string_view data, int type, gar_track_in& result)
{
    result = {};
    if (data.empty())
        return false;
    if (type == 311) {
        result.name = hex_text(data.substr(0, tag_bytes));
        return true;
    }
    if (type != 310 && type != 312)
        return false;
    gar_field_reader in(data);
    std::uint8_t shown = 1;
    auto colour = static_cast<std::uint8_t>(none);
    std::string name;
    in.number(shown);
    in.number(colour);
    in.zero_ended(name, 51);
    name = gar_text_in(name);
    result.colour = colour;
    if (name != gar_active_log)
        result.name = name + gar_color_code(colour);
    return true;
}

std::string gar_track_encode(std::string_view name, int colour, int type)
{
    gar_field_writer out;
    switch (type) {
    case 310:
    case 312:
        out.number(std::uint8_t{1});
        out.number(static_cast<std::uint8_t>(colour));
        out.zero_ended(gar_text_out(name), 51);
        break;
    case 311: out.number(index_of_name(name)); break;
    default: break;
    }
    return out.out;
}

int gar_track_colour(std::string& name, int index)
{
    int colour = none;
    gar_color_cut(name, colour);
    if (colour != none)
        return colour;
    if (index >= 1 && index <= static_cast<int>(track_colours.size()))
        return track_colours[static_cast<std::size_t>(index) - 1];
    const double set = val(setting_get("track_defcol", key_place::main));
    return set >= 0 && set <= none ? static_cast<int>(set) : none;
}

std::string gar_track_auto_name(int number, std::string_view title)
{
    title = trim(trim(title).substr(0, auto_name_room));
    return std::to_string(number) + (title.empty() ? "VELKORO" : std::string(title));
}

int gar_point_type()
{
    const auto& track = receiver.gar_proto[4];
    switch (track[0]) {
    case 300: return track[1];
    case 301:
    case 302: return track[2];
    default: return 0;
    }
}

bool gar_point_decode(std::string_view data, int type, gar_point_in& result)
{
    result = {};
    if (type < 300 || type > 302 || data.size() < 8)
        return false;
    gar_field_reader in(data);
    gar_point_in point;
    in.number(point.pos.lat);
    in.number(point.pos.lon);
    if (point.pos.lat > lat_most || point.pos.lat < -lat_most)
        return false;
    in.number(point.time);
    point.time = gar_time_known(point.time);
    if (type != 300) {
        float height = gar_no_value;
        in.real(height);
        point.alt = whole_metres(height);
        in.real(point.depth);
    }
    if (type == 302)
        in.constant(4, 0); // temperature
    std::uint8_t segment = 0;
    in.number(segment);
    point.segment = segment != 0;
    result = point;
    return true;
}

std::string gar_point_encode(const trackp_rec& point, int type, bool segment)
{
    gar_field_writer out;
    if (type < 300 || type > 302)
        return {};
    out.number(point.pos.lat);
    out.number(point.pos.lon);
    out.number(point.zeit & 0x7FFFFFFF); // the sign is a flag of the track operations
    if (type != 300) {
        out.real(point.alt == alt_unknown ? gar_no_value : static_cast<float>(point.alt));
        out.real(gar_no_value);
    }
    if (type == 302)
        out.real(gar_no_value);
    out.number(static_cast<std::uint8_t>(segment ? 1 : 0));
    return out.out;
}

std::string gar_point_tag(std::string_view data)
{
    if (data.size() <= tag_place)
        return {};
    return hex_text(data.substr(tag_place, tag_bytes)) + "/";
}

std::string gar_point_comment(const gar_point_in& point, bool first)
{
    const double keep = val(setting_get("track_depth", key_place::main));
    if (!(keep == 2 || (keep == 1 && first)) || !(std::abs(point.depth) < 1e9F))
        return {};
    return gar_depth_text(static_cast<double>(point.depth), "0.00 ");
}

} // namespace velkoro
