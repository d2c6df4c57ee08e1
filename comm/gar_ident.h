/// Who is at the other end of the line: identification of the receiver, which every transfer begins
/// with.
#pragma once

#include <string>

namespace velkoro {

struct gar_ident_state {
    std::string told{};      ///< the receiver's whole description, "" none; also of one whose
                             ///< protocols are unknown
    bool waiting = false;    ///< the wait cursor is on
    bool end_wanted = false; ///< a table that nothing works without is missing
};
inline gar_ident_state gar_ident_run;

/// Asks the receiver who it is and fills receiver.gar_proto and the abilities: from its own
/// protocol array, else from Garmin.ini. Returns its name, with the words on its software when
/// `full_name`; empty without an answer, without a port (text 1000), and when its protocols are
/// unknown (text 1550). A missing Garmin.ini (text 1010) ends the program. Warns (text 2037) when
/// the names of the store are longer than it can take. A Magellan receiver (gar_wp_format above 0)
/// only tells its name.
std::string garmin_ident(bool full_name);

/// The wait cursor that an identification with an unknown command protocol leaves on goes when the
/// port is put away.
void gar_ident_done();

/// Ends the program when garmin_ident wants it to, as soon as no job is under way.
void gar_ident_install();

} // namespace velkoro
