// Descriptors watched by the desktop's event loop.
#include "core/platform.h"
#include "tests/ui/ui_fixture.h"
#include "ui/qt_platform.h"

#include <fcntl.h>
#include <unistd.h>

#include <string>

namespace velkoro::test {
namespace {

class WatchTest : public UiTest {
protected:
    int ends[2] = {-1, -1};
    void SetUp() override
    {
        UiTest::SetUp();
        qt_platform_install("velkoro-watch-test");
        ASSERT_EQ(::pipe2(ends, O_NONBLOCK | O_CLOEXEC), 0);
    }
    void TearDown() override
    {
        for (const int end : ends)
            if (end >= 0)
                ::close(end);
        UiTest::TearDown();
    }
    void put(const std::string& bytes) const
    {
        ASSERT_EQ(::write(ends[1], bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }
    std::string take() const
    {
        std::string bytes(100, '\0');
        const ssize_t n = ::read(ends[0], bytes.data(), bytes.size());
        bytes.resize(n > 0 ? static_cast<std::size_t>(n) : 0);
        return bytes;
    }
    static void pump_a_second(const bool& until)
    {
        for (int i = 0; i < 50 && !until; ++i)
            platform.pump(20);
    }
};

TEST_F(WatchTest, BytesEndTheWaitOfAPumpAndReachTheProcedure)
{
    std::string got;
    platform.watch(ends[0], [&] { got += take(); });
    put("abc");
    const double begin = platform.ticks();
    for (int i = 0; i < 10 && got.empty(); ++i) // timers of the main window may come first
        platform.pump(3000);
    EXPECT_EQ(got, "abc");
    EXPECT_LT(platform.ticks() - begin, 2.0);
    platform.unwatch(ends[0]);
}

TEST_F(WatchTest, AProcedureMayEndItsOwnWatch)
{
    int calls = 0;
    bool once = false;
    platform.watch(ends[0], [&] {
        ++calls;
        once = true;
        platform.unwatch(ends[0]);
    });
    put("abc");
    pump_a_second(once);
    platform.pump(20);
    platform.pump(20);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(take(), "abc");
}

TEST_F(WatchTest, AProcedureThatPumpsSeesWhatComesMeanwhile)
{
    std::string got;
    bool done = false;
    platform.watch(ends[0], [&] {
        got += take() + ".";
        if (got == "a.") {
            put("b");
            pump_a_second(done);
        }
        done = got.ends_with("b.");
    });
    put("a");
    pump_a_second(done);
    EXPECT_EQ(got, "a.b.");
    platform.unwatch(ends[0]);
}

} // namespace
} // namespace velkoro::test
