/// How the reading or writing of a native file ended, for waypoint and track files alike.
#pragma once

namespace velkoro {

enum class native_end {
    whole,      ///< to the end of the file
    not_native, ///< the first bytes are not those of the kind
    newer,      ///< the file, or a section of it, is of a version that does not exist yet
    damaged,    ///< a cut, a bad point or an unknown record
    broken_off, ///< by the user's Cancel
    declined,   ///< the user did not want the section that follows
    full        ///< the store takes no more records
};

} // namespace velkoro
