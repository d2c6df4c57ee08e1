#include "waypoints/clipboard.h"

#include "core/form1.h"
#include "core/hooks.h"
#include "core/log.h"
#include "core/platform.h"
#include "core/route_lists.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"
#include "core/wayp_insert.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <stdexcept>

namespace velkoro {
namespace {

constexpr char tab = '\t';
constexpr std::string_view line_end = "\r\n";
constexpr std::int32_t lat_limit = 1073741824; // semicircles of 90 degrees
constexpr int insert_wide_marked = -3;         // names of one text may stand twice in it

// Taking a text apart
// ----------------------------------------------------------------------------------------------

/// Takes the first line off, with its end.
std::string_view take_line(std::string_view& text)
{
    const std::size_t end = text.find_first_of("\r\n");
    const std::string_view line = text.substr(0, end);
    if (end == std::string_view::npos)
        text = {};
    else
        text.remove_prefix(end + (text.substr(end).starts_with(line_end) ? 2 : 1));
    return line;
}

enum class field_state { none, number, too_large };

/// A decimal integer with blanks around it.
field_state integer_of(std::string_view field, std::int64_t& value)
{
    field = trim(field);
    if (field.starts_with('+'))
        field.remove_prefix(1);
    std::int64_t read = 0;
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), read);
    if (end == field.data() || end != field.data() + field.size())
        return field_state::none;
    if (error == std::errc::result_out_of_range)
        return field_state::too_large;
    value = read;
    return field_state::number;
}

/// The fields of one waypoint line, in order; each call takes the next one.
struct line_fields {
    std::string_view rest{};
    bool good = true;

    std::string text() { return std::string(next_field(rest, tab)); }
    /// A number in low to high; what is no number leaves `value` or, when needed, spoils the line.
    template <class T> void number(T& value, std::int64_t low, std::int64_t high, bool needed)
    {
        std::int64_t read = 0;
        switch (integer_of(next_field(rest, tab), read)) {
        case field_state::none: good = good && !needed; break;
        case field_state::too_large: good = false; break;
        case field_state::number:
            if (read < low || read > high)
                good = false;
            else
                value = static_cast<T>(read);
            break;
        }
    }
};

template <class T> constexpr std::int64_t lowest = std::numeric_limits<T>::min();
template <class T> constexpr std::int64_t highest = std::numeric_limits<T>::max();

std::string one_field(std::string_view text)
{
    std::string out(text);
    std::ranges::replace_if(
        out, [](char c) { return c == '\t' || c == '\r' || c == '\n'; }, ' ');
    return out;
}

// Reading into the store
// ----------------------------------------------------------------------------------------------

/// Lines that a paste left out, and whether the store is full.
struct paste_result {
    int refused = 0;
    bool full = false;
};

void insert_lines(std::string_view body, paste_result& result)
try {
    while (!body.empty()) {
        const std::string_view line = take_line(body);
        if (trim(line).empty())
            continue;
        if (std::optional<wayp_rec> w = clip_waypoint(line))
            wayp_insert(*w, insert_wide_marked);
        else
            ++result.refused;
    }
} catch (const batch_cancelled&) { // what came in so far stays
} catch (const std::overflow_error&) {
    result.full = true;
}

std::string close_batch()
{
    wayp_rec report;
    wayp_insert(report, batch_close);
    return report.kom;
}

void show_pasted()
{
    hooks.route_refresh();
    hooks.map_changed();
    hooks.sort_rows();
    hooks.mark_count();
}

void paste(std::string_view body)
{
    paste_result result;
    std::string report;
    try {
        wayp_rec none;
        wayp_insert(none, batch_open);
        insert_lines(body, result);
        report = close_batch();
    } catch (...) {
        close_batch();
        show_pasted();
        throw;
    }
    show_pasted();
    if (result.full)
        say(2033, buttons::ok, icon::exclamation, std::to_string(wp_limit));
    if (result.refused > 0)
        report += (report.empty() ? "" : "\n") + text(7750, result.refused);
    if (!report.empty())
        platform.message({.text = report,
                          .icon = result.refused > 0 ? icon::exclamation : icon::information,
                          .number = result.refused > 0 ? 7750 : 2000});
}

// Handlers
// ----------------------------------------------------------------------------------------------

void copy_click()
try {
    clip_copy(hooks.marked_rows());
} catch (...) {
    trap("B_kop_Click");
}

void cut_click()
try {
    clip_copy(hooks.marked_rows());
    wayp_delete(-1);
    hooks.mark_count();
} catch (...) {
    trap("B_aus_Click");
}

void paste_click()
try {
    if (const std::optional<std::string> body = clip_check(clip_ask | clip_waypoints_only))
        paste(*body);
} catch (...) {
    trap("B_einfüg_Click");
}

void test_click()
try {
    clip_check(clip_report);
} catch (...) {
    trap("B_test_Click");
}

void report_text(const clip_text& clip)
{
    const std::vector<std::string_view> lines = split_lines(clip.body);
    const auto count =
        std::ranges::count_if(lines, [](std::string_view l) { return !trim(l).empty(); });
    std::string shown = clip.track ? text(7751, static_cast<long long>(count))
                                   : text(7731, std::to_string(count), clip_names(clip.body));
    if (!clip.checksum_good)
        shown += "\n\n" + text(7733);
    platform.message({.text = shown,
                      .icon = clip.checksum_good ? icon::information : icon::exclamation,
                      .number = clip.track ? 7751 : 7731});
}

} // namespace

std::int32_t clip_checksum(std::string_view body)
{
    constexpr std::int32_t limit = 1'000'000'000, back = 2'000'000'000;
    std::int32_t h = 0;
    for (const char c : body) {
        h = (h + static_cast<unsigned char>(c)) * 2;
        if (h > limit)
            h -= back;
        if (h < -limit)
            h += back;
    }
    return h;
}

std::string clip_compose(std::string_view word, std::string_view body)
{
    std::string out(word);
    out.append(1, tab).append(std::to_string(clip_checksum(body))).append(line_end);
    return out.append(body);
}

std::optional<clip_text> clip_parse(std::string_view text, int mode)
{
    const std::size_t end = text.find(tab);
    if (end == std::string_view::npos)
        return std::nullopt;
    const std::string_view word = text.substr(0, end);
    clip_text out{.track = word == clip_track_word};
    if (!out.track && word != clip_waypoints_word)
        return std::nullopt;
    if (mode & (out.track ? clip_waypoints_only : clip_track_only))
        return std::nullopt;
    text.remove_prefix(end + 1);
    const std::string_view sum = take_line(text);
    out.body = text;
    std::int64_t told = 0;
    out.checksum_good =
        integer_of(sum, told) == field_state::number && told == clip_checksum(out.body);
    return out;
}

std::string clip_names(std::string_view body)
{
    std::string names;
    while (!body.empty() && names.size() <= name_list_limit) {
        std::string_view line = take_line(body);
        if (!trim(line).empty())
            names.append(names.empty() ? "" : " ").append(next_field(line, tab));
    }
    return shown_names(names);
}

std::string clip_line(const wayp_rec& w)
{
    const int symbol_word =
        static_cast<std::uint8_t>(w.symbmode) << 8 | static_cast<std::uint8_t>(w.symb);
    std::string out = one_field(w.nam);
    out.append(1, tab).append(one_field(w.kom));
    for (const int n : {int{w.pos.lat}, int{w.pos.lon}, int{w.dat}, int{w.prox}, int{w.alt},
                        int{static_cast<std::int16_t>(symbol_word)}})
        out.append(1, tab).append(std::to_string(n));
    return out.append(line_end);
}

std::optional<wayp_rec> clip_waypoint(std::string_view line)
{
    line_fields in{.rest = line};
    wayp_rec w;
    w.nam = in.text();
    w.kom = in.text();
    in.number(w.pos.lat, -lat_limit, lat_limit, true);
    in.number(w.pos.lon, lowest<std::int32_t>, highest<std::int32_t>, true);
    in.number(w.dat, lowest<std::int32_t>, highest<std::int32_t>, false);
    in.number(w.prox, lowest<std::int16_t>, highest<std::int16_t>, false);
    in.number(w.alt, lowest<std::int16_t>, highest<std::int16_t>, false);
    std::uint16_t symbol_word = 0;
    in.number(symbol_word, lowest<std::int16_t>, highest<std::uint16_t>, false);
    w.symb = static_cast<std::int16_t>(symbol_word & 0xFF);
    w.symbmode = static_cast<std::int16_t>(symbol_word >> 8);
    if (!in.good || trim(w.nam).empty())
        return std::nullopt;
    return w;
}

std::optional<std::string> clip_check(int mode)
{
    const std::string content = platform.clipboard();
    const std::optional<clip_text> clip = clip_parse(content, mode);
    log_line(std::string(" clip_check ") + (!clip                 ? "no text of ours"
                                            : clip->checksum_good ? "checksum right"
                                                                  : "checksum wrong"));
    if (!clip) {
        platform.beep();
        if (mode & clip_report)
            say(7734, buttons::ok, icon::information);
        return std::nullopt;
    }
    if (!clip->checksum_good && (mode & clip_ask) &&
        say(7732, buttons::ok_cancel, icon::question) != answer::ok)
        return std::nullopt;
    if (mode & clip_report)
        report_text(*clip);
    return std::string(clip->body);
}

void clip_copy(const std::vector<int>& indexes)
{
    std::string body;
    for (const int index : indexes)
        if (index >= 0 && index <= store.wp_top)
            body += clip_line(store.wp[static_cast<std::size_t>(index)]);
    if (!body.empty())
        platform.set_clipboard(clip_compose(clip_waypoints_word, body));
}

void clipboard_install()
{
    Form1.B_kop.click = copy_click;
    Form1.B_aus.click = cut_click;
    Form1.B_einfüg.click = paste_click;
    Form1.B_test.click = test_click;
}

} // namespace velkoro
