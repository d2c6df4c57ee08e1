/// Bytes written by hand, and the ground that the record codecs stand on: a small symbol table and
/// plain texts.
#pragma once

#include "comm/gar_codec_wp.h"
#include "comm/gar_proto.h"
#include "core/code_page.h"
#include "core/settings.h"
#include "core/store.h"
#include "core/symbols.h"
#include "core/text_tools.h"
#include "tests/support/scripted_platform.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace velkoro {
namespace gar_bytes {

/// Bytes of hexadecimal digits; blanks do not count.
inline std::string raw(std::string_view digits)
{
    std::string out;
    int half = -1;
    for (const char c : digits) {
        if (c == ' ')
            continue;
        const int v = c <= '9' ? c - '0' : c - 'A' + 10;
        if (half >= 0)
            out += static_cast<char>(half * 16 + v);
        half = half >= 0 ? -1 : v;
    }
    return out;
}

inline std::string zeros(std::size_t n)
{
    return std::string(n, '\0');
}

inline std::string blanks(std::size_t n)
{
    return std::string(n, ' ');
}

/// A comment of 40 bytes as the encoder packs it.
inline std::string packed(const std::string& comment)
{
    return comment + zeros(1) + blanks(39 - comment.size());
}

} // namespace gar_bytes
using namespace gar_bytes;

class GarCodec : public testing::Test {
protected:
    GarCodec()
    {
        scripted_platform::plain_texts();
        receiver = {};
        gar_codec = {};
        receiver.gar_symbol_set = 2;
        settings.month_names = "JAN,FEB,MAR,APR,MAY,JUN,JUL,AUG,SEP,OCT,NOV,DEC";
        settings.symbol_level = 3;
        symbols_parse("00:12 Waypoint\n01:A Residence\n02:8 Gas Station\n20:2036 Summit\n",
                      symbols);
        symbols.level = 3;
    }
    ~GarCodec() override
    {
        receiver = {};
        gar_codec = {};
    }
    /// The present of the scripted clock, seconds since date_base.
    static constexpr std::int32_t now = 1147946400;
    scripted_platform user;
};

namespace gar_bytes {

// What most records here hold.
inline const std::string pos_bytes = raw("2A577822 5B128D06"); // 48.47355 N, 9.21243 E
inline const std::string no_value = raw("51590469");
inline const std::string metres_500 = raw("0000FA43"), metres_412 = raw("0000CE43");
inline const std::string user_subclass = zeros(6) + std::string(12, '\xFF');
inline const std::string base =
    "HUT   " + pos_bytes + zeros(4) + packed("HUT ABOVE LAKE"); ///< first 58 bytes

inline wayp_rec hut()
{
    return {.nam = "HUT",
            .kom = "HUT ABOVE LAKE",
            .pos = {578311978, 109908571},
            .dat = 361448102,
            .prox = 5,
            .symb = 1,
            .symbmode = 2,
            .alt = 412};
}

inline std::string encoded(const wayp_rec& rec, int type, bool proximity = false)
{
    std::string out;
    gar_wp_encode(rec, type, proximity, out);
    return out;
}

inline gar_wp_in decoded(std::string_view data, int type)
{
    gar_wp_in out;
    gar_wp_decode(data, type, out);
    return out;
}

} // namespace gar_bytes
} // namespace velkoro
