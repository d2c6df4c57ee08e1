#include "core/log.h"
#include "core/wayp_insert.h"
#include "tests/waypoints/list_fixture.h"
#include "waypoints/clipboard.h"

#include <fstream>
#include <sstream>

using namespace velkoro;

namespace {

// Sums of these two bodies were worked out apart from the program.
const std::string two_lines = "ZUG\tZugspitze\t565742592\t131072000\t1119225600\t12\t2962\t10\r\n"
                              "A\t@001 two\t-1073741824\t2147483647\t0\t-20\t-32768\t266\r\n";
const std::string two_text = "Velkoro waypoints\t-699350568\r\n" + two_lines;

const wayp_rec zug{.nam = "ZUG",
                   .kom = "Zugspitze",
                   .pos = {565742592, 131072000},
                   .dat = 1119225600,
                   .prox = 12,
                   .symb = 10,
                   .alt = 2962};

class Clipboard : public ListTest {
protected:
    Clipboard() { clipboard_install(); }
    ~Clipboard() override
    {
        for (control* c : {&Form1.B_kop, &Form1.B_aus, &Form1.B_einfüg, &Form1.B_test})
            c->click = {};
    }
    static std::string with_sum(const std::string& body)
    {
        return clip_compose(clip_waypoints_word, body);
    }
    void paste(const std::string& content)
    {
        user.clipboard = content;
        Form1.B_einfüg.click();
    }
    static const wayp_rec& stored(int index) { return store.wp[static_cast<std::size_t>(index)]; }
};

} // namespace

// The text itself
// ----------------------------------------------------------------------------------------------

TEST(ClipText, ChecksumAddsEachByteAndDoubles)
{
    EXPECT_EQ(clip_checksum(""), 0);
    EXPECT_EQ(clip_checksum("A"), 130);
    EXPECT_EQ(clip_checksum("AB"), 392);
    EXPECT_EQ(clip_checksum("A\t\t0\t0\t0\t0\t0\t0\r\n"), 5275544);
}

TEST(ClipText, ChecksumComesBackIntoItsRangeAndTakesBytesAsPositive)
{
    EXPECT_EQ(clip_checksum(two_lines), -699350568);
    EXPECT_EQ(clip_checksum(std::string(40, '\xFF')), 930165250);
}

TEST(ClipText, IsTakenApart)
{
    const auto clip = clip_parse(two_text);
    ASSERT_TRUE(clip);
    EXPECT_FALSE(clip->track);
    EXPECT_TRUE(clip->checksum_good);
    EXPECT_EQ(clip->body, two_lines);
    EXPECT_EQ(clip_compose(clip_waypoints_word, two_lines), two_text);
}

TEST(ClipText, OfAnotherKindIsNothing)
{
    for (const std::string other :
         {"", "hello", "Velkoro waypoints", "Velkoro waypoints 5\r\n", "velkoro waypoints\t0\r\n",
          " Velkoro waypoints\t0\r\n", "Other program\t5\r\nVelkoro waypoints\t0"})
        EXPECT_FALSE(clip_parse(other)) << other;
}

TEST(ClipText, MayBeRefusedByItsKind)
{
    const std::string track = "Velkoro track\t0\r\n";
    ASSERT_TRUE(clip_parse(track));
    EXPECT_TRUE(clip_parse(track)->track);
    EXPECT_TRUE(clip_parse(track, clip_track_only));
    EXPECT_FALSE(clip_parse(track, clip_waypoints_only));
    EXPECT_TRUE(clip_parse(two_text, clip_waypoints_only));
    EXPECT_FALSE(clip_parse(two_text, clip_track_only));
}

TEST(ClipText, ChangedByHandFailsTheChecksum)
{
    std::string changed = two_text;
    changed[changed.find("2962")] = '3';
    ASSERT_TRUE(clip_parse(changed));
    EXPECT_FALSE(clip_parse(changed)->checksum_good);
    EXPECT_FALSE(clip_parse("Velkoro waypoints\t\r\n")->checksum_good) << "no sum at all";
    EXPECT_FALSE(clip_parse("Velkoro waypoints\tx\r\n")->checksum_good);
    EXPECT_FALSE(clip_parse("Velkoro waypoints\t99999999999999999999\r\n")->checksum_good);
    EXPECT_FALSE(clip_parse("Velkoro waypoints\t")->checksum_good);
    EXPECT_TRUE(clip_parse("Velkoro waypoints\t0")->checksum_good);
}

TEST(ClipText, FirstLineMayEndInAnyWay)
{
    for (const std::string end : {"\r\n", "\n", "\r"}) {
        const std::string content = "Velkoro waypoints\t392" + end + "AB";
        const auto clip = clip_parse(content);
        ASSERT_TRUE(clip);
        EXPECT_EQ(clip->body, "AB");
        EXPECT_TRUE(clip->checksum_good);
    }
}

TEST(ClipText, ListsTheNamesOfItsLinesUpTo140Characters)
{
    EXPECT_EQ(clip_names(two_lines), "ZUG A");
    EXPECT_EQ(clip_names(""), "");
    std::string many;
    for (int n = 0; n < 100; ++n)
        many += "WAYP" + std::to_string(n) + "\t\t0\t0\n";
    const std::string names = clip_names(many);
    EXPECT_EQ(names.size(), 144U);
    EXPECT_TRUE(names.starts_with("WAYP0 WAYP1 "));
    EXPECT_TRUE(names.ends_with("..."));
}

// One line
// ----------------------------------------------------------------------------------------------

TEST(ClipLine, HoldsTheFieldsInTheirOrder)
{
    EXPECT_EQ(clip_line(zug), two_lines.substr(0, two_lines.find('\n') + 1));
    const wayp_rec second{.nam = "A",
                          .kom = "@001 two",
                          .pos = {-1073741824, 2147483647},
                          .prox = -20,
                          .symb = 10,
                          .symbmode = 1};
    EXPECT_EQ(clip_line(second), two_lines.substr(two_lines.find('\n') + 1));
}

TEST(ClipLine, ComesBackAsTheWaypoint)
{
    EXPECT_EQ(clip_waypoint(two_lines.substr(0, two_lines.find('\r'))), zug);
    const auto umlauts = clip_waypoint("MÜL\tgrün\t1\t2\t3\t4\t5\t6"_w);
    ASSERT_TRUE(umlauts);
    EXPECT_EQ(umlauts->kom, "grün"_w);
}

TEST(ClipLine, KeepsTabsAndLineBreaksOutOfItsTexts)
{
    EXPECT_EQ(clip_line({.nam = "A", .kom = "a\tb\r\nc"}), "A\ta b  c\t0\t0\t0\t0\t-32768\t0\r\n");
}

TEST(ClipLine, FieldsThatFailKeepTheRest)
{
    const auto w = clip_waypoint("A\tc\t1\t2\ttoday\t\t1.5\t266");
    ASSERT_TRUE(w);
    EXPECT_EQ(*w, (wayp_rec{.nam = "A", .kom = "c", .pos = {1, 2}, .symb = 10, .symbmode = 1}));
    EXPECT_EQ(clip_waypoint("A\tc\t1\t2"), (wayp_rec{.nam = "A", .kom = "c", .pos = {1, 2}}));
    EXPECT_EQ(clip_waypoint("A\tc\t 1 \t+2\t\t\t\t\tmore\tof\tit"),
              (wayp_rec{.nam = "A", .kom = "c", .pos = {1, 2}}));
}

TEST(ClipLine, WithoutANameOrAPositionIsRefused)
{
    for (const char* line : {"", "A", "A\tc", "A\tc\t1", "A\tc\t\t2", "A\tc\tx\t2", "A\tc\t1\t2x",
                             "\tc\t1\t2", "  \tc\t1\t2", "A\tc\t1.0\t2", "A\tc\t--1\t2"})
        EXPECT_FALSE(clip_waypoint(line)) << line;
}

TEST(ClipLine, WithANumberOutOfRangeIsRefused)
{
    for (const char* line :
         {"A\t\t1073741825\t0", "A\t\t-1073741825\t0", "A\t\t0\t2147483648", "A\t\t0\t-2147483649",
          "A\t\t99999999999999999999999\t0", "A\t\t0\t0\t2147483648", "A\t\t0\t0\t0\t32768",
          "A\t\t0\t0\t0\t0\t-32769", "A\t\t0\t0\t0\t0\t0\t65536",
          "A\t\t0\t0\t0\t0\t99999999999999999999"})
        EXPECT_FALSE(clip_waypoint(line)) << line;
    for (const char* line : {"A\t\t1073741824\t2147483647\t2147483647\t32767\t32767\t65535",
                             "A\t\t-1073741824\t-2147483648\t-2147483648\t-32768\t-32768\t-1"})
        EXPECT_TRUE(clip_waypoint(line)) << line;
}

// Copy and cut
// ----------------------------------------------------------------------------------------------

TEST_F(Clipboard, MarkedWaypointsAreCopiedInRowOrder)
{
    add(zug);
    add({.nam = "B", .pos = {1 << 20, 0}});
    add({.nam = "A", .pos = {2 << 20, 0}, .symbmode = 2});
    sort_by(sort_entry::name);
    mark(0);
    mark(2);
    Form1.B_kop.click();
    EXPECT_EQ(user.clipboard, with_sum("A\t\t2097152\t0\t0\t0\t-32768\t512\r\n" + clip_line(zug)));
    EXPECT_EQ(rows(), (lines{"*A", "B", "*ZUG"}));
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(Clipboard, CopyingNothingLeavesTheClipboard)
{
    add_names({"A"});
    user.clipboard = "text of others";
    Form1.B_kop.click();
    EXPECT_EQ(user.clipboard, "text of others");
}

TEST_F(Clipboard, CutCopiesAndDeletes)
{
    add(zug);
    add({.nam = "B", .pos = {1 << 20, 0}});
    mark(0);
    Form1.B_aus.click();
    EXPECT_EQ(user.clipboard, with_sum(clip_line(zug)));
    EXPECT_EQ(user.numbers(), (std::vector<int>{2060}));
    EXPECT_EQ(rows(), (lines{"B"}));
}

TEST_F(Clipboard, KeysAndMenuNeedMarksToCopy)
{
    add_names({"A"});
    tick(0.2);
    EXPECT_FALSE(Form1.B_kop.enabled);
    EXPECT_FALSE(Form1.B_aus.enabled);
    EXPECT_TRUE(Form1.B_einfüg.enabled);
    mark(0);
    EXPECT_TRUE(Form1.B_kop.enabled);
    EXPECT_TRUE(Form1.Waypl2.key('C', true, false));
    EXPECT_TRUE(user.clipboard.starts_with("Velkoro waypoints\t"));
    EXPECT_TRUE(Form1.Waypl2.key('X', true, false));
    EXPECT_TRUE(rows().empty());
    EXPECT_TRUE(Form1.Waypl2.key('V', true, false));
    EXPECT_EQ(rows(), (lines{"*A"}));
}

// Paste
// ----------------------------------------------------------------------------------------------

TEST_F(Clipboard, PastedWaypointsAreMarkedSortedAndWhole)
{
    add({.nam = "M", .pos = {1 << 20, 0}});
    store.wp_dirty = false;
    paste(two_text);
    EXPECT_EQ(rows(), (lines{"*A", "M", "*ZUG"}));
    EXPECT_EQ(Form1.anz.caption, text(7651, 2, 3));
    EXPECT_EQ(stored(1), zug);
    EXPECT_EQ(stored(2).symbmode, 1);
    EXPECT_EQ(stored(2).prox, -20);
    EXPECT_TRUE(store.wp_dirty);
    EXPECT_TRUE(user.messages.empty()) << "new ones only: no report";
}

TEST_F(Clipboard, PastingWhatIsThereReportsIt)
{
    add(zug);
    paste(two_text);
    ASSERT_EQ(user.messages.size(), 1U);
    EXPECT_EQ(user.messages[0].text,
              text(2000, 1) + "\n" + text(2010, 0) + "\n" + text(2020, 0) + "\n" + text(2030, 1));
    EXPECT_EQ(user.messages[0].icon, icon::information);
    EXPECT_EQ(store.wp_top, 1);
}

TEST_F(Clipboard, AWrongChecksumAsks)
{
    std::string changed = two_text;
    changed[changed.find("2962")] = '3';
    user.answers = {answer::cancel};
    paste(changed);
    EXPECT_EQ(user.numbers(), (std::vector<int>{7732}));
    EXPECT_EQ(store.wp_top, -1);
    user.answers = {answer::ok};
    paste(changed);
    EXPECT_EQ(store.wp_top, 1);
    EXPECT_EQ(stored(0).alt, 3962);
}

TEST_F(Clipboard, LinesThatAreNoWaypointsAreLeftOutAndCounted)
{
    paste(with_sum("A\t\tnorth\t0\n\nB\t\t1048576\t0\nC\t\t1\t99999999999\n \nD\t\t2097152\t0"));
    EXPECT_EQ(rows(), (lines{"*B", "*D"}));
    ASSERT_EQ(user.messages.size(), 1U);
    EXPECT_EQ(user.messages[0].text, text(7750, 2));
}

TEST_F(Clipboard, TextsOfOthersAreIgnoredWithABeep)
{
    for (const std::string& other : {std::string(), std::string("hello"), std::string(100, '\0'),
                                     clip_compose(clip_track_word, "1\t2\r\n")}) {
        user.beeps = 0;
        paste(other);
        EXPECT_EQ(user.beeps, 1);
    }
    EXPECT_TRUE(user.messages.empty());
    EXPECT_EQ(store.wp_top, -1);
}

TEST_F(Clipboard, TheSameNameTwiceInOneTextIsAConflict)
{
    int asked = 0;
    hooks.conflict_ask = [&](conflict_question&) {
        ++asked;
        return conflict_answer::take_new;
    };
    paste(with_sum("A\tone\t1048576\t0\nA\ttwo\t2097152\t0\n"));
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(store.wp_top, 0);
    EXPECT_EQ(stored(0).kom, "two");
}

TEST_F(Clipboard, EndingAtAConflictKeepsWhatCameIn)
{
    hooks.conflict_ask = [](conflict_question&) { return conflict_answer::cancel_batch; };
    paste(with_sum("B\t\t4194304\t0\nA\tone\t1048576\t0\nA\ttwo\t2097152\t0\nC\t\t8388608\t0\n"));
    EXPECT_EQ(rows(), (lines{"*A", "*B"}));
    EXPECT_FALSE(batch.open) << "the batch is closed all the same";
}

TEST_F(Clipboard, AFullListSaysSo)
{
    for (int n = 0; n < wp_limit; ++n)
        store.wp.push_back({.nam = std::to_string(n), .pos = {n << 12, n << 12}});
    store.wp_top = wp_limit - 1;
    index_rebuild();
    list_refill();
    paste(with_sum("A\t\t-1048576\t0\n"));
    EXPECT_EQ(user.numbers(), (std::vector<int>{2033}));
    EXPECT_EQ(store.wp_top, wp_limit - 1);
}

// Test
// ----------------------------------------------------------------------------------------------

TEST_F(Clipboard, TestingShowsCountAndNames)
{
    user.clipboard = two_text;
    Form1.B_test.click();
    ASSERT_EQ(user.numbers(), (std::vector<int>{7731}));
    EXPECT_EQ(user.messages[0].text, text(7731, "2", "ZUG A"));
    EXPECT_EQ(store.wp_top, -1);
}

TEST_F(Clipboard, TestingTellsOfAWrongChecksumWithoutAsking)
{
    user.clipboard = two_text + "\r\n";
    Form1.B_test.click();
    ASSERT_EQ(user.numbers(), (std::vector<int>{7731}));
    EXPECT_EQ(user.messages[0].buttons, buttons::ok);
    EXPECT_EQ(user.messages[0].text, text(7731, "2", "ZUG A") + "\n\n" + text(7733));
}

TEST_F(Clipboard, TestingATrackCountsItsLines)
{
    user.clipboard = clip_compose(clip_track_word, "1\t2\r\n3\t4\r\n5\t6\r\n");
    Form1.B_test.click();
    ASSERT_EQ(user.numbers(), (std::vector<int>{7751}));
    EXPECT_EQ(user.messages[0].text, text(7751, 3));
}

TEST_F(Clipboard, TestingAnotherTextBeepsAndSaysSo)
{
    user.clipboard = "hello";
    Form1.B_test.click();
    EXPECT_EQ(user.beeps, 1);
    EXPECT_EQ(user.numbers(), (std::vector<int>{7734}));
}

TEST_F(Clipboard, TheLogTellsOfEachLook)
{
    log_open();
    user.clipboard = two_text;
    clip_check(clip_ask);
    user.clipboard = "hello";
    clip_check(clip_ask);
    log_close();
    std::ifstream in(program_path("velkoro.log"));
    std::stringstream log;
    log << in.rdbuf();
    EXPECT_NE(log.str().find("10:00:00 clip_check checksum right\r\n"), std::string::npos);
    EXPECT_NE(log.str().find("10:00:00 clip_check no text of ours\r\n"), std::string::npos);
}
