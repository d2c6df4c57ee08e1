/// The pages of the help: HTML files in the program folder, one folder per language (help/en,
/// help/de), with one list of contents each, index.txt. A page is called by its topic, the name of
/// its file without the extension; the topics are the same in every language.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

struct help_topic {
    std::string topic{};
    std::string title{}; ///< Windows-1252
    int level = 1;       ///< 2: belongs to the page of level 1 ahead of it
    bool operator==(const help_topic&) const = default;
};

/// The contents from the bytes of an index.txt (UTF-8): a line is file, title and level,
/// tab-separated. Lines of another form are left out.
std::vector<help_topic> help_contents_read(std::string_view bytes);

/// The folder of the language in force, with "/" at its end; the English one for a language without
/// pages of its own; "" when there is no help at all.
std::string help_folder();
/// The contents in the language in force; empty without help.
std::vector<help_topic> help_contents();

} // namespace velkoro
