#include "comm/mag_waypoints.h"

#include "comm/gar_codec_comment.h"
#include "comm/gar_codec_time.h"
#include "comm/gar_waypoints.h"
#include "comm/mag_session.h"
#include "core/job.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"

namespace velkoro {
namespace {

constexpr int text_reading = 2840, text_writing = 2570;

std::int16_t symbol_of(const std::string& icon)
{
    return icon.empty() || icon[0] < 'a' || icon[0] > 'z'
               ? std::int16_t{0}
               : static_cast<std::int16_t>(icon[0] - 'a');
}

} // namespace

std::optional<wayp_rec> mag_wp_decode(std::string_view line)
{
    mag_fields fields(line);
    const auto pos = mag_position(fields);
    if (!pos)
        return std::nullopt;
    wayp_rec w;
    w.pos = *pos;
    if (fields.tag == "$GPWPL") {
        w.nam = gar_text_in(fields.rest_of());
    } else {
        w.alt = mag_height(fields);
        w.nam = gar_text_in(fields.next());
        w.kom = gar_text_in(fields.next());
        w.symb = symbol_of(fields.next());
    }
    gar_wp_time({}, w.kom, w.dat); // the line has none
    return w;
}

std::string mag_wp_encode(const wayp_rec& w)
{
    return "WPL," + mag_position_text(w.pos) + "," + mag_height_text(w.alt, 7) + "," +
           mag_text(gar_name_out(w.nam)) + "," + mag_text(gar_text_out(w.kom)) + "," +
           mag_icon(w.symb);
}

transfer_end mag_take_waypoints()
{
    const mag_list list = mag_read_list("CMD,WAYPOINT", "WPL", text_reading);
    if (list.lines.empty())
        return list.end == transfer_end::whole ? transfer_end::empty : list.end;
    std::vector<wayp_rec> waypoints;
    for (const std::string& line : list.lines)
        if (auto w = mag_wp_decode(line))
            waypoints.push_back(std::move(*w));
    insert_received(std::move(waypoints), {});
    return list.end;
}

void M_W_lesen()
try {
    if (!transfer_begin())
        return;
    mag_reading(mag_take_waypoints);
} catch (const batch_cancelled&) {
    transfer.end = transfer_end::cancelled;
} catch (...) {
    trap("M_W_lesen");
}

void M_W_schreiben()
try {
    if (!transfer_begin())
        return;
    std::vector<std::string> lines;
    for (const int i : chosen_waypoints(transfer.choice))
        lines.push_back(mag_wp_encode(store.wp[static_cast<std::size_t>(i)]));
    transfer.end = mag_write_list(lines, text_writing);
} catch (...) {
    trap("M_W_schreiben");
}

} // namespace velkoro
