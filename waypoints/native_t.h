/// The native track file `.t`: one stream of track points.
/// A head and the points, little-endian; from version 203 on each point has a tag byte, and
/// sections appended later follow behind. All versions are read, the newest is written. Two slips
/// of former programs are put right while reading: a tagged section behind points without tags,
/// and points with comments in a file whose head promises points without.
/// docs/native_files.md has the tables.
#pragma once

#include "core/store.h"
#include "waypoints/native_end.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace velkoro {

inline constexpr std::string_view t_magic = "VELkoro track";
inline constexpr int t_version = 203; ///< written; anything above is refused

/// A point as the file holds it.
struct t_point {
    pos_rec pos{};
    std::int32_t zeit = 0;
    std::uint8_t flags = 0; ///< bit 0: a segment starts; above it the point class
    std::string_view kom{}; ///< in the bytes of the file
    std::int16_t alt = alt_unknown;
};

/// What t_next found.
enum class t_item {
    point,   ///< in t_source::point
    section, ///< an appended section starts; its version is in t_source::version
    end,
    damaged,
    newer
};

/// A file being decoded: head, place and the point read last. Knows nothing of the store.
struct t_source {
    std::string_view data{};
    std::size_t pos = 0;
    int file_version = 0;
    int version = 0; ///< of the points under way
    std::string_view title{};
    /// Where points with comments start in a file below version 200; npos: nowhere.
    std::size_t comments_from = std::string_view::npos;
    t_point point{};
};

/// Decodes the head. The bytes must outlive the source. `whole` when points may follow; else
/// `not_native`, `newer` or `damaged`, the last one also for a file below version 200 with a bad
/// point that cannot be put right: nothing of it can be trusted.
native_end t_open(t_source& source, std::string_view bytes);
/// Decodes the next point. After `end`, `damaged` and `newer` nothing follows.
t_item t_next(t_source& source);

/// Head and counts of a file, without the store.
struct t_summary {
    native_end end = native_end::whole;
    int version = 0;
    std::string title{};
    std::int64_t points = 0, segments = 0, sections = 0;
    std::int32_t first_time = 0, last_time = 0; ///< of the points that have one; 0 none
};
t_summary t_info(std::string_view bytes);

struct t_read_result {
    native_end end = native_end::whole;
    int version = 0;
    std::int64_t points = 0;
    bool was_empty = false; ///< the store held no points before
};
/// Reads a file behind the points of the store. A progress point of the job under way at each
/// point. Shows no text about its end: that is the caller's.
t_read_result read_t(std::string_view bytes);

struct t_write_options {
    std::int32_t first = 0, last = -1; ///< range of points; last -1: to the end
    bool section = false;              ///< the target has content: a section instead of a head
};
struct t_write_result {
    std::string bytes{};
    native_end end = native_end::whole; ///< or `broken_off`: the bytes hold what was written
    std::int64_t points = 0;
};
/// The points as the bytes of a file or of a section. The mark of the track operations on a time,
/// its sign, is cleared in the store too. A progress point of the job under way at each point.
t_write_result write_t(const t_write_options& options);

} // namespace velkoro
