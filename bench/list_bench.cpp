// Sorting the list of a large library by stored keys and by distances to many places.
#include "coords/install.h"
#include "coords/units.h"
#include "core/form1.h"
#include "core/hooks.h"
#include "core/reset.h"
#include "core/texts.h"
#include "waypoints/list.h"
#include "waypoints/list_sort.h"
#include "waypoints/such.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <string>

using namespace velkoro;

namespace {

constexpr int library_size = 32000;
constexpr int track_size = 100000;

// Waypoints over central Europe, a track through them that approaches many of them slowly.
void begin()
{
    reset_all();
    hooks = {};
    text_table.languages = {"none"};
    text_table.loaded = 0;
    text_table.texts.assign(10000, "#");
    coords_install();
    wayp_list_install();
    std::mt19937 random(1);
    for (int i = 0; i < library_size; ++i)
        store.wp.push_back({.nam = "W" + std::to_string(random() % 1000000),
                            .kom = "Huette am Weg Nummer " + std::to_string(random() % 5000),
                            .pos = {static_cast<std::int32_t>(550000000 + random() % 100000000),
                                    static_cast<std::int32_t>(70000000 + random() % 150000000)},
                            .dat = static_cast<std::int32_t>(random() % 1100000000),
                            .prox = static_cast<std::int16_t>(random() % 100),
                            .symb = static_cast<std::int16_t>(random() % 60),
                            .alt = static_cast<std::int16_t>(random() % 3000)});
    store.wp_top = library_size - 1;
    for (int i = 0; i < track_size; ++i)
        track_append(
            {.pos = {static_cast<std::int32_t>(550000000 + i * 1000LL),
                     static_cast<std::int32_t>(145000000 + 70000000 * std::sin(i / 9000.0))}});
    Form1.sort.selected = 0;
    list_refill();
}

void sort_bench(benchmark::State& state)
{
    begin();
    const auto order = static_cast<sort_entry>(state.range(0));
    for (auto _ : state) {
        list_refill(); // back to the store's order, by name
        Form1.sort.selected = static_cast<int>(order);
        wayp_sort_do(order);
        benchmark::DoNotOptimize(Form1.Waypl2.rows.rows.data());
        Form1.sort.selected = 0;
    }
}
BENCHMARK(sort_bench)->ArgName("order")->DenseRange(0, 13)->Unit(benchmark::kMillisecond);

void one_row(benchmark::State& state)
{
    begin();
    Form1.sort.selected = static_cast<int>(sort_entry::nearest_wp);
    sort_apply();
    for (auto _ : state) {
        row_refresh(5, true);
        list_states();
    }
}
BENCHMARK(one_row)->Unit(benchmark::kMicrosecond);

// Another format over the whole library: the rows in view are written anew, 40 of them.
void change_format(benchmark::State& state)
{
    begin();
    Form1.posform.selected = 0;
    const row_list& rows = Form1.Waypl2.rows;
    for (auto _ : state) {
        Form1.posform.selected = 3 - Form1.posform.selected; // degrees and UTM in turn
        zone_fill();
        row_refresh(-1, false);
        for (int row = 0; row < 40; ++row)
            for (int column = 0; column < list_cols; ++column)
                benchmark::DoNotOptimize(rows.cell(row, column));
    }
}
BENCHMARK(change_format)->Unit(benchmark::kMicrosecond);

void mark_all(benchmark::State& state)
{
    begin();
    for (auto _ : state) {
        Form1.mark_inv.click();
    }
}
BENCHMARK(mark_all)->Unit(benchmark::kMillisecond);

// One search over the whole library, as the button of the search window starts it.
void search(benchmark::State& state)
{
    begin();
    such_install();
    such.nam[0].checked = state.range(0) == 0;
    such.nam[1].checked = state.range(0) == 1;
    such.Anf[0].checked = false;
    such.Anf[1].checked = true;
    such.stext.text = state.range(0) == 0 ? "99" : "nummer 49";
    for (auto _ : state) {
        such.form.shown = true;
        such.OK.click();
        benchmark::DoNotOptimize(wayp_list.marks);
    }
}
BENCHMARK(search)->ArgName("comments")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// What one key in the search field costs.
void search_key(benchmark::State& state)
{
    begin();
    such.nam[0].checked = true; // names are searched in capitals
    such.stext.text = "huette am weg nummer 4999";
    for (auto _ : state)
        such.stext.change();
}
BENCHMARK(search_key)->Unit(benchmark::kMicrosecond);

} // namespace
