/// Mapsource text, the TAB-separated export of Garmin's MapSource; read only.
/// "Grid" tells the coordinate form, "Datum" the datum, a "Header" line the columns of the rows of
/// its kind that follow. Waypoints come first, routes name them. Dates are in the form of the
/// computer that wrote the file. Source: files written by GPSBabel and by MapSource of several
/// versions.
#pragma once

#include "interchange/import_job.h"

#include <string_view>

namespace velkoro {

/// True when the first line with content is a "Grid" line.
bool is_mapsource(std::string_view text, std::string_view extension);

/// Reads waypoints and routes. Grids other than latitude and longitude are refused.
void read_mapsource(import_job& in);

} // namespace velkoro
