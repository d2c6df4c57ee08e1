#include "core/store_index.h"

#include "core/store.h"

#include <algorithm>

namespace velkoro {
namespace {

using group = record_groups::group;

struct key_parts {
    std::string_view prefix, name;
};

key_parts parts_of(std::string_view name, std::string_view comment)
{
    return {key_prefix(comment), name};
}

key_parts parts_of(int index)
{
    const wayp_rec& w = store.wp[static_cast<std::size_t>(index)];
    return parts_of(w.nam, w.kom);
}

// The prefix may have been cut short and a name may start like a prefix: only the joined text
// counts.
bool same_key(const key_parts& a, const key_parts& b)
{
    if (a.prefix.size() == b.prefix.size())
        return a.prefix == b.prefix && a.name == b.name;
    const key_parts& s = a.prefix.size() < b.prefix.size() ? a : b;
    const key_parts& l = a.prefix.size() < b.prefix.size() ? b : a;
    const std::size_t extra = l.prefix.size() - s.prefix.size();
    return s.prefix.size() + s.name.size() == l.prefix.size() + l.name.size() &&
           l.prefix.substr(0, s.prefix.size()) == s.prefix &&
           l.prefix.substr(s.prefix.size()) == s.name.substr(0, extra) &&
           s.name.substr(extra) == l.name;
}

// FNV-1a; the upper half is folded in.
std::uint32_t hash_of(const key_parts& k)
{
    std::uint64_t h = 14695981039346656037ULL;
    for (const std::string_view part : {k.prefix, k.name})
        for (const char c : part)
            h = (h ^ static_cast<unsigned char>(c)) * 1099511628211ULL;
    return static_cast<std::uint32_t>(h ^ (h >> 32));
}

std::int64_t place_of(const pos_rec& p)
{
    return (static_cast<std::int64_t>(p.lat >> 10) << 32) | static_cast<std::uint32_t>(p.lon >> 10);
}

std::int64_t place_of(int index)
{
    return place_of(store.wp[static_cast<std::size_t>(index)].pos);
}

std::uint32_t hash_of(std::int64_t place)
{
    std::uint64_t h = static_cast<std::uint64_t>(place) * 0x9E3779B97F4A7C15ULL;
    h ^= h >> 29;
    return static_cast<std::uint32_t>((h * 0xBF58476D1CE4E5B9ULL) >> 32);
}

std::int32_t* bucket_of(record_groups& t, std::uint32_t hash)
{
    return &t.buckets[hash & (t.buckets.size() - 1)];
}

/// The link that leads to the group of that hash whose records are the same, or to -1. Groups are
/// never empty, so any member stands for the group.
template <class Same>
std::int32_t* find_link(record_groups& t, std::uint32_t hash, const Same& same)
{
    std::int32_t* link = bucket_of(t, hash);
    while (*link >= 0) {
        group& g = t.groups[static_cast<std::size_t>(*link)];
        if (g.hash == hash && same(g.first))
            break;
        link = &g.next;
    }
    return link;
}

void set_buckets(record_groups& t, std::size_t n)
{
    t.buckets.assign(n, -1);
    for (std::size_t i = 0; i < t.groups.size(); ++i) {
        group& g = t.groups[i];
        if (g.first < 0)
            continue;
        std::int32_t* bucket = bucket_of(t, g.hash);
        g.next = *bucket;
        *bucket = static_cast<std::int32_t>(i);
    }
}

std::int32_t new_group(record_groups& t)
{
    if (t.free_group < 0) {
        t.groups.emplace_back();
        return static_cast<std::int32_t>(t.groups.size() - 1);
    }
    const std::int32_t at = t.free_group;
    t.free_group = t.groups[static_cast<std::size_t>(at)].next;
    return at;
}

template <class Same>
void put(record_groups& t, std::uint32_t hash, std::int16_t index, const Same& same)
{
    if (t.buckets.empty())
        set_buckets(t, 64);
    const std::int32_t* link = find_link(t, hash, same);
    if (*link < 0) {
        // Free groups hang in a list of their own, so a larger table is made only when there are
        // none.
        if (t.free_group < 0 && t.groups.size() >= t.buckets.size())
            set_buckets(t, t.buckets.size() * 2);
        const std::int32_t at = new_group(t);
        std::int32_t* bucket = bucket_of(t, hash);
        t.groups[static_cast<std::size_t>(at)] = {hash, *bucket, index, {}};
        *bucket = at;
        return;
    }
    group& g = t.groups[static_cast<std::size_t>(*link)];
    std::int16_t later = index;
    if (index < g.first)
        std::swap(g.first, later);
    // Nearly always at the end, as records are appended in ascending order.
    if (g.rest.empty() || g.rest.back() < later)
        g.rest.push_back(later);
    else
        g.rest.insert(std::ranges::lower_bound(g.rest, later), later);
}

template <class Same>
bool drop(record_groups& t, std::uint32_t hash, std::int16_t index, const Same& same)
{
    if (t.buckets.empty())
        return false;
    std::int32_t* link = find_link(t, hash, same);
    if (*link < 0)
        return false;
    const std::int32_t at = *link;
    group& g = t.groups[static_cast<std::size_t>(at)];
    if (g.first != index) {
        const auto it = std::ranges::lower_bound(g.rest, index);
        if (it == g.rest.end() || *it != index)
            return false;
        g.rest.erase(it);
    } else if (!g.rest.empty()) {
        g.first = g.rest.front();
        g.rest.erase(g.rest.begin());
    } else {
        *link = g.next;
        g = {0, t.free_group, -1, {}};
        t.free_group = at;
    }
    return true;
}

template <class Same>
int find(record_groups& t, std::uint32_t hash, int skip_index, int last_index, const Same& same)
{
    if (t.buckets.empty())
        return -1;
    const std::int32_t at = *find_link(t, hash, same);
    if (at < 0)
        return -1;
    const group& g = t.groups[static_cast<std::size_t>(at)];
    int index = g.first;
    if (index == skip_index)
        index = g.rest.empty() ? -1 : g.rest.front();
    return index <= last_index ? index : -1;
}

void enter(int index)
{
    const auto i = static_cast<std::int16_t>(index);
    const key_parts k = parts_of(index);
    put(store.index.keys, hash_of(k), i, [&](int m) { return same_key(parts_of(m), k); });
    const std::int64_t p = place_of(index);
    put(store.index.places, hash_of(p), i, [&](int m) { return place_of(m) == p; });
}

/// Whoever filled the array past the store's operations left the tables behind.
void refresh()
{
    if (store.index.count != store.wp_top + 1)
        index_rebuild();
}

} // namespace

void index_put(int index)
{
    if (store.index.count < 0)
        return;
    enter(index);
    ++store.index.count;
}

void index_drop(int index)
{
    store.index.taken.clear();
    if (store.index.count < 0)
        return;
    const auto i = static_cast<std::int16_t>(index);
    const key_parts k = parts_of(index);
    const std::int64_t p = place_of(index);
    const bool known =
        drop(store.index.keys, hash_of(k), i, [&](int m) { return same_key(parts_of(m), k); }) &&
        drop(store.index.places, hash_of(p), i, [&](int m) { return place_of(m) == p; });
    store.index.count = known ? store.index.count - 1 : -1;
}

void index_rebuild()
{
    store.index = {};
    const auto n = static_cast<std::size_t>(store.wp_top + 1);
    std::size_t buckets = 64;
    while (buckets < n)
        buckets *= 2;
    for (record_groups* t : {&store.index.keys, &store.index.places}) {
        t->groups.reserve(n);
        set_buckets(*t, buckets);
    }
    for (int i = 0; i <= store.wp_top; ++i)
        enter(i);
    store.index.count = store.wp_top + 1;
}

int index_find_key(std::string_view name, std::string_view comment, int skip_index, int last_index)
{
    refresh();
    const key_parts k = parts_of(name, comment);
    return find(store.index.keys, hash_of(k), skip_index, last_index,
                [&](int m) { return same_key(parts_of(m), k); });
}

int index_find_pos(const pos_rec& pos, int last_index)
{
    refresh();
    const std::int64_t p = place_of(pos);
    return find(store.index.places, hash_of(p), -1, last_index,
                [&](int m) { return place_of(m) == p; });
}

} // namespace velkoro
