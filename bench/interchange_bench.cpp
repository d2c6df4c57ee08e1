// Reading and writing of every foreign format at the size of a full library.
#include "coords/datum.h"
#include "core/form1.h"
#include "core/reset.h"
#include "core/store.h"
#include "core/texts.h"
#include "core/wayp_insert.h"
#include "interchange/export_job.h"
#include "interchange/import_job.h"

#include <benchmark/benchmark.h>

#include <random>
#include <string>

using namespace velkoro;

namespace {

constexpr int waypoints = 32000;

void prepare()
{
    reset_all();
    text_table.languages = {"none"};
    text_table.loaded = 0;
    Form1.posform.selected = 0;
}

/// Every waypoint in a place of its own, with comment, date and altitude.
void fill_library()
{
    prepare();
    std::mt19937 random(1);
    const auto any = [&random](std::int32_t least, std::int32_t most) {
        return std::uniform_int_distribution<std::int32_t>(least, most)(random);
    };
    for (int i = 0; i < waypoints; ++i) {
        wayp_rec w;
        w.nam = "P" + std::to_string(10000 + i);
        w.kom = "a place of number " + std::to_string(i);
        w.pos = {any(-900000000, 900000000), any(-2147483647, 2147483646)};
        w.dat = 400000000 + i * 61;
        w.alt = static_cast<std::int16_t>(i % 3000);
        wp_append(w);
    }
}

std::string extension_of(std::string_view patterns)
{
    return std::string(patterns.substr(1, patterns.find(';') - 1));
}

/// A file of the format; of those that are only read, made here.
std::string library_file(const format_row& row)
{
    fill_library();
    if (row.write)
        return export_bytes(row, export_defaults(row), extension_of(row.export_patterns)).bytes;
    const bool xml = row.name == "Geocaching";
    std::string out = xml ? "<?xml version=\"1.0\" encoding=\"UTF-8\"?><loc version=\"1.0\">"
                          : "Grid\tLat/Lon hddd.ddddd\xB0\r\nDatum\tWGS 84\r\n\r\n"
                            "Header\tName\tDescription\tType\tPosition\tAltitude\r\n\r\n";
    for (int i = 0; i <= store.wp_top; ++i) {
        const wayp_rec& w = store.wp[static_cast<std::size_t>(i)];
        const double lat = w.pos.lat * (180 / 2147483648.0), lon = w.pos.lon * (180 / 2147483648.0);
        if (xml)
            out += "<waypoint><name id=\"" + w.nam + "\"><![CDATA[" + w.kom +
                   "]]></name><coord lat=\"" + std::to_string(lat) + "\" lon=\"" +
                   std::to_string(lon) + "\"/></waypoint>\n";
        else
            out += "Waypoint\t" + w.nam + "\t" + w.kom + "\tUser Waypoint\t" +
                   (lat < 0 ? "S" : "N") + std::to_string(std::abs(lat)) + (lon < 0 ? " W" : " E") +
                   std::to_string(std::abs(lon)) + "\t" + std::to_string(w.alt) + " m\r\n";
    }
    return out + (xml ? "</loc>" : "");
}

void read_into_empty(benchmark::State& state, const format_row* row)
{
    const std::string bytes = library_file(*row);
    const std::string extension = extension_of(row->import_patterns);
    for (auto _ : state) {
        state.PauseTiming();
        wayp_clear();
        state.ResumeTiming();
        import_bytes(*row, bytes, extension);
    }
    state.counters["waypoints"] = store.wp_top + 1;
    if (store.wp_top + 1 != waypoints)
        state.SkipWithError("not all waypoints were read");
}

void read_over_itself(benchmark::State& state, const format_row* row)
{
    const std::string bytes = library_file(*row);
    const std::string extension = extension_of(row->import_patterns);
    wayp_clear();
    import_bytes(*row, bytes, extension);
    for (auto _ : state)
        import_bytes(*row, bytes, extension);
    state.counters["waypoints"] = store.wp_top + 1;
}

void write(benchmark::State& state, const format_row* row)
{
    fill_library();
    const std::string extension = extension_of(row->export_patterns);
    for (auto _ : state)
        benchmark::DoNotOptimize(export_bytes(*row, export_defaults(*row), extension));
    state.counters["waypoints"] = store.wp_top + 1;
}

const bool registered = [] {
    for (const format_row& row : formats()) {
        const std::string name(row.name);
        const auto add = [&](const char* what, void (*run)(benchmark::State&, const format_row*)) {
            benchmark::RegisterBenchmark((name + "/" + what).c_str(), run, &row)
                ->Unit(benchmark::kMillisecond);
        };
        if (row.read) {
            add("read", read_into_empty);
            add("read over itself", read_over_itself);
        }
        if (row.write)
            add("write", write);
    }
    return true;
}();

} // namespace
