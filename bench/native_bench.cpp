// Reading and writing of native files at their largest.
#include "core/byte_io.h"
#include "core/reset.h"
#include "core/store.h"
#include "core/texts.h"
#include "waypoints/native_t.h"
#include "waypoints/native_wp.h"

#include <benchmark/benchmark.h>

#include <random>

using namespace velkoro;

namespace {

constexpr int track_points = 1000000;

void prepare()
{
    reset_all();
    store.wp_name_max = 16;
    text_table.languages = {"none"};
    text_table.loaded = 0;
}

/// A full library: every waypoint in a place of its own, with a comment.
std::string full_library()
{
    prepare();
    byte_writer w;
    w.out = write_wp({}).bytes;
    std::mt19937 random(1);
    for (int i = 0; i < wp_limit; ++i) {
        w.u8('W');
        w.lstr("WP" + std::to_string(i));
        w.lstr("a place of number " + std::to_string(i));
        w.i32(static_cast<std::int32_t>(random() % 1000000000));
        w.i32(static_cast<std::int32_t>(random()));
        w.i32(800000000 + i);
        w.i16(0);
        w.i16(18);
        w.i16(static_cast<std::int16_t>(i % 3000));
    }
    return w.out;
}

/// Walks of some hours, every tenth point with one of fifty comments.
void long_track()
{
    prepare();
    for (int i = 0; i < track_points; ++i) {
        trackp_rec p;
        p.pos = {560000000 + i * 13, 130000000 + i * 17};
        p.zeit = 1000000000 + i;
        p.alt = static_cast<std::int16_t>(500 + i % 1000);
        p.neu = static_cast<std::int16_t>(i % 5000 == 0 ? -1 : 0);
        if (i % 10 == 0)
            p.kom = "part " + std::to_string(i / 20000);
        track_append(p);
    }
}

void read_library_into_empty(benchmark::State& state)
{
    const std::string bytes = full_library();
    for (auto _ : state) {
        state.PauseTiming();
        wayp_clear();
        state.ResumeTiming();
        read_wp(bytes);
    }
    state.counters["waypoints"] = store.wp_top + 1;
}

void read_library_over_itself(benchmark::State& state)
{
    const std::string bytes = full_library();
    read_wp(bytes);
    for (auto _ : state)
        read_wp(bytes);
    state.counters["waypoints"] = store.wp_top + 1;
}

void write_library(benchmark::State& state)
{
    read_wp(full_library());
    for (auto _ : state)
        benchmark::DoNotOptimize(write_wp({}).bytes.size());
}

void read_track(benchmark::State& state)
{
    long_track();
    const std::string bytes = write_t({}).bytes;
    for (auto _ : state) {
        state.PauseTiming();
        track_clear();
        state.ResumeTiming();
        read_t(bytes);
    }
    state.counters["points"] = store.trk_top + 1;
    state.counters["bytes_a_point"] =
        static_cast<double>(store.trk.capacity() * sizeof(trackp_rec) + pool_bytes()) /
        track_points;
}

void write_track(benchmark::State& state)
{
    long_track();
    for (auto _ : state)
        benchmark::DoNotOptimize(write_t({}).bytes.size());
}

} // namespace

BENCHMARK(read_library_into_empty)->Unit(benchmark::kMillisecond);
BENCHMARK(read_library_over_itself)->Unit(benchmark::kMillisecond);
BENCHMARK(write_library)->Unit(benchmark::kMillisecond);
BENCHMARK(read_track)->Unit(benchmark::kMillisecond);
BENCHMARK(write_track)->Unit(benchmark::kMillisecond);
