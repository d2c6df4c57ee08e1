#include "interchange/export_job.h"

#include "coords/times.h"
#include "core/form1.h"
#include "core/job.h"
#include "core/num_text.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"
#include "waypoints/selection.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <numbers>

namespace velkoro {
namespace {

constexpr double deg = 180 / std::numbers::pi;
constexpr double base_day = 32873; // 31 December 1989 in days since 30 December 1899
constexpr std::string_view month_names = "JANFEBMARAPRMAYJUNJULAUGSEPOCTNOVDEC";

void progress(export_job& out)
{
    op_progress(static_cast<double>(out.done) /
                static_cast<double>(std::max<std::size_t>(out.all, 1)));
    op.anz.caption = text(2570, out.written);
    if (!op_pump())
        throw batch_cancelled{};
}

bool is_control(char c)
{
    return static_cast<unsigned char>(c) < ' ';
}

/// Digits of a whole number of at least so many digits.
std::string_view digits_of(std::array<char, 32>& room, std::int64_t number, int digits)
{
    char* p = room.data() + room.size();
    std::uint64_t n =
        number < 0 ? 0 - static_cast<std::uint64_t>(number) : static_cast<std::uint64_t>(number);
    for (; n > 0 || digits > 0; --digits, n /= 10)
        *--p = static_cast<char>('0' + n % 10);
    if (number < 0)
        *--p = '-';
    return {p, static_cast<std::size_t>(room.data() + room.size() - p)};
}

} // namespace

// Records
// -------------------------------------------------------------------------------------------------

void export_step(export_job& out)
{
    ++out.done;
    if (op_due())
        progress(out);
}

// Text
// -------------------------------------------------------------------------------------------------

void put_text(export_job& out, std::string_view text, std::string_view unwanted, char instead)
{
    const std::size_t from = out.bytes.size();
    out.bytes.append(text);
    for (std::size_t i = from; i < out.bytes.size(); ++i) {
        char& c = out.bytes[i];
        if (is_control(c))
            c = ' ';
        else if (unwanted.find(c) != std::string_view::npos)
            c = instead;
    }
}

void put_padded(export_job& out, std::string_view text, std::size_t width)
{
    text = text.substr(0, width);
    put_text(out, text);
    out.bytes.append(width - text.size(), ' ');
}

void put_right(export_job& out, std::string_view text, std::size_t width)
{
    if (text.size() < width)
        out.bytes.append(width - text.size(), ' ');
    put_text(out, text);
}

void put_int(export_job& out, std::int64_t number, int digits)
{
    std::array<char, 32> room;
    out.bytes.append(digits_of(room, number, std::clamp(digits, 1, 20)));
}

void put_int_right(export_job& out, std::int64_t number, std::size_t width)
{
    std::array<char, 32> room;
    put_right(out, digits_of(room, number, 1), width);
}

void put_decimal(export_job& out, double number, int whole, int decimals)
{
    if (!std::isfinite(number))
        number = 0;
    char room[360];
    char* const end = put_fixed(room, std::fabs(number), whole, decimals);
    const bool zero = std::all_of(room, end, [](char c) { return c == '0' || c == '.'; });
    if (number < 0 && !zero)
        out.bytes += '-';
    out.bytes.append(room, static_cast<std::size_t>(end - room));
}

std::string_view name_of(const export_job& out, const wayp_rec& w)
{
    std::string_view name = trim(w.nam);
    if (out.options.name_length > 0)
        name = trim_right(name.substr(0, static_cast<std::size_t>(out.options.name_length)));
    return name;
}

std::string_view comment_of(const export_job& out, const wayp_rec& w)
{
    return out.options.comments ? trim(w.kom) : std::string_view{};
}

// Positions and times
// -------------------------------------------------------------------------------------------------

geo_degrees on_datum(const export_job& out, const pos_rec& pos)
{
    const geo_rec geo = wgs_to_datum(pos, out.datum);
    return {geo.lat * deg, geo.lon * deg};
}

angle_parts split_angle(double degrees, char letter, int fmt)
{
    angle_parts parts;
    parts.text = angle_to_text(degrees, letter, fmt);
    parts.negative = degrees < 0;
    const auto is_digit = [&](std::size_t i) {
        return i < parts.text.size() &&
               ((parts.text[i] >= '0' && parts.text[i] <= '9') || parts.text[i] == '.');
    };
    std::size_t i = 1;
    const auto take = [&](std::uint8_t& at, std::uint8_t& size) {
        while (i < parts.text.size() && !is_digit(i))
            ++i;
        at = static_cast<std::uint8_t>(i);
        while (is_digit(i))
            ++i;
        size = static_cast<std::uint8_t>(i - at);
    };
    take(parts.degrees_at, parts.degrees_size);
    take(parts.minutes_at, parts.minutes_size);
    take(parts.seconds_at, parts.seconds_size);
    return parts;
}

void put_degrees(export_job& out, double degrees, char letter)
{
    const angle_parts a = split_angle(degrees, letter, fmt_degrees);
    if (a.negative)
        put(out, '-');
    put(out, a.degrees());
}

namespace {

/// pos_to_text works on the chosen datum and remembers the zone of its text for the editor: both
/// are as before afterwards.
struct datum_for_texts {
    int chosen = Form1.Datum.selected;
    coord_state held = coord;
    explicit datum_for_texts(int row)
    {
        Form1.Datum.selected = row >= 0 ? row : -2; // past the table: WGS 84
    }
    datum_for_texts(const datum_for_texts&) = delete;
    datum_for_texts& operator=(const datum_for_texts&) = delete;
    ~datum_for_texts()
    {
        Form1.Datum.selected = chosen;
        coord = held;
    }
};

} // namespace

void coordinate_texts(export_job& out, const pos_rec& pos, int fmt)
{
    fmt = fmt == -1 ? out.options.fmt : fmt;
    if (fmt <= fmt_seconds) {
        const geo_degrees g = on_datum(out, pos);
        out.zone.clear();
        out.east = angle_to_text(g.lon, 'E', fmt);
        out.north = angle_to_text(g.lat, 'N', fmt);
        return;
    }
    const datum_for_texts scope(out.datum_index);
    pos_to_text(pos, out.zone, out.east, out.north, -1, fmt);
}

void put_time(export_job& out, std::int32_t time, std::string_view picture)
{
    const date_time t = seconds_date(time);
    for (std::size_t i = 0; i < picture.size();) {
        const char c = lower(picture[i]);
        std::size_t n = 1;
        while (i + n < picture.size() && lower(picture[i + n]) == c)
            ++n;
        const int two = n >= 2 ? 2 : 1;
        switch (c) {
        case 'd': put_int(out, t.day, two); break;
        case 'h': put_int(out, t.hour, two); break;
        case 'n': put_int(out, t.minute, two); break;
        case 's': put_int(out, t.second, two); break;
        case 'y': put_int(out, n >= 4 ? t.year : t.year % 100, n >= 4 ? 4 : 2); break;
        case 'm':
            if (n >= 3)
                put(out, month_names.substr(static_cast<std::size_t>(t.month - 1) * 3, 3));
            else
                put_int(out, t.month, two);
            break;
        default: put(out, picture.substr(i, n)); break;
        }
        i += n;
    }
}

std::int32_t in_two_digits(std::int32_t time)
{
    // No time of 32 bits lies behind 2079.
    return time < day_number(1980, 1, 1) * day_seconds ? 0 : time;
}

void put_day_number(export_job& out, std::int32_t time)
{
    put_decimal(out, base_day + time / static_cast<double>(day_seconds), 1, 7);
}

// Running a writer
// -------------------------------------------------------------------------------------------------

namespace {

void use_datum(export_job& out, const format_row& format)
{
    if (format.datum.empty())
        out.datum_index = out.options.datum >= 0 ? out.options.datum : Form1.Datum.selected;
    else
        out.datum_index = format.datum == "WGS 84" ? datums.wgs_datum : datum_find(format.datum);
    out.datum = datum_at(out.datum_index >= 0 ? out.datum_index : -2);
    out.datum_name = out.datum.name;
}

native_end run_writer(export_job& out, format_writer write)
try {
    write(out);
    return native_end::whole;
} catch (const batch_cancelled&) {
    return native_end::broken_off;
}

} // namespace

export_options export_defaults(const format_row& format)
{
    export_options options;
    const int fmt = Form1.posform.selected;
    const bool holds_it = (format.options & opt_grids) != 0 ||
                          ((format.options & opt_posform) != 0 && fmt <= fmt_seconds);
    options.fmt = holds_it && fmt >= 0 ? fmt : fmt_degrees;
    return options;
}

std::string signed_format()
{
    return "+ddd.ddddd\xB0";
}

export_result export_bytes(const format_row& format, const export_options& options,
                           std::string_view extension, bool appends, bool tracks)
{
    export_result result;
    export_job out;
    out.options = options;
    out.extension = lower(extension);
    out.route_file = !format.route_extension.empty() && out.extension == format.route_extension;
    out.appends = appends;
    out.title = tracks ? store.trk_title : Form1.wayp_titel.text;
    use_datum(out, format);
    if (tracks) {
        out.all = static_cast<std::size_t>(store.trk_top + 1);
    } else {
        out.routes = selected_routes(options.flags, options.routes);
        const std::vector<bool> wanted = selected_waypoints(options.flags, out.routes);
        for (const int i : waypoints_in_order())
            if (wanted[static_cast<std::size_t>(i)])
                out.waypoints.push_back(i);
        out.all = out.waypoints.size() + out.routes.size();
    }
    out.bytes.reserve(out.all * 128 + 4096);
    if (const format_writer write = tracks ? format.write_track : format.write) {
        result.end = run_writer(out, write);
    } else {
        result.end = native_end::not_native;
    }
    result.bytes = std::move(out.bytes);
    result.waypoints = out.written;
    result.routes = out.routes_written;
    result.track_points = out.track_points;
    return result;
}

} // namespace velkoro
