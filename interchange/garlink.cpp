#include "interchange/garlink.h"

#include "core/text_tools.h"

namespace velkoro {
namespace {

constexpr std::string_view head = "Lat/Lon";

void read_row(import_job& in, std::string_view line)
{
    double lat = 0, lon = 0;
    std::string_view name, rest;
    pos_rec pos;
    if (!find_angles(line, 1, lat, lon, name, rest) || !file_position(in, lat, lon, pos)) {
        bad_line(in);
        return;
    }
    std::string_view times = rest;
    if (next_field(times, " ") == "0")
        rest = times;
    // The comment begins with its mark; without one it is what stands behind the date.
    const std::size_t mark = rest.find('@');
    times = rest.substr(0, mark);
    const std::string_view date = next_field(times, " "), clock = next_field(times, " ");
    const auto dat = to_time(date, clock, date_order::year_month_day);
    const std::string_view comment = mark != std::string_view::npos ? rest.substr(mark + 1)
                                     : dat                          ? times
                                                                    : rest;
    add_waypoint(in, name, trim(comment), pos, dat.value_or(0));
}

void put_angle(export_job& out, double degrees, char letter)
{
    const int fmt = out.options.fmt > fmt_seconds ? fmt_degrees : out.options.fmt;
    const angle_parts a = split_angle(degrees, letter, fmt);
    put(out, a.negative ? (letter == 'N' ? 'S' : 'W') : letter);
    put(out, a.degrees());
    if (fmt == fmt_degrees)
        return;
    put(out, '\xB0');
    put(out, a.minutes());
    put(out, '\'');
    if (fmt == fmt_seconds) {
        put(out, a.seconds());
        put(out, '"');
    }
}

} // namespace

void read_garlink(import_job& in)
{
    std::string_view line;
    if (!next_full_line(in, line) || !begins(line, head)) {
        refuse(in);
        return;
    }
    if (!set_datum(in, trim(line.substr(head.size()))))
        return;
    while (next_full_line(in, line))
        if (!begins(line, head)) // files that were put one behind the other
            read_row(in, line);
        else if (!set_datum(in, trim(line.substr(head.size()))))
            return;
}

void write_garlink(export_job& out)
{
    if (!out.appends)
        put_line(out, "Lat/Lon WGS-84");
    each_waypoint(out, [&](const wayp_rec& w) {
        const geo_degrees g = on_datum(out, w.pos);
        put_text(out, name_of(out, w), " ", '-');
        put(out, ' ');
        put_angle(out, g.lat, 'N');
        put(out, ' ');
        put_angle(out, g.lon, 'E');
        put(out, " 0 ");
        put_time(out, in_two_digits(w.dat), "yy.mm.dd hh:nn ");
        put(out, '@');
        put_text(out, comment_of(out, w));
        put_end(out);
    });
}

} // namespace velkoro
