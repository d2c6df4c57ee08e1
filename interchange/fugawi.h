/// Fugawi: waypoints as text with commas.
/// The user of that program chooses the columns, so files differ: name, latitude, longitude, date
/// (what is written here); name, comment, latitude, longitude, more; or name, comment, description,
/// latitude, longitude, altitude in metres, date, time. Lines that begin with "#" are remarks; one
/// of them may name the datum. Positions are decimal degrees, south and west negative. No comma,
/// nor the mark of a remark, may stand in a name: "-" is written for them.
#pragma once

#include "interchange/export_job.h"
#include "interchange/import_job.h"

namespace velkoro {

void read_fugawi(import_job& in);
void write_fugawi(export_job& out);
/// True for a text that begins with a remark.
bool is_fugawi(std::string_view text, std::string_view extension);

} // namespace velkoro
