/// `selrou`, the window that chooses routes from a list.
/// It serves whoever asks for routes: sending them to the receiver, and commands that bring their
/// own caption. What a row says is its number, its name and what it runs through.
#pragma once

#include "core/window.h"

#include <string>
#include <vector>

namespace velkoro {

struct selrou_window {
    window form{"selrou", "Welche Routen?", "8144"};
    control routen_m{form, kind::list, "routen_m", {.tag = "0 8146"}};
    control com{form, kind::label, "com", {.tag = "0 8149"}}; ///< of the current route
    control OK{form, kind::button, "OK", {.caption = "OK", .tag = "7302 8145"}};
    selrou_window();
};
extern selrou_window selrou;

struct selrou_state {
    int sort_column = -1; ///< the list keeps its order from one opening to the next; -1 by number
    bool sort_down = false;
    int title = 0; ///< text number of the caption, 0 its own
    bool accepted = false;
};
inline selrou_state selrou_run;

/// Opens the window under the caption of that text number (0: its own). The store indexes of the
/// marked routes in the order of the list; nothing when it was closed without OK.
std::vector<int> selrou_open(int title = 0);

/// Asks for routes and sends them to the receiver.
void selrou_send();

} // namespace velkoro
