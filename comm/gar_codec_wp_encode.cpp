#include "comm/gar_codec_wp.h"

#include "comm/gar_codec_comment.h"
#include "comm/gar_codec_layout.h"
#include "core/settings.h"
#include "core/symbols.h"
#include "core/text_tools.h"
#include "core/texts.h"

#include <algorithm>

namespace velkoro {
namespace {

constexpr int text_unknown_type = 1115;
constexpr int no_colour_5_bits = 31;
constexpr std::uint16_t dot_16 = 0, dot = 18; // plain waypoint of the 16 symbols and of all

bool is_d108_family(int type)
{
    return type >= 108 && type <= 110;
}

/// Class and country of the facility marker, which then leaves the comment. A marker without a
/// country stays: it is sent as a part of the text.
void take_facility(std::string& comment, int type, gar_wire& w)
{
    if (!comment.starts_with('@') || comment.size() < 2)
        return;
    const int klass = gar_class_of(type, comment[1]);
    if (klass < 0)
        return;
    w.klass = static_cast<std::uint8_t>(klass);
    w.country = fixed_text(comment.substr(2, 2), 2);
    if (w.country != "  ")
        comment.erase(0, 4);
}

std::uint16_t symbol_of(int type, int number)
{
    const int raw = symb_to_receiver(number);
    const bool sixteen = type == 103 || type == 107 || type == 403;
    const bool one_byte = sixteen || type == 101;
    if (raw < 0 || raw > (one_byte ? 0xFF : 0xFFFF))
        return sixteen ? dot_16 : dot;
    return static_cast<std::uint16_t>(raw);
}

std::uint8_t display_of(int type, std::int16_t mode)
{
    const int m = mode < 0 || mode > 2 ? 0 : mode;
    if (type == 104 || type == 155)
        return static_cast<std::uint8_t>("\3\1\5"[m]);
    return static_cast<std::uint8_t>(m);
}

void put_colour_and_depth(std::string& comment, int type, gar_wire& w)
{
    if (type == 107)
        w.colour = static_cast<std::uint8_t>(gar_color_cut_107(comment));
    if (!is_d108_family(type))
        return;
    int colour = gar_no_colour;
    gar_color_cut(comment, colour);
    if (colour == gar_no_colour && type != 108)
        colour = no_colour_5_bits;
    w.colour = static_cast<std::uint8_t>(colour);
    w.depth = gar_depth_cut(comment);
}

} // namespace

void gar_wp_encode(const wayp_rec& rec, int type, bool proximity, std::string& result)
{
    result.clear();
    const gar_layout* l = gar_layout_of(type);
    if (l == nullptr) {
        gar_unknown_type(type);
        return;
    }
    std::string comment = rec.kom;
    if (settings.alt_kom)
        gar_alt_to_comment(comment, rec.alt);
    gar_wire w;
    w.klass = gar_class_default(type);
    w.country = "  ";
    if (proximity && gar_option(gar_place::AVD) != 0)
        take_facility(comment, type, w);
    put_colour_and_depth(comment, type, w);

    w.ident = gar_name_out(rec.nam);
    const bool field = std::ranges::find(l->fields, fld::comment40) != l->fields.end();
    if (field)
        gar_comment_pack(comment, w.comment);
    else
        w.comment = gar_comment_text(comment);
    w.lat = rec.pos.lat;
    w.lon = rec.pos.lon;
    w.time = type == 110 ? rec.dat : 0;
    w.dist =
        is_d108_family(type) && rec.prox < 1 ? gar_no_value : static_cast<float>(rec.prox) * 100.0F;
    w.alt = rec.alt == alt_unknown ? gar_no_value : static_cast<float>(rec.alt);
    w.symbol = symbol_of(type, rec.symb);
    w.display = display_of(type, rec.symbmode);
    gar_field_writer out;
    gar_walk(out, l->fields, w);
    result = std::move(out.out);
}

void gar_unknown_type(int type)
{
    if (gar_codec.unknown_told)
        return;
    gar_codec.unknown_told = true;
    say(text_unknown_type, buttons::ok, icon::exclamation, "D" + std::to_string(type));
}

} // namespace velkoro
