#include "interchange/native_text.h"

#include "core/code_page.h"
#include "core/form1.h"
#include "core/symbols.h"
#include "core/text_tools.h"

#include <algorithm>
#include <array>
#include <optional>

namespace velkoro {
namespace {

constexpr char degree = '\xB0';

// Lines
// -------------------------------------------------------------------------------------------------

/// A line taken apart.
struct native_line {
    std::array<std::string_view, 16> fields{};
    std::size_t count = 0;
    bool quoted_name = false;   // the first field stands in quotation marks
    std::string_view comment{}; // behind the "@"
};

bool is_separator(char c)
{
    return c == ';' || c == ',' || c == '\t';
}

/// The separator of a line: the strongest one ahead of the comment and outside quotation marks.
char separator_of(std::string_view line)
{
    bool at_start = true, quoted = false, comma = false, semicolon = false;
    for (const char c : line) {
        if (quoted) {
            quoted = c != '"';
            continue;
        }
        if (c == ' ')
            continue;
        if (c == '\t')
            return c;
        if (c == '@' && at_start && (comma || semicolon))
            break;
        quoted = c == '"' && at_start;
        at_start = is_separator(c);
        comma = comma || c == ',';
        semicolon = semicolon || c == ';';
    }
    return comma && !semicolon ? ',' : ';';
}

/// The place of the quotation mark that closes a field; a mark within is doubled.
std::size_t closing_mark(std::string_view text)
{
    std::size_t i = 1;
    while (i < text.size() && (text[i] != '"' || text.substr(i).starts_with("\"\"")))
        i += text[i] == '"' ? 2 : 1;
    return std::min(i, text.size());
}

void split_line(std::string_view line, native_line& out)
{
    const char separator = separator_of(line);
    out.count = 0;
    out.comment = {};
    out.quoted_name = trim_left(line).starts_with('"');
    for (bool more = true; more && out.count < out.fields.size();) {
        const std::string_view start = trim_left(line);
        std::string_view field;
        if (start.starts_with('"')) {
            const std::size_t end = closing_mark(start);
            field = start.substr(1, end - 1);
            line = start.substr(end);
            const std::size_t cut = line.find(separator);
            more = cut != std::string_view::npos;
            line.remove_prefix(more ? cut + 1 : line.size());
        } else if (start.starts_with('@') && out.count > 0) {
            out.comment = start.substr(1);
            break;
        } else {
            const std::size_t cut = line.find(separator);
            field = trim(line.substr(0, cut));
            more = cut != std::string_view::npos;
            line.remove_prefix(more ? cut + 1 : line.size());
        }
        out.fields[out.count++] = field;
    }
    std::fill(out.fields.begin() + static_cast<std::ptrdiff_t>(out.count), out.fields.end(),
              std::string_view{});
}

/// A field that stood in quotation marks with the doubled ones made single.
std::string_view single_marks(std::string_view field, std::string& room)
{
    if (field.find("\"\"") == std::string_view::npos)
        return field;
    room.clear();
    for (std::size_t i = 0; i < field.size(); ++i) {
        room += field[i];
        if (field.substr(i).starts_with("\"\""))
            ++i;
    }
    return room;
}

/// What stands behind the word that begins a line, nothing when it begins with another one.
std::optional<std::string_view> behind_word(std::string_view line, std::string_view word)
{
    line = trim_left(line);
    if (!begins(line, word))
        return std::nullopt;
    line.remove_prefix(word.size());
    if (!line.empty() && line.front() != ' ' && !is_separator(line.front()))
        return std::nullopt;
    return line;
}

// Reading
// -------------------------------------------------------------------------------------------------

enum class column {
    name,
    lat,
    lon,
    east,
    north,
    alt,
    symbol,
    time,
    prox,
    speed,
    corr,
    comment,
    none
};
constexpr std::size_t column_count = static_cast<std::size_t>(column::none);

struct caption_row {
    std::string_view word;
    column kind;
};
constexpr caption_row captions[] = {
    {native_name, column::name}, {"Lat", column::lat},     {"Lon", column::lon},
    {"East", column::east},      {"North", column::north}, {"Alt", column::alt},
    {"Symbol", column::symbol},  {"Time", column::time},   {"Prox", column::prox},
    {"km/h", column::speed},     {"Corr", column::corr},   {"Comment", column::comment},
};

struct native_reader {
    import_job& in;
    int fmt = 0;
    std::string zone{};
    bool in_route = false;
    bool feet = false; // unit of the altitude column
    date_order order = date_order::day_month_year;
    std::array<int, column_count> place{}; // of each column in a line, -1 none
    native_line line{};
    std::string name_room{}, comment_room{}, room{};

    std::string_view field(column c) const
    {
        const int i = place[static_cast<std::size_t>(c)];
        return i < 0 ? std::string_view{} : line.fields[static_cast<std::size_t>(i)];
    }
};

void put_columns(native_reader& r, std::initializer_list<column> kinds)
{
    r.place.fill(-1);
    int i = 0;
    for (const column c : kinds)
        r.place[static_cast<std::size_t>(c)] = i++;
}

void waypoint_columns(native_reader& r)
{
    if (r.fmt <= fmt_seconds)
        put_columns(r, {column::name, column::lat, column::lon, column::alt, column::symbol,
                        column::time, column::prox, column::comment});
    else
        put_columns(r, {column::name, column::east, column::north, column::alt, column::symbol,
                        column::time, column::prox, column::comment});
}

/// The order of day, month and year in a picture.
date_order order_of(std::string_view picture)
{
    const std::size_t d = picture.find_first_of("dD"), m = picture.find_first_of("mM");
    const std::size_t y = picture.find_first_of("yY");
    if (y < d && y < m)
        return date_order::year_month_day;
    return m < d ? date_order::month_day_year : date_order::day_month_year;
}

column column_of(std::string_view caption)
{
    const auto hit = std::ranges::find_if(
        captions, [&](const caption_row& row) { return begins(caption, row.word); });
    return hit == std::ranges::end(captions) ? column::none : hit->kind;
}

/// Takes the columns from a line of headings; false when it is none.
bool take_headings(native_reader& r)
{
    const auto known = [](std::string_view caption) { return column_of(caption) != column::none; };
    if (!equal_nocase(r.line.fields[0], native_name) || (r.line.count == 1 && r.line.quoted_name) ||
        (r.line.count > 1 && std::ranges::count_if(r.line.fields, known) < 2))
        return false; // a waypoint, perhaps of that name
    r.place.fill(-1);
    r.feet = false;
    for (std::size_t i = 0; i < r.line.count; ++i) {
        const std::string_view caption = r.line.fields[i];
        const column c = column_of(caption);
        if (c == column::none)
            continue;
        r.place[static_cast<std::size_t>(c)] = static_cast<int>(i);
        if (c == column::alt)
            r.feet = find_nocase(caption, "ft") != std::string_view::npos;
        if (c == column::time)
            r.order = order_of(caption.substr(std::string_view("Time").size()));
    }
    return true;
}

/// Index of a caption of `posform`, -1 none; the signed degrees of exports are degrees.
int format_of_caption(std::string_view caption)
{
    if (caption == native_signed_degrees())
        return fmt_degrees;
    const auto& all = Form1.posform.items;
    const auto hit =
        std::ranges::find_if(all, [&](const std::string& s) { return equal_nocase(s, caption); });
    return hit == all.end() ? -1 : static_cast<int>(hit - all.begin());
}

/// The first line of a block: title, coordinate format, datum. False when the file cannot be read.
bool take_title(native_reader& r, std::string_view rest)
{
    split_line(trim_left(rest), r.line);
    if (r.in.title.empty())
        r.in.title = single_marks(r.line.fields[0], r.room);
    r.in_route = false;
    r.zone.clear();
    if (r.line.count > 1 && !r.line.fields[1].empty())
        r.fmt = format_of_caption(single_marks(r.line.fields[1], r.room));
    waypoint_columns(r);
    const std::string_view datum = single_marks(r.line.fields[2], r.room);
    return datum.empty() || set_datum(r.in, datum);
}

/// "01 NAME;2": number, name, colour. A name may itself begin with digits.
void take_route(native_reader& r, std::string_view rest)
{
    rest = trim_left(rest);
    std::size_t digits = 0;
    while (digits < rest.size() && rest[digits] >= '0' && rest[digits] <= '9')
        ++digits;
    if (digits > 0 && (digits == rest.size() || rest[digits] == ' ' || is_separator(rest[digits])))
        rest.remove_prefix(std::min(digits + 1, rest.size()));
    split_line(rest, r.line);
    int colour = 0;
    if (!to_number(r.line.fields[1], colour) || colour < 1 || colour > 4)
        colour = 0;
    begin_route(r.in, single_marks(r.line.fields[0], r.room), static_cast<std::int16_t>(colour));
    r.in_route = true;
    put_columns(r, {column::name});
}

bool take_position(native_reader& r, pos_rec& pos)
{
    std::string_view north = r.field(column::lat), east = r.field(column::lon);
    if (r.place[static_cast<std::size_t>(column::lat)] < 0) {
        east = r.field(column::east);
        north = r.field(column::north);
    }
    if (r.fmt <= fmt_seconds || north.find(degree) != std::string_view::npos)
        return file_position(r.in, north, east, pos) ||
               // Longitude first, told by its letter.
               (north.find_first_of("EWew") != std::string_view::npos &&
                file_position(r.in, east, north, pos));
    return file_position(r.in, r.zone, east, north, r.fmt, pos);
}

/// An altitude in metres or feet, with or without its unit behind it.
std::int16_t take_altitude(std::string_view field, bool feet)
{
    if (field.ends_with("ft") || field.ends_with('m')) {
        feet = field.back() == 't';
        field.remove_suffix(feet ? 2 : 1);
    }
    double value = 0;
    if (!to_number(field, value))
        return alt_unknown;
    return feet ? feet_to_altitude(value) : to_altitude(value);
}

/// A negative distance is one whose alarm is off.
std::int16_t take_proximity(std::string_view field)
{
    double metres = 0;
    if (!to_number(field, metres))
        return 0;
    const std::int16_t steps = to_proximity(metres < 0 ? -metres : metres);
    return metres < 0 ? static_cast<std::int16_t>(-steps) : steps;
}

std::int16_t take_symbol(std::string_view field)
{
    int number = 0;
    if (!to_number(field, number))
        number = symb_ext(field);
    return number < 0 || number > 32767 ? std::int16_t{0} : static_cast<std::int16_t>(number);
}

/// The comment behind its "@"; a spreadsheet may have put the field in quotation marks, and a
/// person may have left the "@" out.
std::string_view comment_of(native_reader& r)
{
    if (!r.line.comment.empty())
        return r.line.comment;
    const std::string_view comment = single_marks(r.field(column::comment), r.comment_room);
    return comment.starts_with('@') ? comment.substr(1) : comment;
}

void take_waypoint(native_reader& r)
{
    pos_rec pos;
    const std::string_view name = single_marks(r.field(column::name), r.name_room);
    if (name.empty() || !take_position(r, pos)) {
        bad_line(r.in);
        return;
    }
    const std::string_view time = r.field(column::time);
    const std::optional<std::int32_t> dat = to_time(time, {}, r.order);
    if (!time.empty() && !dat)
        bad_line(r.in); // the rest of it is good
    add_waypoint(r.in, name, comment_of(r), pos, dat.value_or(0),
                 take_altitude(r.field(column::alt), r.feet), take_proximity(r.field(column::prox)),
                 take_symbol(single_marks(r.field(column::symbol), r.room)));
}

void take_point(native_reader& r)
{
    const std::string_view key = single_marks(r.field(column::name), r.name_room);
    if (key.empty() || !add_route_key(r.in, key)) {
        bad_line(r.in);
        return;
    }
    set_route_leg(r.in, r.field(column::speed), r.field(column::corr), comment_of(r));
}

/// True when the line is none of a waypoint or point, and was taken.
bool take_word(native_reader& r, std::string_view text, bool& good)
{
    if (text.starts_with('"'))
        return false;
    if (text.starts_with('<')) {
        end_route(r.in);
        r.in_route = false;
        return true;
    }
    if (const auto rest = behind_word(text, native_waypoints)) {
        end_route(r.in);
        good = take_title(r, *rest);
        return true;
    }
    if (const auto rest = behind_word(text, native_zone)) {
        split_line(*rest, r.line); // a spreadsheet has filled the row up
        r.zone = r.line.fields[0];
        return true;
    }
    if (const auto rest = behind_word(text, native_route)) {
        take_route(r, *rest);
        return true;
    }
    return r.in_route && (behind_word(text, native_sum) || behind_word(text, native_direct));
}

} // namespace

std::string native_signed_degrees()
{
    return "+ddd.ddddd°"_w;
}

void read_native_text(import_job& in)
{
    native_reader r{in, std::max(0, Form1.posform.selected)};
    waypoint_columns(r);
    bool good = set_datum(in, datum_at(-1).name);
    for (std::string_view text; good && next_line(in, text);) {
        const std::string_view start = trim_left(text);
        if (start.empty() || take_word(r, start, good))
            continue;
        split_line(text, r.line);
        if (take_headings(r))
            continue;
        if (r.in_route)
            take_point(r);
        else
            take_waypoint(r);
    }
}

} // namespace velkoro
