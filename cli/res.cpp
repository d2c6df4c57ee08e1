#include "cli/command.h"
#include "cli/json_out.h"
#include "cli/messages.h"
#include "core/code_page.h"
#include "core/files.h"
#include "core/texts.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <memory>
#include <stdexcept>

namespace velkoro {
namespace {

struct res_options {
    std::string source{}, target{}, file{};
};

std::string bytes_of(const std::string& path)
{
    std::optional<std::string> bytes = read_file(path);
    if (!bytes)
        throw std::runtime_error(shown_path(path) + ": cannot be read");
    return std::move(*bytes);
}

int run_build(const res_options& o)
{
    write_file(o.target, res_build(bytes_of(o.source)));
    if (cli.json)
        print_json({{"target", json_text(shown_path(o.target))}});
    return exit_done;
}

void print_row(const std::string& first, const std::vector<std::string>& fields)
{
    std::string line = first;
    for (const std::string& field : fields)
        line += "\t" + to_utf8(field);
    std::printf("%s\n", line.c_str());
}

json texts_json(const std::vector<std::string>& fields)
{
    json list = json::array();
    for (const std::string& field : fields)
        list.push_back(json_text(field));
    return list;
}

int run_dump(const res_options& o)
{
    const res_table table = res_decode(bytes_of(o.file));
    if (cli.json) {
        json rows = json::array();
        for (const auto& [number, fields] : table.rows)
            rows.push_back({{"number", number}, {"texts", texts_json(fields)}});
        print_json({{"header", texts_json(table.header)}, {"rows", std::move(rows)}});
    } else {
        for (const auto& [number, fields] : table.rows)
            print_row(std::to_string(number), fields);
    }
    return table.damaged
               ? cli_fail(shown_path(o.file) + ": the table is damaged; the rows before stand")
               : exit_done;
}

} // namespace

cli_action declare_res(CLI::App& command)
{
    const auto o = std::make_shared<res_options>();
    command.require_subcommand(1);
    CLI::App* build =
        command.add_subcommand("build", "builds a table from its tab-separated source");
    build->add_option("SOURCE", o->source, "tab-separated text")->required();
    build->add_option("TARGET", o->target, "binary table")->required();
    CLI::App* dump = command.add_subcommand("dump", "prints number and columns, tab-separated");
    dump->add_option("FILE", o->file, "binary table")->required();
    return [o, build] { return build->parsed() ? run_build(*o) : run_dump(*o); };
}

} // namespace velkoro
