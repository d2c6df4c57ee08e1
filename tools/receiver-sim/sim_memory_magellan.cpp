#include "core/num_text.h"
#include "core/text_tools.h"
#include "tools/receiver-sim/sim_memory.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace velkoro {
namespace {

constexpr double degrees_per_semi = 180.0 / 2147483648.0;
constexpr double foot_m = 0.3048;
constexpr std::size_t points_per_sentence = 2;

std::string position_fields(const pos_rec& pos)
{
    return sim_angle(pos.lat * degrees_per_semi, true) + "," +
           sim_angle(pos.lon * degrees_per_semi, false);
}

std::string height_fields(int alt, const char* picture)
{
    return alt == alt_unknown ? "," : pic(alt, picture) + ",M";
}

/// A field is ASCII without a comma and without anything that would end the sentence.
std::string field_text(std::string_view text)
{
    std::string out(text);
    std::ranges::replace_if(
        out, [](char c) { return c < ' ' || c > '~' || c == ',' || c == '*' || c == '$'; }, '-');
    return out;
}

std::string icon_text(int symbol)
{
    return std::string(1, static_cast<char>('a' + std::clamp(symbol, 0, 25)));
}

std::int16_t symbol_of(std::string_view icon)
{
    const bool is_letter = !icon.empty() && icon[0] >= 'a' && icon[0] <= 'z';
    return static_cast<std::int16_t>(is_letter ? icon[0] - 'a' : 0);
}

std::string waypoint_body(const wayp_rec& w)
{
    return "PMGNWPL," + position_fields(w.pos) + "," + height_fields(w.alt, "0000000") + "," +
           field_text(w.nam) + "," + field_text(w.kom) + "," + icon_text(w.symb);
}

std::string track_body(const trackp_rec& point)
{
    std::string time, date;
    if (point.zeit > 0) {
        const sim_calendar c = sim_calendar_of(point.zeit);
        time = pic(c.hour, "00") + pic(c.minute, "00") + pic(c.second, "00") + ".00";
        date = pic(c.day, "00") + pic(c.month, "00") + pic(c.year % 100, "00");
    }
    return "PMGNTRK," + position_fields(point.pos) + "," + height_fields(point.alt, "00000") + "," +
           time + ",A,," + date;
}

void put_route(std::vector<std::string>& out, int number, const route_rec& route)
{
    const std::vector<std::string> points = list_tokens(route.wps);
    const std::size_t total = (points.size() + points_per_sentence - 1) / points_per_sentence;
    for (std::size_t n = 0; n < total; ++n) {
        std::string body = "PMGNRTE," + pic(static_cast<double>(total), "0") + "," +
                           pic(static_cast<double>(n + 1), "0") + ",c," + pic(number, "00");
        for (std::size_t i = n * points_per_sentence; i < (n + 1) * points_per_sentence; ++i) {
            // The last sentence is padded with the empty link.
            const std::string name = i < points.size() ? field_text(points[i]) : "<<>>";
            body += "," + name + ",a";
        }
        out.push_back(std::move(body));
    }
}

struct fields {
    std::string_view rest{};
    std::string_view next() { return next_field(rest, ','); }
};

std::optional<pos_rec> next_position(fields& in)
{
    const std::string_view lat = in.next(), north = in.next(), lon = in.next(), east = in.next();
    const auto lat_degrees = sim_degrees_of(lat, north), lon_degrees = sim_degrees_of(lon, east);
    if (!lat_degrees || !lon_degrees || std::abs(*lat_degrees) > 90 || std::abs(*lon_degrees) > 180)
        return std::nullopt;
    const double east_semi = std::round(*lon_degrees / degrees_per_semi);
    return pos_rec{static_cast<std::int32_t>(std::round(*lat_degrees / degrees_per_semi)),
                   // +180 degrees are -180 in the store
                   static_cast<std::int32_t>(east_semi >= 2147483648.0 ? -east_semi : east_semi)};
}

std::int16_t next_height(fields& in)
{
    const std::string_view height = in.next(), unit = in.next();
    if (height.empty())
        return alt_unknown;
    return to_i16(std::round(val(height) * (unit == "F" ? foot_m : 1)));
}

bool keep_waypoint_body(fields in)
{
    wayp_rec w;
    const std::optional<pos_rec> pos = next_position(in);
    if (!pos)
        return false;
    w.pos = *pos;
    w.alt = next_height(in);
    w.nam = in.next();
    w.kom = in.next();
    w.symb = symbol_of(in.next());
    if (w.nam.empty())
        return false;
    sim_keep_waypoint(w);
    return true;
}

bool keep_route_body(fields in, sim_route_drafts& drafts)
{
    in.next(); // how many sentences
    const int sentence = to_i32(val(in.next()));
    const std::string_view kind = in.next();
    const int number = to_i32(val(in.next()));
    if (kind != "c" && kind != "m")
        return false;
    sim_route_draft& draft = drafts[number];
    if (sentence <= 1)
        draft = {};
    while (!in.rest.empty()) {
        const std::string_view name = in.next();
        in.next(); // icon
        if (name != "<<>>" && !name.empty())
            draft.points += std::string(name) + "$";
    }
    return true;
}

bool keep_track_body(fields in)
{
    trackp_rec point;
    const std::optional<pos_rec> pos = next_position(in);
    if (!pos)
        return false;
    point.pos = *pos;
    point.alt = next_height(in);
    const std::string_view time = in.next();
    in.next(); // status
    in.next(); // name
    const std::string_view date = in.next();
    const int hms = to_i32(fix(val(time))), dmy = to_i32(fix(val(date)));
    const int year = dmy % 100 + (dmy % 100 < 80 ? 2000 : 1900);
    if (!time.empty() && !date.empty())
        if (const auto zeit = sim_time_of(sim_calendar{year, dmy / 100 % 100, dmy / 10000,
                                                       hms / 10000, hms / 100 % 100, hms % 100}))
            point.zeit = to_i32(*zeit);
    point.neu = static_cast<std::int16_t>(store.trk_top < 0 ? -1 : 0);
    track_append(point);
    return true;
}

} // namespace

void sim_fill(sim_magellan& receiver)
{
    receiver.waypoints.clear();
    receiver.routes.clear();
    receiver.track.clear();
    for (int i = 0; i <= store.wp_top; ++i)
        receiver.waypoints.push_back(waypoint_body(store.wp[static_cast<std::size_t>(i)]));
    for (int i = 0; i <= store.rou_top; ++i)
        put_route(receiver.routes, i + 1, store.rou[static_cast<std::size_t>(i)]);
    for (std::int32_t i = 0; i <= store.trk_top; ++i)
        receiver.track.push_back(track_body(store.trk[static_cast<std::size_t>(i)]));
}

bool sim_keep(const std::string& body, sim_route_drafts& drafts)
{
    fields in{body};
    const std::string_view tag = in.next();
    if (tag == "PMGNWPL")
        return keep_waypoint_body(in);
    if (tag == "PMGNRTE")
        return keep_route_body(in, drafts);
    return tag == "PMGNTRK" && keep_track_body(in);
}

void sim_keep_routes(sim_route_drafts& drafts)
{
    for (const auto& [number, draft] : std::exchange(drafts, {})) {
        if (number >= 1 && number <= store.rou_top + 1)
            store.rou[static_cast<std::size_t>(number - 1)].wps = draft.points;
        else
            route_add({.nam = fixed_text(draft.name, 16), .wps = draft.points});
    }
}

} // namespace velkoro
