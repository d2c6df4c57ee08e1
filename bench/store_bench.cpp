// Insert, look up and delete at the size of the largest store, and in stores where all records
// share a key or a position.
#include "core/hooks.h"
#include "core/platform.h"
#include "core/reset.h"
#include "core/store.h"
#include "core/texts.h"
#include "core/wayp_insert.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>
#include <vector>

using namespace velkoro;

namespace {

std::vector<wayp_rec> library(int n)
{
    std::vector<wayp_rec> out;
    out.reserve(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) {
        char name[16];
        std::snprintf(name, sizeof name, "W%05d", i);
        wayp_rec w;
        w.nam = name;
        w.kom = "Huette am Weg Nummer " + std::to_string(i);
        w.pos = {500000000 + i * 4099, 90000000 + i % 181 * 65537};
        w.alt = static_cast<std::int16_t>(i % 3000);
        w.symb = static_cast<std::int16_t>(i % 60);
        out.push_back(std::move(w));
    }
    return out;
}

std::vector<wayp_rec> one_key(int n)
{
    std::vector<wayp_rec> out = library(n);
    for (wayp_rec& w : out)
        w.nam = "SAME";
    return out;
}

std::vector<wayp_rec> one_position(int n)
{
    std::vector<wayp_rec> out = library(n);
    for (wayp_rec& w : out)
        w.pos = {500000000, 90000000};
    return out;
}

void begin()
{
    reset_all();
    hooks = {};
    text_table.loaded = 0; // no text is looked up, so none is loaded
    text_table.texts.assign(10000, "text");
}

void insert_all(const std::vector<wayp_rec>& all)
{
    wayp_rec control;
    wayp_insert(control, batch_open);
    for (const wayp_rec& w : all) {
        wayp_rec rec = w;
        wayp_insert(rec, 0);
    }
    wayp_insert(control, batch_close);
}

using source = std::vector<wayp_rec> (*)(int);

void insert_into_empty(benchmark::State& state, source make)
{
    const std::vector<wayp_rec> all = make(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        begin();
        state.ResumeTiming();
        insert_all(all);
    }
}

void insert_over_itself(benchmark::State& state, source make)
{
    const std::vector<wayp_rec> all = make(static_cast<int>(state.range(0)));
    begin();
    insert_all(all);
    for (auto _ : state)
        insert_all(all);
}

/// Every record is taken over and lies elsewhere, so that both tables change.
void move_all(benchmark::State& state, source make)
{
    std::vector<wayp_rec> all = make(static_cast<int>(state.range(0)));
    begin();
    insert_all(all);
    std::int16_t alt = 4000;
    for (auto _ : state) {
        state.PauseTiming();
        ++alt;
        for (wayp_rec& w : all) {
            w.alt = alt;
            w.pos.lat ^= 1 << 20;
        }
        state.ResumeTiming();
        insert_all(all);
    }
}

void keep_both(benchmark::State& state)
{
    const std::vector<wayp_rec> all = one_key(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        begin();
        hooks.conflict_ask = [](conflict_question& q) {
            q.remember = true;
            return conflict_answer::keep_both;
        };
        state.ResumeTiming();
        for (const wayp_rec& w : all) {
            wayp_rec rec = w;
            wayp_insert(rec, -1);
        }
    }
}

void delete_every_second(benchmark::State& state, source make)
{
    const int n = static_cast<int>(state.range(0));
    const std::vector<wayp_rec> all = make(n);
    std::vector<int> marked;
    for (int i = 0; i < n; i += 2)
        marked.push_back(i);
    for (auto _ : state) {
        state.PauseTiming();
        begin();
        platform.message = [](const message_box&) { return answer::ok; };
        insert_all(all);
        for (int r = 0; r < 50; ++r) {
            route_rec route;
            for (int p = 0; p < 30; ++p) {
                route.wps += wp_key((r * 613 + p * 37) % n) + "$";
                route.speed += "12.5$";
                route.korr += "$";
                route.anw += "links$";
            }
            route_add(route);
        }
        hooks.marked_rows = [&] { return marked; };
        state.ResumeTiming();
        wayp_delete(-1);
    }
}

void find_key(benchmark::State& state)
{
    const std::vector<wayp_rec> all = library(wp_limit);
    begin();
    insert_all(all);
    std::size_t i = 0;
    for (auto _ : state) {
        i = (i + 7919) % all.size();
        benchmark::DoNotOptimize(wp_find_key(all[i].nam, all[i].kom, -1, store.wp_top));
    }
}

void clean_a_clean_name(benchmark::State& state)
{
    begin();
    const std::string name = "FELD12";
    for (auto _ : state)
        benchmark::DoNotOptimize(name_clean(name, 0));
}

void append_track_points(benchmark::State& state, int comments)
{
    for (auto _ : state) {
        begin();
        trackp_rec p;
        for (int i = 0; i < state.range(0); ++i) {
            if (comments > 0 && i % (static_cast<int>(state.range(0)) / comments) == 0)
                p.kom = "Track " + std::to_string(i);
            track_append(p);
        }
        state.counters["bytes_per_point"] =
            static_cast<double>(store.trk.capacity() * sizeof(trackp_rec) + pool_bytes()) /
            static_cast<double>(state.range(0));
    }
}

BENCHMARK_CAPTURE(insert_into_empty, library, library)
    ->Arg(8192)
    ->Arg(16384)
    ->Arg(wp_limit)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(insert_into_empty, one_key, one_key)
    ->Arg(wp_limit)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(insert_into_empty, one_position, one_position)
    ->Arg(wp_limit)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(insert_over_itself, library, library)
    ->Arg(8192)
    ->Arg(16384)
    ->Arg(wp_limit)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(insert_over_itself, one_position, one_position)
    ->Arg(wp_limit)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(move_all, library, library)->Arg(wp_limit)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(move_all, one_position, one_position)
    ->Arg(wp_limit)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(keep_both)->Arg(8192)->Arg(wp_limit)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(delete_every_second, library, library)
    ->Arg(8192)
    ->Arg(wp_limit)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(delete_every_second, one_key, one_key)
    ->Arg(wp_limit)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(delete_every_second, one_position, one_position)
    ->Arg(wp_limit)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(find_key);
BENCHMARK(clean_a_clean_name);
BENCHMARK_CAPTURE(append_track_points, same_comment, 1)
    ->Arg(1000000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(append_track_points, own_comments, 1000000)
    ->Arg(1000000)
    ->Unit(benchmark::kMillisecond);

} // namespace
