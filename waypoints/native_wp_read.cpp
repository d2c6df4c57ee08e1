// Waypoint files into the store.
#include "coords/units.h"
#include "core/form1.h"
#include "core/hooks.h"
#include "core/job.h"
#include "core/settings.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"
#include "core/wayp_insert.h"
#include "waypoints/native_title.h"
#include "waypoints/native_wp.h"

#include <algorithm>
#include <stdexcept>

namespace velkoro {
namespace {

constexpr std::int32_t least_scale = 100, most_scale = 100000000; // as the settings hold it

/// Chooses an entry as the user would; an index outside the list changes nothing.
void choose(control& drop_down, int index)
{
    if (index < 0 || index >= static_cast<int>(drop_down.items.size()) ||
        index == drop_down.selected)
        return;
    drop_down.selected = index;
    if (drop_down.change)
        drop_down.change();
    else if (drop_down.click)
        drop_down.click();
}

int index_of(const control& drop_down, const std::string& caption)
{
    const auto it = std::ranges::find(drop_down.items, caption);
    return it == drop_down.items.end() ? -1 : static_cast<int>(it - drop_down.items.begin());
}

void adopt_head(const wp_header& h, bool was_empty)
{
    // The format first: a grid brings a datum of its own, and the file's datum is to stand.
    choose(Form1.posform, h.posform ? index_of(Form1.posform, *h.posform) : h.posform_index);
    choose(Form1.Datum, h.datum ? index_of(Form1.Datum, *h.datum) : h.datum_index);
    if (h.zone && !h.zone->empty()) {
        settings.list_zone = *h.zone;
        zone_menu_checks();
    }
    if (h.scale > 0) // nothing can be drawn or measured at a scale of 0
        settings.scale = std::clamp(h.scale, least_scale, most_scale);
    const std::string title = joined_title(Form1.wayp_titel.text, h.title, was_empty);
    if (!was_empty && title != Form1.wayp_titel.text)
        store.wp_dirty = true;
    Form1.wayp_titel.text = title;
    if (!was_empty)
        return;
    // The list is sorted once, at the end; so its handler has nothing to do yet.
    if (h.sort >= 0 && h.sort < static_cast<int>(Form1.sort.items.size()))
        Form1.sort.selected = h.sort;
    if (!h.refp_name.empty()) {
        store.refp_name = h.refp_name;
        store.refp_pos = h.refp_pos;
    }
}

bool progress(const wp_source& source, const wp_read_result& result)
{
    op_progress(static_cast<double>(source.in.position()) /
                static_cast<double>(std::max<std::size_t>(source.in.size(), 1)));
    op.anz.caption = text(2530, result.waypoints, result.routes);
    return op_pump();
}

bool wants_section(wp_item section, const wp_read_result& result)
{
    op.anz.caption = text(2530, result.waypoints, result.routes);
    return say(section == wp_item::append ? 2540 : 2550, buttons::yes_no, icon::question) ==
           answer::yes;
}

native_end read_records(wp_source& source, wp_read_result& result, bool& sections)
try {
    int mode = result.was_empty ? 0 : -2;
    while (true) {
        const wp_item item = wp_next(source);
        switch (item) {
        case wp_item::waypoint:
            wayp_insert(source.wp, mode);
            ++result.waypoints;
            break;
        case wp_item::route:
            route_add(source.route);
            ++result.routes;
            break;
        case wp_item::append:
        case wp_item::reconcile: {
            if (!wants_section(item, result))
                return native_end::declined;
            wayp_rec none;
            wayp_insert(none, item == wp_item::append ? batch_open : batch_reconcile);
            mode = -2;
            sections = true;
            break;
        }
        case wp_item::end: return native_end::whole;
        case wp_item::damaged: return native_end::damaged;
        case wp_item::newer: return native_end::newer;
        }
        if (op_due() && !progress(source, result))
            return native_end::broken_off;
    }
} catch (const batch_cancelled&) {
    return native_end::broken_off;
} catch (const std::overflow_error&) {
    return native_end::full;
}

/// Closes the batch whatever ends the reading.
std::string close_batch()
{
    wayp_rec report;
    wayp_insert(report, batch_close);
    return report.kom;
}

void show_all()
{
    hooks.route_refresh();
    hooks.map_changed();
    hooks.sort_rows();
}

} // namespace

wp_read_result read_wp(std::string_view bytes)
{
    wp_read_result result;
    wp_source source;
    result.end = wp_open(source, bytes);
    result.version = source.head.version;
    if (result.end != native_end::whole)
        return result;
    result.was_empty = store.wp_top < 0;
    bool sections = false;
    if (result.was_empty)
        store.wp_dirty = false;
    adopt_head(source.head, result.was_empty);
    try {
        wayp_rec none;
        wayp_insert(none, batch_open);
        result.end = read_records(source, result, sections);
    } catch (...) {
        close_batch();
        show_all();
        throw;
    }
    result.report = close_batch();
    // What came from one plain file into an empty store is as it is saved there.
    if (result.was_empty)
        store.wp_dirty = sections;
    else if (sections)
        store.wp_dirty = true;
    show_all();
    return result;
}

} // namespace velkoro
