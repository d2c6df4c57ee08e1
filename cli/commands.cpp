#include "cli/command.h"

namespace velkoro {
namespace {

// clang-format off
constexpr cli_command commands[] = {
    {"info",     "kind, version, title, head and counts of each file",    declare_info,     true},
    {"dump",     "reads files in order and prints every record as JSON",  declare_dump,     true},
    {"convert",  "reads files in order and writes them as one",           declare_convert,  true},
    {"text",     "the numbered text, its parameters filled in",           declare_text,     true},
    {"res",      "builds or prints the binary text table",                declare_res,      false},
    {"coord",    "converts coordinates between formats and datums",       declare_coord,    true},
    {"distance", "distance and bearing between positions",                declare_distance, true},
    {"project",  "the position at a distance and bearing from another",   declare_project,  true},
    {"receiver", "identifies a receiver, reads from it and writes to it", declare_receiver, true},
};
// clang-format on

} // namespace

std::span<const cli_command> cli_commands()
{
    return commands;
}

} // namespace velkoro
