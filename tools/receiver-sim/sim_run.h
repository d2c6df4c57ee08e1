/// The simulated receiver at work: loads its files, plays on a pseudo terminal, writes what it was
/// sent.
#pragma once

#include "tools/receiver-sim/sim_options.h"

namespace velkoro {

/// Runs until the host switches it off, the silence that the options name has passed, or a signal
/// (interrupt, terminate) comes. Prints the path of the line first. Returns the exit code.
int sim_run(const sim_options& options);

} // namespace velkoro
