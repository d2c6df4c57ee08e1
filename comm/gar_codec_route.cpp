#include "comm/gar_codec_route.h"

#include "comm/gar_codec_comment.h"
#include "comm/gar_codec_layout.h"
#include "core/byte_io.h"
#include "core/store.h"
#include "core/text_tools.h"

#include <algorithm>

namespace velkoro {
namespace {

constexpr std::size_t route_name_room = 16, comment_room = 20, link_room = 18;
constexpr std::uint16_t direct = 3; // 255, a snapped leg, counts as one
constexpr std::uint16_t most_class = 3;

/// Text of a record as the store's "$"-ended lists can hold it.
std::string list_text(std::string_view text)
{
    std::string out = gar_text_in(text);
    std::ranges::replace(out, '$', '-');
    return out;
}

} // namespace

bool gar_route_decode(std::string_view data, int type, gar_route_in& result)
{
    result = {};
    if (data.empty())
        return false;
    const std::size_t head = type == 202 ? 0 : 1;
    switch (type) {
    case 200:
    case 201: result.number = static_cast<unsigned char>(data.front()); break;
    case 202: result.number = 1; break;
    default: return false;
    }
    if (type != 200)
        result.name =
            fixed_text(list_text(data.substr(head, type == 201 ? comment_room : data.size())),
                       route_name_room);
    return true;
}

std::string gar_route_encode(std::string_view name, int number, int type)
{
    gar_field_writer out;
    switch (type) {
    case 200: out.number(static_cast<std::uint8_t>(number)); break;
    case 201:
        out.number(static_cast<std::uint8_t>(number));
        out.fixed(gar_text_out(name), comment_room);
        break;
    case 202: out.zero_ended(gar_text_out(name), 51); break;
    default: break;
    }
    return out.out;
}

std::string gar_link_decode(std::string_view data)
{
    byte_reader in(data);
    const auto link_class = in.le<std::uint16_t>();
    in.skip(18);
    const std::string_view name = in.fixed(in.remaining());
    std::string leg(trim(list_text(name).substr(0, link_room)));
    if (in.ok() && link_class < most_class)
        leg += {'&', static_cast<char>('A' + link_class)};
    return leg;
}

std::string gar_link_encode(std::string_view leg)
{
    std::uint16_t link_class = direct;
    leg = trim(leg);
    const std::size_t n = leg.size();
    if (n >= 2 && leg[n - 2] == '&' && leg[n - 1] >= 'A' && leg[n - 1] <= 'A' + most_class) {
        link_class = static_cast<std::uint16_t>(leg[n - 1] - 'A');
        leg.remove_suffix(2);
    }
    gar_field_writer out;
    out.number(link_class);
    out.constant(6, 0);
    out.constant(12, static_cast<char>(0xFF));
    out.zero_ended(gar_text_out(leg), 51);
    return out.out;
}

} // namespace velkoro
