#include "cli/command.h"
#include "cli/json_out.h"
#include "cli/messages.h"
#include "cli/reading.h"
#include "core/form1.h"
#include "core/settings.h"
#include "core/store.h"
#include "core/text_tools.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <memory>
#include <span>

namespace velkoro {
namespace {

json tokens_json(const std::string& list)
{
    json tokens = json::array();
    for (const std::string& token : list_tokens(list))
        tokens.push_back(json_text(token));
    return tokens;
}

json position_json(const pos_rec& pos)
{
    return {{"lat", pos.lat}, {"lon", pos.lon}};
}

json record_json(const wayp_rec& w)
{
    return {{"nam", json_text(w.nam)},
            {"kom", json_text(w.kom)},
            {"lat", w.pos.lat},
            {"lon", w.pos.lon},
            {"dat", w.dat},
            {"prox", w.prox},
            {"symb", w.symb},
            {"symbmode", w.symbmode},
            {"alt", w.alt}};
}

json record_json(const route_rec& r)
{
    return {{"nam", json_text(trim(r.nam))},
            {"wps", tokens_json(r.wps)},
            {"farbe", r.farbe},
            {"speed", tokens_json(r.speed)},
            {"korr", tokens_json(r.korr)},
            {"anw", tokens_json(r.anw)}};
}

json record_json(const trackp_rec& t)
{
    return {{"lat", t.pos.lat}, {"lon", t.pos.lon}, {"zeit", t.zeit},
            {"neu", t.neu},     {"art", t.art},     {"kom", json_text(t.kom.view())},
            {"alt", t.alt}};
}

void put(const std::string& text)
{
    std::fwrite(text.data(), 1, text.size(), stdout);
}

std::string json_line(const json& value)
{
    return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

// Records go out one a line as they are made: a track of a million points is not held as JSON.
template <class Record> void put_records(const char* name, std::span<const Record> records)
{
    put(std::string(",\n \"") + name + "\": [");
    const char* before = "\n  ";
    for (const Record& r : records) {
        put(before + json_line(record_json(r)));
        before = ",\n  ";
    }
    put(records.empty() ? "]" : "\n ]");
}

template <class Record> std::span<const Record> used(const std::vector<Record>& all, int top)
{
    return {all.data(), static_cast<std::size_t>(top + 1)};
}

void put_store()
{
    const std::string& list_title = Form1.wayp_titel.text;
    const json head = {
        {"title", json_text(list_title.empty() ? store.trk_title : list_title)},
        {"datum", json_text(chosen_item(Form1.Datum))},
        {"posform", json_text(chosen_item(Form1.posform))},
        {"zeit_text", json_text(settings.list_zone)},
        {"sort", Form1.sort.selected},
        {"refp_name", json_text(store.refp_name)},
        {"refp_pos", position_json(store.refp_pos)},
        {"scale", settings.scale},
    };
    const char* before = "{";
    for (const auto& [key, value] : head.items()) {
        put(before + json_line(key) + ": " + json_line(value));
        before = ",\n ";
    }
    put_records("waypoints", used(store.wp, store.wp_top));
    put_records("routes", used(store.rou, store.rou_top));
    put_records("track", used(store.trk, store.trk_top));
    put(",\n \"messages\": " + json_line(messages_json()) + "}\n");
}

struct dump_options {
    std::vector<std::string> files{};
    const format_row* from = nullptr;
};

int run_dump(const dump_options& o)
{
    read_files(o.files, o.from);
    put_store();
    return cli_exit_code();
}

} // namespace

cli_action declare_dump(CLI::App& command)
{
    const auto o = std::make_shared<dump_options>();
    command.add_option("FILE", o->files, "files, read in this order")->required();
    declare_from(command, o->from);
    return [o] { return run_dump(*o); };
}

} // namespace velkoro
