#include "core/wayp_insert.h"

#include "core/hooks.h"
#include "core/route_lists.h"
#include "core/store.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <utility>

namespace velkoro {
namespace {

constexpr std::int16_t alt_unknown_incoming = 32767; // what some sources write for "unknown"
constexpr double reconcile_reach = 10;               // units of distance

// Normalising
// ---------------------------------------------------------------------------------------------------------------

[[noreturn]] void cancel_batch()
{
    batch.cancelled = true;
    throw batch_cancelled{};
}

bool name_too_long(const wayp_rec& rec)
{
    return store.wp_name_max > 0 && static_cast<int>(rec.nam.size()) > store.wp_name_max;
}

/// The name with no character that a name may not hold; never empty, as a record without a name
/// could not be told from one that is being deleted.
std::string usable_name(const std::string& nam)
{
    std::string clean = name_clean(nam, 0);
    return clean.empty() ? "-" : clean;
}

void normalise(wayp_rec& rec)
{
    if (name_too_long(rec)) {
        if (!batch.warned_long) {
            batch.warned_long = true;
            const message_box question{.text = text(2035, store.wp_name_max) + " " + text(2760),
                                       .buttons = buttons::yes_no,
                                       .icon = icon::exclamation,
                                       .number = 2035};
            if (platform.message(question) != answer::yes)
                cancel_batch();
        }
        name_cut(rec.nam, rec.kom);
    }
    std::string clean = usable_name(rec.nam);
    if (clean == rec.nam)
        return;
    rec.nam = std::move(clean);
    if (!batch.warned_characters) {
        batch.warned_characters = true;
        say(2038);
    }
}

// Comparing
// ---------------------------------------------------------------------------------------------------------------

struct match {
    int index = -1;
    conflict_kind kind = conflict_kind::by_name;
};

int comparison_range()
{
    return batch.open ? batch.last : store.wp_top;
}

match find_match(const wayp_rec& rec)
{
    const int last = comparison_range();
    if (const int i = wp_find_key(rec.nam, rec.kom, -1, last); i >= 0)
        return {i, conflict_kind::by_name};
    return {wp_find_pos(rec.pos, last), conflict_kind::by_position};
}

/// A comment that a receiver cut or could only show in capitals is still the same comment.
bool comment_differs(const wayp_rec& old, const wayp_rec& rec)
{
    const std::string_view start = std::string_view(old.kom).substr(0, rec.kom.size());
    return start != rec.kom && name_clean(start, 1) != name_clean(rec.kom, 1);
}

bool prox_differs(const wayp_rec& old, const wayp_rec& rec)
{
    return rec.prox >= 1 && old.prox != 0 && rec.prox != old.prox;
}

bool differs(const wayp_rec& old, const wayp_rec& rec)
{
    const auto limit = static_cast<std::size_t>(std::max<int>(store.wp_name_max, 1));
    return comment_differs(old, rec) || prox_differs(old, rec) ||
           (rec.alt != alt_unknown && rec.alt != old.alt) ||
           ((rec.symb & 0xFF) != (old.symb & 0xFF) && hooks.symbols_in_use()) ||
           old.nam.compare(0, limit, rec.nam, 0, limit) != 0;
}

bool same_place(const pos_rec& a, const pos_rec& b)
{
    return (a.lat >> 10) == (b.lat >> 10) && (a.lon >> 10) == (b.lon >> 10);
}

/// The answer that needs no question, if there is one.
std::optional<conflict_answer> remembered(const wayp_rec& old, const wayp_rec& rec, int memory)
{
    std::optional<double> measured;
    const auto distance = [&] {
        if (!measured)
            measured = hooks.distance(rec.pos, old.pos);
        return *measured;
    };
    if (batch.reconcile && distance() <= reconcile_reach && rec.dat >= old.dat)
        return conflict_answer::take_new;
    if (memory < 3 || (memory >= 6 && distance() >= 1))
        return std::nullopt;
    return static_cast<conflict_answer>((memory - 3) % 3);
}

// Changing
// ---------------------------------------------------------------------------------------------------------------

void record_final_key(const std::string& incoming_key, const wayp_rec& rec)
{
    std::string key = wp_key(rec.nam, rec.kom);
    if (key != incoming_key)
        batch.final_keys.try_emplace(incoming_key, std::move(key));
}

int append(const wayp_rec& rec, bool mark)
{
    const int index = wp_append(rec, mark);
    ++batch.added;
    return index;
}

int keep_out(wayp_rec& rec, int index)
{
    const wayp_rec& old = store.wp[static_cast<std::size_t>(index)];
    ++batch.unchanged;
    if (!same_place(old.pos, rec.pos))
        batch.elsewhere.push_back(rec.nam);
    rec.nam = old.nam;
    rec.kom = old.kom;
    return index;
}

int keep_out_unchanged(wayp_rec& rec, int index)
{
    wayp_rec& old = store.wp[static_cast<std::size_t>(index)];
    const bool fills_prox = rec.prox >= 1 && old.prox == 0;
    if (fills_prox) {
        old.prox = rec.prox;
        store.wp_dirty = true;
    }
    keep_out(rec, index);
    if (fills_prox)
        hooks.row_changed(index, false);
    return index;
}

int take_over(wayp_rec& rec, const match& m, bool mark)
{
    wayp_rec& old = store.wp[static_cast<std::size_t>(m.index)];
    const std::string old_key = wp_key(m.index);
    if (!comment_differs(old, rec))
        rec.kom = old.kom;
    if (rec.alt == alt_unknown)
        rec.alt = old.alt;
    if (!hooks.symbols_in_use()) {
        rec.symb = old.symb;
        rec.symbmode = old.symbmode;
    }
    // A comment that stays may bring its part of the key with it, and so meet a third waypoint.
    if (wp_key(rec.nam, rec.kom) != old_key &&
        wp_find_key(rec.nam, rec.kom, m.index, comparison_range()) >= 0)
        name_unique(rec.nam, rec.kom, m.index);
    const bool was_reference = is_reference(old);
    const bool indexed_alike =
        old.nam == rec.nam && old.kom == rec.kom && same_place(old.pos, rec.pos);
    if (!indexed_alike)
        index_drop(m.index);
    old.nam = rec.nam;
    old.kom = rec.kom;
    old.pos = rec.pos;
    old.dat = rec.dat;
    old.prox = rec.prox;
    old.alt = rec.alt;
    old.symb = rec.symb;
    old.symbmode = rec.symbmode;
    old.mapx = 0;
    if (!indexed_alike)
        index_put(m.index);
    store.wp_dirty = true;
    ++(m.kind == conflict_kind::by_name ? batch.changed_by_name : batch.changed_by_position);
    if (was_reference)
        store.refp_name = rec.nam;
    if (rec.nam == store.refp_name)
        store.refp_pos = rec.pos;
    for (const int n : routes_rename(old_key, wp_key(rec.nam, rec.kom)))
        batch.changed_routes.insert(n);
    hooks.row_changed(m.index, mark);
    return m.index;
}

int keep_both(wayp_rec& rec, bool mark)
{
    // The name may be the user's.
    rec.nam = trim(rec.nam);
    name_cut(rec.nam, rec.kom);
    rec.nam = usable_name(rec.nam);
    name_unique(rec.nam, rec.kom, -1);
    const int index = append(rec, mark);
    batch.last = store.wp_top;
    return index;
}

/// Asks, and finds the old record again: anything may have happened while the question stood.
conflict_answer ask(wayp_rec& rec, match& m)
{
    const std::string old_key = wp_key(m.index);
    const auto kind = static_cast<std::size_t>(m.kind);
    conflict_question q{.old_index = m.index,
                        .incoming = &rec,
                        .by_position = m.kind == conflict_kind::by_position};
    const conflict_answer given = hooks.conflict_ask(q);
    if (given == conflict_answer::cancel_batch)
        cancel_batch();
    if (q.remember)
        batch.memory[kind] = 3 + static_cast<int>(given);
    if (m.index > store.wp_top || wp_key(m.index) != old_key)
        m.index = wp_find_key(old_key, {}, -1, store.wp_top);
    return given;
}

int insert_record(wayp_rec& rec, bool mark)
{
    match m = find_match(rec);
    if (m.index < 0) {
        if (!batch.reconcile)
            return append(rec, mark);
        ++batch.unchanged;
        return -1;
    }
    const wayp_rec& old = store.wp[static_cast<std::size_t>(m.index)];
    if (!differs(old, rec))
        return keep_out_unchanged(rec, m.index);
    const std::optional<conflict_answer> known =
        remembered(old, rec, batch.memory[static_cast<std::size_t>(m.kind)]);
    const conflict_answer a = known ? *known : ask(rec, m);
    if (a == conflict_answer::keep_both)
        return keep_both(rec, mark);
    if (m.index < 0) { // the old record went while the question stood
        if (a == conflict_answer::take_new)
            return append(rec, mark);
        ++batch.unchanged;
        return -1;
    }
    return a == conflict_answer::take_new ? take_over(rec, m, mark) : keep_out(rec, m.index);
}

// Opening and closing
// ---------------------------------------------------------------------------------------------------------------

/// A file may open further batches behind its first: counts and memory go on until the close. What
/// records outside any batch left behind does not count.
void open_batch(bool reconcile)
{
    if (!batch.open || batch.cancelled)
        batch = {};
    batch.open = true;
    batch.reconcile = reconcile;
    batch.last = store.wp_top;
}

std::string report(const insert_batch& b, int mode)
{
    const int unchanged = mode == batch_close_changes ? 0 : b.unchanged;
    const bool only_new = b.changed_by_name + b.changed_by_position + unchanged == 0;
    if (only_new && b.elsewhere.empty() && mode != batch_close_all)
        return {};
    std::string out = text(2000, b.added) + "\n" + text(2010, b.changed_by_name) + "\n" +
                      text(2020, b.changed_by_position) + "\n" + text(2030, unchanged);
    if (!b.elsewhere.empty()) {
        std::string names;
        for (const std::string& nam : b.elsewhere) {
            if (names.size() > name_list_limit)
                break;
            names.append(names.empty() ? "" : " ").append(nam);
        }
        out += "\n" + text(2031, std::to_string(b.elsewhere.size()), shown_names(names));
    }
    return out;
}

std::string close_batch(int mode)
{
    // The boxes below serve events: the next batch finds a clean memory whatever comes.
    const insert_batch closed = std::exchange(batch, {});
    std::string out = report(closed, mode);
    if (!closed.changed_routes.empty()) {
        hooks.route_refresh();
        say(2040, buttons::ok, icon::information,
            number_list({closed.changed_routes.begin(), closed.changed_routes.end()}));
    }
    return out;
}

} // namespace

int wp_append(const wayp_rec& rec, bool mark)
{
    if (store.wp_top + 1 >= wp_limit)
        throw std::overflow_error("Overflow");
    const int index = store.wp_top + 1;
    store.wp.resize(static_cast<std::size_t>(index)); // a record begun and given up may stand there
    store.wp.push_back(rec);
    store.wp_top = static_cast<std::int16_t>(index);
    index_put(index);
    store.wp_dirty = true;
    if (rec.nam == store.refp_name)
        store.refp_pos = rec.pos;
    hooks.row_added(index, mark);
    return index;
}

std::string_view batch_key(const std::string& incoming)
{
    const auto it = batch.final_keys.find(incoming);
    return it == batch.final_keys.end() ? std::string_view(incoming) : it->second;
}

int wayp_insert(wayp_rec& rec, int mode)
{
    if (mode > 0) {
        rec.kom = close_batch(mode);
        return -1;
    }
    if (mode == batch_open || mode == batch_reconcile) {
        open_batch(mode == batch_reconcile);
        return -1;
    }
    if (mode == -1 || mode == -3)
        batch.last = store.wp_top;
    if (rec.alt == alt_unknown_incoming)
        rec.alt = alt_unknown;
    rec.nam = trim(rec.nam);
    const std::string incoming_key = wp_key(rec.nam, rec.kom);
    normalise(rec);
    const int index = insert_record(rec, mode < -1);
    if (index >= 0)
        record_final_key(incoming_key, rec);
    return index;
}

} // namespace velkoro
