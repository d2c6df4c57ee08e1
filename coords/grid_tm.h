/// Transverse Mercator by the short series, on the ellipsoid of a datum row, and the grids that are
/// nothing but a false origin and a scale on it.
/// The series and their few coefficients are fixed; texts are compared to the last digit. Their
/// known error grows with the distance from the central meridian: below 0.3 m in the national
/// zones, up to 3 m at double the width of a UTM zone, up to 1 m forward and 5 m back at the west
/// coast of Britain.
#pragma once

#include "coords/datum.h"

namespace velkoro {

/// Plane coordinates in metres.
struct plane_rec {
    double north = 0, east = 0;
};

/// Unscaled north and east of the central meridian (degrees) and the equator.
plane_rec tm_forward(const geo_rec& geo, double meridian, const datum_rec& datum);
/// Back from unscaled north and east.
geo_rec tm_inverse(const plane_rec& plane, double meridian, const datum_rec& datum);

/// Length of the meridian from the equator to a latitude in radians, metres: as the forward and as
/// the inverse direction of a grid take it. The two differ in their last coefficient.
double tm_arc(double lat, const datum_rec& datum);
double tm_arc_inverse(double lat, const datum_rec& datum);

/// One grid of a fixed origin: degrees, degrees, factor, and metres added to east and north.
struct tm_grid {
    double meridian, latitude, scale, false_easting, false_northing;
};
inline constexpr tm_grid british_grid = {-2, 49, 0.9996, 400000, -100000};
inline constexpr tm_grid irish_grid = {-8, 53.5, 1.000035, 200000, 250000};

tm_grid user_grid(const grid_rec& grid);
plane_rec grid_forward(const geo_rec& geo, const tm_grid& grid, const datum_rec& datum);
geo_rec grid_inverse(const plane_rec& plane, const tm_grid& grid, const datum_rec& datum);

/// Letters of a square of the British or Irish grid, and the metres within it.
struct square_rec {
    char letters[3] = "";       ///< two British, one Irish; empty outside the grid
    double east = 0, north = 0; ///< metres in the square
};
square_rec british_square(const plane_rec& plane);
square_rec irish_square(const plane_rec& plane);
/// Metres that the letters stand for; false when a letter is missing or none of the grid's. Small
/// letters count as capital ones.
bool british_origin(std::string_view letters, plane_rec& origin);
bool irish_origin(std::string_view letters, plane_rec& origin);

} // namespace velkoro
