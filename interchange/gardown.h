/// Gardown (.gd): fixed-column text with waypoints, routes and tracks.
/// The first letters of a line are its kind: "D" datum, "W" waypoint, "R" route, "WR" point of a
/// route, "E" end of a route, "T" track point. Positions are degrees and minutes, dates those of a
/// C program ("Fri May 02 08:15:30 2003"). There are no altitudes and no symbols. Source: the
/// columns as the published sources of two converters have them.
#pragma once

#include "interchange/export_job.h"
#include "interchange/import_job.h"

namespace velkoro {

/// Reads waypoints and routes; track lines are passed over. Rows may be shifted against their
/// columns, the weekday may be "0" or missing, the comment may begin with one "@".
void read_gardown(import_job& in);

/// Writes waypoints, then routes, on WGS 84. Names take six columns: a longer one is cut, and gets
/// a number where that makes two alike.
void write_gardown(export_job& out);

} // namespace velkoro
