#include "interchange/streetatlas.h"

#include "core/text_tools.h"

namespace velkoro {
namespace {

struct sa_line {
    double lat = 0, lon = 0;
    std::string_view name{};
};

bool parts(char c)
{
    return c == ' ' || c == '\t' || c == ',';
}

/// A number off the front, with what parts it from the next field: blanks and at most one comma.
bool take_number(std::string_view& line, double& number)
{
    std::size_t end = 0;
    while (end < line.size() && !parts(line[end]))
        ++end;
    if (!to_number(line.substr(0, end), number))
        return false;
    bool comma = false;
    while (end < line.size() && parts(line[end]) && !(comma && line[end] == ',')) {
        comma = comma || line[end] == ',';
        ++end;
    }
    line.remove_prefix(end);
    return true;
}

bool begins_number(std::string_view line)
{
    if (line.starts_with('-') || line.starts_with('+'))
        line.remove_prefix(1);
    return !line.empty() && ((line[0] >= '0' && line[0] <= '9') || line[0] == '.');
}

bool take_line(std::string_view line, sa_line& out)
{
    if (!take_number(line, out.lat) || !take_number(line, out.lon))
        return false;
    line = trim(line);
    if (line.size() > 1 && line.starts_with('"') && line.ends_with('"'))
        line = trim(line.substr(1, line.size() - 2));
    out.name = line;
    return true;
}

} // namespace

void read_streetatlas(import_job& in)
{
    for (std::string_view line; next_full_line(in, line);) {
        if (!begins_number(line))
            continue;
        sa_line point;
        pos_rec pos;
        if (!take_line(line, point) || point.name.empty() ||
            !file_position(in, point.lat, point.lon, pos))
            bad_line(in);
        else
            add_waypoint(in, point.name, {}, pos);
    }
}

bool is_streetatlas(std::string_view text, std::string_view)
{
    const std::size_t at = text.find_first_not_of(" \t\r\n");
    if (at == std::string_view::npos)
        return false;
    text.remove_prefix(at);
    text = text.substr(0, text.find_first_of("\r\n"));
    sa_line point;
    return begins(text, "BEGIN SYMBOL") || begins(text, "BEGIN LINE") ||
           (begins_number(text) && take_line(text, point) && point.lat >= -90 && point.lat <= 90 &&
            point.lon >= -180 && point.lon <= 180);
}

void write_streetatlas(export_job& out)
{
    each_waypoint(out, [&](const wayp_rec& w) {
        const geo_degrees g = on_datum(out, w.pos);
        put_decimal(out, g.lat, 2, 5);
        put(out, ' ');
        put_decimal(out, g.lon, 3, 5);
        put(out, ' ');
        put_text(out, name_of(out, w), ",\"", '-'); // readers take them for what parts the fields
        put_end(out);
    });
}

} // namespace velkoro
