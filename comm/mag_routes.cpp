#include "comm/mag_routes.h"

#include "comm/gar_codec_comment.h"
#include "comm/gar_routes.h"
#include "comm/mag_session.h"
#include "comm/mag_waypoints.h"
#include "core/job.h"
#include "core/names.h"
#include "core/num_text.h"
#include "core/route_lists.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"
#include "core/wayp_insert.h"

#include <algorithm>

namespace velkoro {
namespace {

constexpr int text_reading = 2660, text_writing = 8123;
constexpr std::string_view empty_link = "<<>>";
constexpr std::size_t points_a_line = 2;

bool is_icon(const std::string& field)
{
    return !field.empty() && field[0] >= 'a';
}

struct route_lines {
    std::vector<route_rec> routes{};
    int number = 0;
    bool open = false;

    void begin(int route_number)
    {
        routes.push_back({});
        routes.back().nam = fixed_text(text(8124, route_number), 16);
        number = route_number;
        open = true;
    }

    void add(const std::string& line)
    {
        mag_fields fields(line);
        fields.next(); // the number of sentences
        const double sentence = val(fields.next());
        const std::string kind = fields.next();
        const int route_number = static_cast<int>(std::clamp(val(fields.next()), 0.0, 9999.0));
        if (kind == "m") {
            note(fields, route_number);
            return;
        }
        if (kind != "c")
            return;
        if (sentence <= 1 || !open || route_number != number)
            begin(route_number);
        std::vector<std::string> rest;
        while (!fields.at_end())
            rest.push_back(fields.next());
        points(rest);
    }

    /// Two fields that take the place of the route's note, which is its name here.
    void note(mag_fields& fields, int route_number)
    {
        if (!open || route_number != number)
            begin(route_number);
        const std::string first = gar_text_in(fields.next());
        const std::string words = first + " " + gar_text_in(fields.next());
        if (!trim(words).empty())
            routes.back().nam = fixed_text(trim(words), 16);
    }

    void points(std::vector<std::string>& fields)
    {
        route_rec& route = routes.back();
        // Newer receivers put the route's name in front of the first pair.
        if (fields.size() >= 3 && fields.size() % 2 == 1 && !is_icon(fields[1]) &&
            is_icon(fields[2])) {
            if (const std::string name = gar_text_in(fields[0]); !name.empty())
                route.nam = fixed_text(name, 16);
            fields.erase(fields.begin());
        }
        const bool icons = fields.size() >= 2 && is_icon(fields[1]);
        for (std::size_t i = 0; i < fields.size(); i += icons ? 2 : 1) {
            const std::string name = gar_text_in(fields[i]);
            if (!name.empty() && name != empty_link)
                route.wps.append(name) += '$';
        }
    }
};

/// Store index of a waypoint by its bare name, as the store writes names; the first one of several.
int find_name(const std::string& received)
{
    std::string name(trim(received));
    std::string cut_off;
    name_cut(name, cut_off);
    name = name_clean(name, 0);
    if (const int i = wp_find_key(name, {}, -1, store.wp_top); i >= 0)
        return i;
    for (int i = 0; i <= store.wp_top; ++i)
        if (store.wp[static_cast<std::size_t>(i)].nam == name)
            return i;
    return -1;
}

/// Names become keys; one that the store does not know stays for the message that names it.
void names_to_keys(route_rec& route)
{
    std::string keys;
    for (const std::string& name : list_tokens(route.wps)) {
        const int i = find_name(name);
        keys.append(i >= 0 ? wp_key(i) : name) += '$';
    }
    route.wps = keys;
}

void add_routes(const std::vector<std::string>& lines)
{
    int added = 0;
    for (route_rec& route : mag_routes_decode(lines)) {
        names_to_keys(route);
        if (route_add(std::move(route)) >= 0)
            ++added;
    }
    routes_added(added);
}

transfer_end read_routes()
{
    if (transfer.waypoints_first) {
        const transfer_end waypoints = mag_take_waypoints();
        if (waypoints != transfer_end::whole && waypoints != transfer_end::empty)
            return waypoints;
    }
    const mag_list list = mag_read_list("CMD,ROUTE", "RTE", text_reading);
    if (list.lines.empty())
        return list.end == transfer_end::whole ? transfer_end::empty : list.end;
    add_routes(list.lines);
    return list.end;
}

} // namespace

std::vector<route_rec> mag_routes_decode(const std::vector<std::string>& lines)
{
    route_lines all;
    for (const std::string& line : lines)
        all.add(line);
    return std::move(all.routes);
}

std::vector<std::string> mag_route_encode(const route_rec& route, int number)
{
    const std::vector<int> points = route_points(route);
    const std::size_t total = (points.size() + points_a_line - 1) / points_a_line;
    std::vector<std::string> lines;
    for (std::size_t n = 0; n < total; ++n) {
        std::string line = "RTE," + std::to_string(total) + "," + std::to_string(n + 1) + ",c," +
                           pic(number, "00");
        for (std::size_t k = n * points_a_line; k < (n + 1) * points_a_line; ++k) {
            if (k >= points.size()) {
                line.append(",").append(empty_link).append(",a");
                continue;
            }
            const wayp_rec& w = store.wp[static_cast<std::size_t>(points[k])];
            line += "," + mag_text(gar_name_out(w.nam)) + "," + mag_icon(w.symb);
        }
        lines.push_back(line);
    }
    return lines;
}

void M_R_lesen()
try {
    if (!transfer_begin())
        return;
    mag_reading(read_routes);
} catch (const batch_cancelled&) {
    transfer.end = transfer_end::cancelled;
} catch (...) {
    trap("M_R_lesen");
}

void M_R_schreiben()
try {
    if (!transfer_begin())
        return;
    std::vector<std::string> lines;
    for (const int r : chosen_routes(transfer.choice))
        for (std::string& line : mag_route_encode(store.rou[static_cast<std::size_t>(r)], r + 1))
            lines.push_back(std::move(line));
    transfer.end = mag_write_list(lines, text_writing);
} catch (...) {
    trap("M_R_schreiben");
}

} // namespace velkoro
