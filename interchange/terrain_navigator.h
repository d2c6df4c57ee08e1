/// TerrainNavigator: waypoints (.mxf), routes (.rxf) and tracks (.txf).
/// One line a point: latitude and longitude in decimal degrees, texts in quotation marks, colours
/// as hexadecimal numbers without leading zeros, the number of a symbol. The program's own files
/// have three texts (full name, short name, comment); with two they are name and comment. A mark
/// within a text is written as an apostrophe. An empty line parts the routes of a file, which have
/// no names. No altitude, no date; no datum is named, so positions are read as WGS 84.
#pragma once

#include "interchange/export_job.h"
#include "interchange/import_job.h"

namespace velkoro {

/// Reads waypoints, and routes from a file with the extension ".rxf".
void read_terrain_navigator(import_job& in);

/// Writes waypoints, or the routes when the job's file is a route file.
void write_terrain_navigator(export_job& out);

} // namespace velkoro
