/// Runs the built velkoro-cli as a process and keeps what it says.
#pragma once

#include <string>
#include <vector>

namespace velkoro {

struct cli_result {
    int code = -1; ///< exit code; -1 when it did not end by itself
    std::string out{}, err{};
};

/// The arguments do not hold the program's name. `input` is its standard input. The environment is
/// the caller's without VELKORO_HOME.
cli_result run_cli(const std::vector<std::string>& arguments, const std::string& input = {});

/// A program folder of its own for a test: the tables of the build, no settings. Ends in "/".
std::string test_home();

/// A file of the sources, as "tests/golden/...".
std::string source_path(const std::string& name);

std::string read_text(const std::string& path);
void write_text(const std::string& path, const std::string& text);

/// An empty folder of its own for the running test; ends in "/".
std::string test_folder();

} // namespace velkoro
