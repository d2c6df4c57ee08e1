/// Lambert's conformal conic projection with two standard parallels, and the four French zones.
/// Source: J. P. Snyder, Map Projections, A Working Manual (USGS 1395), equations 15-1 to 15-11;
/// zones: IGN, NTF (Paris). Map projections use the same cone with parallels of their own.
#pragma once

#include "coords/grid_tm.h"

namespace velkoro {

/// A cone: what depends on the parallels and the ellipsoid alone.
struct lambert_rec {
    double lat1 = 0, lat2 = 0, lat0 = 0; ///< degrees: the two parallels, the origin
    float a = 0, e2 = 0;                 ///< of the row it was made for
    double n = 0, a_f = 0, rho0 = 0, e = 0;
};

/// The cone of two parallels and an origin in degrees. Writes "lambert error" to the log when the
/// parallels give none.
lambert_rec lambert_set(double lat1, double lat2, double lat0, const datum_rec& datum);
/// Metres north and east of the origin; `lon0` in radians.
plane_rec lambert_forward(const geo_rec& geo, double lon0, const lambert_rec& cone);
geo_rec lambert_inverse(const plane_rec& plane, double lon0, const lambert_rec& cone);

/// The French zone, 1 to 4, of a place on the datum.
int lambert_zone(const geo_rec& geo);
/// Easting and northing in a French zone, false origin included; zones outside 1 to 4 count as 2.
plane_rec lambert_zone_forward(const geo_rec& geo, int zone, const datum_rec& datum);
geo_rec lambert_zone_inverse(const plane_rec& plane, int zone, const datum_rec& datum);

} // namespace velkoro
