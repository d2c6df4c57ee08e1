/// PCX5: the fixed-column text of Garmin's own program for DOS. Waypoints (.wpt), waypoints with
/// proximity distances (.prx), routes (.rte), and .grm, which is read by its lines.
/// The first letter of a line is its kind. "U" tells the coordinate form, "M" the datum, and a
/// column head ("H  IDNT ...") where the fields of the rows stand: programs differ in the width of
/// names and positions. Altitudes are metres, -9999 for an unknown one; 31-DEC-89 00:00:00 is no
/// date. Source: the columns as the published sources of other readers have them.
#pragma once

#include "interchange/export_job.h"
#include "interchange/import_job.h"

#include <string_view>

namespace velkoro {

/// True when the file begins with an "H" line of the format.
bool is_pcx5(std::string_view text, std::string_view extension);

/// Reads all four kinds. Rows that are shifted against the column head, because the position is a
/// digit or two short, are put right. Coordinate systems other than latitude and longitude are
/// refused.
void read_pcx5(import_job& in);

/// Writes waypoints or, to a route file, routes, on WGS 84, in the chosen degree form. The name
/// column is as wide as the longest name, at least 6. Descriptions are cut to 40 characters.
void write_pcx5(export_job& out);

} // namespace velkoro
