// Positions to text and back in every kind of format, distances, and what all that allocates.
#include "coords/coord_text.h"
#include "coords/distance.h"
#include "core/form1.h"
#include "core/reset.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <new>
#include <random>
#include <string>
#include <vector>

namespace {
long allocations = 0;
}

// Counted here, so that a conversion that allocates shows up in the table. Inlined, GCC 12 takes
// the pair for mismatched.
[[gnu::noinline]] void* operator new(std::size_t size)
{
    ++allocations;
    if (void* const p = std::malloc(size))
        return p;
    throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* p) noexcept
{
    std::free(p);
}
[[gnu::noinline]] void operator delete(void* p, std::size_t) noexcept
{
    std::free(p);
}

using namespace velkoro;

namespace {

constexpr std::size_t count = 4096; // positions that take turns

struct coord_line {
    std::string zone{}, east{}, north{};
};

constexpr const char* table =
    "WGS 84,WGS 84,WGS 84,WGS 84,WGS 84,Potsdam,CH-1903,NTF (France),Ord Srvy GB,Ireland 1965,"
    "Geodetic Datum 1949\n"
    "#(A) BMN M31,Austria (MGI),13.3333333,0,1,450000,-5000000\n"
    "Austria (MGI),739.845,0.10037483,585,81,458\n"
    "CH-1903,739.845,0.10037483,674,15,405\n"
    "Geodetic Datum 1949,-251,-0.14192702,84,-22,209\n"
    "Ireland 1965,796.811,0.11960023,506,-122,611\n"
    "NTF (France),-112.2,-0.54738855,-168,-60,320\n"
    "Ord Srvy GB,573.604,0.11960023,375,-111,431\n"
    "Potsdam,739.845,0.10037483,606,23,413\n"
    "WGS 84,0,0,0,0,0\n";

/// The usual datum of the format chosen.
void begin(int fmt)
{
    reset_all();
    coord = {};
    datums = datum_parse(table);
    Form1.Datum.selected = datum_find(datums.grid_datum[static_cast<std::size_t>(fmt)]);
    Form1.posform.selected = fmt;
}

/// Places in a box of degrees where the format has texts.
std::vector<pos_rec> places(int fmt)
{
    struct box {
        double lat0, lat1, lon0, lon1;
    };
    const box b = fmt <= fmt_mgrs      ? box{-79, 83, -180, 179}
                  : fmt == fmt_gk      ? box{47, 55, 6, 15}
                  : fmt == fmt_swiss   ? box{45.8, 47.8, 6, 10.5}
                  : fmt == fmt_lambert ? box{42.5, 51, -4, 8}
                  : fmt == fmt_british ? box{50.2, 60.5, -7, 1.5}
                  : fmt == fmt_irish   ? box{51.5, 55.3, -10.5, -5.5}
                  : fmt == fmt_nz      ? box{-47, -34.5, 166.5, 178.5}
                                       : box{46.5, 49, 9.6, 17};
    std::mt19937 random(3);
    std::uniform_real_distribution<double> lat(b.lat0, b.lat1), lon(b.lon0, b.lon1);
    constexpr double semi = 2147483648.0 / 180;
    std::vector<pos_rec> all;
    for (std::size_t i = 0; i < count; ++i)
        all.push_back({static_cast<std::int32_t>(lat(random) * semi),
                       static_cast<std::int32_t>(lon(random) * semi)});
    return all;
}

void finish(benchmark::State& state, long before)
{
    state.SetItemsProcessed(state.iterations());
    state.counters["allocations"] =
        static_cast<double>(allocations - before) / static_cast<double>(state.iterations());
}

void to_text(benchmark::State& state)
{
    const int fmt = static_cast<int>(state.range(0));
    begin(fmt);
    const std::vector<pos_rec> all = places(fmt);
    coord_line t;
    std::size_t i = 0;
    const long before = allocations;
    for (auto _ : state) {
        pos_to_text(all[i++ % count], t.zone, t.east, t.north, 0, fmt);
        benchmark::DoNotOptimize(t.east.data());
    }
    finish(state, before);
}

void from_text(benchmark::State& state)
{
    const int fmt = static_cast<int>(state.range(0));
    begin(fmt);
    std::vector<coord_line> all;
    for (const pos_rec& p : places(fmt)) {
        coord_line t;
        pos_to_text(p, t.zone, t.east, t.north, 0, fmt);
        all.push_back(t);
    }
    std::size_t i = 0;
    pos_rec p;
    const long before = allocations;
    for (auto _ : state) {
        const coord_line& t = all[i++ % count];
        benchmark::DoNotOptimize(text_to_pos(t.zone, t.east, t.north, p, fmt));
        benchmark::DoNotOptimize(p);
    }
    finish(state, before);
}

using measure = dist_bear (*)(const pos_rec&, const pos_rec&);

/// Neighbours, as in tracks, and pairs from all over the world.
void distances(benchmark::State& state, measure f, bool near)
{
    begin(fmt_degrees);
    std::vector<pos_rec> all = places(fmt_degrees);
    if (near)
        for (std::size_t i = 1; i < count; ++i)
            all[i] = {all[0].lat + static_cast<std::int32_t>(i) * 900,
                      all[0].lon + static_cast<std::int32_t>(i * i % 4000)};
    std::size_t i = 0;
    const long before = allocations;
    for (auto _ : state) {
        benchmark::DoNotOptimize(f(all[(i + 1) % count], all[i % count]));
        ++i;
    }
    finish(state, before);
}

void project(benchmark::State& state)
{
    begin(fmt_degrees);
    const std::vector<pos_rec> all = places(fmt_degrees);
    std::size_t i = 0;
    const long before = allocations;
    for (auto _ : state) {
        benchmark::DoNotOptimize(dist_to_wgs(static_cast<double>(i % 5000) + 1.5,
                                             static_cast<double>(i % 360), all[i % count]));
        ++i;
    }
    finish(state, before);
}

} // namespace

BENCHMARK(to_text)->DenseRange(fmt_degrees, fmt_user);
BENCHMARK(from_text)->DenseRange(fmt_degrees, fmt_user);
BENCHMARK_CAPTURE(distances, flat_near, dist_flat, true);
BENCHMARK_CAPTURE(distances, flat_far, dist_flat, false);
BENCHMARK_CAPTURE(distances, chord, dist_chord, false);
BENCHMARK(project);
