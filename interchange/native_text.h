/// The program's own text format, "VELkoro Text": waypoints and routes as a table that people read,
/// spreadsheets open, and this program reads back without loss.
///
///     Waypoints Alps;hddd°mm.mmm';WGS 84
///     Name      ;Latitude;Longitude;Alt m;Symbol;Time    dd.mm.yyyy hh:nn:ss;Prox m;Comment
///     ZUGSP     ;N 47°25.268';E010°59.112';2962;Summit;02.05.2003 08:15:30;;@Zugspitze, west
///     GARMI     ;N 47°29.520';E011°05.700';;Waypoint;;
///     <end>
///     Route 01 TOUR;2
///     Name      ;Bearing;Distance km;   hh:mm;km/h;Corr;Comment
///     ZUGSP     ;;;;;
///     GARMI     ;044°;11.4;    2:51;4;-2;@by train
///     Summ      ;;11.4;    2:51
///     Direct    ;046°;11.4
///     <end>
///
/// Fields are separated by a semicolon, a comma or a TAB, whichever stands in the line. A field
/// that holds the separator stands in quotation marks; so does a name that would be taken for one
/// of the words that begin other lines. A field that begins with "@" is the last one: the comment,
/// or the instruction at a route point, as it is up to the end of the line. In grid formats a line
/// "Zone 32U" goes ahead of the positions of that zone, and a place that the grid does not reach is
/// given in degrees. Routes name their points by their keys.
#pragma once

#include "interchange/export_job.h"
#include "interchange/import_job.h"

#include <string>
#include <string_view>

namespace velkoro {

/// The words that begin lines of their own, and headings that the reader looks for.
inline constexpr std::string_view native_waypoints = "Waypoints", native_zone = "Zone",
                                  native_route = "Route", native_name = "Name", native_sum = "Summ",
                                  native_direct = "Direct", native_end_line = "<end>";
inline constexpr std::string_view native_time = "Time    "; ///< the picture of times follows
/// The name of decimal degrees with a sign in place of a letter, on the first line.
std::string native_signed_degrees();

/// Reads waypoints and routes. Without a first line "Waypoints" the coordinate format and the datum
/// of the list apply; without a line of headings the order of columns is the one above.
void read_native_text(import_job& in);

/// Writes the selected waypoints, then the routes with their legs.
void write_native_text(export_job& out);

} // namespace velkoro
