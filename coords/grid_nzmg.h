/// The New Zealand Map Grid: a conformal polynomial of the sixth order on an ellipsoid of its own.
/// Source: Land Information New Zealand, technical note on the New Zealand Map Grid projection (W.
/// I. Reilly, 1973). Complex numbers are pairs of 32-bit floats, which costs up to 0.2 m.
#pragma once

#include "coords/grid_tm.h"

namespace velkoro {

/// Easting and northing, false origin included.
plane_rec nzmg_forward(const geo_rec& geo);
geo_rec nzmg_inverse(const plane_rec& plane);

} // namespace velkoro
