// Decoding of waypoint files.
#include "waypoints/native_wp.h"

#include "core/text_tools.h"

namespace velkoro {
namespace {

/// The datum list grew in three places while files held bare indexes into it.
int corrected_datum(int index, int version)
{
    if (index >= 4)
        ++index;
    if (index >= 9 && version < 114)
        ++index;
    if (index >= 10 && version < 200)
        ++index;
    return index;
}

pos_rec read_pos(byte_reader& in)
{
    pos_rec pos;
    pos.lat = in.i32();
    pos.lon = in.i32();
    return pos;
}

void read_head(byte_reader& in, wp_header& h)
{
    if (h.version >= 203) {
        h.datum = in.lstr();
        h.posform = in.lstr();
    } else {
        h.posform_index = in.i16();
        h.datum_index = corrected_datum(in.i16(), h.version);
    }
    if (h.version >= 111) {
        h.zone = in.lstr();
        h.sort = in.i16();
    }
    h.refp_name = h.version >= 204 ? in.lstr() : trim(in.fixed(6));
    h.refp_pos = read_pos(in);
    h.scale = in.i32();
    h.title = in.lstr();
}

void read_waypoint(byte_reader& in, int version, wayp_rec& w)
{
    w.nam = trim(version >= 204 ? in.lstr() : in.fixed(6));
    w.kom = version >= 111 ? in.lstr() : trim(in.fixed(16));
    w.pos = read_pos(in);
    w.dat = in.i32();
    w.prox = in.i16();
    const std::uint16_t symbol = version >= 111 ? in.le<std::uint16_t>() : std::uint16_t{0};
    w.symb = static_cast<std::int16_t>(symbol & 0xFF);
    w.symbmode = static_cast<std::int16_t>(symbol >> 8);
    w.alt = version >= 203 ? in.i16() : alt_unknown;
}

void read_route(byte_reader& in, int version, route_rec& r)
{
    r.nam = in.fixed(16);
    r.speed.clear();
    r.korr.clear();
    r.anw.clear();
    r.farbe = 0;
    if (version >= 200) {
        r.wps = in.lstr();
        r.farbe = in.i16();
        r.speed = in.lstr();
        r.korr = in.lstr();
        r.anw = in.lstr();
    } else if (version >= 103) {
        // One text for three lists: wps "#" speed "%" korr.
        r.korr = in.lstr();
        r.speed = cut_token(r.korr, "%");
        r.wps = cut_token(r.speed, "#");
        r.farbe = in.i16();
    } else {
        r.wps = in.lstr();
    }
}

} // namespace

native_end wp_open(wp_source& source, std::string_view bytes)
{
    source = {};
    if (!bytes.starts_with(wp_magic))
        return native_end::not_native;
    byte_reader in(bytes);
    in.skip(wp_magic.size());
    source.head.version = in.i16();
    if (source.head.version > wp_version)
        return native_end::newer;
    if (in.ok())
        read_head(in, source.head);
    source.in = in;
    source.version = source.head.version;
    return in.ok() ? native_end::whole : native_end::damaged;
}

wp_item wp_next(wp_source& source)
{
    byte_reader& in = source.in;
    if (!in.ok())
        return wp_item::damaged;
    if (in.at_end())
        return wp_item::end;
    switch (const std::uint8_t tag = in.u8(); tag) {
    case 'W':
        read_waypoint(in, source.version, source.wp);
        return in.ok() ? wp_item::waypoint : wp_item::damaged;
    case 'R':
        read_route(in, source.version, source.route);
        return in.ok() ? wp_item::route : wp_item::damaged;
    case 'A':
    case 'U':
        source.version = in.i16();
        if (!in.ok())
            return wp_item::damaged;
        if (source.version > wp_version)
            return wp_item::newer;
        return tag == 'A' ? wp_item::append : wp_item::reconcile;
    default: return wp_item::damaged;
    }
}

wp_summary wp_info(std::string_view bytes)
{
    wp_summary sum;
    wp_source source;
    sum.end = wp_open(source, bytes);
    sum.head = source.head;
    while (sum.end == native_end::whole) {
        switch (wp_next(source)) {
        case wp_item::waypoint: ++sum.waypoints; break;
        case wp_item::route: ++sum.routes; break;
        case wp_item::append: ++sum.append_sections; break;
        case wp_item::reconcile: ++sum.reconcile_sections; break;
        case wp_item::end: return sum;
        case wp_item::damaged: sum.end = native_end::damaged; break;
        case wp_item::newer: sum.end = native_end::newer; break;
        }
    }
    return sum;
}

} // namespace velkoro
