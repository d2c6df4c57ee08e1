/// Waypoint+ text: waypoints, routes and tracks as lines of comma fields, the first of which names
/// the kind of line.
/// Positions are decimal degrees ("D"), degrees with minutes or minutes and seconds packed behind
/// the point ("DM", "DMS"), the same as fields of their own ("DMX", "DMSX"), or UTM. Dates are
/// month/day/year. There are no altitudes and no symbols. Source: the description that comes with
/// Waypoint+.
#pragma once

#include "interchange/export_job.h"
#include "interchange/import_job.h"

#include <string_view>

namespace velkoro {

/// True when the first line with content is a "Datum" line or another line of the format.
bool is_waypoint_plus(std::string_view text, std::string_view extension);

/// Reads waypoints and routes; track lines are passed over.
void read_waypoint_plus(import_job& in);

/// Writes waypoints, then routes; decimal degrees on WGS 84.
void write_waypoint_plus(export_job& out);

} // namespace velkoro
