#include "cli/command.h"
#include "cli/json_out.h"
#include "cli/messages.h"
#include "cli/reading.h"
#include "core/code_page.h"
#include "core/files.h"
#include "core/texts.h"
#include "interchange/import_job.h"
#include "waypoints/native_t.h"
#include "waypoints/native_wp.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <memory>
#include <optional>

namespace velkoro {
namespace {

json optional_text(const std::optional<std::string>& text)
{
    return text ? json_text(*text) : json(nullptr);
}

json waypoint_fields(const wp_summary& s)
{
    json fields = {{"kind", "waypoints"},
                   {"version", s.head.version},
                   {"title", json_text(s.head.title)},
                   {"datum", optional_text(s.head.datum)},
                   {"posform", optional_text(s.head.posform)}};
    if (!s.head.datum) { // an old file holds bare indexes
        fields["datum"] = s.head.datum_index;
        fields["posform"] = s.head.posform_index;
    }
    fields["zeit_text"] = optional_text(s.head.zone);
    fields["sort"] = s.head.sort;
    fields["refp_name"] = json_text(s.head.refp_name);
    fields["scale"] = s.head.scale;
    fields["waypoints"] = s.waypoints;
    fields["routes"] = s.routes;
    fields["sections"] = s.append_sections + s.reconcile_sections;
    return fields;
}

json track_fields(const t_summary& s)
{
    return {{"kind", "track"},          {"version", s.version},   {"title", json_text(s.title)},
            {"points", s.points},       {"segments", s.segments}, {"first_time", s.first_time},
            {"last_time", s.last_time}, {"sections", s.sections}};
}

/// A file of another program, read aside.
json foreign_fields(const format_row& format, const std::string& path, std::string_view bytes,
                    native_end& end)
{
    import_content content;
    const import_result result = import_bytes(format, bytes, path_extension(path), false, &content);
    end = result.end;
    return {{"kind", "foreign"},
            {"format", json_text(std::string(format.name))},
            {"title", json_text(result.title)},
            {"waypoints", content.waypoints.size()},
            {"routes", content.routes.size()},
            {"bad_lines", result.bad_lines}};
}

/// What a file holds; a null value when it is no file of a known kind.
json examine(const std::string& path, const format_row* from)
{
    const std::optional<std::string> bytes = read_file(path);
    if (!bytes) {
        cli_fail(shown_path(path) + ": cannot be read");
        return nullptr;
    }
    json fields;
    native_end end = native_end::not_native;
    const source_kind source = kind_of_file(path, *bytes, from);
    switch (source.kind) {
    case file_kind::waypoints: {
        const wp_summary summary = wp_info(*bytes);
        end = summary.end;
        fields = waypoint_fields(summary);
        break;
    }
    case file_kind::track: {
        const t_summary summary = t_info(*bytes);
        end = summary.end;
        fields = track_fields(summary);
        break;
    }
    case file_kind::foreign: fields = foreign_fields(*source.format, path, *bytes, end); break;
    case file_kind::unknown: break;
    }
    if (end == native_end::not_native) {
        cli_fail(shown_path(path) + ": not a file of a known kind");
        return nullptr;
    }
    if (end == native_end::newer)
        cli_fail(shown_path(path) + ": of a newer version");
    else if (end != native_end::whole)
        cli_fail(shown_path(path) +
                 ": damaged; the counts are those of what is ahead of the damage");
    fields["whole"] = end == native_end::whole;
    return fields;
}

void print_fields(const std::string& path, const json& fields)
{
    std::printf("%s\n", path.c_str());
    for (const auto& [name, value] : fields.items()) {
        const std::string shown = value.is_string() ? value.get<std::string>() : value.dump();
        std::printf("  %-12s %s\n", name.c_str(), shown.c_str());
    }
}

struct info_options {
    std::vector<std::string> files{};
    const format_row* from = nullptr;
};

int run_info(const info_options& o)
{
    json list = json::array();
    for (const std::string& path : o.files) {
        const json fields = examine(path, o.from);
        if (fields.is_null())
            continue;
        if (cli.json) {
            json object = {{"file", json_text(shown_path(path))}};
            object.update(fields);
            list.push_back(std::move(object));
        } else {
            print_fields(path, fields);
        }
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
    declare_from(command, o->from);
    return [o] { return run_info(*o); };
}

} // namespace velkoro
