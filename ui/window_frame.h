/// The frame of a bound window: title, size and place, modality, the close request, files dropped
/// on it, and the delay of a job's window.
#pragma once

#include "ui/binder.h"

namespace velkoro {

/// Watches the window's events: close requests, moves, drops. Once per window.
void watch_frame(bound_window& w);
/// Pushes title, modified mark and geometry; hides the window when its record is closed, and ends
/// a delay that is over.
void push_frame(bound_window& w);
/// Shows, hides or brings forward by `shown`. A window with a delay waits: meanwhile the pointer
/// says so and the user's input is dropped.
void show_frame(bound_window& w);
/// Shows a waiting window now.
void end_delay(bound_window& w);
/// Forgets the delay without showing.
void drop_delay(bound_window& w);

} // namespace velkoro
