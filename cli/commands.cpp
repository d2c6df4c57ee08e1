#include "cli/command.h"

namespace velkoro {
namespace {

// clang-format off
constexpr cli_command commands[] = {
    {"text",     "the numbered text, its parameters filled in",           declare_text,     true},
    {"res",      "builds or prints the binary text table",                declare_res,      false},
};
// clang-format on

} // namespace

std::span<const cli_command> cli_commands()
{
    return commands;
}

} // namespace velkoro
