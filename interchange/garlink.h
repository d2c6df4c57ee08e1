/// Garlink (.swp): waypoints as blank-separated fields, with the datum in the head line.
/// A line is name, latitude, longitude, "0", date and time (year.month.day, no seconds), and "@"
/// with the comment. Neither names nor positions hold blanks. There are no altitudes, symbols and
/// routes. No description is public: the layout follows from the fixed pieces of the lines.
#pragma once

#include "interchange/export_job.h"
#include "interchange/import_job.h"

namespace velkoro {

/// Reads waypoints; positions in any degree form with letters in front. Without the head
/// "Lat/Lon" the file is refused.
void read_garlink(import_job& in);

/// Writes waypoints on WGS 84 in the chosen degree form; a blank in a name becomes "-".
void write_garlink(export_job& out);

} // namespace velkoro
