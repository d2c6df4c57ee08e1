/// The sources as the architecture tests see them: paths, texts and includes.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

struct source_file {
    std::string text{};
    std::vector<std::string> own{};    ///< #include "..."
    std::vector<std::string> system{}; ///< #include <...>
};

/// By path from the root, as "core/store.h".
using source_tree = std::map<std::string, source_file>;

/// Folders from the bottom up. A file includes from its own folder and from lower ones; the tests
/// stand above all.
inline const std::vector<std::string> folder_order = {
    "core",  "coords", "waypoints", "routes", "tracks", "map",   "comm", "interchange",
    "print", "ui",     "cli",       "tools",  "app",    "bench", "fuzz", "tests"};

/// All .h and .cpp of the folders above.
source_tree read_sources();

/// The sources of a text: fills the includes.
source_file parse_source(std::string text);

std::string folder_of(const std::string& path);

// Each finds what breaks its rule; one line a finding.
std::vector<std::string> upward_includes(const source_tree& tree);
std::vector<std::string> unresolved_includes(const source_tree& tree);
std::vector<std::string> toolkit_includes(const source_tree& tree);
std::vector<std::string> include_circles(const source_tree& tree);
std::vector<std::string> headers_without_guard(const source_tree& tree);

/// Numbers of texts that a source asks for: text(N, say(N, ask(N, tags of controls and windows,
/// numbers of message boxes, and constants whose name begins with "text_" or ends in "_text".
std::set<int> text_numbers(const std::string& text);
/// Numbers of texts that a form asks for: its properties tag, access and empty.
std::set<int> form_text_numbers(const std::string& form);

} // namespace velkoro
