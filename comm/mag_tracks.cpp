#include "comm/mag_tracks.h"

#include "comm/gar_codec_comment.h"
#include "comm/gar_tracks.h"
#include "comm/mag_session.h"
#include "coords/times.h"
#include "core/job.h"
#include "core/num_text.h"
#include "core/texts.h"
#include "core/trap.h"

namespace velkoro {
namespace {

constexpr int text_reading = 2660, text_writing = 2490;

int two_digits(const std::string& field, std::size_t at)
{
    return static_cast<int>(val(std::string_view(field).substr(at, 2)));
}

/// Seconds since date_base of hhmmss.ss and ddmmyy; 0 when one of them is missing or is none.
std::int32_t seconds_of(const std::string& time, const std::string& date)
{
    if (time.size() < 6 || date.size() < 6)
        return 0;
    date_time t;
    t.hour = two_digits(time, 0);
    t.minute = two_digits(time, 2);
    t.second = two_digits(time, 4);
    t.day = two_digits(date, 0);
    t.month = two_digits(date, 2);
    t.year = two_digits(date, 4);
    t.year += t.year < 80 ? 2000 : 1900; // as everywhere: 1980 to 2079
    if (t.month < 1 || t.month > 12 || t.day < 1 || t.day > 31 || t.hour > 23 || t.minute > 59 ||
        t.second > 60)
        return 0;
    const std::int64_t seconds = date_seconds(t);
    return seconds <= 0 || seconds > 0x7FFFFFFF ? 0 : to_i32(seconds);
}

/// A track whose title nobody has given takes the name of its first point.
void title_of(const std::string& name)
{
    if (store.trk_title.empty() || store.trk_title.starts_with('<'))
        store.trk_title = name;
}

void take_lines(const std::vector<std::string>& lines)
{
    track_receiver in;
    bool any = false;
    std::string name;
    for (const std::string& line : lines) {
        const auto p = mag_point_decode(line);
        if (!p || !p->valid) // without a position there is no point
            continue;
        if (!any)
            title_of(p->name);
        if (!any || p->name != name)
            in.start(p->name, 1);
        in.append(p->point, {});
        name = p->name;
        any = true;
    }
    tracks_read(in);
}

transfer_end read_track()
{
    const mag_list list = mag_read_list("CMD,TRACK", "TRK", text_reading);
    take_lines(list.lines);
    return list.lines.empty() && list.end == transfer_end::whole ? transfer_end::empty : list.end;
}

} // namespace

std::optional<mag_point> mag_point_decode(std::string_view line)
{
    mag_fields fields(line);
    const auto pos = mag_position(fields);
    if (!pos)
        return std::nullopt;
    mag_point p;
    p.point.pos = *pos;
    p.point.alt = mag_height(fields);
    const std::string time = fields.next();
    const bool has_status = !fields.at_end();
    p.valid = fields.next() == "A" || !has_status;
    p.name = gar_text_in(fields.next());
    p.point.zeit = seconds_of(time, fields.next());
    return p;
}

std::string mag_point_encode(const trackp_rec& p)
{
    return "TRK," + mag_position_text(p.pos) + "," + mag_height_text(p.alt, 5) + ",,A";
}

void M_T_lesen()
try {
    if (!transfer_begin())
        return;
    mag_reading(read_track);
} catch (...) {
    trap("M_T_lesen");
}

void M_T_schreiben()
try {
    if (!transfer_begin())
        return;
    const auto [first, end] = chosen_points();
    std::vector<std::string> lines;
    for (std::int32_t i = first; i < end; ++i)
        lines.push_back(mag_point_encode(store.trk[static_cast<std::size_t>(i)]));
    transfer.end = mag_write_list(lines, text_writing);
} catch (...) {
    trap("M_T_schreiben");
}

} // namespace velkoro
