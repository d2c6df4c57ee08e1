#include "tests/architecture/source_tree.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <sstream>
#include <string_view>

namespace velkoro {
namespace {

namespace fs = std::filesystem;

int height_of(const std::string& folder)
{
    const auto place = std::find(folder_order.begin(), folder_order.end(), folder);
    return place == folder_order.end() ? -1 : static_cast<int>(place - folder_order.begin());
}

std::string read_text(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

// <QString>, <QtCore/QString>, <QtWidgets>, <qglobal.h>
bool is_toolkit(const std::string& include)
{
    const std::string name = include.substr(include.rfind('/') + 1);
    if (include.starts_with("Qt"))
        return true;
    if (name.size() < 2)
        return false;
    if (name[0] == 'Q')
        return std::isupper(static_cast<unsigned char>(name[1])) != 0 || name[1] == 't';
    return name[0] == 'q' && name.ends_with(".h");
}

// bench, fuzz and tests use everything below the windows and do not include each other.
bool may_include(const std::string& from, const std::string& to)
{
    if (from == to)
        return true;
    if (from == "tests")
        return true;
    if (to == "bench" || to == "fuzz" || to == "tests")
        return false;
    if (from == "cli" && to == "ui") // the command line links no window toolkit
        return false;
    return height_of(to) < height_of(from);
}

} // namespace

std::string folder_of(const std::string& path)
{
    return path.substr(0, path.find('/'));
}

source_file parse_source(std::string text)
{
    source_file file;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        char hash = 0;
        std::string directive;
        char open = 0;
        if (!(words >> hash) || hash != '#' || !(words >> directive))
            continue;
        // The name may stand right behind the word: #include"a.h"
        const std::size_t at = directive.find_first_of("<\"");
        if (directive.substr(0, at) != "include")
            continue;
        if (at != std::string::npos)
            words.seekg(-static_cast<int>(directive.size() - at), std::ios::cur);
        if (!(words >> open) || (open != '<' && open != '"'))
            continue;
        std::string name;
        std::getline(words, name, open == '<' ? '>' : '"');
        (open == '"' ? file.own : file.system).push_back(name);
    }
    file.text = std::move(text);
    return file;
}

source_tree read_sources()
{
    source_tree tree;
    const fs::path root = VELKORO_SOURCE_DIR;
    for (const std::string& folder : folder_order) {
        if (!fs::is_directory(root / folder))
            continue;
        for (const auto& entry : fs::recursive_directory_iterator(root / folder))
            if (entry.path().extension() == ".h" || entry.path().extension() == ".cpp")
                tree[fs::relative(entry.path(), root).generic_string()] =
                    parse_source(read_text(entry.path()));
    }
    return tree;
}

std::vector<std::string> upward_includes(const source_tree& tree)
{
    std::vector<std::string> found;
    for (const auto& [path, file] : tree)
        for (const std::string& include : file.own)
            if (!may_include(folder_of(path), folder_of(include)))
                found.push_back(path + " includes " + include);
    return found;
}

std::vector<std::string> unresolved_includes(const source_tree& tree)
{
    std::vector<std::string> found;
    for (const auto& [path, file] : tree)
        for (const std::string& include : file.own)
            if (!tree.contains(include))
                found.push_back(path + " includes " + include);
    return found;
}

std::vector<std::string> toolkit_includes(const source_tree& tree)
{
    std::vector<std::string> found;
    for (const auto& [path, file] : tree) {
        const std::string folder = folder_of(path);
        // Tests of windows and the benchmark of the start drive real windows.
        if (folder == "ui" || folder == "app" || path.starts_with("tests/ui/") ||
            path.starts_with("bench/"))
            continue;
        for (const auto* list : {&file.own, &file.system})
            for (const std::string& include : *list)
                if (is_toolkit(include))
                    found.push_back(path + " includes " + include);
    }
    return found;
}

std::vector<std::string> include_circles(const source_tree& tree)
{
    std::vector<std::string> found, way;
    std::set<std::string> done;
    std::function<void(const std::string&)> visit = [&](const std::string& path) {
        const auto again = std::find(way.begin(), way.end(), path);
        if (again != way.end()) {
            std::string line;
            for (auto i = again; i != way.end(); ++i)
                line += *i + " -> ";
            found.push_back(line + path);
            return;
        }
        const auto file = tree.find(path);
        if (file == tree.end() || done.contains(path))
            return;
        way.push_back(path);
        for (const std::string& include : file->second.own)
            visit(include);
        way.pop_back();
        done.insert(path);
    };
    for (const auto& [path, file] : tree)
        visit(path);
    return found;
}

std::vector<std::string> headers_without_guard(const source_tree& tree)
{
    std::vector<std::string> found;
    for (const auto& [path, file] : tree) {
        if (!path.ends_with(".h"))
            continue;
        std::istringstream lines(file.text);
        std::string line;
        while (std::getline(lines, line) && (line.empty() || line.starts_with("//"))) {
        }
        if (line != "#pragma once")
            found.push_back(path);
    }
    return found;
}

std::set<int> text_numbers(const std::string& text)
{
    std::set<int> numbers;
    const auto is_word = [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
    };
    // The numbers that stand at a place, blank-separated; `end` must follow the last one.
    const auto take = [&](std::size_t at, std::string_view ends) {
        const std::size_t stop = text.find_first_not_of("0123456789 \n", at);
        if (stop == std::string::npos || ends.find(text[stop]) == std::string_view::npos)
            return;
        std::istringstream words(text.substr(at, stop - at));
        for (int n = 0; words >> n;)
            if (n > 0)
                numbers.insert(n);
    };
    const auto after_each = [&](std::string_view what, bool at_word_begin, const auto& then) {
        for (std::size_t at = text.find(what); at != std::string::npos;
             at = text.find(what, at + 1))
            if (!at_word_begin || at == 0 || !is_word(text[at - 1]))
                then(at + what.size());
    };
    after_each("text(", true, [&](std::size_t at) { take(at, ",)"); });
    after_each("say(", true, [&](std::size_t at) { take(at, ",)"); });
    after_each(".tag = \"", false, [&](std::size_t at) { take(at, "\""); });
    after_each("ask(", true, [&](std::size_t at) { take(at, ",)"); });
    after_each(".number = ", true, [&](std::size_t at) { take(at, ",};"); });
    // constexpr int text_ok = 7302, text_yes = 7303;
    after_each("text_", true, [&](std::size_t at) {
        while (at < text.size() && is_word(text[at]))
            ++at;
        if (text.compare(at, 3, " = ") == 0)
            take(at + 3, ",;");
    });
    after_each("_text = ", false, [&](std::size_t at) { take(at, ";"); });
    // window form{"name", "caption", "numbers"}
    after_each("window form{", true, [&](std::size_t at) {
        const std::size_t end = text.find('}', at);
        const std::size_t last = text.rfind('"', end);
        const std::size_t first = last == std::string::npos ? last : text.rfind('"', last - 1);
        if (first != std::string::npos && first > at)
            take(first + 1, "\"");
    });
    return numbers;
}

std::set<int> form_text_numbers(const std::string& form)
{
    std::set<int> numbers;
    for (const std::string property : {"tag", "access", "empty"}) {
        const std::string begin = "<property name=\"" + property + "\" stdset=\"0\">";
        for (std::size_t at = form.find(begin); at != std::string::npos;
             at = form.find(begin, at + 1)) {
            const std::size_t value = form.find("<string>", at) + 8;
            std::istringstream words(form.substr(value, form.find('<', value) - value));
            for (int n = 0; words >> n;)
                if (n > 0)
                    numbers.insert(n);
        }
    }
    return numbers;
}

} // namespace velkoro
