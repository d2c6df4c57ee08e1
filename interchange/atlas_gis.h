/// Atlas GIS boundary files (.bna): records of a head line with names in quotation marks and a
/// count, then that many coordinates, longitude first. A count of 1 is a point, a negative one an
/// open line, a positive one from 3 on a closed polygon, 2 a circle or ellipse by its centre and
/// radii. Points become waypoints, lines and polygons routes with points of made-up names. No
/// datum is named (WGS 84 when read), no altitude, no date. A mark within a text is written as an
/// apostrophe.
#pragma once

#include "interchange/export_job.h"
#include "interchange/import_job.h"

namespace velkoro {

void read_atlas_gis(import_job& in);
void write_atlas_gis(export_job& out);

} // namespace velkoro
