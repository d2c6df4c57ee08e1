// Waypoint records of receivers. The first byte chooses the type, the second one the options.
#include "comm/gar_codec_layout.h"
#include "comm/gar_codec_wp.h"
#include "comm/gar_proto.h"
#include "core/platform.h"
#include "core/settings.h"
#include "core/symbols.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

using namespace velkoro;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2)
        return 0;
    const int type = gar_layouts[data[0] % gar_layouts.size()].type;
    const unsigned options = data[1];
    settings = {};
    store.wp_ext_chars = (options & 1) != 0;
    settings.alt_kom = (options & 2) != 0;
    settings.garmin[static_cast<std::size_t>(gar_place::AVD)] = (options & 4) != 0;
    settings.garmin[static_cast<std::size_t>(gar_place::Lokalz)] = (options & 8) != 0;
    settings.alt_index = (options & 16) != 0;
    settings.alt_unit = alt_factors[(options & 16) != 0];
    receiver.gar_symbol_set = static_cast<std::int16_t>((options >> 5) % 3);
    symbols.extend = false;

    const std::string_view bytes(reinterpret_cast<const char*>(data) + 2, size - 2);
    gar_wp_in in;
    if (!gar_wp_decode(bytes, type, in)) {
        if (in != gar_wp_in{})
            std::abort();
        return 0;
    }
    if (in.lat > 1 << 30 || in.lat < -(1 << 30) || (in.symbol >> 8) > 2 ||
        in.comment.find('\0') != std::string::npos)
        std::abort();
    std::string out;
    for (const gar_layout& l : gar_layouts) {
        gar_wp_encode(gar_wp_record(in), l.type, (options & 4) != 0, out);
        gar_wp_in back;
        if (out.size() < l.bytes || !gar_wp_decode(out, l.type, back) || back.lat != in.lat ||
            back.lon != in.lon)
            std::abort();
    }
    return 0;
}
