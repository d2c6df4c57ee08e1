/// The job window: shown only for jobs that last, and its Cancel reachable.
#include "core/job.h"

#include "tests/ui/ui_fixture.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace velkoro::test {
namespace {

class JobWindow : public UiTest {
protected:
    void SetUp() override
    {
        UiTest::SetUp();
        job = {};
    }
    void TearDown() override
    {
        job = {};
        UiTest::TearDown();
    }
    /// A job that works for a time, with its progress points.
    static void work_for(int ms, bool tells_progress)
    {
        QElapsedTimer t;
        t.start();
        while (t.elapsed() < ms && !job.op_cancel) {
            if (tells_progress)
                op_progress(static_cast<double>(t.elapsed()) / ms);
            platform.pump(20);
        }
    }
    static bool op_visible()
    {
        const QWidget* w = widget_of(op.form);
        return w && w->isVisible();
    }
};

TEST_F(JobWindow, AShortJobShowsOnlyTheWaitCursor)
{
    open_main();
    bool seen = false;
    bool cursor = false;
    job.jobs["W_O"] = [&] {
        work_for(150, false);
        seen = op_visible();
        cursor = QApplication::overrideCursor() &&
                 QApplication::overrideCursor()->shape() == Qt::WaitCursor;
    };
    run_job("W_O");
    EXPECT_FALSE(seen);
    EXPECT_TRUE(cursor);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    EXPECT_FALSE(op_visible());
}

TEST_F(JobWindow, ALongJobShowsItAndEscapeOrCancelEndsTheJob)
{
    open_main();
    for (const bool by_key : {false, true}) {
        bool seen = false;
        QTimer press;
        QObject::connect(&press, &QTimer::timeout, [&] {
            if (!op_visible())
                return;
            seen = true;
            press.stop();
            if (by_key)
                QTest::keyClick(widget_of(op.form), Qt::Key_Escape);
            else
                QTest::mouseClick(widget_of(op.Abbr), Qt::LeftButton);
        });
        press.start(20);
        bool cancelled = false;
        job.jobs["W_O"] = [&] {
            work_for(5000, false);
            cancelled = job.op_cancel;
        };
        run_job("W_O");
        EXPECT_TRUE(seen);
        EXPECT_TRUE(cancelled);
        EXPECT_FALSE(op_visible());
    }
}

TEST_F(JobWindow, AJobThatIsNearlyDoneAtTheDelayDoesNotFlash)
{
    open_main();
    bool seen = false;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] { seen = seen || op_visible(); });
    look.start(10);
    job.jobs["W_O"] = [&] { work_for(600, true); };
    run_job("W_O");
    EXPECT_FALSE(seen);
}

TEST_F(JobWindow, InputIsHeldBackWhileTheJobRunsUnseen)
{
    int clicks = 0;
    Form1.Edit_w[0].click = [&] { ++clicks; };
    open_main();
    job.jobs["W_O"] = [&] {
        QTest::mouseClick(widget_of(Form1.Edit_w[0]), Qt::LeftButton);
        platform.pump(0);
    };
    run_job("W_O");
    EXPECT_EQ(clicks, 0);
    QTest::mouseClick(widget_of(Form1.Edit_w[0]), Qt::LeftButton);
    EXPECT_EQ(clicks, 1);
}

TEST_F(JobWindow, TheMainWindowCannotBeClosedUnderAnUnseenJob)
{
    open_main();
    job.jobs["W_O"] = [&] { platform.pump(0); };
    run_job("W_O");
    EXPECT_TRUE(Form1.form.shown);
}

} // namespace
} // namespace velkoro::test
