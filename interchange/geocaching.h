/// Geocaching .loc files, read only: an XML list of waypoints with code, title and position.
/// Often everything stands on one line, so the file is read by its tags: within "<waypoint>" the
/// attribute "id" of "<name" is the code, its content (CDATA, or text with entities) the title, and
/// "<coord" has the attributes "lat" and "lon" in decimal degrees on WGS 84. Attributes come in any
/// order, in double or single marks. Other elements are passed over.
#pragma once

#include "interchange/import_job.h"

namespace velkoro {

void read_geocaching(import_job& in);

} // namespace velkoro
