/// CORPSCON user-defined text: degrees (.geo) or UTM in metres (.utm).
/// Lines beginning with ";" or "##" are remarks and heads. Degrees: name, latitude, longitude, each
/// with its hemisphere letter, since older versions take numbers without a letter as west. UTM:
/// name, east, north; a line with "UTM Zone", a number and a band letter goes ahead and holds until
/// the next one. A comma or the mark of a remark in a name is written as "-". No comment, altitude
/// or date; the datum of what is written stands in a remark.
#pragma once

#include "interchange/export_job.h"
#include "interchange/import_job.h"

namespace velkoro {

void read_corpscon(import_job& in);
/// Writes UTM when the job's extension is ".utm".
void write_corpscon(export_job& out);

} // namespace velkoro
