// Any texts as a coordinate of any format: what is read lies on the globe, and the texts of a place
// lead back to it. Two bytes choose format, datum and options, the rest is "zone|east|north".
#include "coords/coord_text.h"
#include "coords/distance.h"
#include "core/form1.h"
#include "core/platform.h"
#include "core/reset.h"
#include "core/settings.h"
#include "core/text_tools.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

using namespace velkoro;

namespace {

constexpr int formats = fmt_user + 3;
constexpr std::int32_t pole = std::int32_t{1} << 30;
constexpr double on_the_globe = 3.15; // radians

void require(bool good)
{
    if (!good)
        std::abort();
}

void prepare()
{
    reset_all();
    coord = {};
    datums = datum_parse("WGS 84,WGS 84,WGS 84,WGS 84,WGS 84,Potsdam,Potsdam,Potsdam,Potsdam\n"
                         "#M31,Potsdam,13.3333333,0,1,450000,-5000000\n"
                         "#South,WGS 84,173,-50,0.9996,1600000,10000000\n"
                         "#Nowhere,WGS 84,0,0,0,0,0\n"
                         "Potsdam,739.845,0.10037483,606,23,413\n"
                         "WGS 84,0,0,0,0,0\n");
    Form1.Datum.selected = datums.wgs_datum;
    Form1.posform.selected = 0;
    platform.message = [](const message_box&) -> answer { std::abort(); };
}

/// Texts that the program made itself.
void there_and_back(const pos_rec& pos, int fmt)
{
    std::string zone, east, north;
    pos_to_text(pos, zone, east, north, 0, fmt);
    for (const std::string& text : {zone, east, north})
        require(text.find_first_of("nf") == std::string::npos); // neither "nan" nor "inf"
    if (east.empty() || north.empty())
        return;
    pos_rec back{};
    const bool read = text_to_pos(zone, east, north, back, fmt);
    require(back.lat >= -pole && back.lat <= pole);
    if (fmt > fmt_utm)
        return; // far from its land a grid leads anywhere
    require(read);
    const bool wide_zone = std::abs(pos.lat) > pole / 9 * 5; // the series of UTM, and the poles
    const dist_bear off = dist_chord(back, pos);
    require(wide_zone || off.distance < (fmt == fmt_utm ? 0.007F : 0.004F));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2)
        return 0;
    prepare();
    const int fmt = data[0] % formats;
    const unsigned options = data[1];
    settings.km_grid = (options & 1U) != 0;
    settings.utm_zero = (options & 2U) != 0;
    const int datum = options & 4U ? 0 : -1;
    std::string_view rest(reinterpret_cast<const char*>(data) + 2, size - 2);
    const std::string_view zone = next_field(rest, '|'), east = next_field(rest, '|');

    for (const char* letters : {"NS", "EW"}) {
        bool good = false;
        const double angle = text_to_angle(east, letters, &good);
        require(std::isfinite(angle) && (!good || std::fabs(angle) < on_the_globe));
    }
    require(std::isfinite(grid_text_to_m(east, 7)));

    const pos_rec untouched{pole, 12345};
    pos_rec pos = untouched;
    const bool read = text_to_pos(zone, east, rest, pos, fmt, datum);
    require(pos.lat >= -pole && pos.lat <= pole);
    if (read)
        there_and_back(pos, fmt);
    else
        there_and_back(pos, fmt_utm);

    // The same texts held by the editor.
    coord.zone_halt = true;
    coord.zone_held = {std::string(zone), std::string(rest), std::string(east)};
    std::string z, e, n;
    pos_to_text(pos, z, e, n, 0, fmt);
    coord.zone_halt = false;
    pos_to_text(pos, z, e, n, 1, fmt);
    return 0;
}
