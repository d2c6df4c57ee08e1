#include "interchange/mapsource.h"

#include "core/text_tools.h"

#include <array>

namespace velkoro {
namespace {

constexpr char tab = '\t';
constexpr double foot_m = 0.3048;
constexpr std::size_t most_fields = 32;
constexpr int text_positions = 7964; // positions in a form that is not known
using row_fields = std::array<std::string_view, most_fields>;

/// Places of the columns that count, in a row whose first field is its kind; 0 for a column that
/// the file lacks. The defaults are those of the newest version.
struct mapsource_columns {
    std::size_t name = 1, description = 2, position = 4, altitude = 5, proximity = 7, date = 16;
};

/// A header tells the rows of one kind; only that of waypoints has both a name and a position.
void read_header(const row_fields& f, std::size_t n, mapsource_columns& columns)
{
    mapsource_columns c{0, 0, 0, 0, 0, 0};
    for (std::size_t i = 1; i < n; ++i) {
        if (equal_nocase(f[i], "Name"))
            c.name = i;
        else if (equal_nocase(f[i], "Description"))
            c.description = i;
        else if (equal_nocase(f[i], "Position"))
            c.position = i;
        else if (equal_nocase(f[i], "Altitude"))
            c.altitude = i;
        else if (equal_nocase(f[i], "Proximity"))
            c.proximity = i;
        else if (equal_nocase(f[i], "Date Modified"))
            c.date = i;
    }
    if (c.name != 0 && c.position != 0)
        columns = c;
}

/// The words ahead of the form are in the language of the other program. A degree sign may have
/// been lost on the way.
bool known_grid(std::string_view grid)
{
    return find_nocase(grid, "ddd.ddddd") != std::string_view::npos ||
           find_nocase(grid, "mm.mmm") != std::string_view::npos ||
           find_nocase(grid, "ss.s") != std::string_view::npos;
}

/// A number with its unit as metres.
bool to_metres(std::string_view field, double& metres)
{
    const std::size_t cut = field.find(' ');
    double number = 0;
    if (!to_number(field.substr(0, cut), number))
        return false;
    const std::string_view unit =
        cut == std::string_view::npos ? std::string_view() : trim(field.substr(cut));
    struct unit_row {
        std::string_view name{};
        double metres = 1;
    };
    constexpr std::array<unit_row, 7> units{{{"", 1},
                                             {"m", 1},
                                             {"ft", foot_m},
                                             {"km", 1000},
                                             {"mi", 1609.344},
                                             {"nm", 1852},
                                             {"yd", 0.9144}}};
    for (const unit_row& u : units)
        if (equal_nocase(unit, u.name)) {
            metres = number * u.metres;
            return true;
        }
    return false;
}

/// Minutes east of UTC that stand in brackets behind the time, "(UTC-7)", "(UTC+5:30)"; cut off.
int take_offset(std::string_view& text)
{
    const std::size_t at = find_nocase(text, "(UTC");
    if (at == std::string_view::npos)
        return 0;
    std::string_view offset = text.substr(at + 4);
    text = trim(text.substr(0, at));
    offset = offset.substr(0, offset.find(')'));
    const std::size_t colon = offset.find(':');
    int hours = 0, minutes = 0;
    to_number(offset.substr(0, colon), hours);
    if (colon != std::string_view::npos)
        to_number(offset.substr(colon + 1), minutes);
    return hours * 60 + (offset.starts_with('-') ? -minutes : minutes);
}

/// The form of a date follows the computer's settings: points mean day.month.year, strokes with AM
/// or PM month/day/year, strokes alone day/month/year, dashes year-month-day.
std::int32_t date_of(std::string_view text)
{
    const int offset = take_offset(text);
    const bool half_days = ends_with_nocase(text, "AM") || ends_with_nocase(text, "PM");
    date_order order = date_order::day_month_year;
    if (const std::size_t mark = text.find_first_of("./-"); mark != std::string_view::npos) {
        if (text[mark] == '-')
            order = date_order::year_month_day;
        else if (text[mark] == '/' && half_days)
            order = date_order::month_day_year;
    }
    const std::optional<std::int32_t> local = to_time(text, {}, order);
    return local ? static_cast<std::int32_t>(*local - std::int64_t{offset} * 60) : 0;
}

void read_waypoint(import_job& in, const mapsource_columns& columns, const row_fields& f)
{
    const auto field = [&](std::size_t column) {
        return column == 0 ? std::string_view() : f[column];
    };
    double lat = 0, lon = 0;
    std::string_view ahead, behind;
    pos_rec pos;
    if (!find_angles(field(columns.position), 0, lat, lon, ahead, behind) || !ahead.empty() ||
        !behind.empty() || !file_position(in, lat, lon, pos)) {
        bad_line(in);
        return;
    }
    double metres = 0;
    std::int16_t alt = alt_unknown, prox = 0;
    if (to_metres(field(columns.altitude), metres))
        alt = to_altitude(metres);
    if (to_metres(field(columns.proximity), metres))
        prox = to_proximity(metres);
    add_waypoint(in, field(columns.name), field(columns.description), pos,
                 date_of(field(columns.date)), alt, prox);
}

} // namespace

bool is_mapsource(std::string_view text, std::string_view)
{
    const std::size_t from = text.find_first_not_of(" \r\n");
    return from != std::string_view::npos && begins(text.substr(from), "Grid\t");
}

void read_mapsource(import_job& in)
{
    mapsource_columns columns;
    bool grid_told = false;
    row_fields f;
    for (std::string_view line; next_full_line(in, line);) {
        const std::size_t n = split_fields(line, tab, f);
        const std::string_view kind = f[0];
        if (equal_nocase(kind, "Waypoint")) {
            if (!grid_told) {
                refuse(in);
                return;
            }
            read_waypoint(in, columns, f);
        } else if (equal_nocase(kind, "Route Waypoint")) {
            if (!add_route_point(in, f[1]))
                bad_line(in);
        } else if (equal_nocase(kind, "Route")) {
            begin_route(in, f[1]);
        } else if (equal_nocase(kind, "Header")) {
            read_header(f, n, columns);
        } else if (equal_nocase(kind, "Grid")) {
            if (!known_grid(f[1])) {
                refuse(in, text_positions, f[1]);
                return;
            }
            grid_told = true;
        } else if (equal_nocase(kind, "Datum")) {
            if (!set_datum(in, f[1]))
                return;
        } else if (equal_nocase(kind, "Track")) {
            end_route(in);
        } else if (!equal_nocase(kind, "Trackpoint") && !equal_nocase(kind, "Map")) {
            bad_line(in);
        }
    }
}

} // namespace velkoro
