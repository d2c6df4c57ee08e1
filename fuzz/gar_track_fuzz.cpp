// Track and route records of receivers, and the clock. The first byte chooses the record.
#include "comm/gar_codec_route.h"
#include "comm/gar_codec_time.h"
#include "comm/gar_codec_track.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

using namespace velkoro;

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

void point(std::string_view bytes, int type)
{
    gar_point_in in;
    if (!gar_point_decode(bytes, type, in))
        return;
    gar_point_comment(in, true);
    const trackp_rec rec{.pos = in.pos, .zeit = in.time & 0x7FFFFFFF, .alt = in.alt};
    gar_point_in back;
    require(gar_point_decode(gar_point_encode(rec, type, in.segment), type, back));
    require(back.pos == in.pos && back.alt == in.alt && back.segment == in.segment);
}

void header(std::string_view bytes, int type)
{
    gar_track_in in;
    if (!gar_track_decode(bytes, type, in))
        return;
    require(in.name.find('\0') == std::string::npos);
    const int colour = gar_track_colour(in.name, 0);
    require(colour >= 0 && colour <= 255);
    require(!gar_track_encode(in.name, colour, type).empty());
}

void route(std::string_view bytes, int type)
{
    gar_route_in in;
    gar_route_decode(bytes, type, in);
    require(in.name.size() == 16 && in.name.find('$') == std::string::npos);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    switch (data[0] % 12) {
    case 0: point(bytes, 300); break;
    case 1: point(bytes, 301); break;
    case 2: point(bytes, 302); break;
    case 3: header(bytes, 310); break;
    case 4: header(bytes, 311); break;
    case 5: header(bytes, 312); break;
    case 6: route(bytes, 200); break;
    case 7: route(bytes, 201); break;
    case 8: route(bytes, 202); break;
    case 9: {
        const std::string leg = gar_link_decode(bytes);
        require(leg.size() <= 20 && leg.find('$') == std::string::npos);
        require(gar_link_encode(leg).size() >= 21);
        break;
    }
    case 10:
        if (const auto t = gar_clock_decode(bytes))
            require(gar_clock_decode(gar_clock_encode(*t)) == t);
        break;
    default: gar_point_tag(bytes); break;
    }
    return 0;
}
