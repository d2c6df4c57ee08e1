/// The about window: what the program is, and the picture whose click starts the diagnostic log.
#pragma once

#include "core/window.h"

namespace velkoro {

struct info_window {
    window form{"info", "Info", "7911"};
    control Bild{form, kind::picture, "Bild", {.tag = "0 7912"}};     ///< a click opens the log
    control anz{form, kind::label, "anz", {.tag = "0 7913"}};         ///< name, version, licence
    control log_anz{form, kind::label, "log_anz", {.tag = "0 7914"}}; ///< whether the log is open
    control OK{form, kind::button, "OK", {.caption = "OK", .tag = "7302 7915"}};
    info_window();
};
extern info_window info;

} // namespace velkoro
