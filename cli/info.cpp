#include "cli/command.h"
#include "cli/json_out.h"
#include "cli/messages.h"
#include "cli/reading.h"
#include "core/byte_io.h"
#include "core/code_page.h"
#include "core/files.h"
#include "core/form1.h"
#include "core/settings.h"
#include "core/store.h"
#include "core/text_tools.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <memory>
#include <optional>

namespace velkoro {
namespace {

struct file_info {
    std::string file{};
    file_kind kind = file_kind::unknown;
    int version = 0;    ///< of the head; a section behind it may be newer
    bool whole = false; ///< read without a complaint
    json fields{};      ///< what is told about this kind, in order
};

int version_of(file_kind kind, std::string_view bytes)
{
    byte_reader in(bytes);
    in.skip(kind == file_kind::waypoints ? 17 : 13); // the magic
    return in.i16();
}

json waypoint_fields()
{
    return {{"title", json_text(Form1.wayp_titel.text)},
            {"datum", json_text(chosen_item(Form1.Datum))},
            {"posform", json_text(chosen_item(Form1.posform))},
            {"zeit_text", json_text(settings.list_zone)},
            {"sort", Form1.sort.selected},
            {"refp_name", json_text(store.refp_name)},
            {"scale", settings.scale},
            {"waypoints", store.wp_top + 1},
            {"routes", store.rou_top + 1}};
}

json track_fields()
{
    int segments = 0;
    std::int32_t first = 0, last = 0;
    for (std::int32_t i = 0; i <= store.trk_top; ++i) {
        const trackp_rec& p = store.trk[static_cast<std::size_t>(i)];
        segments += p.neu != 0;
        if (p.zeit > 0) {
            first = first == 0 ? p.zeit : first;
            last = p.zeit;
        }
    }
    return {{"title", json_text(store.trk_title)},
            {"points", store.trk_top + 1},
            {"segments", segments},
            {"first_time", first},
            {"last_time", last}};
}

file_info examine(const std::string& path)
{
    file_info info;
    info.file = path;
    const std::optional<std::string> bytes = read_file(path);
    info.kind = kind_of_file(path, bytes.value_or(""));
    empty_everything();
    info.whole = read_one_file(path);
    if (!bytes || info.kind == file_kind::unknown)
        return info;
    info.version = version_of(info.kind, *bytes);
    info.fields = info.kind == file_kind::waypoints ? waypoint_fields() : track_fields();
    return info;
}

const char* kind_name(file_kind kind)
{
    switch (kind) {
    case file_kind::waypoints: return "waypoints";
    case file_kind::track: return "track";
    case file_kind::unknown: break;
    }
    return "unknown";
}

json info_json(const file_info& info)
{
    json object = {{"file", info.file}, {"kind", kind_name(info.kind)}};
    if (info.kind != file_kind::unknown) {
        object["version"] = info.version;
        object.update(info.fields);
    }
    object["whole"] = info.whole;
    return object;
}

void print_info(const file_info& info)
{
    if (info.kind == file_kind::unknown)
        return; // the reason stands on standard error
    std::printf("%s\n", info.file.c_str());
    std::printf("  %-12s %s, version %d\n", "kind", kind_name(info.kind), info.version);
    for (const auto& [name, value] : info.fields.items())
        std::printf("  %-12s %s\n", name.c_str(),
                    (value.is_string() ? value.get<std::string>() : value.dump()).c_str());
}

struct info_options {
    std::vector<std::string> files{};
};

int run_info(const info_options& o)
{
    json list = json::array();
    for (const std::string& path : o.files) {
        const file_info info = examine(path);
        if (cli.json)
            list.push_back(info_json(info));
        else
            print_info(info);
    }
    if (cli.json)
        print_json({{"files", std::move(list)}});
    return cli_exit_code();
}

} // namespace

cli_action declare_info(CLI::App& command)
{
    const auto o = std::make_shared<info_options>();
    command.add_option("FILE", o->files, "files to look at")->required();
    return [o] { return run_info(*o); };
}

} // namespace velkoro
