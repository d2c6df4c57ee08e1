#include "comm/gar_codec_wp.h"

#include "comm/gar_codec_comment.h"
#include "comm/gar_codec_layout.h"
#include "comm/gar_codec_time.h"
#include "comm/gar_proto.h"
#include "core/num_text.h"
#include "core/settings.h"
#include "core/symbols.h"
#include "core/text_tools.h"

#include <algorithm>
#include <cmath>

namespace velkoro {
namespace {

constexpr std::int32_t lat_most = 1 << 30; // 90 degrees

bool has(const gar_layout& l, fld f)
{
    return std::ranges::find(l.fields, f) != l.fields.end();
}

bool is_d108_family(int type)
{
    return type >= 108 && type <= 110;
}

/// A float as a whole number; one that no 16-bit field can hold, and no number at all, count as
/// -32768.
std::int16_t whole(float value)
{
    if (!(value >= -32767.0F && value <= 32767.0F))
        return alt_unknown;
    return to_i16(static_cast<double>(value));
}

std::int16_t proximity_of(float dist_m)
{
    constexpr std::int16_t no_distance = -328; // what "none" gives in units of 100 m
    const std::int16_t prox = to_i16(whole(dist_m) / 100.0);
    return prox == no_distance ? std::int16_t{0} : prox;
}

std::uint8_t display_of(int type, std::uint8_t raw)
{
    if (is_d108_family(type) || receiver.gar_symbol_set != 2)
        return raw <= 2 ? raw : std::uint8_t{0};
    return raw == 1 ? std::uint8_t{1} : raw == 5 ? std::uint8_t{2} : std::uint8_t{0};
}

void add_word(std::string& comment, const std::string& word)
{
    if (!word.empty())
        comment += (comment.ends_with(' ') ? "" : " ") + word;
}

/// A facility: its marker in front of the comment; where that holds nothing else, the names that
/// the record has for it.
void add_facility(std::string& comment, const gar_layout& l, const gar_wire& w, std::int16_t alt)
{
    const char letter = gar_class_letter(l.type, w.klass);
    if (letter == 0)
        return;
    const std::string marker = std::string("@") + letter + fixed_text(w.country, 2) + " ";
    if (!comment.starts_with(marker)) // a marker without a country is sent as a part of the text
        comment = marker + comment;
    const std::string facility = gar_text_in(w.facility), city = gar_text_in(w.city);
    if (comment.size() >= 6 || (!is_d108_family(l.type) && facility.empty()))
        return;
    add_word(comment, gar_text_in(w.state));
    add_word(comment, facility);
    if (city != facility)
        add_word(comment, city);
    if (letter == 'A' && alt != 0 && alt != alt_unknown)
        add_word(comment, std::to_string(alt) + "M");
}

void add_depth_and_colour(std::string& comment, const gar_layout& l, const gar_wire& w)
{
    if (has(l, fld::depth) && std::abs(w.depth) < 1e9F) // otherwise gar_no_value, or no number
        comment += (comment.empty() ? "" : " ") +
                   gar_depth_text(static_cast<double>(w.depth), "0.0 ") + " ";
    if (l.type == 107)
        comment += gar_color_code_107(w.colour);
    else if (is_d108_family(l.type))
        comment += gar_color_code(w.colour);
}

/// The height that the option `alt_kom` has put into the comment: it fills a record that has none,
/// and stands there in vain where the record says the same.
void take_height(std::string& comment, std::int16_t& alt)
{
    if (!settings.alt_kom)
        return;
    std::string rest = comment;
    std::int16_t height = alt_unknown;
    if (!gar_alt_from_comment(rest, height) || (alt != alt_unknown && alt != height))
        return;
    alt = height;
    comment = rest;
}

/// What stands in the fields of a record that is cut short.
gar_wire nothing_told(int type)
{
    gar_wire w;
    w.alt16 = alt_unknown;
    w.klass = gar_class_default(type);
    w.colour = type == 107 ? 0 : gar_no_colour;
    w.symbol = static_cast<std::uint16_t>(symb_to_receiver(0));
    return w;
}

} // namespace

bool gar_wp_decode(std::string_view data, int type, gar_wp_in& result)
{
    result = {};
    const gar_layout* l = gar_layout_of(type);
    if (l == nullptr) {
        gar_unknown_type(type);
        return false;
    }
    if (data.size() < l->needed)
        return false;
    gar_wire w = nothing_told(type);
    gar_field_reader in(data);
    gar_walk(in, l->fields, w);
    if (w.lat > lat_most || w.lat < -lat_most)
        return false;

    result.name = trim(w.ident);
    std::string comment = gar_text_in(w.comment);
    if (type == 105 || type == 106) {
        const auto limit = static_cast<std::size_t>(std::max<int>(store.wp_name_max, 1));
        result.name = trim(std::string_view(w.ident).substr(0, limit));
        comment = gar_text_in(w.link.empty() ? "" : "-" + w.link);
    }
    result.lat = w.lat;
    result.lon = w.lon;
    result.prox = proximity_of(w.dist);
    result.alt = has(*l, fld::alt16) ? w.alt16 : whole(w.alt);

    std::string text = comment;
    add_facility(text, *l, w, result.alt);
    take_height(text, result.alt);
    std::string dated = comment;
    std::int16_t alt = alt_unknown;
    if (settings.alt_kom)
        gar_alt_from_comment(dated, alt);
    byte_writer time;
    time.i32(w.time);
    gar_wp_time(time.out, dated, result.time);
    result.time = gar_time_known(result.time);
    add_depth_and_colour(text, *l, w);
    result.comment = trim(text);

    const bool has_symbol = has(*l, fld::symb8) || has(*l, fld::symb16);
    const int symbol = has_symbol ? symb_from_receiver(w.symbol) : 0;
    result.symbol = static_cast<std::uint16_t>((symbol & 0xFF) | display_of(type, w.display) << 8);
    return true;
}

wayp_rec gar_wp_record(const gar_wp_in& in)
{
    return {.nam = in.name,
            .kom = in.comment,
            .pos = {in.lat, in.lon},
            .dat = in.time,
            .prox = in.prox,
            .symb = static_cast<std::int16_t>(in.symbol & 0xFF),
            .symbmode = static_cast<std::int16_t>(in.symbol >> 8),
            .alt = in.alt};
}

bool gar_wp_known(int type)
{
    return gar_layout_of(type) != nullptr;
}

} // namespace velkoro
