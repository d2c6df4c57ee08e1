#include "core/job.h"

#include "core/trap.h"
#include "tests/support/program_folder.h"
#include "tests/support/scripted_platform.h"

#include <stdexcept>

using namespace velkoro;

namespace {

struct Job : testing::Test {
    scripted_platform user{};
    program_folder home{};
    std::vector<std::string> log{};

    Job()
    {
        platform.show = [this](window& w) {
            log.push_back(std::string(w.name) + (w.shown ? " on" : " off"));
        };
    }
    ~Job() override { job.jobs.clear(); }
    using lines = std::vector<std::string>;
};

} // namespace

TEST_F(Job, RunsUnderTheJobWindowAndEndsIt)
{
    job.jobs["W_O"] = [this] {
        log.push_back("job " + job.code);
        EXPECT_TRUE(op.form.shown);
    };
    run_job("W_O");
    EXPECT_EQ(log, (lines{"op on", "job W_O", "op off"}));
    EXPECT_EQ(job.code, "");
}

TEST_F(Job, TheResultWindowFollowsWhenItHoldsAText)
{
    job.jobs["W_O"] = [] { op2.anz.caption = "60 read"; };
    platform.wait_closed = [this](window& w) { log.push_back(std::string("wait ") + w.name); };
    run_job("W_O");
    EXPECT_EQ(log, (lines{"op on", "op off", "op2 on", "wait op2", "op2 off"}));
    EXPECT_EQ(op2.anz.caption, "60 read");

    job.jobs["W_O"] = [] {};
    log.clear();
    run_job("W_O");
    EXPECT_EQ(log, (lines{"op on", "op off"})) << "the last job's text is gone";
}

TEST_F(Job, CancelIsSeenAtTheNextProgressPointAndSaidOnce)
{
    std::vector<bool> goes_on;
    job.jobs["W_O"] = [&] {
        goes_on.push_back(op_pump());
        op.Abbr.click();
        EXPECT_EQ(op.anz.caption, text(2360));
        op.anz.caption = "stopping";
        op.Abbr.click();
        EXPECT_EQ(op.anz.caption, "stopping");
        goes_on.push_back(op_pump());
    };
    run_job("W_O");
    EXPECT_EQ(goes_on, (std::vector<bool>{true, false}));
    job.jobs["W_O"] = [&] { goes_on.push_back(op_pump()); };
    run_job("W_O");
    EXPECT_TRUE(goes_on.back()) << "a new job starts uncancelled";
}

TEST_F(Job, CancelBeforeTheFirstRecordStopsAtTheFirstCheck)
{
    user.on_pump = [] { op.Abbr.click(); };
    int records = 0;
    job.jobs["W_O"] = [&] {
        while (op_pump() && records < 10)
            ++records;
    };
    run_job("W_O");
    EXPECT_EQ(records, 0);
}

TEST_F(Job, ClosingTheWindowMeansCancelAndTheJobEndsIt)
{
    job.jobs["W_O"] = [] {
        EXPECT_FALSE(close_window(op.form));
        EXPECT_TRUE(job.op_cancel);
        EXPECT_TRUE(op.form.shown);
    };
    run_job("W_O");
    EXPECT_FALSE(op.form.shown);
}

TEST_F(Job, AFailingJobIsReportedAndTheWindowCloses)
{
    job.jobs["W_O"] = [] { throw std::runtime_error("disk gone"); };
    run_job("W_O");
    ASSERT_EQ(user.messages.size(), 1U);
    EXPECT_EQ(user.messages[0].text, "disk gone in op_activate");
    EXPECT_FALSE(op.form.shown);
    EXPECT_EQ(job.code, "");
}

TEST_F(Job, ACancelledBatchEndsTheJobInSilence)
{
    job.jobs["W_O"] = [] { throw batch_cancelled{}; };
    run_job("W_O");
    EXPECT_TRUE(user.messages.empty());
    EXPECT_FALSE(op.form.shown);
}

TEST_F(Job, AJobWithinAJobSharesItsWindow)
{
    job.jobs["SOR"] = [this] { log.push_back("inner"); };
    job.jobs["W_O"] = [this] {
        run_job("SOR");
        EXPECT_EQ(job.code, "W_O");
    };
    run_job("W_O");
    EXPECT_EQ(log, (lines{"op on", "inner", "op off"}));
}

TEST_F(Job, WhatEndsJobsRunsBeforeTheWindowCloses)
{
    job.jobs["W_O"] = [this] { log.push_back("job"); };
    job.ended = [this] { log.push_back("port closed"); };
    run_job("W_O");
    job.ended = {};
    EXPECT_EQ(log, (lines{"op on", "job", "port closed", "op off"}));
}

TEST_F(Job, AnUnknownCodeDoesNothing)
{
    run_job("none");
    EXPECT_TRUE(user.messages.empty());
    EXPECT_FALSE(op.form.shown);
}

TEST_F(Job, ProgressIsInThousandthsAndUnknownTurns)
{
    op_progress(0.25);
    EXPECT_EQ(op.ring.value, 250);
    op_progress(7);
    EXPECT_EQ(op.ring.value, 1000);
    op_progress(-1);
    EXPECT_EQ(op.ring.value, -1);
}

TEST_F(Job, AProgressPointIsDueAboutTwiceASecondHoweverFastTheRecordsAre)
{
    for (const double record_s : {1e-5, 1e-3, 0.01, 0.3, 2.0}) {
        int due = 0;
        double passed = 0;
        job.jobs["W_O"] = [&] {
            for (; passed < 20; passed += record_s) {
                user.time_s += record_s;
                due += op_due();
            }
        };
        run_job("W_O");
        const double most = 20 / std::max(0.5, record_s);
        EXPECT_LE(due, most + 1) << record_s;
        EXPECT_GE(due, most * 0.8 - 1) << record_s;
    }
}

TEST_F(Job, TheClockIsReadNowAndThenOnly)
{
    int readings = 0;
    platform.ticks = [&] { return ++readings, user.time_s; };
    job.jobs["W_O"] = [&] {
        for (int i = 0; i < 100000; ++i)
            user.time_s += 1e-7, op_due();
    };
    run_job("W_O");
    EXPECT_LT(readings, 1000);
}

TEST_F(Job, AResetPutsItsTimingBackAndKeepsWhatIsInstalled)
{
    job.jobs["W_O"] = [] {};
    job.code = "W_O";
    job.op_cancel = true;
    op_restart();
    user.time_s += 1;
    EXPECT_TRUE(op_due());
    EXPECT_GT(job.last_look, 0);
    EXPECT_GT(job.calls_to_look, 0);
    reset_all();
    EXPECT_EQ(job.code, "");
    EXPECT_FALSE(job.op_cancel);
    EXPECT_EQ(job.last_look, 0);
    EXPECT_EQ(job.last_pump, 0);
    EXPECT_EQ(job.calls, 0);
    EXPECT_EQ(job.calls_to_look, 0);
    EXPECT_TRUE(job.jobs.contains("W_O"));
}
