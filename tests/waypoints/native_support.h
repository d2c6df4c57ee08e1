/// What the tests of the native files share: drop-downs with entries, files on disk, a dump of the
/// stores as text.
#pragma once

#include "core/form1.h"
#include "tests/support/scripted_platform.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

/// A scripted user before a main window with filled drop-downs, long names allowed, numbered texts
/// in plain form, and an empty program folder of its own.
struct native_fixture {
    scripted_platform user{};
    std::string folder{}; ///< ends in "/"

    native_fixture();
    ~native_fixture();
    native_fixture(const native_fixture&) = delete;
    native_fixture& operator=(const native_fixture&) = delete;
};

/// The next progress point of a job pumps events.
void make_progress_due();

/// Names of the golden files with that extension in tests/golden/<folder>, sorted.
std::vector<std::string> golden_files(const std::string& folder, const std::string& extension);
std::string golden_bytes(const std::string& folder, const std::string& name);
/// Compares with the file, byte by byte; with VELKORO_GOLDEN=write it writes the file instead.
void expect_golden(const std::string& folder, const std::string& name, std::string_view actual);

/// What a waypoint file changes, as UTF-8 text: presentation, records, boxes shown.
std::string dump_waypoints(const scripted_platform& user);
/// What a track file changes.
std::string dump_track(const scripted_platform& user);

} // namespace velkoro
