#include "core/log.h"

#include "core/trap.h"
#include "tests/core/program_folder_fixture.h"

#include <filesystem>
#include <stdexcept>

using namespace velkoro;

namespace {

class Log : public ProgramFolder {
protected:
    void SetUp() override
    {
        ProgramFolder::SetUp();
        shipped_texts();
    }
    void TearDown() override
    {
        log_close();
        ProgramFolder::TearDown();
    }
    std::string log() { return read("velkoro.log"); }
    void age_log(int hours)
    {
        std::filesystem::last_write_time(folders.program + "velkoro.log",
                                         std::filesystem::file_time_type::clock::now() -
                                             std::chrono::hours(hours));
    }
};

void wayp_sort_do()
try {
    throw std::runtime_error("Overflow");
} catch (...) {
    trap("wayp_sort_do");
}

} // namespace

TEST_F(Log, OpensWithAnEmptyLineAndItsHeadInPrintZones)
{
    settings.port = 3;
    log_open();
    EXPECT_TRUE(log_book.log_on);
    const std::string text = log();
    EXPECT_EQ(text.substr(0, text.find("\r\n", 2)), "\r\n"
                                                    "***** open    2026-05-17    10:00:00       "
                                                    "206          ");
    EXPECT_TRUE(text.ends_with("\r\nport 3 9600,N,8,1\r\n")) << text;
    EXPECT_EQ(user.numbers(), (std::vector<int>{7720}));
}

TEST_F(Log, TheHeadNamesSystemVersionAndPort)
{
    settings.port = 100;
    log_open();
    const std::string text = log();
    const std::size_t system = text.find("\r\nLinux ");
    ASSERT_NE(system, std::string::npos) << text;
    const std::string line = text.substr(system + 2, text.find("\r\n", system + 2) - system - 2);
    EXPECT_EQ(std::count(line.begin(), line.end(), '/'), 2) << line;
    EXPECT_TRUE(text.ends_with("port USB\r\n"));
}

TEST_F(Log, ThePortSettingsFollowTheProtocol)
{
    settings.port = 1;
    settings.garmin[6] = 6;
    log_open();
    EXPECT_TRUE(log().ends_with("port 1 128000,N,8,1\r\n"));
    log_close();
    settings.port = 0;
    log_open();
    EXPECT_TRUE(log().ends_with("no port\r\n"));
}

TEST_F(Log, CancelLeavesItClosed)
{
    user.answers = {answer::cancel};
    log_open();
    EXPECT_FALSE(log_book.log_on);
    EXPECT_EQ(log(), "<missing>");
}

TEST_F(Log, ASecondClickDoesNothing)
{
    log_open();
    const std::string before = log();
    log_open();
    EXPECT_EQ(log(), before);
    EXPECT_EQ(user.messages.size(), 1U);
    EXPECT_TRUE(log_book.log_on) << "to the end of the process";
}

TEST_F(Log, ALineHasTheClockABlankAndTheTag)
{
    user.time_s = 3661.9;
    log_line(" before it is open");
    log_open();
    log_line(" transmit");
    log_line("cal_set 0");
    log_line("two\r\nlines");
    EXPECT_TRUE(
        log().ends_with("\r\n01:01:01 transmit\r\n01:01:01 cal_set 0\r\n01:01:01 two  lines\r\n"))
        << log();
    EXPECT_EQ(log().find("before"), std::string::npos);
}

TEST_F(Log, AnOldLogOffersToBeDeleted)
{
    write("velkoro.log", "old\r\n");
    age_log(49);
    log_open();
    EXPECT_EQ(user.numbers(), (std::vector<int>{7720, 7721}));
    EXPECT_EQ(log().find("old"), std::string::npos);
}

TEST_F(Log, AnOldLogStaysWhenItsDeletionIsRefused)
{
    write("velkoro.log", "old\r\n");
    age_log(49);
    user.answers = {answer::ok, answer::cancel};
    log_open();
    EXPECT_TRUE(log().starts_with("old\r\n\r\n***** open"));
}

TEST_F(Log, ALogOfTodayIsAppendedToWithoutAQuestion)
{
    write("velkoro.log", "new\r\n");
    age_log(23);
    log_open();
    EXPECT_EQ(user.messages.size(), 1U);
    EXPECT_TRUE(log().starts_with("new\r\n"));
}

TEST_F(Log, ALogThatCannotBeOpenedIsNotReported)
{
    std::filesystem::create_directory(folders.program + "velkoro.log");
    log_open();
    EXPECT_FALSE(log_book.log_on);
    EXPECT_EQ(user.count(0), 0);
    log_line(" transmit");
}

TEST_F(Log, ClosingTwiceDoesNoHarm)
{
    log_open();
    log_close();
    log_close();
    log_line(" after");
    EXPECT_EQ(log().find("after"), std::string::npos);
}

TEST(HexText, IsTwoDigitsAByteWithBlanksBetween)
{
    EXPECT_EQ(hex_text(std::string_view("\x10\x03\xFF\0", 4)), "10 03 FF 00");
    EXPECT_EQ(hex_text(""), "");
}

// The error report
// ------------------------------------------------------------------------------------------------

TEST_F(Log, ATrapShowsTheErrorAndItsProcedure)
{
    wayp_sort_do();
    ASSERT_EQ(user.messages.size(), 1U);
    EXPECT_EQ(user.messages[0].text, "Overflow in wayp_sort_do");
    EXPECT_EQ(user.messages[0].icon, icon::critical);
}

TEST_F(Log, ATrapWritesTheSameToTheOpenLog)
{
    log_open();
    wayp_sort_do();
    EXPECT_TRUE(log().ends_with("\r\n10:00:00 Overflow in wayp_sort_do\r\n")) << log();
}

TEST_F(Log, ATrapNeverThrows)
{
    platform.message = [](const message_box&) -> answer { throw std::runtime_error("no screen"); };
    EXPECT_NO_THROW(wayp_sort_do());
}

TEST_F(Log, ATrapNamesCancelledBatchesAndUnknownErrors)
{
    try {
        throw batch_cancelled{};
    } catch (...) {
        trap("a");
    }
    try {
        throw 5;
    } catch (...) {
        trap("b");
    }
    EXPECT_EQ(user.messages[0].text, "Cancelled in a");
    EXPECT_EQ(user.messages[1].text, "Unknown error in b");
}
