/// Display units and the menus and drop-downs of the main window that choose units, coordinate
/// format, datum, grid zone and time zones. Stored data never change with a unit.
#pragma once

#include <string>

namespace velkoro {

/// Labels of the chosen units: "km", "mi", "NM"; "km/h", "mph", "kt"; "m", "ft".
const char* dist_label();
const char* speed_label();
const char* alt_label();

/// The click of `einh` and of `einh_s`: chooses the unit and asks (746, 745) whether the other one
/// follows where the two differ.
void einh_click(int index);
void einh_s_click(int index);
void einh_alt_click(int index);
/// 0 metres, 1 kilometres, 3 the leading zero of UTM on or off.
void ei_grid_u_click(int index);

/// Fills `zone` for the chosen format (hidden where zones have no meaning), clears the held texts
/// and chooses the usual datum of the format.
void posform_click();
/// The part of posform_click that the start needs: the datum stays.
void zone_fill();
void zone_click();

/// Rule of a row of the time zone menus; the last row asks for it (text 1380) with `old` as its
/// default, and an empty answer keeps `old`.
std::string zone_menu_rule(int row, const std::string& old);
/// Zone at home (saved under the key `Time`) and zone of the list.
void Zeit_Z_click(int row);
void Zeit_LZ_click(int row);
/// Ticks the rows that the present rules belong to.
void zone_menu_checks();

/// Puts the handlers on the controls.
void units_install();

} // namespace velkoro
