// Decoding of track files.
#include "waypoints/native_t.h"

#include "core/byte_io.h"

#include <cstdlib>
#include <vector>

namespace velkoro {
namespace {

constexpr std::size_t none = std::string_view::npos;
constexpr std::size_t plain_size = 13; // position, time, flags: all of a point below version 200
constexpr std::int64_t most_lat = std::int64_t{1} << 30;
constexpr std::uint8_t most_flags = 15;
// "A", 203 as two bytes, and "T", read as a latitude; no valid latitude reaches it.
constexpr std::int32_t section_as_lat = 0x5400CB41;
// Comments in files that need recovery are a receiver's or typed by hand; a length past the end of
// the file that is larger than this is no length.
constexpr int longest_old_comment = 255;

std::uint32_t u32_at(std::string_view data, std::size_t at)
{
    const auto byte = [&](std::size_t i) {
        return static_cast<std::uint32_t>(static_cast<unsigned char>(data[at + i]));
    };
    return byte(0) | byte(1) << 8 | byte(2) << 16 | byte(3) << 24;
}

std::int32_t i32_at(std::string_view data, std::size_t at)
{
    return static_cast<std::int32_t>(u32_at(data, at));
}

std::int16_t i16_at(std::string_view data, std::size_t at)
{
    return static_cast<std::int16_t>(static_cast<unsigned char>(data[at]) |
                                     static_cast<unsigned char>(data[at + 1]) << 8);
}

/// Position, time and flags; false when they are none. The bytes are there.
bool read_plain(std::string_view data, std::size_t at, t_point& p)
{
    p.pos.lat = i32_at(data, at);
    p.pos.lon = i32_at(data, at + 4);
    p.zeit = i32_at(data, at + 8);
    p.flags = static_cast<std::uint8_t>(data[at + 12]);
    return p.flags <= most_flags && p.zeit >= 0 &&
           std::abs(static_cast<std::int64_t>(p.pos.lat)) <= most_lat;
}

/// True where points without tags end and an appended section begins.
bool section_at(std::string_view data, std::size_t at)
{
    if (data[at] != 'A')
        return false;
    if (data.size() - at >= 4 && i32_at(data, at) >= section_as_lat)
        return true;
    // A section without points ends the file or has the next one right behind it.
    return data.substr(at, 3) == std::string_view("A\xCB\0", 3) &&
           (data.size() - at == 3 || data[at + 3] == 'A');
}

/// The number of sane points of fixed size from a place on up to the first bad one; -1 when there
/// is no bad one ahead of the end of the file or of a section.
std::int64_t points_to_bad_one(std::string_view data, std::size_t at)
{
    t_point p;
    for (std::int64_t n = 0; data.size() - at >= plain_size; at += plain_size, ++n) {
        if (section_at(data, at))
            return -1;
        if (!read_plain(data, at, p))
            return n;
    }
    return -1;
}

enum class walk { clean, cut, bad };

/// Tries the bytes from a place on as points with comments. Places that were tried before are bad:
/// the walk from there has its result already.
walk walk_comments(std::string_view data, std::size_t at, std::vector<bool>& tried)
{
    t_point p;
    while (at < data.size()) {
        if (tried[at])
            return walk::bad;
        tried[at] = true;
        if (section_at(data, at))
            return walk::clean;
        if (data.size() - at < plain_size + 2)
            return walk::cut;
        const int length = i16_at(data, at + plain_size);
        if (!read_plain(data, at, p) || length < 0)
            return walk::bad;
        at += plain_size + 2;
        if (static_cast<std::size_t>(length) > data.size() - at)
            return length <= longest_old_comment ? walk::cut : walk::bad;
        at += static_cast<std::size_t>(length);
    }
    return walk::clean;
}

/// Where points with comments start in a file below version 200 whose point number `bad` is none:
/// the last place at most one point back from the last good one from which all the rest is sane;
/// failing that, from which it is sane up to a cut. `none`: there is no such place.
std::size_t find_comments(std::string_view data, std::size_t start, std::int64_t bad)
{
    std::vector<bool> tried(data.size(), false);
    std::size_t first_cut = none;
    for (std::int64_t limit = bad - 1; limit > 0; --limit) {
        const std::size_t at = start + static_cast<std::size_t>(limit) * plain_size;
        const walk result = walk_comments(data, at, tried);
        if (result == walk::clean)
            return at;
        if (result == walk::cut && first_cut == none)
            first_cut = at;
    }
    return first_cut;
}

} // namespace

native_end t_open(t_source& source, std::string_view bytes)
{
    source = {};
    if (!bytes.starts_with(t_magic))
        return native_end::not_native;
    byte_reader in(bytes);
    in.skip(t_magic.size());
    source.file_version = source.version = in.i16();
    if (source.version > t_version)
        return native_end::newer;
    const std::string_view title = in.lstr();
    if (!in.ok())
        return native_end::damaged;
    if (source.version < 200) {
        const std::int64_t bad = points_to_bad_one(bytes, in.position());
        if (bad >= 0) {
            source.comments_from = find_comments(bytes, in.position(), bad);
            if (source.comments_from == none)
                return native_end::damaged;
        }
    }
    source.data = bytes;
    source.pos = in.position();
    source.title = title;
    return native_end::whole;
}

t_item t_next(t_source& source)
{
    const std::string_view data = source.data;
    std::size_t at = source.pos;
    if (at == data.size())
        return t_item::end;
    if (source.version < 203 && section_at(data, at))
        source.version = 203;
    if (source.version >= 203) {
        if (data[at] == 'A') {
            if (data.size() - at < 3)
                return t_item::damaged;
            source.version = i16_at(data, at + 1);
            source.pos = at + 3;
            return source.version > t_version ? t_item::newer : t_item::section;
        }
        if (data[at] != 'T')
            return t_item::damaged;
        ++at;
    } else if (at == source.comments_from) {
        source.version = 200;
    }
    const bool has_comment = source.version >= 200;
    const bool has_alt = source.version >= 203;
    const std::size_t size = plain_size + (has_comment ? 2 : 0) + (has_alt ? 2 : 0);
    t_point& p = source.point;
    if (data.size() - at < size || !read_plain(data, at, p))
        return t_item::damaged;
    std::size_t length = 0;
    if (has_comment) {
        const int n = i16_at(data, at + plain_size);
        if (n < 0 || static_cast<std::size_t>(n) > data.size() - at - size)
            return t_item::damaged;
        length = static_cast<std::size_t>(n);
    }
    p.kom = data.substr(at + plain_size + (has_comment ? 2 : 0), length);
    at += size + length;
    p.alt = has_alt ? i16_at(data, at - 2) : alt_unknown;
    if (p.zeit == 2147483647) // what older programs wrote for an unknown time
        p.zeit = 0;
    source.pos = at;
    return t_item::point;
}

t_summary t_info(std::string_view bytes)
{
    t_summary sum;
    t_source source;
    sum.end = t_open(source, bytes);
    sum.version = source.file_version;
    sum.title = source.title;
    bool starts = true;
    while (sum.end == native_end::whole) {
        switch (t_next(source)) {
        case t_item::point:
            ++sum.points;
            if (starts || (source.point.flags & 1) != 0)
                ++sum.segments;
            starts = false;
            if (source.point.zeit > 0) {
                sum.first_time = sum.first_time == 0 ? source.point.zeit : sum.first_time;
                sum.last_time = source.point.zeit;
            }
            break;
        case t_item::section:
            ++sum.sections;
            starts = true;
            break;
        case t_item::end: return sum;
        case t_item::damaged: sum.end = native_end::damaged; break;
        case t_item::newer: sum.end = native_end::newer; break;
        }
    }
    return sum;
}

} // namespace velkoro
