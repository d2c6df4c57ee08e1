/// Who is wired to whom in the desktop program: every folder's install procedure, in one list.
#pragma once

namespace velkoro {

/// Puts all handlers and hooks in place. After qt_platform_install, before shell_start.
void compose();

} // namespace velkoro
