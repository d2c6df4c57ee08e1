#include "coords/coord_text.h"

#include "cli/command.h"
#include "cli/json_out.h"
#include "cli/messages.h"
#include "coords/distance.h"
#include "core/code_page.h"
#include "core/form1.h"
#include "core/settings.h"
#include "core/text_tools.h"

#include <CLI/CLI.hpp>

#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>

namespace velkoro {
namespace {

constexpr int fmt_semi = -2; ///< raw semicircles, on the command line only
constexpr std::size_t out_block = 1 << 16;

/// True when UTF-8 and Windows-1252 are the same bytes; eight of them at a time.
bool is_plain(std::string_view text)
{
    std::uint64_t all = 0;
    std::size_t i = 0;
    for (; i + sizeof all <= text.size(); i += sizeof all) {
        std::uint64_t block = 0;
        std::memcpy(&block, text.data() + i, sizeof block);
        all |= block;
    }
    for (; i < text.size(); ++i)
        all |= static_cast<unsigned char>(text[i]);
    return (all & 0x8080808080808080U) == 0;
}

/// Behind `out` as UTF-8; almost all characters are plain.
void append_utf8(std::string& out, std::string_view text)
{
    if (is_plain(text)) {
        out += text;
        return;
    }
    for (const char& c : text)
        if (static_cast<unsigned char>(c) < 0x80)
            out += c;
        else
            out += to_utf8(std::string_view(&c, 1));
}

/// The answers of a run: text at once, JSON at the end. A job takes one line (Windows-1252, without
/// its end) and puts its answer behind a text, without an end.
struct line_output {
    std::string text{};
    json lines = json::array();

    template <class Job> void take(std::string_view line, bool plain, const Job& job)
    {
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (!plain && !is_plain(line)) {
            answer(from_utf8(line), job);
            return;
        }
        answer(line, job);
    }
    template <class Job> void answer(std::string_view line, const Job& job)
    {
        if (cli.json) {
            std::string one;
            job(line, one);
            lines.push_back(one);
            return;
        }
        job(line, text);
        text += '\n';
        if (text.size() >= out_block)
            flush();
    }
    void flush()
    {
        std::fwrite(text.data(), 1, text.size(), stdout);
        text.clear();
    }
};

/// Every line of standard input in one pass. Blocks are read as they come, so that a person who
/// types gets each answer at once.
template <class Job> void read_lines(const Job& job, line_output& out)
{
    std::string rest;
    std::array<char, 1 << 16> block;
    const bool terminal = isatty(STDIN_FILENO) != 0;
    for (;;) {
        const ssize_t n = read(STDIN_FILENO, block.data(), block.size());
        if (n <= 0)
            break;
        std::string_view data(block.data(), static_cast<std::size_t>(n));
        const bool plain = is_plain(data);
        std::size_t end = data.find('\n');
        if (end != std::string_view::npos && !rest.empty()) {
            rest += data.substr(0, end);
            out.take(rest, false, job);
            rest.clear();
            data.remove_prefix(end + 1);
            end = data.find('\n');
        }
        while (end != std::string_view::npos) {
            out.take(data.substr(0, end), plain, job);
            data.remove_prefix(end + 1);
            end = data.find('\n');
        }
        rest += data;
        if (terminal) {
            out.flush();
            std::fflush(stdout);
        }
    }
    if (!rest.empty())
        out.take(rest, false, job);
}

template <class Job> int run_lines(const std::vector<std::string>& given, const Job& job)
{
    line_output out;
    out.text.reserve(2 * out_block);
    if (given.empty())
        read_lines(job, out);
    for (const std::string& line : given)
        out.take(line, false, job);
    if (cli.json)
        print_json({{"lines", out.lines}});
    else
        out.flush();
    return cli_exit_code();
}

std::optional<std::int32_t> integer_of(std::string_view text)
{
    text = trim(text);
    std::int32_t v = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), v);
    if (error != std::errc{} || end != text.data() + text.size() || text.empty())
        return std::nullopt;
    return v;
}

std::optional<double> number_of(std::string_view text)
{
    text = trim(text);
    double v = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), v);
    if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(v))
        return std::nullopt;
    return v;
}

std::optional<pos_rec> semi_position(std::string_view lat, std::string_view lon)
{
    const auto la = integer_of(lat), lo = integer_of(lon);
    constexpr std::int64_t pole = std::int64_t{1} << 30;
    if (!la || !lo || *la > pole || *la < -pole)
        return std::nullopt;
    return pos_rec{*la, *lo};
}

void append_integer(std::string& out, std::int32_t v)
{
    char digits[16];
    out.append(digits, std::to_chars(digits, digits + sizeof digits, v).ptr);
}

// coord
// -------------------------------------------------------------------------------------------------

struct coord_options {
    std::string from{}, to{}, from_datum{}, to_datum{};
    std::vector<std::string> lines{};
};

/// A number of `posform`, its list text, or "semi".
std::optional<int> format_of(const std::string& name)
{
    if (name == "semi")
        return fmt_semi;
    const auto& all = Form1.posform.items;
    const auto hit = std::ranges::find(all, from_utf8(name));
    if (hit != all.end())
        return static_cast<int>(hit - all.begin());
    const auto number = integer_of(name);
    if (number && *number >= 0 && *number < static_cast<int>(all.size()))
        return *number;
    return std::nullopt;
}

/// The three fields of a line; false when there are more or fewer.
bool coord_fields(std::string_view line, std::string_view (&fields)[3])
{
    std::size_t count = 0, from = 0;
    for (std::size_t i = 0; i < line.size(); ++i) { // short: a plain loop beats searching
        if (line[i] != '|')
            continue;
        if (count == 2)
            return false;
        fields[count++] = line.substr(from, i - from);
        from = i + 1;
    }
    if (count == 2)
        fields[2] = line.substr(from);
    return count == 2;
}

void coord_line(std::string_view line, std::string& out, int from, int from_datum, int to)
{
    std::string_view f[3]; // zone, east, north
    pos_rec pos;
    bool good = coord_fields(line, f);
    if (good && from == fmt_semi) {
        const auto p = semi_position(f[2], f[1]);
        good = p.has_value();
        if (p)
            pos = *p;
    } else if (good) {
        good = text_to_pos(f[0], f[1], f[2], pos, from, from_datum);
    }
    if (good && to == fmt_semi) {
        out += '|';
        append_integer(out, pos.lon);
        out += '|';
        append_integer(out, pos.lat);
        return;
    }
    std::string zone, east, north; // short: they live in place
    if (good) {
        pos_to_text(pos, zone, east, north, -1, to);
        good = !east.empty() && !north.empty();
    }
    if (!good) {
        out += "||";
        return;
    }
    append_utf8(out, zone);
    out += '|';
    append_utf8(out, east);
    out += '|';
    append_utf8(out, north);
}

int run_coord(const coord_options& o)
{
    if (datums.rows.empty())
        return cli_fail("the datum table Datum.ini is missing or empty");
    const auto from = format_of(o.from), to = format_of(o.to);
    for (const auto& [fmt, name] : {std::pair{from, o.from}, std::pair{to, o.to}})
        if (!fmt)
            return cli_fail("no position format \"" + from_utf8(name) + "\"");
    int rows[2] = {datums.wgs_datum, datums.wgs_datum};
    const std::string* const names[2] = {&o.from_datum, &o.to_datum};
    for (int i = 0; i < 2; ++i)
        if (!names[i]->empty()) {
            rows[i] = datum_find(from_utf8(*names[i]));
            if (rows[i] < 0)
                return cli_fail("no datum \"" + from_utf8(*names[i]) + "\" in Datum.ini");
        }
    Form1.Datum.selected = rows[1];
    coord.zone_choice = 0;
    return run_lines(o.lines, [from = *from, datum = rows[0], to = *to](std::string_view line,
                                                                        std::string& out) {
        coord_line(line, out, from, datum, to);
    });
}

// distance, project
// -------------------------------------------------------------------------------------------------

struct sphere_options {
    std::string method{}, unit{};
    std::vector<std::string> lines{};
};

void choose_unit(const std::string& unit)
{
    if (!unit.empty())
        settings.dist_unit = unit == "km" ? 1000.0F : unit == "mi" ? 1609.344F : 1852.0F;
}

void append_nine_digits(std::string& out, float v)
{
    char digits[40];
    out.append(digits, std::to_chars(digits, digits + sizeof digits, static_cast<double>(v),
                                     std::chars_format::general, 9)
                           .ptr);
}

int run_distance(const sphere_options& o)
{
    choose_unit(o.unit);
    const auto measure = o.method == "flat" ? dist_flat : dist_chord;
    return run_lines(o.lines, [measure](std::string_view line, std::string& out) {
        std::array<std::string_view, 4> f;
        std::string_view rest = line;
        for (std::string_view& field : f)
            field = next_field(rest, '|');
        const auto target = semi_position(f[0], f[1]), origin = semi_position(f[2], f[3]);
        if (!target || !origin || !rest.empty()) {
            out += '|';
            return;
        }
        const dist_bear d = measure(*target, *origin);
        append_nine_digits(out, d.distance);
        out += '|';
        append_nine_digits(out, d.bearing);
    });
}

int run_project(const sphere_options& o)
{
    choose_unit(o.unit);
    const auto project = o.method == "to_wgs" ? dist_to_wgs : dist_to_wgs_dir;
    return run_lines(o.lines, [project](std::string_view line, std::string& out) {
        std::array<std::string_view, 4> f;
        std::string_view rest = line;
        for (std::string_view& field : f)
            field = next_field(rest, '|');
        const auto from = semi_position(f[0], f[1]);
        const auto distance = number_of(f[2]), bearing = number_of(f[3]);
        if (!from || !distance || !bearing || !rest.empty()) {
            out += '|';
            return;
        }
        const pos_rec p = project(*distance, *bearing, *from);
        append_integer(out, p.lat);
        out += '|';
        append_integer(out, p.lon);
    });
}

std::shared_ptr<sphere_options> declare_sphere(CLI::App& command, std::vector<std::string> methods)
{
    const auto o = std::make_shared<sphere_options>();
    command.add_option("--method", o->method, "how to calculate")
        ->required()
        ->check(CLI::IsMember(std::move(methods)));
    command.add_option("--unit", o->unit, "unit of distances; default: the profile's")
        ->check(CLI::IsMember(std::vector<std::string>{"km", "mi", "nm"}));
    command.add_option("LINE", o->lines, "lines; without one they come from standard input");
    return o;
}

} // namespace

cli_action declare_coord(CLI::App& command)
{
    const auto o = std::make_shared<coord_options>();
    command.add_option("--from", o->from, "format of the input: number, list text or semi")
        ->required();
    command.add_option("--from-datum", o->from_datum, "its datum; default WGS 84");
    command.add_option("--to", o->to, "format of the output")->required();
    command.add_option("--to-datum", o->to_datum, "its datum; default WGS 84");
    command.add_option("COORD", o->lines,
                       "coordinates zone|east|north; without one they come from standard input");
    return [o] { return run_coord(*o); };
}

cli_action declare_distance(CLI::App& command)
{
    const auto o = declare_sphere(command, {"flat", "chord"});
    return [o] { return run_distance(*o); };
}

cli_action declare_project(CLI::App& command)
{
    const auto o = declare_sphere(command, {"to_wgs", "to_wgs_dir"});
    return [o] { return run_project(*o); };
}

} // namespace velkoro
