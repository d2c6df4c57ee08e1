#include "core/trap.h"

#include "core/code_page.h"
#include "core/log.h"
#include "core/platform.h"

#include <exception>

namespace velkoro {

std::string current_exception_text()
try {
    throw;
} catch (const std::exception& e) {
    return e.what();
} catch (const batch_cancelled&) {
    return "Cancelled";
} catch (...) {
    return "Unknown error";
}

void trap(const char* name) noexcept
try {
    const std::string line = current_exception_text() + " in " + from_utf8(name);
    log_line(line);
    platform.message({.text = line, .icon = icon::critical});
} catch (...) {
    // Nothing is left to tell it to.
}

} // namespace velkoro
