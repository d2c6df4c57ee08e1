// Readers on files that are cut, damaged or not theirs at all.
#include "core/files.h"
#include "interchange/export_job.h"
#include "interchange/import_job.h"
#include "tests/interchange/file_fixture.h"

#include <filesystem>
#include <random>

using namespace velkoro;

namespace {

class Hostile : public FileTest {
protected:
    struct sample {
        std::string bytes{}, extension{};
    };
    static std::vector<sample> samples()
    {
        std::vector<sample> all;
        for (const auto& entry :
             std::filesystem::directory_iterator(VELKORO_SOURCE_DIR "/tests/interchange/samples"))
            if (const std::string e = entry.path().extension().string(); e != ".md" && e != ".json")
                all.push_back({read_file(entry.path().string()).value_or(""), e});
        return all;
    }
    static void expect_sound(const import_content& content)
    {
        for (const wayp_rec& w : content.waypoints) {
            ASSERT_LE(std::abs(static_cast<std::int64_t>(w.pos.lat)), 1 << 30);
            for (const char c : w.nam + w.kom)
                ASSERT_GE(static_cast<unsigned char>(c), ' ');
        }
        for (const auto& route : content.routes)
            ASSERT_FALSE(route.points.empty());
    }
    static void read_by_all(const std::string& bytes, const std::string& extension)
    {
        for (const format_row& row : formats())
            if (row.read && has_pattern(row.import_patterns, extension)) {
                import_content content;
                import_bytes(row, bytes, extension, false, &content);
                expect_sound(content);
            }
        format_of_file(extension, bytes);
    }
};

} // namespace

TEST_F(Hostile, ACutFileIsReadAsFarAsItGoes)
{
    std::mt19937 random(7);
    for (const sample& s : samples())
        for (int n = 0; n < 25; ++n)
            read_by_all(s.bytes.substr(0, random() % (s.bytes.size() + 1)), s.extension);
}

TEST_F(Hostile, ADamagedFileDoesNoHarm)
{
    std::mt19937 random(8);
    for (const sample& s : samples())
        for (int n = 0; n < 25; ++n) {
            std::string bytes = s.bytes;
            for (int k = 0; k < 12; ++k) {
                const std::size_t at = random() % bytes.size();
                switch (random() % 4) {
                case 0: bytes[at] = static_cast<char>(random()); break;
                case 1: bytes.erase(at, 1 + random() % 9); break;
                case 2: bytes.insert(at, 1 + random() % 3, ",\"\t\n0-@$"[random() % 8]); break;
                default: bytes.insert(at, bytes.substr(random() % bytes.size(), 40)); break;
                }
                if (bytes.empty())
                    bytes = "x";
            }
            read_by_all(bytes, s.extension);
        }
}

TEST_F(Hostile, FilesWithoutSenseAreReadByEveryReader)
{
    const std::string nothing[] = {"",
                                   "\r\n",
                                   "\n\n\n",
                                   std::string(5000, '\0'),
                                   std::string(5000, ','),
                                   std::string(5000, '"'),
                                   std::string(5000, '<'),
                                   std::string(5000, '\t'),
                                   std::string(3000, '9'),
                                   "\xEF\xBB\xBF",
                                   "[Symbol 1]\r\nPunkte=2147483647\r\nTyp=3\r\n",
                                   "\"a\",\"b\",-2147483648\r\n1,2\r\n",
                                   "\"a\",\"b\",99999999999999999999\r\n"};
    for (const format_row& row : formats())
        if (row.read)
            for (const std::string& bytes : nothing) {
                import_content content;
                const std::string extension(
                    row.import_patterns.substr(1, row.import_patterns.find(';') - 1));
                import_bytes(row, bytes, extension, false, &content);
                EXPECT_TRUE(content.waypoints.empty()) << row.name;
            }
}

TEST_F(Hostile, TheStoreKeepsWhatItHeld)
{
    add("KEPT", 10, 20, "mine");
    const wayp_rec before = store.wp[0];
    std::mt19937 random(9);
    for (const sample& s : samples()) {
        std::string bytes = s.bytes;
        bytes[random() % bytes.size()] = static_cast<char>(random());
        if (const format_row* row = format_of_file(s.extension, bytes))
            import_bytes(*row, bytes, s.extension);
    }
    ASSERT_GE(store.wp_top, 0);
    EXPECT_EQ(store.wp[0].nam, before.nam);
    EXPECT_EQ(store.wp[0].kom, before.kom);
    EXPECT_EQ(store.wp[0].pos, before.pos);
}
