// The shipped data files, read as the program's users and parsers find them.

#include "core/code_page.h"
#include "core/text_tools.h"
#include "tests/data/data_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

using namespace velkoro;

namespace {

// Lines of a table file; checks its form: every line ends in CR LF, none is empty.
std::vector<std::string> table_lines(const std::string& name)
{
    const std::string bytes = data_file(name);
    EXPECT_TRUE(bytes.ends_with("\r\n")) << name;
    EXPECT_EQ(std::ranges::count(bytes, '\n'), std::ranges::count(bytes, '\r')) << name;
    std::vector<std::string> lines;
    for (const std::string_view line : split_lines(bytes)) {
        EXPECT_FALSE(line.empty()) << name;
        lines.emplace_back(line);
    }
    return lines;
}

// The whole text as a number; nothing when any part of it is not.
std::optional<double> number(const std::string& text)
{
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

} // namespace

TEST(LanguageSource, BeginsWithFormatProgramAndLanguages)
{
    const std::string bytes = data_file("velkoro.txt");
    EXPECT_EQ(split_lines(bytes).front(), "206\tVELkoro\tEnglish\tDeutsch");
}

TEST(LanguageSource, RisesInNumbersAndFillsEveryColumn)
{
    const auto rows = language_rows();
    EXPECT_GT(rows.size(), 300U);
    int last = 0;
    for (const text_row& r : rows) {
        EXPECT_GT(r.number, last);
        EXPECT_LE(r.number, 32767); // the binary table holds 16 bits
        last = r.number;
        EXPECT_NE(r.comment, "") << r.number;
        if (r.number == 12) // the one text that may be empty
            continue;
        EXPECT_NE(r.english, "") << r.number;
        EXPECT_NE(r.german, "") << r.number;
    }
}

TEST(LanguageSource, HasNoBlanksAtTheEndsOfTexts)
{
    for (const text_row& r : language_rows()) {
        EXPECT_EQ(trim(r.english), r.english) << r.number;
        EXPECT_EQ(trim(r.german), r.german) << r.number;
    }
}

TEST(LanguageSource, FitsWindows1252)
{
    const std::string bytes = data_file("velkoro.txt");
    EXPECT_TRUE(is_utf8(bytes));
    for (const text_row& r : language_rows()) {
        std::size_t unmapped = 0;
        from_utf8(r.english + r.german, &unmapped);
        EXPECT_EQ(unmapped, 0U) << r.number;
    }
}

TEST(LanguageSource, HasTheSameParametersInBothLanguages)
{
    for (const text_row& r : language_rows()) {
        EXPECT_EQ(std::ranges::count(r.english, '#'), std::ranges::count(r.german, '#'))
            << r.number;
        EXPECT_LE(std::ranges::count(r.english, '#'), 3) << r.number;
    }
}

TEST(LanguageSource, BreaksLinesAlikeAndEscapesNothingElse)
{
    const auto breaks = [](const std::string& s) {
        long n = 0;
        for (std::size_t i = s.find('\\'); i != std::string::npos; i = s.find('\\', i + 1))
            n += s.compare(i, 2, "\\n") == 0 ? 1 : 1000;
        return n;
    };
    for (const text_row& r : language_rows()) {
        EXPECT_EQ(breaks(r.english), breaks(r.german)) << r.number;
        EXPECT_LT(breaks(r.english), 5) << r.number;
    }
}

TEST(LanguageSource, KeepsGermanTextsWithinReach)
{
    // Forms make room for 1.4 times the English length; short words may be more than that.
    for (const text_row& r : language_rows())
        EXPECT_LE(static_cast<double>(from_utf8(r.german).size()),
                  1.4 * static_cast<double>(from_utf8(r.english).size()) + 14)
            << r.number;
}

TEST(LanguageSource, EndsMessagesButNotCaptionsInAFullStop)
{
    const auto full_stop = [](const std::string& t) {
        return t.ends_with('.') && !t.ends_with("...");
    };
    for (const text_row& r : language_rows()) {
        const bool caption = r.number >= 7100 && r.number < 7600 && r.number != 7320;
        EXPECT_FALSE(caption && full_stop(r.english)) << r.number;
        EXPECT_EQ(full_stop(r.english), full_stop(r.german)) << r.number;
        EXPECT_EQ(r.english.ends_with('?'), r.german.ends_with('?')) << r.number;
    }
}

TEST(LanguageSource, SpeaksNeitherDuNorSie)
{
    const std::set<std::string> forbidden = {"du",    "dich", "dir", "dein",
                                             "deine", "Ihre", "Ihr", "Ihnen"};
    for (const text_row& r : language_rows())
        for (const std::string& word : fields_of(r.german, " "))
            EXPECT_FALSE(forbidden.contains(word)) << r.number << ": " << word;
}

TEST(LanguageSource, KeepsReplayChoicesApart)
{
    std::map<int, text_row> of;
    for (const text_row& r : language_rows())
        of[r.number] = r;
    for (const int a : {6300, 6310, 6320})
        for (const int b : {6300, 6310, 6320})
            if (a != b) {
                EXPECT_EQ(of[a].english.find(of[b].english), std::string::npos) << a << b;
                EXPECT_EQ(of[a].german.find(of[b].german), std::string::npos) << a << b;
            }
}

namespace {

struct symbol_line {
    int number = 0;
    int raw = 0;
    std::string name{};
};

std::vector<symbol_line> symbol_lines(const std::string& name)
{
    std::vector<symbol_line> out;
    for (std::string line : table_lines(name)) {
        std::string head = cut_token(line, " ");
        const std::string table_number = cut_token(head, ":");
        EXPECT_GE(table_number.size(), 2U) << table_number;
        std::size_t used = 0;
        symbol_line s{std::stoi(table_number), std::stoi(head, &used, 16), line};
        EXPECT_EQ(used, head.size()) << head;
        EXPECT_EQ(trim(line), line);
        EXPECT_NE(line, "");
        out.push_back(s);
    }
    return out;
}

} // namespace

class SymbolFile : public testing::TestWithParam<const char*> {};
TEST_P(SymbolFile, HasUniqueNumbersValuesAndNames)
{
    std::set<int> numbers, raws;
    std::set<std::string> names;
    for (const symbol_line& s : symbol_lines(GetParam())) {
        EXPECT_TRUE(numbers.insert(s.number).second) << s.number;
        EXPECT_TRUE(raws.insert(s.raw).second) << s.name;
        EXPECT_TRUE(names.insert(lower(s.name)).second) << s.name;
        EXPECT_LT(s.raw, 65536);
    }
    // Gap-free, and in one byte with room for symbols that a receiver brings.
    const bool small = std::string(GetParam()).find("_2") != std::string::npos;
    ASSERT_EQ(numbers.size(), small ? 16U : 197U);
    EXPECT_EQ(*numbers.begin(), 0);
    EXPECT_EQ(*numbers.rbegin(), static_cast<int>(numbers.size()) - 1);
}
INSTANTIATE_TEST_SUITE_P(All, SymbolFile,
                         testing::Values("SYMBOL_2.INS", "SYMBOL_3.INS", "de/SYMBOL_2.INS",
                                         "de/SYMBOL_3.INS"),
                         [](const auto& file) {
                             std::string name = file.param;
                             std::erase_if(name, [](char c) { return c == '/' || c == '.'; });
                             return name;
                         });

TEST(SymbolFiles, HoldTheSameNumbersInBothLanguages)
{
    for (const std::string name : {"SYMBOL_2.INS", "SYMBOL_3.INS"}) {
        const auto english = symbol_lines(name);
        const auto german = symbol_lines("de/" + name);
        ASSERT_EQ(english.size(), german.size());
        for (std::size_t i = 0; i < english.size(); ++i) {
            EXPECT_EQ(english[i].number, german[i].number);
            EXPECT_EQ(english[i].raw, german[i].raw);
        }
    }
}

TEST(SymbolFiles, HaveAGlyphForEverySymbol)
{
    std::set<std::pair<int, int>> drawn;
    const std::string bytes = data_file("glyphs.csv");
    const auto lines = split_lines(bytes);
    EXPECT_EQ(lines.front(), "level;number;glyph;family;colour");
    for (std::size_t i = 1; i < lines.size(); ++i) {
        const auto f = fields_of(std::string(lines[i]), ";");
        ASSERT_EQ(f.size(), 5U) << lines[i];
        for (std::size_t k = 2; k < 5; ++k)
            EXPECT_NE(f[k], "") << lines[i];
        EXPECT_TRUE(drawn.insert({std::stoi(f[0]), std::stoi(f[1])}).second) << lines[i];
    }
    for (const int level : {2, 3})
        for (const symbol_line& s : symbol_lines("SYMBOL_" + std::to_string(level) + ".INS"))
            EXPECT_EQ(drawn.erase({level, s.number}), 1U) << s.name;
    EXPECT_TRUE(drawn.empty());
}

TEST(SymbolFiles, HaveADrawingForEveryGlyph)
{
    const std::string resources = data_file("../ui/resources.qrc");
    const std::string bytes = data_file("glyphs.csv");
    const auto lines = split_lines(bytes);
    std::set<std::string> pictures;
    for (std::size_t i = 1; i < lines.size(); ++i)
        pictures.insert("icons/g_" + fields_of(std::string(lines[i]), ";").at(2) + ".svg");
    EXPECT_GT(pictures.size(), 100U);
    for (const std::string& name : pictures) {
        const std::string drawing = data_file("../ui/" + name);
        EXPECT_TRUE(drawing.starts_with("<svg ") && drawing.ends_with("</svg>\n")) << name;
        EXPECT_NE(resources.find("<file>" + name + "</file>"), std::string::npos) << name;
    }
}

TEST(SymbolFiles, OfOneDrawingInTwoColoursHaveTwoPictures)
{
    std::map<std::string, std::string> colour_of;
    const std::string bytes = data_file("glyphs.csv");
    const auto lines = split_lines(bytes);
    for (std::size_t i = 1; i < lines.size(); ++i) {
        const auto f = fields_of(std::string(lines[i]), ";");
        EXPECT_EQ(colour_of.emplace(f.at(2), f.at(4)).first->second, f.at(4)) << lines[i];
    }
    EXPECT_EQ(colour_of["flag"], "red");
    EXPECT_EQ(colour_of["flag_blue"], "blue");
    EXPECT_NE(data_file("../ui/icons/g_flag.svg"), data_file("../ui/icons/g_flag_blue.svg"));
}

namespace {

struct datum_table {
    std::vector<std::string> of_format{};
    std::vector<std::vector<std::string>> grids{}, datums{};
};

datum_table read_datums()
{
    datum_table t;
    for (const std::string& line : table_lines("Datum.ins")) {
        if (t.of_format.empty())
            t.of_format = fields_of(line, ",");
        else if (line.starts_with('#'))
            t.grids.push_back(fields_of(line.substr(1), ","));
        else
            t.datums.push_back(fields_of(line, ","));
    }
    return t;
}

} // namespace

TEST(DatumFile, HasElevenFormatsTwentySevenGridsAndAllDatums)
{
    const datum_table t = read_datums();
    EXPECT_EQ(t.of_format.size(), 11U);
    EXPECT_EQ(t.grids.size(), 27U);
    EXPECT_EQ(t.datums.size(), 223U);
}

TEST(DatumFile, HasUniqueNamesAndNumbersThatFitTheirFields)
{
    std::set<std::string> names;
    for (const auto& d : read_datums().datums) {
        ASSERT_EQ(d.size(), 6U) << d[0];
        EXPECT_TRUE(names.insert(lower(d[0])).second) << d[0];
        const auto da = number(d[1]);
        const auto df = number(d[2]);
        ASSERT_TRUE(da && df) << d[0];
        EXPECT_LT(std::abs(*da), 1200) << d[0]; // the Danish ellipsoid is 1118 m off
        EXPECT_LT(std::abs(*df), 1) << d[0];
        for (std::size_t k = 3; k < 6; ++k) {
            const auto shift = number(d[k]);
            ASSERT_TRUE(shift) << d[0];
            EXPECT_EQ(*shift, std::trunc(*shift)) << d[0]; // whole metres in 16 bits
            EXPECT_LT(std::abs(*shift), 32768) << d[0];
        }
    }
}

TEST(DatumFile, NamesKnownDatumsForFormatsAndGrids)
{
    const datum_table t = read_datums();
    std::set<std::string> names;
    for (const auto& d : t.datums)
        names.insert(d[0]);
    for (const std::string& name : t.of_format)
        EXPECT_TRUE(names.contains(name)) << name;
    std::set<std::string> grids;
    for (const auto& g : t.grids) {
        ASSERT_EQ(g.size(), 7U) << g[0];
        EXPECT_TRUE(grids.insert(g[0]).second) << g[0];
        EXPECT_TRUE(names.contains(g[1])) << g[1];
        std::array<double, 5> value{};
        for (std::size_t k = 0; k < 5; ++k) {
            const auto v = number(g[k + 2]);
            ASSERT_TRUE(v) << g[0];
            value[k] = *v;
        }
        EXPECT_LE(std::abs(value[0]), 180) << g[0];
        EXPECT_LE(std::abs(value[1]), 90) << g[0];
        EXPECT_NEAR(value[2], 1, 0.001) << g[0];
        EXPECT_EQ(value[3], std::trunc(value[3])) << g[0];
        EXPECT_EQ(value[4], std::trunc(value[4])) << g[0];
    }
}

TEST(DatumFile, EndsWithWgs84AsItsOnlyRowOfZeros)
{
    const auto datums = read_datums().datums;
    std::vector<std::string> zero;
    for (const auto& d : datums)
        if (std::all_of(d.begin() + 1, d.end(), [](const auto& f) { return number(f) == 0.0; }))
            zero.push_back(d[0]);
    EXPECT_EQ(zero, std::vector<std::string>{"WGS 84"});
    EXPECT_EQ(datums.back()[0], "WGS 84");
}

TEST(DatumFile, KeepsThePlainDifferenceOfGrs80)
{
    // Above 0.0002 the reader divides by 10000; the tiny difference of GRS 1980 stays below.
    for (const auto& d : read_datums().datums)
        if (d[0] == "ETRS89") {
            EXPECT_EQ(d[2], "-0.00000000001643");
        }
}

TEST(ProductFile, HasWellFormedLinesInRisingOrderOfTheLimit)
{
    const auto lines = table_lines("Garmin.ini");
    EXPECT_EQ(lines.size(), 54U);
    std::map<int, double> limit_of; // of the product's last line
    for (const std::string& line : lines) {
        auto f = fields_of(line, " ");
        ASSERT_GE(f.size(), 4U) << line;
        const int product = std::stoi(f[0]);
        f.erase(f.begin());
        double limit = 320.0; // none
        if (f[0].starts_with('<')) {
            const auto version = number(f[0].substr(1));
            ASSERT_TRUE(version) << line;
            limit = *version;
            f.erase(f.begin());
        }
        if (limit_of.contains(product)) {
            EXPECT_LT(limit_of[product], limit) << line;
        }
        limit_of[product] = limit;
        EXPECT_EQ(f[0][0], 'L') << line;
        for (const std::string& token : f) {
            EXPECT_NE(std::string("LAD").find(token[0]), std::string::npos) << line;
            EXPECT_TRUE(number(token.substr(1))) << line;
            EXPECT_EQ(token.size(), 4U) << line;
        }
    }
    for (const auto& [product, limit] : limit_of)
        EXPECT_EQ(limit, 320.0) << product; // a line without a limit stands last
}
