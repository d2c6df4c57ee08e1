#include "comm/gar_tracks.h"

#include "comm/gar_codec_comment.h"
#include "comm/gar_codec_track.h"
#include "comm/gar_proto.h"
#include "comm/gar_session.h"
#include "comm/garmin_link.h"
#include "comm/mag_tracks.h"
#include "core/job.h"
#include "core/log.h"
#include "core/settings.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"

#include <algorithm>
#include <array>

namespace velkoro {
namespace {

constexpr int text_reading = 2660, text_writing = 2490;
/// Receiver colours of the classes 1 to 7, see gar_track_colour.
constexpr std::array<std::int16_t, 7> art_colours{0, 10, 12, 9, 14, 13, 15};

int track_protocol()
{
    return receiver.gar_proto[4][0];
}

bool has_tracks()
{
    return track_protocol() >= 300 && track_protocol() <= 302;
}

bool has_headers()
{
    return track_protocol() == 301 || track_protocol() == 302;
}

int header_type()
{
    return receiver.gar_proto[4][1];
}

std::int16_t art_of_colour(std::int16_t colour)
{
    const auto at = std::ranges::find(art_colours, colour);
    return static_cast<std::int16_t>(at == art_colours.end() ? 1 : at - art_colours.begin() + 1);
}

/// Decodes each frame as it comes.
struct frame_reader {
    track_receiver in{};
    std::vector<std::int32_t> stored_at{}; ///< by frame: index of its point, -1 none

    void take(const std::string& frame)
    {
        const std::int32_t before = store.trk_top;
        const std::string data = gar_data(frame);
        const int id = gar_id(frame);
        if (id == pid_trk_hdr && has_headers()) {
            gar_track_in header;
            gar_track_decode(data, header_type(), header);
            in.start(header.name, art_of_colour(header.colour));
        } else if (id == pid_trk_point && has_tracks()) {
            take_point(data);
        }
        stored_at.push_back(store.trk_top > before ? store.trk_top : -1);
    }

    void take_point(const std::string& data)
    {
        gar_point_in point;
        if (!gar_point_decode(data, gar_point_type(), point))
            return;
        if (in.first && track_protocol() == 302)
            in.name = gar_point_tag(data) + in.name;
        trackp_rec p;
        p.pos = point.pos;
        p.zeit = point.time;
        p.alt = point.alt;
        // These receivers send something else in the place of that byte.
        const bool no_segments = track_protocol() == 302 && gar_point_type() == 301;
        p.neu = static_cast<std::int16_t>(point.segment && !no_segments ? -1 : 0);
        in.append(p, gar_point_comment(point, in.first));
    }

    /// Its point goes, the ones behind it move up.
    void forget(std::size_t n)
    {
        const std::int32_t index = stored_at[n];
        stored_at.erase(stored_at.begin() + static_cast<std::ptrdiff_t>(n));
        if (index < 0)
            return;
        store.trk.erase(store.trk.begin() + index);
        --store.trk_top;
        for (std::int32_t& at : stored_at)
            if (at > index)
                --at;
        for (received_track& t : in.tracks) {
            t.first -= t.first > index ? 1 : 0;
            t.last -= t.last >= index ? 1 : 0;
        }
    }
};

/// The packets of the points, with a header ahead of each track.
struct packet_maker {
    std::vector<gar_packet> packets{};
    bool any_header = false;
    bool numbered = false; ///< the last header's name was made up
    int number = 0;        ///< of the last name made up
    enum class unnamed { not_asked, active_log, numbers } unnamed_as = unnamed::not_asked;
    bool header_ahead = false; ///< no point has followed the last header

    void header(std::string name, std::int16_t art)
    {
        const int colour = gar_track_colour(name, art);
        packets.push_back({pid_trk_hdr, gar_track_encode(name, colour, header_type())});
        any_header = header_ahead = true;
    }

    /// A track without a name: the active log, or one with a running number; behind a header of
    /// either it is a further segment, unless the tracks are numbered.
    void unnamed_track(std::int16_t art)
    {
        if (any_header && !numbered)
            return;
        if (unnamed_as == unnamed::not_asked)
            unnamed_as = say(2865, buttons::yes_no, icon::question) == answer::yes
                             ? unnamed::active_log
                             : unnamed::numbers;
        if (unnamed_as == unnamed::active_log) {
            header(std::string(gar_active_log), art);
            return;
        }
        header(gar_track_auto_name(++number, trim(store.trk_title)), art);
        numbered = true;
    }

    void add(trackp_rec p, bool first)
    {
        p.zeit &= 0x7FFFFFFF; // without the mark of the track operations
        const bool starts = first || p.neu != 0;
        if (starts && has_headers()) {
            if (const std::string name = track_name(p); name.empty()) {
                unnamed_track(p.art);
            } else {
                header(name, p.art);
                numbered = false;
            }
        }
        const bool segment = header_ahead || starts;
        packets.push_back({pid_trk_point, gar_point_encode(p, gar_point_type(), segment)});
        header_ahead = false;
    }
};

} // namespace

void track_receiver::start(const std::string& track_name, std::int16_t track_art)
{
    name = track_name;
    art = track_art;
    first = true;
}

void track_receiver::append(trackp_rec p, const std::string& comment)
{
    std::string kom;
    if (first) {
        kom = name;
        p.neu = -1;
        tracks.push_back({.name = name, .first = store.trk_top + 1, .last = store.trk_top + 1});
    }
    if (!comment.empty())
        kom += (kom.empty() ? "" : " ") + comment;
    p.kom = kom;
    if (p.neu != 0)
        p.art = art;
    track_append(p);
    tracks.back().last = store.trk_top;
    first = false;
}

std::string track_name(const trackp_rec& p)
{
    std::string name = p.kom.str();
    gar_depth_cut(name);
    return std::string(trim(name));
}

std::pair<std::int32_t, std::int32_t> chosen_points()
{
    const std::int32_t last =
        transfer.choice.last < 0 ? store.trk_top : std::min(transfer.choice.last, store.trk_top);
    const std::int32_t first = std::max(transfer.choice.first, 0);
    return {first, std::max(first, last + 1)};
}

void tracks_read(const track_receiver& in)
{
    if (in.tracks.empty())
        return;
    std::int32_t points = 0;
    for (const received_track& t : in.tracks)
        points += t.last - t.first + 1;
    op2.anz.caption = text(8126, points, static_cast<long long>(in.tracks.size()));
    hooks.tracks_received(in.tracks);
    hooks.map_changed();
}

void G_T_Lesen()
try {
    log_line(" read tracks command");
    if (gar_option(gar_place::gar_wp_format) > 0) {
        M_T_lesen();
        return;
    }
    if (!transfer_begin())
        return;
    frame_reader reader;
    const gar_sink sink{.begin =
                            [&reader](std::size_t count) {
                                reader.stored_at.reserve(count);
                                store.trk.reserve(static_cast<std::size_t>(store.trk_top + 1) +
                                                  count);
                            },
                        .take = [&reader](const std::string& frame) { reader.take(frame); },
                        .forget = [&reader](std::size_t n) { reader.forget(n); }};
    transfer.end = gar_read_list(cmd_tracks, any_packet, text_reading, true, sink);
    if (!reader.stored_at.empty() && !has_tracks())
        transfer_unsupported();
    tracks_read(reader.in);
} catch (...) {
    trap("G_T_Lesen");
}

void G_T_schreiben()
try {
    log_line(" write tracks command");
    if (gar_option(gar_place::gar_wp_format) > 0) {
        M_T_schreiben();
        return;
    }
    if (!transfer_begin())
        return;
    if (!has_tracks()) {
        transfer_unsupported();
        return;
    }
    const auto [first, end] = chosen_points();
    if (first == end) {
        transfer.end = transfer_end::empty;
        op2.anz.caption = text(8122);
        return;
    }
    const int most = gar_option(gar_place::mtrack);
    if (end - first > most &&
        !transfer_over_limit(2830, std::to_string(end - first), std::to_string(most)))
        return;
    packet_maker maker;
    for (std::int32_t i = first; i < end && i <= store.trk_top; ++i)
        maker.add(store.trk[static_cast<std::size_t>(i)], i == first);
    transfer.end = gar_write_list(cmd_tracks, maker.packets, text_writing);
} catch (...) {
    trap("G_T_schreiben");
}

} // namespace velkoro
