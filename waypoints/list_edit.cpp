#include "waypoints/list_edit.h"

#include "coords/times.h"
#include "core/form1.h"
#include "core/hooks.h"
#include "core/num_text.h"
#include "core/platform.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"
#include "core/wayp_insert.h"
#include "waypoints/list.h"
#include "waypoints/list_sort.h"

#include <algorithm>
#include <stdexcept>

namespace velkoro {
namespace {

constexpr std::string_view digits = "0123456789";

row_list& list()
{
    return Form1.Waypl2.rows;
}

const wayp_rec& stored(int index)
{
    return store.wp[static_cast<std::size_t>(index)];
}

/// Cleaned and cut as a name; empty when nothing of it can be used.
std::string as_name(std::string_view text)
{
    const std::string clean = name_clean(upper(text), 0);
    const auto limit = static_cast<std::size_t>(std::max<int>(store.wp_name_max, 1));
    return std::string(trim(std::string_view(clean).substr(0, limit)));
}

std::string_view stem(std::string_view name)
{
    return name.substr(0, name.find_last_not_of(digits) + 1);
}

bool same_group(const wayp_rec& a, const wayp_rec& b)
{
    const std::string_view prefix = key_prefix(a.kom);
    return prefix.empty() ? key_prefix(b.kom).empty() && stem(a.nam) == stem(b.nam)
                          : prefix == key_prefix(b.kom);
}

pos_rec mean_position(const std::vector<int>& indexes)
{
    // Longitudes are taken as seen from the first one, so that the mean of two places beside the
    // date line lies between them.
    const pos_rec first = stored(indexes[0]).pos;
    double lat = 0, lon = 0;
    for (const int index : indexes) {
        const pos_rec& p = stored(index).pos;
        lat += p.lat;
        lon += static_cast<std::int32_t>(static_cast<std::uint32_t>(p.lon) -
                                         static_cast<std::uint32_t>(first.lon));
    }
    const auto n = static_cast<double>(indexes.size());
    return {to_i32(lat / n),
            static_cast<std::int32_t>(static_cast<std::uint32_t>(first.lon) +
                                      static_cast<std::uint32_t>(to_i32(lon / n)))};
}

std::int16_t mean_altitude(const std::vector<int>& indexes)
{
    double sum = 0;
    int known = 0;
    for (const int index : indexes)
        if (stored(index).alt != alt_unknown) {
            sum += stored(index).alt;
            ++known;
        }
    return known > 0 ? to_i16(sum / known) : alt_unknown;
}

// Handlers
// ----------------------------------------------------------------------------------------------

void mark_g_click()
try {
    const std::vector<int> rows = group_rows(list().current);
    if (rows.empty()) {
        platform.beep();
        return;
    }
    for (const int row : rows)
        list().rows[static_cast<std::size_t>(row)].marked = true;
    marks_changed();
    mark_count();
} catch (...) {
    trap("mark_g");
}

void neu_mitt_click()
try {
    const std::vector<int> marked = hooks.marked_rows();
    const int index = append_mean(marked);
    if (index < 0) {
        if (marked.size() < 2)
            platform.beep();
        return;
    }
    sort_apply();
    list().current = list().show_row = wp_row(index);
    store.wp_cur = static_cast<std::int16_t>(index);
    list().changed();
    list_states();
    hooks.map_changed();
} catch (...) {
    trap("neu_mitt");
}

} // namespace

void row_rename(int row, const std::string& text)
try {
    const int index = wp_index(row);
    if (index < 0 || index > store.wp_top)
        return;
    std::string nam = as_name(text);
    const std::string kom = stored(index).kom;
    if (nam.empty()) {
        platform.beep();
        return;
    }
    name_unique(nam, kom, index);
    if (nam == stored(index).nam)
        return;
    const std::string routes = wp_rename(index, nam, kom);
    store.wp[static_cast<std::size_t>(index)].mapx = 0;
    row_refresh(index, false);
    hooks.map_changed();
    if (!routes.empty())
        say(4340, buttons::ok, icon::information, nam, routes);
} catch (...) {
    trap("Waypl2_AfterLabelEdit");
}

std::vector<int> group_rows(int row)
{
    const int index = wp_index(row);
    if (index < 0 || index > store.wp_top)
        return {};
    std::vector<int> rows;
    const int count = static_cast<int>(list().rows.size());
    for (int r = 0; r < count; ++r) {
        const int other = wp_index(r);
        if (other >= 0 && other <= store.wp_top && same_group(stored(index), stored(other)))
            rows.push_back(r);
    }
    if (rows.size() < 2)
        rows.clear();
    return rows;
}

int append_mean(const std::vector<int>& indexes)
{
    if (indexes.size() < 2)
        return -1;
    const date_time now = platform.now();
    wayp_rec mean{.nam = as_name(text(7754)),
                  .kom = text(7755, static_cast<long long>(indexes.size())),
                  .pos = mean_position(indexes),
                  .dat = day_number(now.year, now.month, now.day) * day_seconds,
                  .symb = stored(indexes[0]).symb,
                  .symbmode = stored(indexes[0]).symbmode,
                  .alt = mean_altitude(indexes)};
    name_unique(mean.nam, mean.kom, -1);
    // The mean of several fixes of one place lies at that place, and is meant to.
    constexpr int both = 3 + static_cast<int>(conflict_answer::keep_both);
    wayp_rec none;
    wayp_insert(none, batch_open);
    batch.memory = {both, both};
    int index = -1;
    try {
        index = wayp_insert(mean, 0);
    } catch (const std::overflow_error&) {
        say(2033, buttons::ok, icon::exclamation, std::to_string(wp_limit));
    }
    wayp_insert(none, batch_close_changes);
    return index;
}

void list_edit_install()
{
    list().edit_names = true;
    Form1.Waypl2.label_edited = row_rename;
    Form1.mark_g.click = mark_g_click;
    Form1.neu_mitt.click = neu_mitt_click;
}

} // namespace velkoro
