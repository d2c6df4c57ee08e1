/// Failures that nobody foresaw: every procedure that can fail is its own function-try-block and
/// reports under its own name.
#pragma once

#include <string>

namespace velkoro {

/// The text of the exception in flight; call it from a catch block only.
std::string current_exception_text();

/// Reports the exception in flight as "<its text> in <name>", in a box and in the open log.
/// The name is an identifier and so UTF-8. Call it from a catch block only. Never throws: a failing
/// report is not reported.
void trap(const char* name) noexcept;

/// Thrown where a caller's cancel ends a batch from deep inside (the conflict window's Cancel).
struct batch_cancelled {};

} // namespace velkoro
