/// The one road from a widget's event to a handler of a record.
#pragma once

#include <functional>

namespace velkoro {

/// Runs a handler for an action of the user and then shows what it changed. The handler is copied
/// first, since it may remove the control that it stands in. An exception that leaves it is
/// reported and ends here: it must not pass through the toolkit.
void user_action(const std::function<void()>& handler);

} // namespace velkoro
