#include "comm/gar_codec_comment.h"

#include "comm/gar_codec_layout.h"
#include "core/names.h"
#include "core/num_text.h"
#include "core/settings.h"
#include "core/store.h"
#include "core/text_tools.h"

#include <algorithm>
#include <cmath>

namespace velkoro {
namespace {

constexpr std::size_t comment_room = 40, filling = 16;
/// Three characters per colour, index 0 first.
constexpr std::string_view colour_codes = "&BL&DR&DG&DY&DB&DM&DC&LA&DA&R &G &Y &B &M &C &W ";
constexpr std::string_view colour_codes_107 = "RGB";
constexpr double metres_per_foot = 0.3048;

bool is_control(char c)
{
    return static_cast<unsigned char>(c) < ' ';
}

bool is_digit(char c)
{
    return c >= '0' && c <= '9';
}

std::string trimmed(std::string text)
{
    return std::string(trim(text));
}

/// The unit that heights and depths are shown in.
bool in_feet()
{
    return settings.alt_index == 1;
}

/// Length of the part of a comment that belongs to the key.
std::size_t key_length(std::string_view comment)
{
    return key_prefix(comment).size();
}

/// The classes that the place in a text names, and the byte of the first one.
struct class_letters {
    std::string_view letters{};
    int first = 0;
    int user = 0; ///< byte of a user waypoint
};

class_letters classes_of(int type)
{
    switch (type) {
    case 108:
    case 109:
    case 110: return {"AINVRTD", 64, 0};
    case 150:
    case 450: return {"AINV RT", 0, 4};
    case 151: return {"AV", 0, 2};
    case 152:
    case 155: return {"AINV", 0, 4};
    case 154: return {"AINV RTDS", 0, 4};
    default: return {};
    }
}

} // namespace

std::string gar_text_out(std::string_view comment)
{
    std::string out(comment);
    std::ranges::replace_if(out, is_control, ' ');
    return store.wp_ext_chars ? trimmed(out) : trimmed(name_clean(out, 1));
}

std::string gar_name_out(std::string_view name)
{
    std::string out(trim(name));
    std::ranges::replace_if(out, is_control, '-');
    return trimmed(name_clean(out, 0));
}

std::string gar_text_in(std::string_view comment)
{
    std::string out(comment.substr(0, comment.find('\0')));
    std::ranges::replace_if(out, is_control, ' ');
    out = trim(out);
    return out.find_first_not_of('_') == std::string::npos ? std::string{} : out;
}

std::string gar_comment_text(std::string_view comment)
{
    const std::string out = gar_text_out(comment);
    return out.empty() ? std::string(filling, '_') : out;
}

void gar_comment_pack(std::string_view comment, std::string& result)
{
    result = gar_comment_text(comment) + '\0';
    result.resize(comment_room, ' ');
}

void gar_color_cut(std::string& comment, int& color)
{
    color = gar_no_colour;
    comment = trim_right(comment);
    // The codes of the bright colours end in a blank, which a trimmed comment has lost.
    for (const std::string_view lost : {"", " "}) {
        const std::string text = comment + std::string(lost);
        if (text.size() < 3)
            continue;
        const std::size_t at = colour_codes.find(std::string_view(text).substr(text.size() - 3));
        if (at == std::string_view::npos || at % 3 != 0)
            continue;
        color = static_cast<int>(at / 3);
        comment.resize(text.size() - 3);
        if (comment.ends_with('&'))
            comment.pop_back();
        return;
    }
}

std::string gar_color_code(int color)
{
    if (color < 0 || color > 15)
        return {};
    return std::string(trim_right(colour_codes.substr(static_cast<std::size_t>(color) * 3, 3)));
}

int gar_color_cut_107(std::string& comment)
{
    comment = trim(comment);
    const std::size_t n = comment.size();
    if (n < 2 || comment[n - 2] != '&')
        return 0;
    const std::size_t at = colour_codes_107.find(comment[n - 1]);
    if (at == std::string_view::npos)
        return 0;
    comment.resize(n - 2);
    return static_cast<int>(at) + 1;
}

std::string gar_color_code_107(int color)
{
    if (color < 1 || color > 3)
        return {};
    return {'&', colour_codes_107[static_cast<std::size_t>(color) - 1]};
}

void gar_alt_to_comment(std::string& comment, std::int16_t alt)
{
    if (alt == alt_unknown)
        return;
    const std::size_t at = key_length(comment);
    if (at > 0 && at < 4) // the height would become a part of the key
        return;
    const std::string height =
        pic(alt / static_cast<double>(settings.alt_unit), "0") + (in_feet() ? " ft" : " m");
    comment.insert(at, at == 0 ? height + " " : " " + height + " ");
    comment = trim(comment);
}

bool gar_alt_from_comment(std::string& comment, std::int16_t& alt)
{
    const std::size_t from = key_length(comment);
    const std::string_view all = comment;
    std::string_view rest = all.substr(from);
    if (from > 0 && !rest.starts_with(' '))
        return false;
    if (from > 0)
        rest.remove_prefix(1);
    const std::size_t sign = rest.starts_with('-') ? 1 : 0;
    std::size_t end = sign;
    while (end < rest.size() && is_digit(rest[end]))
        ++end;
    const std::string_view number = rest.substr(0, end);
    rest.remove_prefix(end);
    // The receiver may have turned the unit into capitals.
    const bool feet = rest.size() >= 3 && equal_nocase(rest.substr(0, 3), " ft");
    const bool metres = !feet && rest.size() >= 2 && equal_nocase(rest.substr(0, 2), " m");
    if (end == sign || end - sign > 6 || (!feet && !metres))
        return false;
    rest.remove_prefix(feet ? 3 : 2);
    if (!rest.empty() && !rest.starts_with(' '))
        return false;
    const double height = round_even(val(number) * (feet ? metres_per_foot : 1.0));
    if (std::abs(height) > 32767)
        return false;
    if (!rest.empty())
        rest.remove_prefix(1);
    alt = static_cast<std::int16_t>(height);
    comment = trimmed(std::string(all.substr(0, from)) + std::string(rest));
    return true;
}

std::string gar_depth_text(double depth_m, std::string_view picture)
{
    return "$ " + pic(depth_m / static_cast<double>(settings.alt_unit), picture) +
           (in_feet() ? "ft" : "m");
}

float gar_depth_cut(std::string& comment)
{
    const std::size_t from = comment.find('$');
    if (from == std::string::npos)
        return gar_no_value;
    const std::size_t m = comment.find('m', from), ft = comment.find("ft", from);
    const std::size_t unit = std::min(m, ft);
    if (unit == std::string::npos)
        return gar_no_value;
    const std::string number = comma_to_dot(comment.substr(from + 1, unit - from - 1));
    // Words about money are no depth.
    if (!is_number(number) || !is_digit(trim_right(number).back()))
        return gar_no_value;
    const double depth = val(number) * (unit == ft ? metres_per_foot : 1.0);
    if (!(std::abs(depth) < 1e9))
        return gar_no_value;
    const std::size_t end = unit + (unit == ft ? 2 : 1);
    std::string_view front = trim_right(std::string_view(comment).substr(0, from));
    std::string_view back = std::string_view(comment).substr(end);
    // The blanks on both sides belong to the depth; words behind it stay apart from those ahead.
    std::string rest(front);
    back = trim_left(back);
    if (!front.empty() && !back.empty() && !back.starts_with('&'))
        rest += ' ';
    rest += back;
    comment = rest;
    return static_cast<float>(depth);
}

char gar_class_letter(int type, int klass)
{
    const class_letters c = classes_of(type);
    const int place = klass - c.first;
    if (klass == c.user || place < 0 || place >= static_cast<int>(c.letters.size()))
        return 0;
    return c.letters[static_cast<std::size_t>(place)];
}

int gar_class_of(int type, char letter)
{
    const class_letters c = classes_of(type);
    const std::size_t at = c.letters.find(letter);
    // The blank among the letters stands for the user's own waypoints and is no marker.
    return at == std::string_view::npos || letter == ' ' ? -1 : c.first + static_cast<int>(at);
}

std::uint8_t gar_class_default(int type)
{
    return static_cast<std::uint8_t>(classes_of(type).user);
}

} // namespace velkoro
