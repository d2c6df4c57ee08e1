#include "ui/instance_link.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <thread>

namespace velkoro::test {
namespace {

class Link : public testing::Test {
protected:
    void TearDown() override
    {
        link_close();
        QFile::remove(QString::fromStdString(name));
    }
    /// Sends from another thread, as another instance would, while this one serves events.
    bool send(const std::string& text) const
    {
        std::atomic<int> result = -1;
        std::thread other([&] { result = link_send(name, text) ? 1 : 0; });
        QElapsedTimer limit;
        limit.start();
        while (result < 0 && limit.elapsed() < 5000)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        other.join();
        return result == 1;
    }
    const std::string name =
        QDir::tempPath().toStdString() + "/velkoro-link-" + std::to_string(getpid());
};

TEST_F(Link, TheNameHoldsTheUserAndLiesInAFolderOfHisOwn)
{
    EXPECT_NE(link_name().find("velkoro-" + std::to_string(getuid())), std::string::npos);
    EXPECT_EQ(link_name("x"), link_name() + "x");
}

TEST_F(Link, NobodyListensAtFirst)
{
    EXPECT_FALSE(link_alive(name));
    EXPECT_FALSE(link_send(name, "a.wp"));
}

TEST_F(Link, ATextArrivesWhole)
{
    std::vector<std::string> got;
    ASSERT_TRUE(link_listen(name, [&](const std::string& s) { got.push_back(s); }));
    EXPECT_TRUE(send("\"/home/a b/s\xfc"
                     "d.wp\""));
    EXPECT_TRUE(send("second"));
    EXPECT_EQ(got, (std::vector<std::string>{"\"/home/a b/s\xfc"
                                             "d.wp\"",
                                             "second"}));
}

TEST_F(Link, AnEmptyTextArrivesTooButAMereQuestionDoesNot)
{
    int arrived = 0;
    ASSERT_TRUE(link_listen(name, [&](const std::string&) { ++arrived; }));
    EXPECT_TRUE(link_alive(name));
    QCoreApplication::processEvents();
    EXPECT_EQ(arrived, 0);
    EXPECT_TRUE(send(""));
    EXPECT_EQ(arrived, 1);
}

TEST_F(Link, ADeadSocketIsReplacedALivingOneIsNot)
{
    // An instance that was killed leaves its socket behind.
    const int fd = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, name.c_str(), sizeof address.sun_path - 1);
    ASSERT_EQ(bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    close(fd);
    EXPECT_FALSE(link_alive(name));
    EXPECT_TRUE(link_listen(name, [](const std::string&) {}));
    EXPECT_TRUE(link_alive(name));

    QLocalServer other;
    const std::string taken = name + "-b";
    QLocalServer::removeServer(QString::fromStdString(taken));
    ASSERT_TRUE(other.listen(QString::fromStdString(taken)));
    EXPECT_FALSE(link_listen(taken, [](const std::string&) {}));
    EXPECT_TRUE(other.isListening());
}

TEST_F(Link, OnlyTheUserMayUseTheSocket)
{
    ASSERT_TRUE(link_listen(name, [](const std::string&) {}));
    struct stat s {};
    ASSERT_EQ(stat(name.c_str(), &s), 0);
    EXPECT_EQ(s.st_mode & 0077U, 0U);
}

TEST_F(Link, ATextWithoutEndIsDroppedWithItsConnection)
{
    int arrived = 0;
    ASSERT_TRUE(link_listen(name, [&](const std::string&) { ++arrived; }));
    QLocalSocket s;
    s.connectToServer(QString::fromStdString(name));
    ASSERT_TRUE(s.waitForConnected(500));
    s.write("half");
    s.flush();
    for (int i = 0; i < 10; ++i)
        QCoreApplication::processEvents();
    s.abort();
    for (int i = 0; i < 10; ++i)
        QCoreApplication::processEvents();
    EXPECT_EQ(arrived, 0);
}

} // namespace
} // namespace velkoro::test
