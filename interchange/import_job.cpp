#include "interchange/import_job.h"

#include "coords/coord_text.h"
#include "core/code_page.h"
#include "core/hooks.h"
#include "core/job.h"
#include "core/names.h"
#include "core/platform.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"
#include "core/wayp_insert.h"

#include <algorithm>
#include <numbers>
#include <stdexcept>

namespace velkoro {
namespace {

constexpr double rad = std::numbers::pi / 180;
constexpr std::string_view utf8_mark = "\xEF\xBB\xBF";

void progress(import_job& in)
{
    op_progress(static_cast<double>(in.at) /
                static_cast<double>(std::max<std::size_t>(in.text.size(), 1)));
    op.anz.caption = text(2530, in.waypoints + in.route_points, in.routes);
    if (!op_pump())
        throw batch_cancelled{};
}

} // namespace

// Lines
// -------------------------------------------------------------------------------------------------

bool next_line(import_job& in, std::string_view& line)
{
    if (in.at >= in.text.size())
        return false;
    if (op_due())
        progress(in);
    const char* const begin = in.text.data() + in.at;
    const char* const end = in.text.data() + in.text.size();
    const char* stop = begin;
    while (stop < end && *stop != '\n' && *stop != '\r')
        ++stop;
    line = {begin, static_cast<std::size_t>(stop - begin)};
    if (stop < end)
        stop += *stop == '\r' && stop + 1 < end && stop[1] == '\n' ? 2 : 1;
    in.at = static_cast<std::size_t>(stop - in.text.data());
    ++in.line;
    return true;
}

bool next_full_line(import_job& in, std::string_view& line)
{
    while (next_line(in, line)) {
        line = trim(line);
        if (!line.empty())
            return true;
    }
    return false;
}

void unread_line(import_job& in, std::string_view line)
{
    in.at = static_cast<std::size_t>(line.data() - in.text.data());
    --in.line;
}

void import_pump(import_job& in, std::size_t at)
{
    in.at = at;
    if (op_due())
        progress(in);
}

void bad_line(import_job& in)
{
    if (in.last_bad == in.line && in.bad_lines > 0)
        return;
    in.last_bad = in.line;
    ++in.bad_lines;
    if (in.bad_numbers.size() < named_lines)
        in.bad_numbers.push_back(in.line);
}

void refuse(import_job& in, int text_number, std::string_view parameter)
{
    in.end = native_end::not_native;
    in.refusal = text_number == 0 ? 7962 : text_number;
    in.refusal_text = parameter;
    in.at = in.text.size();
}

// Positions
// -------------------------------------------------------------------------------------------------

namespace {

/// A datum's name as letters and digits only.
std::string squeezed(std::string_view name)
{
    std::string out;
    for (const char c : name)
        if ((c >= '0' && c <= '9') || lower(c) != upper(c))
            out += upper(c);
    return out;
}

struct datum_alias {
    std::string_view theirs, ours;
};
/// Names of receivers and of other programs that are not those of the table.
constexpr datum_alias aliases[] = {
    {"WGS1984", "WGS84"},
    {"WORLDGEODETICSYSTEM1984", "WGS84"},
    {"WORLDGEODETICSYSTEM84", "WGS84"},
    {"EUROPEAN1950MEANSOLUTION", "EUROPEAN1950"},
    {"EUROPEANDATUM1950", "EUROPEAN1950"},
    {"ED50", "EUROPEAN1950"},
    {"NAD27", "NAD27CONUS"},
    {"NORTHAMERICAN1927", "NAD27CONUS"},
    {"NORTHAMERICAN1983", "NAD83"},
    {"CH1903SWITZERLAND", "CH1903"},
    {"POTSDAMRAUENBERGDHDN", "POTSDAM"},
    {"POTSDAMRAUENBERG", "POTSDAM"},
    {"DHDN", "POTSDAM"},
    {"AUSTRIA", "AUSTRIAMGI"},
    {"NTF", "NTFFRANCE"},
    {"ORDSRVYGRTBRITN", "ORDSRVYGB"},
    {"ORDSRVYGRTB", "ORDSRVYGB"},
    {"OSGB36", "ORDSRVYGB"},
    {"GEODDATUM49", "GEODETICDATUM1949"},
    {"NZGD49", "GEODETICDATUM1949"},
    {"FINLANDHAYFORD", "FINLANDHAYFORDKKJ"},
    {"FINLANDHAYFRD", "FINLANDHAYFORDKKJ"},
    {"RIJKSDRIEHOEKSMETING", "NETHERLANDSRD"},
    {"AUSTRALIANGEOD1966", "AUSTRALIANGEODETIC1966"},
    {"AUSTRALIANGEOD66", "AUSTRALIANGEODETIC1966"},
    {"AUSTRLNGEOD66", "AUSTRALIANGEODETIC1966"},
    {"AUSTRALIANGEOD1984", "AUSTRALIANGEODETIC1984"},
    {"AUSTRALIANGEOD84", "AUSTRALIANGEODETIC1984"},
    {"AUSTRLNGEOD84", "AUSTRALIANGEODETIC1984"},
    {"SOAMERICAN69", "SOUTHAMERICAN1969"},
    {"SOUTHAMERICAN69", "SOUTHAMERICAN1969"},
    {"PROVSOAMRICAN", "PROVSAMERICAN1956"},
    {"PROVSOAMRICN56", "PROVSAMERICAN1956"},
    {"PROVSOCHILEAN", "PROVSCHILEAN1963"},
    {"PROVSOCHILEAN63", "PROVSCHILEAN1963"},
    {"TOKYOMEAN", "TOKYO"},
    {"CAMPOINCHSPE", "CAMPOINCHAUSPE"},
    {"BOGOTAOBSERV", "BOGOTAOBSERVATORY"},
    {"DJAKARTA", "DJAKARTABATAVIA"},
    {"LUZONPHILIPPINE", "LUZONPHILIPPINES"},
    {"INDIANBNGLDSH", "INDIANBANGLADESH"},
};

/// Row of the datum table, -1 none.
int datum_row(std::string_view name)
{
    if (const int row = datum_find(name); row >= 0)
        return row;
    std::string wanted = squeezed(name);
    const auto find = [&wanted] {
        const auto hit = std::ranges::find_if(
            datums.rows, [&wanted](const datum_rec& d) { return squeezed(d.name) == wanted; });
        return hit == datums.rows.end() ? -1 : static_cast<int>(hit - datums.rows.begin());
    };
    if (const int row = find(); row >= 0)
        return row;
    for (const datum_alias& alias : aliases)
        if (alias.theirs == wanted) {
            wanted = alias.ours;
            return find();
        }
    return -1;
}

void use_datum(import_job& in, int row)
{
    in.datum_row = row >= 0 ? row : datums.wgs_datum;
    // Without a table, past its end: datum_at then gives WGS 84.
    in.datum = datum_at(row >= 0 ? row : datums.wgs_datum >= 0 ? datums.wgs_datum : -2);
}

} // namespace

bool set_datum(import_job& in, std::string_view name)
{
    name = trim(name);
    if (name.empty()) {
        use_datum(in, -1);
        return true;
    }
    const int row = datum_row(name);
    if (row >= 0 || squeezed(name) == "WGS84") {
        use_datum(in, row);
        return true;
    }
    use_datum(in, -1);
    if (say(7961, buttons::yes_no, icon::exclamation, name) == answer::yes)
        return true;
    refuse(in, 7963, name);
    return false;
}

bool file_position(const import_job& in, double lat, double lon, pos_rec& pos)
{
    if (!(lat >= -90 && lat <= 90 && lon >= -180 && lon <= 180))
        return false;
    return datum_to_wgs({lat * rad, lon * rad}, in.datum, pos);
}

bool file_position(const import_job& in, std::string_view lat, std::string_view lon, pos_rec& pos)
{
    double lat_deg = 0, lon_deg = 0;
    return to_angle(lat, "NS", lat_deg) && to_angle(lon, "EW", lon_deg) &&
           file_position(in, lat_deg, lon_deg, pos);
}

bool file_position(const import_job& in, std::string_view zone, std::string_view east,
                   std::string_view north, int fmt, pos_rec& pos)
{
    return text_to_pos(zone, east, north, pos, fmt, in.datum_row >= 0 ? in.datum_row : -2);
}

// Records
// -------------------------------------------------------------------------------------------------

namespace {

/// The text with blanks in place of control characters, as the record takes it.
void put_clean(std::string& into, std::string_view text)
{
    into = trim(text);
    for (char& c : into)
        if (static_cast<unsigned char>(c) < ' ')
            c = ' ';
}

void fill(wayp_rec& w, std::string_view name, std::string_view comment, const pos_rec& pos,
          std::int32_t dat, std::int16_t alt, std::int16_t prox, std::int16_t symb)
{
    put_clean(w.nam, name);
    put_clean(w.kom, comment);
    w.pos = pos;
    w.dat = dat;
    w.alt = alt;
    w.prox = prox;
    w.symb = symb;
    w.symbmode = 0;
}

/// Enters the job's record and remembers it. Returns its place.
int enter(import_job& in)
{
    if (op_due())
        progress(in);
    wayp_rec& w = in.record;
    const std::size_t hash = std::hash<std::string_view>{}(w.nam);
    const pos_rec pos = w.pos;
    int index = -1;
    if (in.into) {
        index = static_cast<int>(in.into->waypoints.size());
        in.into->waypoints.push_back(w);
    } else {
        index = wayp_insert(w, -1);
        // Routes find their points by index here; a key that another waypoint of the file had
        // before must not lead them elsewhere.
        batch.final_keys.clear();
    }
    in.seen.push_back({hash, pos, index, -1});
    return index;
}

/// Makes the look-up of names complete: files without routes never need it.
void know_names(import_job& in)
{
    for (; in.names_done < in.seen.size(); ++in.names_done) {
        const auto row = static_cast<std::int32_t>(in.names_done);
        import_job::seen_chain& chain = in.seen_names[in.seen[in.names_done].name_hash];
        if (chain.first < 0)
            chain.first = row;
        else
            in.seen[static_cast<std::size_t>(chain.last)].next = row;
        chain.last = row;
    }
}

/// Place of the point of this file that has the name and, when given, the position; nothing when
/// there is none.
std::optional<int> seen_point(import_job& in, std::string_view name, const pos_rec* pos)
{
    know_names(in);
    const auto chain = in.seen_names.find(std::hash<std::string_view>{}(name));
    if (chain == in.seen_names.end())
        return std::nullopt;
    for (std::int32_t row = chain->second.first; row >= 0;) {
        const import_job::seen_row& seen = in.seen[static_cast<std::size_t>(row)];
        if (!pos || seen.pos == *pos)
            return seen.index;
        row = seen.next;
    }
    return std::nullopt;
}

/// Comment of a point of this file; empty when it was kept out.
std::string_view comment_at(const import_job& in, int index)
{
    if (index < 0)
        return {};
    const auto i = static_cast<std::size_t>(index);
    return in.into                 ? in.into->waypoints[i].kom
           : index <= store.wp_top ? store.wp[i].kom
                                   : std::string_view{};
}

/// Place of the first point of this file with the name and the comment's part of the key.
std::optional<int> seen_key(import_job& in, std::string_view name, std::string_view prefix)
{
    know_names(in);
    const auto chain = in.seen_names.find(std::hash<std::string_view>{}(name));
    if (chain == in.seen_names.end())
        return std::nullopt;
    for (std::int32_t row = chain->second.first; row >= 0;) {
        const import_job::seen_row& seen = in.seen[static_cast<std::size_t>(row)];
        if (key_prefix(comment_at(in, seen.index)) == prefix)
            return seen.index;
        row = seen.next;
    }
    return std::nullopt;
}

std::uint64_t place_key(const pos_rec& pos)
{
    return (std::uint64_t{static_cast<std::uint32_t>(pos.lat)} << 32) |
           static_cast<std::uint32_t>(pos.lon);
}

/// Place of the first point of this file at a position, whatever its name.
std::optional<int> seen_place(import_job& in, const pos_rec& pos)
{
    for (; in.places_done < in.seen.size(); ++in.places_done)
        in.seen_places.try_emplace(place_key(in.seen[in.places_done].pos),
                                   static_cast<std::int32_t>(in.places_done));
    const auto hit = in.seen_places.find(place_key(pos));
    if (hit == in.seen_places.end())
        return std::nullopt;
    return in.seen[static_cast<std::size_t>(hit->second)].index;
}

void append_point(import_job& in, int index)
{
    in.route_indexes.push_back(index);
}

/// The job's record as a point of the route under way.
void enter_point(import_job& in)
{
    if (!in.route_open) {
        ++in.waypoints;
        enter(in);
        return;
    }
    if (op_due())
        progress(in);
    ++in.route_points;
    if (const std::optional<int> index = seen_point(in, in.record.nam, &in.record.pos))
        append_point(in, *index);
    else
        append_point(in, enter(in));
}

} // namespace

int add_waypoint(import_job& in, const wayp_rec& record)
{
    return add_waypoint(in, record.nam, record.kom, record.pos, record.dat, record.alt, record.prox,
                        record.symb);
}

int add_waypoint(import_job& in, std::string_view name, std::string_view comment,
                 const pos_rec& pos, std::int32_t dat, std::int16_t alt, std::int16_t prox,
                 std::int16_t symb)
{
    fill(in.record, name, comment, pos, dat, alt, prox, symb);
    ++in.waypoints;
    return enter(in);
}

void begin_route(import_job& in, std::string_view name, std::int16_t colour)
{
    end_route(in);
    in.route = {};
    put_clean(in.route.nam, name);
    if (in.route.nam.empty())
        in.route.nam = "Route " + std::to_string(in.routes + 1);
    in.route.farbe = colour;
    in.route_indexes.clear();
    in.route_legs.clear();
    in.route_open = true;
}

void add_route_point(import_job& in, const wayp_rec& record)
{
    add_route_point(in, record.nam, record.kom, record.pos, record.dat, record.alt, record.prox,
                    record.symb);
}

void add_route_point(import_job& in, std::string_view name, std::string_view comment,
                     const pos_rec& pos, std::int32_t dat, std::int16_t alt, std::int16_t prox,
                     std::int16_t symb)
{
    fill(in.record, name, comment, pos, dat, alt, prox, symb);
    enter_point(in);
}

bool add_route_point(import_job& in, std::string_view name)
{
    put_clean(in.record.nam, name);
    const std::optional<int> index = seen_point(in, in.record.nam, nullptr);
    if (!index || !in.route_open)
        return false;
    ++in.route_points;
    append_point(in, *index);
    return true;
}

bool add_route_key(import_job& in, std::string_view key)
{
    if (!in.route_open)
        return false;
    const std::size_t prefix = key_prefix(key).size();
    const std::string_view name = key.substr(prefix);
    std::optional<int> index = seen_key(in, trim(name), key.substr(0, prefix));
    if (!index && prefix > 0) // a name that begins with "@"
        index = seen_key(in, trim(key), {});
    if (!index && !in.into)
        if (const int stored = wp_find_key(key, {}, -1, store.wp_top); stored >= 0)
            index = stored;
    if (!index)
        return false;
    ++in.route_points;
    append_point(in, *index);
    return true;
}

void set_route_leg(import_job& in, std::string_view speed, std::string_view korr,
                   std::string_view anw)
{
    if (!in.route_open || in.route_indexes.empty())
        return;
    in.route_legs.resize(in.route_indexes.size());
    import_job::route_leg& leg = in.route_legs.back();
    put_clean(leg.speed, speed);
    put_clean(leg.korr, korr);
    put_clean(leg.anw, anw);
    for (std::string* token : {&leg.speed, &leg.korr, &leg.anw})
        std::ranges::replace(*token, '$', '-'); // it ends the tokens of a list
}

void add_unnamed_point(import_job& in, const pos_rec& pos)
{
    // Lines are drawn through waypoints: a point of the file at the very place is that one.
    if (in.route_open)
        if (const std::optional<int> index = seen_place(in, pos)) {
            ++in.route_points;
            append_point(in, *index);
            return;
        }
    std::string name = in.route.nam.substr(0, 3) + std::to_string(in.route_indexes.size() + 1);
    if (!in.into)
        name_unique(name, {}, -1); // it must not stand in for a waypoint that there is
    fill(in.record, name, {}, pos, 0, alt_unknown, 0, 0);
    enter_point(in);
}

void end_route(import_job& in)
{
    if (!in.route_open)
        return;
    in.route_open = false;
    if (in.route_indexes.empty())
        return;
    ++in.routes;
    if (in.into) {
        import_content::route route{.name = in.route.nam};
        for (const int i : in.route_indexes)
            route.points.push_back(in.into->waypoints[static_cast<std::size_t>(i)]);
        in.into->routes.push_back(std::move(route));
        return;
    }
    for (std::size_t k = 0; k < in.route_indexes.size(); ++k) {
        const int i = in.route_indexes[k];
        if (i < 0 || i > store.wp_top)
            continue;
        in.route.wps.append(wp_key(i)) += '$';
        if (in.route_legs.empty())
            continue;
        const import_job::route_leg leg =
            k < in.route_legs.size() ? in.route_legs[k] : import_job::route_leg{};
        in.route.speed.append(leg.speed) += '$';
        in.route.korr.append(leg.korr) += '$';
        in.route.anw.append(leg.anw) += '$';
    }
    route_add(in.route);
}

void add_track_point(import_job& in, const pos_rec& pos, std::int32_t time, std::int16_t alt,
                     bool new_segment)
{
    if (op_due())
        progress(in);
    trackp_rec point;
    point.pos = pos;
    point.zeit = std::max(time, 0); // a negative time is a mark of the track operations
    point.alt = alt;
    point.neu = new_segment || in.track_points == 0 ? std::int16_t{-1} : std::int16_t{0};
    ++in.track_points;
    if (in.into)
        in.into->track.push_back(point);
    else
        track_append(point);
}

// Running a reader
// -------------------------------------------------------------------------------------------------

namespace {

native_end run_reader(import_job& in, format_reader read)
try {
    read(in);
    end_route(in);
    return in.end;
} catch (const batch_cancelled&) {
    return native_end::broken_off;
} catch (const std::overflow_error&) {
    return native_end::full;
}

void add_remark(import_result& result, int number, std::string line)
{
    result.remarks.append(result.remarks.empty() ? "" : "\n").append(line);
    result.remarks_list.push_back({number, std::move(line)});
}

void add_remarks(import_result& result, const import_job& in)
{
    if (in.refusal != 0)
        add_remark(result, in.refusal, text(in.refusal, in.refusal_text));
    if (in.bad_lines == 0)
        return;
    std::string numbers;
    for (const int n : in.bad_numbers)
        numbers.append(numbers.empty() ? "" : ", ").append(std::to_string(n));
    if (in.bad_lines > static_cast<int>(in.bad_numbers.size()))
        numbers += ", ...";
    add_remark(result, 7960, text(7960, std::to_string(in.bad_lines), numbers));
}

std::string close_batch()
{
    wayp_rec report;
    wayp_insert(report, batch_close);
    return report.kom;
}

void show_all()
{
    hooks.route_refresh();
    hooks.map_changed();
    hooks.sort_rows();
}

} // namespace

import_result import_bytes(const format_row& format, std::string_view bytes,
                           std::string_view extension, bool tracks, import_content* into)
{
    import_result result;
    result.format = &format;
    import_job in;
    std::string converted;
    in.from_utf8 = bytes.starts_with(utf8_mark);
    in.text = bytes;
    if (in.from_utf8) {
        converted = from_utf8(bytes.substr(utf8_mark.size()));
        in.text = converted;
    }
    in.extension = lower(extension);
    in.into = into;
    use_datum(in, -1);
    const format_reader read = tracks ? format.read_track : format.read;
    if (!read) {
        refuse(in);
        result.end = in.end;
    } else if (into || tracks) {
        result.end = run_reader(in, read);
        if (into)
            into->track_title = in.title;
    } else {
        try {
            wayp_rec none;
            wayp_insert(none, batch_open);
            result.end = run_reader(in, read);
        } catch (...) {
            close_batch();
            show_all();
            throw;
        }
        result.report = close_batch();
        show_all();
    }
    result.waypoints = in.waypoints;
    result.routes = in.routes;
    result.track_points = in.track_points;
    result.bad_lines = in.bad_lines;
    result.title = in.title;
    add_remarks(result, in);
    return result;
}

void refuse_if_nothing_read(import_result& result)
{
    if (result.end != native_end::whole || result.bad_lines == 0 ||
        result.waypoints + result.routes + result.track_points > 0)
        return;
    result.end = native_end::not_native;
    result.remarks_list.insert(result.remarks_list.begin(), {7962, text(7962)});
    result.remarks.insert(0, text(7962) + "\n");
}

} // namespace velkoro
