/// The Swiss grid: oblique conformal cylinder on the ellipsoid of a datum row, centre Bern.
/// Source: Federal Office of Topography, "Formulas and constants for the calculation of the Swiss
/// conformal cylindrical projection". Back from the grid the latitude is found by rounds that end
/// at 3e-07 radians.
#pragma once

#include "coords/grid_tm.h"

namespace velkoro {

/// North and east of Bern in metres, without the 200000 and 600000 of the grid.
plane_rec swiss_forward(const geo_rec& geo, const datum_rec& datum);
geo_rec swiss_inverse(const plane_rec& plane, const datum_rec& datum);

} // namespace velkoro
