/// OziExplorer: waypoint files (.wpt) and route files (.rte).
/// Lines of comma fields behind four head lines, the second of which names the datum. There is no
/// quoting: the character 209 stands for a comma in a text. Dates are days since 30 December 1899
/// with a fraction, altitudes feet, -777 for an unknown one. Symbols are numbers of a table of the
/// other program's own, so that they are neither taken over nor written. Source: the description of
/// its file formats that the maker of OziExplorer publishes; checked against GPSBabel.
#pragma once

#include "interchange/export_job.h"
#include "interchange/import_job.h"

#include <string_view>

namespace velkoro {

/// True for waypoint and route files of any version: by the first line.
bool is_ozi(std::string_view text, std::string_view extension);

/// Reads both kinds. Missing fields at the end of a line are unknown; a point needs its position.
void read_ozi(import_job& in);

/// Writes waypoints or, to a route file, routes; both on WGS 84, version 1.0.
void write_ozi(export_job& out);

} // namespace velkoro
