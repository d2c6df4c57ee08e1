/// Decides what happens when an incoming waypoint meets a stored one: asks the user.
#pragma once

#include "core/hooks.h"

namespace velkoro {

/// Asks by a message box: Yes takes the new waypoint, No keeps the old one, Cancel ends the batch.
conflict_answer conflict_box(conflict_question& question);

/// Makes the box the one who decides.
void conflict_install();

} // namespace velkoro
