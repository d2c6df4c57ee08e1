#include "core/help_pages.h"

#include "core/code_page.h"
#include "core/files.h"
#include "core/text_tools.h"
#include "core/texts.h"

namespace velkoro {
namespace {

constexpr std::string_view page_extension = ".html";
constexpr const char* contents_file = "index.txt";

struct help_language {
    std::string_view name; ///< as the head of the text table has it
    const char* folder;
};
constexpr help_language help_languages[] = {{"Deutsch", "de"}, {"English", "en"}};

// The folder of the text table's language first, English behind it.
std::vector<std::string> folder_candidates()
{
    std::vector<std::string> names;
    const auto column = static_cast<std::size_t>(text_table.language);
    if (column < text_table.languages.size())
        for (const help_language& l : help_languages)
            if (text_table.languages[column] == l.name)
                names.emplace_back(l.folder);
    names.emplace_back("en");
    return names;
}

} // namespace

std::vector<help_topic> help_contents_read(std::string_view bytes)
{
    std::vector<help_topic> contents;
    for (const auto& line : split_lines(bytes)) {
        std::string rest(line);
        help_topic t;
        const std::string file = cut_token(rest, "\t");
        t.title = from_utf8(cut_token(rest, "\t"));
        if (file.size() <= page_extension.size() || !file.ends_with(page_extension) ||
            t.title.empty() || (rest != "1" && rest != "2"))
            continue;
        t.topic = file.substr(0, file.size() - page_extension.size());
        t.level = rest == "2" ? 2 : 1;
        contents.push_back(t);
    }
    return contents;
}

std::string help_folder()
{
    for (const std::string& name : folder_candidates()) {
        const std::string folder = program_path("help/" + name + "/");
        if (file_exists(folder + contents_file))
            return folder;
    }
    return {};
}

std::vector<help_topic> help_contents()
{
    const std::string folder = help_folder();
    if (folder.empty())
        return {};
    return help_contents_read(read_file(folder + contents_file).value_or(std::string()));
}

} // namespace velkoro
