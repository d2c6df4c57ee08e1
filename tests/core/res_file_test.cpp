#include "core/res_file.h"

#include "core/code_page.h"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>

using namespace velkoro;

namespace {

std::string error_of(std::string_view source)
{
    try {
        res_build(source);
        return "no error";
    } catch (const std::runtime_error& e) {
        return e.what();
    }
}

// "206<TAB>x<TAB>E" and text 65, "AB", byte by byte: i16 length, bytes rotated by two bits.
const std::string golden("\x07\0\x8C\x0C\x8D\x42\x1E\x42\x51" // 2 0 6 TAB x TAB E
                         "\x41\0\x02\0\x50\x90",
                         15);

} // namespace

TEST(ResFile, TheByte65IsStoredAs80)
{
    EXPECT_EQ(res_scramble(65), 80);
    EXPECT_EQ(res_unscramble(80), 65);
}

TEST(ResFile, EveryByteComesBack)
{
    for (int c = 0; c < 256; ++c)
        EXPECT_EQ(res_unscramble(res_scramble(static_cast<unsigned char>(c))), c);
}

TEST(ResFile, IsBuiltByteByByteAsTheFormTells)
{
    EXPECT_EQ(res_build("206\tx\tE\n65\ta comment\tAB\n"), golden);
}

TEST(ResFile, AGoldenFileIsDecoded)
{
    const res_table want{.header = {"206", "x", "E"}, .rows = {{65, {"AB"}}}};
    EXPECT_EQ(res_decode(golden), want);
}

TEST(ResFile, EveryTruncationKeepsWholeRecordsAndIsNoticed)
{
    for (std::size_t n = 0; n < golden.size(); ++n) {
        const res_table t = res_decode(golden.substr(0, n));
        EXPECT_EQ(t.damaged, n != 9) << n;
        EXPECT_TRUE(t.rows.empty()) << n;
    }
}

TEST(ResFile, LengthsThatTheFileCannotHoldEndTheTable)
{
    EXPECT_TRUE(res_decode(std::string("\xFF\x7F"
                                       "ab",
                                       4))
                    .damaged);
    EXPECT_TRUE(res_decode("\xFF\xFF").damaged) << "a negative length";
    const std::string negative = golden + std::string("\x01\0\xFE\xFF", 4);
    EXPECT_TRUE(res_decode(negative).damaged);
    EXPECT_EQ(res_decode(negative).rows.size(), 1U);
}

TEST(ResFile, LinesOfBlanksArePassedOverAndEmptyColumnsKept)
{
    const res_table t = res_decode(res_build("206\tv\tA\tB\r\n\r\n  \r\n12\tmay be empty\t\t\r\n"
                                             "7\t\tone\t\tthree\r\n8\tno text\r\n"));
    const res_table want{.header = {"206", "v", "A", "B"},
                         .rows = {{12, {"", ""}}, {7, {"one", "", "three"}}, {8, {""}}}};
    EXPECT_EQ(t, want);
}

TEST(ResFile, Utf8SourcesAreConverted)
{
    const res_table want{.header = {"206", "v", "D"}, .rows = {{1, {"Größe €"_w}}}};
    EXPECT_EQ(res_decode(res_build("206\tv\tD\n1\t\tGröße €\n")), want);
    EXPECT_EQ(res_decode(res_build("\xEF\xBB\xBF"
                                   "206\tv\tD\n1\t\tGröße €\n")),
              want);
    EXPECT_EQ(res_decode(res_build("206\tv\tD\n1\t\tGröße €\n"_w)), want);
}

TEST(ResFile, ABadLineIsToldByItsNumber)
{
    EXPECT_EQ(error_of(""), "line 1: no header");
    EXPECT_EQ(error_of("206\tv\tA\n\nx\ty\tz\n"),
              "line 3: no text number from 1 to 32767 at its start");
    EXPECT_EQ(error_of("206\tv\tA\n0\ty\tz\n"),
              "line 2: no text number from 1 to 32767 at its start");
    EXPECT_EQ(error_of("206\tv\tA\n32768\ty\tz\n"),
              "line 2: no text number from 1 to 32767 at its start");
    EXPECT_EQ(error_of("206\tv\tA\n5\n"), "line 2: no tab");
    EXPECT_EQ(error_of("206\tv\tA\n5\t\t" + std::string(32768, 'x')), "line 2: text too long");
    EXPECT_EQ(error_of("206\tv\tA\n5\t\tok\n6\t\t\xD0\x96\n"),
              "line 3: a character is not in Windows-1252");
    EXPECT_EQ(error_of("206\tv\tA\n5\t\t" + std::string(32767, 'x')), "no error");
}

TEST(ResFile, ABackslashNStaysAsItIsWritten)
{
    EXPECT_EQ(res_decode(res_build("206\tv\tA\n5\t\ta\\nb\n")).rows[0].second[0], "a\\nb");
}

TEST(ResFile, DecodingWhatWasBuiltGivesTheSourceForAnyTable)
{
    std::mt19937 random(206);
    for (int run = 0; run < 300; ++run) {
        res_table want{.header = {"206", "x", "English",
                                  "Fran\xE7"
                                  "ais"}};
        std::string source = "206\tx\tEnglish\tFran\xE7"
                             "ais\n";
        for (auto rows = random() % 20; rows > 0; --rows) {
            const int number = static_cast<int>(random() % 32767) + 1;
            std::vector<std::string> fields(random() % 4 + 1);
            source += std::to_string(number) + "\tcomment";
            for (std::string& f : fields) {
                for (auto n = random() % 30; n > 0; --n) {
                    const char c = static_cast<char>(random() % 256);
                    f += c == '\t' || c == '\r' || c == '\n' ? '.' : c;
                }
                source += "\t" + f;
            }
            source += "\n";
            want.rows.emplace_back(number, fields);
        }
        EXPECT_EQ(res_decode(res_build(source)), want) << run;
    }
}

TEST(ResFile, AnyBytesAreDecodedWithoutHarm)
{
    std::mt19937 random(7);
    for (int run = 0; run < 2000; ++run) {
        std::string bytes;
        for (auto n = random() % 80; n > 0; --n)
            bytes += static_cast<char>(random() % (run % 2 == 0 ? 256 : 4));
        const res_table t = res_decode(bytes);
        std::size_t size = 0;
        for (const auto& [number, fields] : t.rows)
            size += 4 + fields.size();
        EXPECT_LE(size, bytes.size() * 2 + 8);
    }
}
