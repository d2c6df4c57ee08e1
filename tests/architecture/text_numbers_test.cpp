#include "core/form1.h"
#include "tests/architecture/source_tree.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

using namespace velkoro;

namespace {

std::vector<std::string> split_tabs(const std::string& line)
{
    std::vector<std::string> fields;
    std::size_t begin = 0;
    for (std::size_t tab = line.find('\t'); tab != std::string::npos;
         tab = line.find('\t', begin)) {
        fields.push_back(line.substr(begin, tab - begin));
        begin = tab + 1;
    }
    fields.push_back(line.substr(begin));
    return fields;
}

// Rows of the language table's source: number, comment, one column a language. The first row holds
// the format, an unused field and the languages' names.
std::vector<std::vector<std::string>> language_source()
{
    std::ifstream in(std::string(VELKORO_SOURCE_DIR) + "/data/velkoro.txt", std::ios::binary);
    std::vector<std::vector<std::string>> rows;
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (!line.empty())
            rows.push_back(split_tabs(line));
    }
    return rows;
}

std::map<int, std::size_t> numbers_of_source()
{
    std::map<int, std::size_t> count;
    const auto rows = language_source();
    for (std::size_t i = 1; i < rows.size(); ++i)
        ++count[std::stoi(rows[i][0])];
    return count;
}

} // namespace

TEST(TextNumbers, EveryNumberUsedInCodeIsInTheLanguageTable)
{
    const auto known = numbers_of_source();
    std::vector<std::string> missing;
    std::size_t used = 0;
    for (const auto& [path, file] : read_sources()) {
        const std::string folder = folder_of(path);
        if (folder == "tests" || folder == "bench" || folder == "fuzz")
            continue;
        for (const int number : text_numbers(file.text)) {
            ++used;
            if (!known.contains(number))
                missing.push_back(path + ": " + std::to_string(number));
        }
    }
    EXPECT_EQ(missing, std::vector<std::string>{});
    EXPECT_GT(used, 100U);
}

TEST(TextNumbers, EveryNumberUsedInAFormIsInTheLanguageTable)
{
    const auto known = numbers_of_source();
    std::size_t used = 0;
    for (const auto& form :
         std::filesystem::directory_iterator(std::string(VELKORO_SOURCE_DIR) + "/ui/forms")) {
        std::ifstream in(form.path(), std::ios::binary);
        for (const int number : form_text_numbers(
                 {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()})) {
            ++used;
            EXPECT_TRUE(known.contains(number)) << form.path() << ": " << number;
        }
    }
    EXPECT_GT(used, 20U);
}

TEST(TextNumbers, EveryOrderOfTheListHasItsName)
{
    const auto known = numbers_of_source();
    for (int n = 0; n < sort_entries; ++n)
        EXPECT_TRUE(known.contains(sort_first_text + n)) << n;
}

TEST(TextNumbers, EveryLanguageHasEveryText)
{
    const auto rows = language_source();
    ASSERT_GT(rows.size(), 1U);
    ASSERT_EQ(rows[0][0].substr(rows[0][0].size() - 3), "206"); // a byte order mark may stand ahead
    const std::size_t columns = rows[0].size();                 // 206, unused, names
    ASSERT_GE(columns, 4U);
    for (std::size_t i = 1; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].size(), columns) << rows[i][0];
        if (rows[i][0] == "12") // the one text that may be empty
            continue;
        for (std::size_t k = 2; k < rows[i].size(); ++k)
            EXPECT_NE(rows[i][k], "") << rows[i][0] << ", column " << k - 1;
    }
}

TEST(TextNumbers, NoNumberStandsTwiceInTheLanguageTable)
{
    for (const auto& [number, times] : numbers_of_source())
        EXPECT_EQ(times, 1U) << number;
}

TEST(TextNumbers, AreFoundInCallsTagsWindowsAndConstants)
{
    EXPECT_EQ(text_numbers("a = text(2570, count) + text( 11 );"), (std::set{11, 2570}));
    EXPECT_EQ(text_numbers("say(1030, buttons::yes_no);"), (std::set{1030}));
    EXPECT_EQ(text_numbers(R"({.caption = "x", .tag = "7101 7401"})"), (std::set{7101, 7401}));
    EXPECT_EQ(text_numbers(R"({.tag = "0 7509"})"), (std::set{7509}));
    EXPECT_EQ(text_numbers(R"(window form{"such", "suchen", "700"};)"), (std::set{700}));
    EXPECT_EQ(text_numbers("inline constexpr int sort_first_text = 7240;"), (std::set{7240}));
    EXPECT_EQ(text_numbers("ask(4310, buttons::ok, icon::critical);"), (std::set{4310}));
    EXPECT_EQ(text_numbers(".preset = 2, .number = 990}"), (std::set{990}));
    EXPECT_EQ(text_numbers("constexpr int text_ok = 7302, text_no = 7304;"),
              (std::set{7302, 7304}));
    EXPECT_EQ(text_numbers("context(12); text(number); other = 12;"), std::set<int>{});
}

TEST(TextNumbers, AreFoundInTheTagsOfForms)
{
    EXPECT_EQ(form_text_numbers(R"(<property name="tag" stdset="0">
          <string>7203 7503</string></property><property name="empty" stdset="0">
          <string>7600 7601</string></property><property name="icon_name" stdset="0">
          <string>12</string></property>)"),
              (std::set{7203, 7503, 7600, 7601}));
}
