/// StreetAtlas 7.0: points as text, one a line: latitude, longitude, name.
/// What is written has blanks between; read are commas, blanks or both, names in quotation marks,
/// and the lines BEGIN SYMBOL and END around them are skipped, as all lines are that do not begin
/// with a number. A comma or mark in a name is written as "-". Positions are decimal degrees, south
/// and west negative, WGS 84 when read. No routes, no altitude, no date.
#pragma once

#include "interchange/export_job.h"
#include "interchange/import_job.h"

namespace velkoro {

void read_streetatlas(import_job& in);
void write_streetatlas(export_job& out);
/// True for a text that begins with BEGIN SYMBOL, BEGIN LINE or a line of a point.
bool is_streetatlas(std::string_view text, std::string_view extension);

} // namespace velkoro
