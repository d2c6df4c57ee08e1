/// Zones and letters of UTM and MGRS, zones of Gauß-Krüger.
/// Source of the letters and of the zones of Norway and Svalbard: NGA.SIG.0012 (The Universal Grids
/// and the Transverse Mercator and Polar Stereographic Map Projections). The polar grids are not
/// part of it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velkoro {

inline constexpr double utm_scale = 0.9996;
inline constexpr double utm_false_easting = 500000, utm_false_northing = 10000000; ///< metres

/// Central meridian in degrees of the zone that a place belongs to; degrees in.
double utm_meridian(double lon, double lat);
int utm_zone_of(double meridian);
inline double utm_zone_meridian(int zone)
{
    return 6.0 * zone - 183;
}
/// Number at the front of a zone text: its first two characters.
int utm_zone_number(std::string_view zone_text);
/// Band letter of a latitude in degrees, "?" beyond 80 degrees south and 88 degrees north.
char utm_band(double lat);
/// True when the third character is a band letter of the south.
bool utm_south(std::string_view zone_text);

/// Letters of column and row of the 100 km square of an easting and a northing (metres, the false
/// easting included, the northing not negative); false when there is no column letter. The row
/// letter may stand alone where a chosen zone lies far off.
bool mgrs_letters(double easting, double northing, int zone, std::string& zone_text);
/// Column and row, in units of 100 km, that the letters of a zone text ("32UMV", upper case) stand
/// for; the row counts from the equator and is negative in the south. 0 without a fourth character.
int mgrs_col(std::string_view zone_text);
int mgrs_row(std::string_view zone_text);

/// Central meridian (0 to 15 degrees) of the Gauß-Krüger zone of a longitude in degrees.
double gk_meridian(double lon);

} // namespace velkoro
