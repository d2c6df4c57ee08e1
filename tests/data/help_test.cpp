// The pages of the help: both languages alike, every link and anchor at home, well-formed.

#include "core/help_pages.h"
#include "tests/data/data_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

using namespace velkoro;

namespace {

namespace fs = std::filesystem;

constexpr const char* languages[] = {"en", "de"};

std::set<std::string> page_files(const std::string& language)
{
    std::set<std::string> names;
    for (const auto& entry :
         fs::directory_iterator(std::string(VELKORO_SOURCE_DIR) + "/data/help/" + language))
        if (entry.path().extension() == ".html")
            names.insert(entry.path().filename().string());
    return names;
}

std::vector<help_topic> contents(const std::string& language)
{
    return help_contents_read(data_file("help/" + language + "/index.txt"));
}

struct tag {
    std::string name{};
    bool closes = false, empty = false;
    std::map<std::string, std::string> attributes{};
};

// A page taken apart; `fault` tells the first thing that is not well-formed, "" none.
struct page {
    std::vector<tag> tags{};
    std::string fault{};
};

bool name_character(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-';
}

tag read_tag(const std::string& inside, std::string& fault)
{
    tag t;
    std::size_t at = 0;
    const auto word = [&] {
        const std::size_t from = at;
        while (at < inside.size() && name_character(inside[at]))
            ++at;
        return inside.substr(from, at - from);
    };
    if (inside.starts_with('/')) {
        t.closes = true;
        ++at;
    }
    t.name = word();
    if (t.name.empty())
        fault = "tag without a name: " + inside;
    while (at < inside.size() && fault.empty()) {
        if (inside[at] == ' ') {
            ++at;
        } else if (inside.substr(at) == "/") {
            t.empty = true;
            ++at;
        } else {
            const std::string name = word();
            const bool quoted = !name.empty() && inside.substr(at, 2) == "=\"";
            const std::size_t end = quoted ? inside.find('"', at + 2) : std::string::npos;
            if (end == std::string::npos) {
                fault = "attribute: " + inside;
                break;
            }
            if (!t.attributes.emplace(name, inside.substr(at + 2, end - at - 2)).second)
                fault = "attribute twice: " + inside;
            at = end + 1;
        }
    }
    return t;
}

page take_apart(std::string text)
{
    constexpr std::string_view doctype = "<!DOCTYPE html>\n";
    page p;
    if (!text.starts_with(doctype)) {
        p.fault = "no doctype";
        return p;
    }
    text.erase(0, doctype.size());
    std::vector<std::string> open;
    for (std::size_t at = 0; at < text.size() && p.fault.empty();) {
        const char c = text[at];
        if (c == '&') {
            const std::string rest = text.substr(at, 8);
            if (!rest.starts_with("&amp;") && !rest.starts_with("&lt;") &&
                !rest.starts_with("&gt;") && !rest.starts_with("&quot;"))
                p.fault = "entity: " + rest;
        }
        if (c == '>')
            p.fault = "stray >";
        if (c != '<') {
            if (open.empty() && c != '\n')
                p.fault = "text outside";
            ++at;
            continue;
        }
        const std::size_t end = text.find('>', at);
        if (end == std::string::npos) {
            p.fault = "tag without an end";
            break;
        }
        const tag t = read_tag(text.substr(at + 1, end - at - 1), p.fault);
        if (t.closes && (open.empty() || open.back() != t.name))
            p.fault = "closes what is not open: " + t.name;
        else if (t.closes)
            open.pop_back();
        else if (!t.empty)
            open.push_back(t.name);
        p.tags.push_back(t);
        at = end + 1;
    }
    if (p.fault.empty() && !open.empty())
        p.fault = "not closed: " + open.back();
    return p;
}

page page_of(const std::string& language, const std::string& file)
{
    return take_apart(data_file("help/" + language + "/" + file));
}

std::vector<std::string> shape(const page& p, const std::string& name, const std::string& attribute)
{
    std::vector<std::string> values;
    for (const tag& t : p.tags)
        if (t.name == name && t.attributes.contains(attribute))
            values.push_back(t.attributes.at(attribute));
    return values;
}

} // namespace

TEST(Help, HasEveryPageInBothLanguages)
{
    EXPECT_EQ(page_files("en"), page_files("de"));
    EXPECT_GE(page_files("en").size(), 19U);
}

TEST(Help, TheContentsNameEveryPageOnceAndInTheSameOrder)
{
    std::vector<std::pair<std::string, int>> order[2];
    for (int i = 0; i < 2; ++i) {
        std::set<std::string> named;
        for (const help_topic& t : contents(languages[i])) {
            EXPECT_TRUE(named.insert(t.topic + ".html").second) << t.topic;
            order[i].emplace_back(t.topic, t.level);
        }
        EXPECT_EQ(named, page_files(languages[i]));
    }
    EXPECT_EQ(order[0], order[1]);
    ASSERT_FALSE(order[0].empty());
    EXPECT_EQ(order[0].front(), (std::pair<std::string, int>{"index", 1})) << "the first page";
}

TEST(Help, EveryPageIsWellFormedAndBeginsWithItsHeading)
{
    for (const char* language : languages)
        for (const std::string& file : page_files(language)) {
            const page p = page_of(language, file);
            EXPECT_EQ(p.fault, "") << language << '/' << file;
            EXPECT_EQ(shape(p, "html", "lang"), std::vector<std::string>{language}) << file;
            EXPECT_EQ(shape(p, "meta", "charset"), std::vector<std::string>{"utf-8"}) << file;
            EXPECT_EQ(std::ranges::count_if(
                          p.tags, [](const tag& t) { return t.name == "h1" && !t.closes; }),
                      1)
                << file;
        }
}

TEST(Help, ThePageTitlesAreThoseOfTheContents)
{
    for (const char* language : languages) {
        const std::string index = data_file("help/" + std::string(language) + "/index.txt");
        for (const std::string& file : page_files(language)) {
            const std::string text = data_file("help/" + std::string(language) + "/" + file);
            const std::size_t from = text.find("<title>") + 7;
            const std::string title = text.substr(from, text.find("</title>") - from);
            EXPECT_NE(index.find(file + "\t" + title + "\t"), std::string::npos) << file << title;
        }
    }
}

TEST(Help, EveryLinkLeadsToAPageAndAnAnchorOfIt)
{
    std::size_t links = 0;
    for (const char* language : languages) {
        const std::set<std::string> files = page_files(language);
        for (const std::string& file : files)
            for (const std::string& link : shape(page_of(language, file), "a", "href")) {
                ++links;
                const std::size_t mark = std::min(link.find('#'), link.size());
                const std::string target = mark == 0 ? file : link.substr(0, mark);
                ASSERT_TRUE(files.contains(target)) << language << '/' << file << ": " << link;
                if (mark == link.size())
                    continue;
                const auto anchors = shape(page_of(language, target), "a", "name");
                EXPECT_EQ(std::ranges::count(anchors, link.substr(mark + 1)), 1)
                    << language << '/' << file << ": " << link;
            }
    }
    EXPECT_GT(links, 100U);
}

TEST(Help, BothLanguagesHaveTheSameAnchorsLinksAndParts)
{
    for (const std::string& file : page_files("en")) {
        const page en = page_of("en", file);
        const page de = page_of("de", file);
        const auto sorted_shape = [](const page& p, const char* attribute) {
            auto s = shape(p, "a", attribute);
            std::ranges::sort(s); // a glossary is in the order of its language
            return s;
        };
        EXPECT_EQ(shape(en, "a", "name"), shape(de, "a", "name")) << file;
        EXPECT_EQ(sorted_shape(en, "href"), sorted_shape(de, "href")) << file;
        for (const char* part : {"h2", "li", "tr", "dt", "pre"}) {
            const auto count = [part](const page& p) {
                return std::ranges::count_if(p.tags,
                                             [part](const tag& t) { return t.name == part; });
            };
            EXPECT_EQ(count(en), count(de)) << file << ' ' << part;
        }
    }
}

TEST(Help, TheWalkerFindsFaults)
{
    const std::string head = "<!DOCTYPE html>\n";
    EXPECT_EQ(take_apart(head + "<p>a &amp; <br/><b>b</b></p>\n").fault, "");
    for (const char* bad : {"<p>", "</p>", "<p><b></p></b>", "<p>&nbsp;</p>", "<p a=b></p>",
                            "<p a=\"b></p>", "<p>></p>", "<p", "text", "<p a=\"1\" a=\"2\"></p>"})
        EXPECT_NE(take_apart(head + bad).fault, "") << bad;
    EXPECT_NE(take_apart("<p></p>").fault, "");
}
