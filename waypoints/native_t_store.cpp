// Track files into the store and back.
#include "core/byte_io.h"
#include "core/hooks.h"
#include "core/job.h"
#include "core/texts.h"
#include "waypoints/native_t.h"
#include "waypoints/native_title.h"

#include <algorithm>
#include <cstring>

namespace velkoro {
namespace {

constexpr std::size_t head_of_point = 16; // tag, position, time, flags, length of the comment
constexpr std::size_t least_point = head_of_point + 2;
constexpr std::int16_t most_art = 7; // a reader takes larger flags for damage
constexpr std::int32_t most_lat = 1 << 30;
constexpr std::size_t longest_comment = 32767;

bool progress(double fraction, int number, std::int64_t points)
{
    op_progress(fraction);
    op.anz.caption = text(number, points);
    return op_pump();
}

trackp_rec stored_point(const t_point& in, bool starts_segment)
{
    trackp_rec p;
    p.pos = in.pos;
    p.zeit = in.zeit;
    p.kom = in.kom;
    p.alt = in.alt;
    p.neu = static_cast<std::int16_t>(starts_segment || (in.flags & 1) != 0 ? -1 : 0);
    p.art = static_cast<std::int16_t>(in.flags >> 1);
    if (starts_segment && p.art == 0)
        p.art = 1;
    return p;
}

native_end read_points(t_source& source, t_read_result& result)
{
    bool starts_segment = true;
    while (true) {
        switch (t_next(source)) {
        case t_item::point:
            track_append(stored_point(source.point, starts_segment));
            starts_segment = false;
            ++result.points;
            break;
        case t_item::section: starts_segment = true; break;
        case t_item::end: return native_end::whole;
        case t_item::damaged: return native_end::damaged;
        case t_item::newer: return native_end::newer;
        }
        if (op_due() &&
            !progress(static_cast<double>(source.pos) / static_cast<double>(source.data.size()),
                      2410, result.points))
            return native_end::broken_off;
    }
}

template <class T> char* put(char* to, T value)
{
    auto v = static_cast<std::make_unsigned_t<T>>(value);
    for (std::size_t i = 0; i < sizeof(T); ++i)
        *to++ = static_cast<char>(static_cast<std::uint64_t>(v) >> (8 * i) & 0xFF);
    return to;
}

/// The point behind `out`. A value that a reader would take for damage, and with it lose all
/// points behind, is brought into its range.
void put_point(std::string& out, const trackp_rec& p)
{
    const std::string_view kom = p.kom.view().substr(0, longest_comment);
    char b[head_of_point];
    char* to = put(b, 'T');
    to = put(to, std::clamp(p.pos.lat, -most_lat, most_lat));
    to = put(to, p.pos.lon);
    to = put(to, p.zeit);
    const int art = std::clamp<std::int16_t>(p.art, 0, most_art);
    to = put(to, static_cast<char>(2 * art + (p.neu != 0 ? 1 : 0)));
    put(to, static_cast<std::int16_t>(kom.size()));
    out.append(b, head_of_point);
    out.append(kom);
    char alt[2];
    put(alt, p.alt);
    out.append(alt, 2);
}

} // namespace

t_read_result read_t(std::string_view bytes)
{
    t_read_result result;
    t_source source;
    result.end = t_open(source, bytes);
    result.version = source.file_version;
    if (result.end != native_end::whole)
        return result;
    result.was_empty = store.trk_top < 0;
    const bool was_dirty = store.trk_dirty;
    store.trk_title = joined_title(store.trk_title, source.title, result.was_empty);
    // Room for all that the file can hold, at most two bytes of memory for one of the file: no
    // copying of a growing array in between.
    const std::size_t rest = source.data.size() - source.pos;
    store.trk.reserve(static_cast<std::size_t>(store.trk_top + 1) +
                      rest / (source.version >= 203 ? least_point : 13) + 1000);
    result.end = read_points(source, result);
    store.trk_dirty = result.was_empty ? was_dirty : true;
    hooks.map_changed();
    return result;
}

t_write_result write_t(const t_write_options& options)
{
    t_write_result result;
    byte_writer head;
    if (options.section) {
        head.u8('A');
        head.i16(t_version);
    } else {
        head.fixed(t_magic, t_magic.size());
        head.i16(t_version);
        head.lstr(store.trk_title);
    }
    std::string& out = result.bytes = std::move(head.out);
    const std::int32_t first = std::max(options.first, 0);
    const auto last = [&] {
        return options.last < 0 ? store.trk_top : std::min(options.last, store.trk_top);
    };
    const std::int64_t all = std::max<std::int64_t>(0, std::int64_t{last()} - first + 1);
    out.reserve(out.size() + static_cast<std::size_t>(all) * (least_point + 4));
    // The progress point serves events: the range is looked at afresh.
    for (std::int32_t i = first; i <= last(); ++i) {
        trackp_rec& p = store.trk[static_cast<std::size_t>(i)];
        p.zeit &= 0x7FFFFFFF;
        put_point(out, p);
        ++result.points;
        if (op_due() && !progress(static_cast<double>(result.points) /
                                      static_cast<double>(std::max<std::int64_t>(all, 1)),
                                  2490, result.points)) {
            result.end = native_end::broken_off;
            break;
        }
    }
    return result;
}

} // namespace velkoro
