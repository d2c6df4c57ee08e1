#include "tests/cli/run_cli.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace velkoro {

namespace fs = std::filesystem;

cli_result run_cli(const std::vector<std::string>& arguments, const std::string& input)
{
    // Files instead of pipes: nothing can block, however much is written.
    const std::string base = test_folder() + ".run";
    write_text(base + ".in", input);
    std::string program = VELKORO_CLI;
    std::vector<char*> argv{program.data()};
    std::vector<std::string> copies = arguments;
    for (std::string& a : copies)
        argv.push_back(a.data());
    argv.push_back(nullptr);

    const pid_t child = fork();
    if (child < 0)
        throw std::runtime_error("fork failed");
    if (child == 0) {
        constexpr int fresh = O_WRONLY | O_CREAT | O_TRUNC;
        if (dup2(open((base + ".in").c_str(), O_RDONLY), STDIN_FILENO) < 0 ||
            dup2(open((base + ".out").c_str(), fresh, 0600), STDOUT_FILENO) < 0 ||
            dup2(open((base + ".err").c_str(), fresh, 0600), STDERR_FILENO) < 0)
            _exit(126);
        unsetenv("VELKORO_HOME");
        execv(program.c_str(), argv.data());
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, read_text(base + ".out"),
            read_text(base + ".err")};
}

std::string source_path(const std::string& name)
{
    return std::string(VELKORO_SOURCE_DIR) + "/" + name;
}

std::string read_text(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void write_text(const std::string& path, const std::string& text)
{
    std::ofstream(path, std::ios::binary) << text;
}

std::string test_folder()
{
    const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
    const fs::path folder = fs::path(VELKORO_BINARY_DIR) / "tests" / "cli_run" /
                            (std::string(test->test_suite_name()) + "." + test->name());
    static std::string cleared; // once a test: the first call empties it
    if (cleared != folder.string()) {
        fs::remove_all(folder);
        cleared = folder.string();
    }
    fs::create_directories(folder);
    return folder.string() + "/";
}

std::string test_home()
{
    const std::string home = test_folder() + "home/";
    if (!fs::exists(home)) {
        fs::create_directories(home);
        fs::copy_file(std::string(VELKORO_BINARY_DIR) + "/velkoro.res", home + "velkoro.res");
        for (const auto& entry : fs::directory_iterator(source_path("data")))
            if (entry.is_regular_file() &&
                (entry.path().extension() == ".ins" || entry.path().extension() == ".INS" ||
                 entry.path().extension() == ".ini"))
                fs::copy_file(entry.path(), home + entry.path().filename().string());
    }
    return home;
}

} // namespace velkoro
