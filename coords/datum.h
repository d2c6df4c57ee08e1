/// Geodetic datums: the table `Datum.ini`, its user grids, and the shift to and from WGS 84.
/// Every position is stored on WGS 84; a datum is three lengths that move the earth's centre, and
/// an ellipsoid. The shift runs through earth-centred coordinates at height zero (Bowring's closed
/// form back to latitude) and runs for every conversion, also for the row of WGS 84 itself. The
/// values of a row are 32-bit floats; that is good for about 0.2 m. Sources of the shipped table:
/// see docs/coordinates.md.
#pragma once

#include "core/store.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

inline constexpr double wgs_a = 6378137.0;             ///< metres
inline constexpr double wgs_b = 6356752.314243569;     ///< metres
inline constexpr double wgs_e2 = 0.006694379990644662; ///< first eccentricity squared
inline constexpr double wgs_1_e2 = 0.9933056200093553;
inline constexpr double wgs_ep2 = 0.0067394967427865425; ///< second eccentricity squared

struct datum_rec {
    std::string name{};
    float a = 6378137.0F;                ///< semi-major axis, metres
    float f = 0;                         ///< flattening
    std::int16_t dx = 0, dy = 0, dz = 0; ///< metres, added on the way to WGS 84
    float e2 = 0;                        ///< 2f - f squared
    float b = 6378137.0F;                ///< semi-minor axis, metres
    float ep2 = 0;                       ///< second eccentricity squared
    float n = 0;                         ///< third flattening
    bool operator==(const datum_rec&) const = default;
};

/// A user's transverse Mercator grid.
struct grid_rec {
    float central_meridian = 0; ///< degrees
    float origin_latitude = 0;  ///< degrees
    float scale = 1;
    std::int32_t false_easting = 0, false_northing = 0; ///< metres
    bool operator==(const grid_rec&) const = default;
};

struct datum_state {
    std::vector<datum_rec> rows{};         ///< index: that of the list `Datum`
    std::vector<std::string> grid_datum{}; ///< usual datum of each format, by coord_fmt
    std::vector<std::string> grid_names{}; ///< list names of the user grids
    std::vector<grid_rec> grids{};         ///< user grids, from coord_fmt 11 on
    std::int16_t wgs_datum = -1;           ///< last row with all values zero, -1 none
};
inline datum_state datums;

/// A row from the published differences (WGS 84 minus datum): da in metres, df plain or times
/// 10000, the shift in metres. Each derived value reads the rounded earlier ones.
datum_rec datum_make(std::string_view name, double da, double df, std::int16_t dx, std::int16_t dy,
                     std::int16_t dz);

/// The table in the text of Datum.ini. Blank lines are left out; a missing field counts as 0.
/// Throws std::overflow_error on a shift that needs more than 16 bits.
datum_state datum_parse(std::string_view text);

/// Reads DATUM.INI of the program folder into `datums` and fills the lists `Datum` and `posform`.
/// Shows text 1020 when no row is WGS 84.
void datum_read();

/// The row of that index, -1 the one chosen in `Datum`; WGS 84 where there is none.
const datum_rec& datum_at(int index);
/// Index of the first row of that name, blanks at the ends aside; -1 none.
int datum_find(std::string_view name);

/// Latitude and longitude in radians, north and east positive.
struct geo_rec {
    double lat = 0, lon = 0;
};

/// A stored position on a datum.
geo_rec wgs_to_datum(const pos_rec& pos, const datum_rec& datum);
/// A position on a datum as stored: the result has its latitude within the poles. False, and `pos`
/// untouched, when an angle is no finite number.
bool datum_to_wgs(const geo_rec& geo, const datum_rec& datum, pos_rec& pos);

} // namespace velkoro
