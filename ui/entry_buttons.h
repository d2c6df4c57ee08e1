/// Buttons that share a menu entry, and what stands in an empty list.
#pragma once

#include "ui/binder.h"

namespace velkoro {

/// Gives every button with the property `entry` the entry's icon, state and click, and every list
/// with the property `empty` its panel. Once per window, after its menus were made.
void bind_entries(bound_window& w);
/// Connects every toggle with the property `opens` with the widget of that name in the window.
void bind_toggles(bound_window& w);

} // namespace velkoro
