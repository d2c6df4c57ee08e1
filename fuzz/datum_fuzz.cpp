// Any text as Datum.ini: whatever the rows say, positions have texts without "nan" and "inf", and
// what is read back lies on the globe.
#include "coords/coord_text.h"
#include "core/form1.h"
#include "core/platform.h"
#include "core/reset.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string_view>

using namespace velkoro;

namespace {

constexpr std::int32_t pole = std::int32_t{1} << 30;
constexpr std::size_t most_rows = 4; // of datums and of grids that are tried

bool table_of(std::string_view text)
{
    try {
        datums = datum_parse(text);
        return true;
    } catch (const std::overflow_error&) {
        return false; // a shift beyond 16 bits, a false origin beyond 32
    }
}

void require(bool good)
{
    if (!good)
        std::abort();
}

void try_format(const pos_rec& pos, int fmt)
{
    std::string zone, east, north;
    pos_to_text(pos, zone, east, north, 0, fmt);
    for (const std::string& text : {zone, east, north})
        require(text.find_first_of("nf") == std::string::npos);
    pos_rec back{};
    text_to_pos(zone, east, north, back, fmt);
    require(back.lat >= -pole && back.lat <= pole);
    text_to_pos("org", "", "", back, fmt);
    require(back.lat >= -pole && back.lat <= pole);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    reset_all();
    coord = {};
    platform.message = [](const message_box&) -> answer { std::abort(); };
    if (!table_of({reinterpret_cast<const char*>(data), size}))
        return 0;
    require(datums.grids.size() == datums.grid_names.size());
    require(datums.wgs_datum < static_cast<int>(datums.rows.size()));
    const pos_rec places[] = {{614418500, 118111600}, {-493500000, 2083000000}, {0, 0}};
    const int formats = fmt_user + static_cast<int>(std::min(datums.grids.size(), most_rows));
    for (std::size_t row = 0; row <= std::min(datums.rows.size(), most_rows); ++row) {
        Form1.Datum.selected = static_cast<int>(row) - 1; // from "none" on
        for (int fmt = 0; fmt < formats; ++fmt)
            for (const pos_rec& pos : places)
                try_format(pos, fmt);
    }
    return 0;
}
