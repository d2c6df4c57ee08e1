#include "core/texts.h"

#include "cli/command.h"
#include "cli/json_out.h"
#include "cli/messages.h"
#include "core/code_page.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <memory>

namespace velkoro {
namespace {

struct text_options {
    int number = 0;
    std::vector<std::string> parameters{}; // UTF-8
};

int run_text(const text_options& o)
{
    std::string p[3] = {"#", "#", "#"};
    for (std::size_t i = 0; i < o.parameters.size(); ++i)
        p[i] = from_utf8(o.parameters[i]);
    const std::string result = text(o.number, p[0], p[1], p[2]);
    if (cli.json)
        print_json({{"number", o.number}, {"text", json_text(result)}});
    else
        std::printf("%s\n", to_utf8(result).c_str());
    return exit_done;
}

} // namespace

cli_action declare_text(CLI::App& command)
{
    const auto o = std::make_shared<text_options>();
    command.add_option("N", o->number, "text number")->required();
    command.add_option("P", o->parameters, "fill the marks \"#\" in order")->expected(0, 3);
    return [o] { return run_text(*o); };
}

} // namespace velkoro
