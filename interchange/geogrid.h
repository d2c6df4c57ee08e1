/// GeogridViewer: overlays (.ovl, text form) and lists of coordinates (.coo, read only).
/// An overlay is an ini text of sections "[Symbol n]", each a text, a line or a figure, and ends
/// with the number of symbols. Texts are waypoints, lines are routes; a text that begins with "R-"
/// names the line behind it. Points of lines have no names: those at the place of a text are that
/// waypoint, the others get made-up names. Positions are decimal degrees on WGS 84. The binary form
/// of overlays is refused.
///
/// A list of coordinates has a head that tells the form of the angles, a line with the datum, and
/// lines "COO" with two angles, each with its direction as a German word, and a name:
///
///     Geographische Koordinaten (Grad/Min)
///     WGS84
///     COO 11°34.0734' Ost 48°07.4070' Nord ALPHA
#pragma once

#include "interchange/export_job.h"
#include "interchange/import_job.h"

namespace velkoro {

/// Reads either, told apart by the extension and by the head of a list.
void read_geogrid(import_job& in);
/// Writes an overlay.
void write_geogrid(export_job& out);

} // namespace velkoro
