/// Descriptors watched without a window toolkit: the command line's side of platform.watch, and
/// that of tests.
#pragma once

namespace velkoro {

/// Fills platform.watch and platform.unwatch and forgets what was watched before.
void poll_watch_install();

/// Waits up to `ms` milliseconds until a watched descriptor has something to read, and runs the
/// procedures of all that have. For platform.pump.
void poll_serve(int ms);

} // namespace velkoro
