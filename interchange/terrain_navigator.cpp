#include "interchange/terrain_navigator.h"

#include "core/text_tools.h"

#include <array>

namespace velkoro {
namespace {

struct mxf_line {
    pos_rec pos{};
    std::string_view name{}, comment{};
};

/// A text in quotation marks off the front; the mark that closes it is followed by a comma or the
/// end of the line, so that a stray one within does no harm.
bool take_text(std::string_view& rest, std::string_view& text)
{
    rest = trim_left(rest);
    if (!rest.starts_with('"'))
        return false;
    for (std::size_t end = rest.find('"', 1); end != std::string_view::npos;
         end = rest.find('"', end + 1)) {
        const std::string_view behind = trim_left(rest.substr(end + 1));
        if (!behind.empty() && behind.front() != ',')
            continue;
        text = rest.substr(1, end - 1);
        rest = behind.empty() ? behind : behind.substr(1);
        return true;
    }
    text = rest.substr(1); // the line was cut
    rest = {};
    return true;
}

bool take_line(const import_job& in, std::string_view line, mxf_line& out)
{
    double lat = 0, lon = 0;
    if (!to_number(next_field(line, ','), lat) || !to_number(next_field(line, ','), lon) ||
        !file_position(in, lat, lon, out.pos))
        return false;
    std::array<std::string_view, 3> texts{};
    std::size_t n = 0;
    while (n < texts.size() && take_text(line, texts[n]))
        ++n;
    if (n == 0)
        return false;
    out.name = texts[0];
    out.comment = texts[n - 1];
    if (n == 1)
        out.comment = {};
    else if (n == 3 && !trim(texts[1]).empty())
        out.name = texts[1];
    return !trim(out.name).empty();
}

void put_texts(export_job& out, const wayp_rec& w, std::string_view end)
{
    const geo_degrees g = on_datum(out, w.pos);
    put_decimal(out, g.lat, 2, 7);
    put(out, ", ");
    put_decimal(out, g.lon, 2, 7);
    put(out, ", \"");
    put_text(out, name_of(out, w), "\"", '\'');
    put(out, "\", \"");
    put_text(out, comment_of(out, w), "\"", '\'');
    put_line(out, end);
}

} // namespace

void read_terrain_navigator(import_job& in)
{
    const bool routes = in.extension == ".rxf";
    bool open = false;
    for (std::string_view line; next_line(in, line);) {
        if (trim(line).empty()) {
            end_route(in);
            open = false;
            continue;
        }
        mxf_line point;
        if (!take_line(in, line, point)) {
            bad_line(in);
            continue;
        }
        if (!routes) {
            add_waypoint(in, point.name, point.comment, point.pos);
            continue;
        }
        if (!open)
            begin_route(in, {});
        open = true;
        add_route_point(in, point.name, point.comment, point.pos);
    }
}

void write_terrain_navigator(export_job& out)
{
    if (!out.route_file) {
        each_waypoint(out, [&](const wayp_rec& w) { put_texts(out, w, "\", ff0000, 3"); });
        return;
    }
    bool first = out.bytes.empty() && !out.appends;
    each_route(out, [&](int, std::string_view, const route_rec&, const std::vector<int>& points) {
        if (!first)
            put_end(out);
        first = false;
        for (const int i : points)
            put_texts(out, store.wp[static_cast<std::size_t>(i)], "\", 800000, ff0000, 3");
    });
}

} // namespace velkoro
