/// The native waypoint file `.wp`: waypoints, routes and the presentation of the list.
/// A head and a stream of tagged records, little-endian, without index or checksum; sections
/// appended later follow behind. All versions are read, the newest is written. Reading and writing
/// work on byte strings, so that the window, the command line, tests and fuzzers share them.
/// docs/native_files.md has the tables.
#pragma once

#include "core/byte_io.h"
#include "core/store.h"
#include "waypoints/native_end.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

inline constexpr std::string_view wp_magic = "VELkoro waypoints";
inline constexpr int wp_version = 204; ///< written; anything above is refused

/// What stands ahead of the records.
struct wp_header {
    int version = 0;
    /// Captions of the chosen entries, from version 203 on; not there before.
    std::optional<std::string> datum{}, posform{};
    /// Their indexes in files below 203, the datum's corrected for entries that were added later.
    int datum_index = -1, posform_index = -1;
    std::optional<std::string> zone{}; ///< time zone rule of the list, from version 111 on
    int sort = -1;                     ///< entry of `sort`; -1 below version 111
    std::string refp_name{};
    pos_rec refp_pos{};
    std::int32_t scale = 0;
    std::string title{};
    bool operator==(const wp_header&) const = default;
};

/// What wp_next found.
enum class wp_item {
    waypoint, ///< in wp_source::wp
    route,    ///< in wp_source::route
    append,   ///< an appended section starts; its version is in wp_source::version
    reconcile,
    end,
    damaged,
    newer
};

/// A file being decoded: the head and the record read last. Knows nothing of the store.
struct wp_source {
    byte_reader in{{}};
    wp_header head{};
    int version = 0; ///< of the section under way
    wayp_rec wp{};
    route_rec route{};
};

/// Decodes the head. The bytes must outlive the source. `whole` when records may follow; else
/// `not_native`, `newer` or `damaged`.
native_end wp_open(wp_source& source, std::string_view bytes);
/// Decodes the next record. After `end`, `damaged` and `newer` nothing follows.
wp_item wp_next(wp_source& source);

/// Head and counts of a file, without the store.
struct wp_summary {
    native_end end = native_end::whole;
    wp_header head{};
    int waypoints = 0, routes = 0;
    int append_sections = 0, reconcile_sections = 0;
};
wp_summary wp_info(std::string_view bytes);

struct wp_read_result {
    native_end end = native_end::whole;
    int version = 0;
    int waypoints = 0, routes = 0; ///< records read, whatever became of them
    bool was_empty = false;        ///< the store held no waypoints before
    std::string report{};          ///< of the batch, for the result window; "" all were new
};
/// Reads a file into the store, within one batch: records are compared with what the store held
/// before, never with each other. Adopts position format, datum, time zone and scale; order and
/// reference waypoint only into an empty store. Asks before each further section. A progress
/// point of the job under way at each record. Shows no text about its end: that is the caller's.
wp_read_result read_wp(std::string_view bytes);

struct wp_write_options {
    /// "W" all waypoints, "WM" marked ones, "R" all routes with their waypoints, "RM" chosen ones,
    /// "A" append, "U" reconcile (waypoints only); tested as parts of the text.
    std::string flags = "WR";
    std::vector<int> routes{}; ///< store indexes of the chosen routes, for "RM"
    bool section = false;      ///< the target has content: a section instead of a head
};
struct wp_write_result {
    std::string bytes{};
    native_end end = native_end::whole; ///< or `broken_off`: the bytes hold what was written
    int waypoints = 0, routes = 0;
};
/// The store, or what the flags say of it, as the bytes of a file or of a section. Waypoints stand
/// in the order of the list. A progress point of the job under way at each record.
wp_write_result write_wp(const wp_write_options& options);

} // namespace velkoro
