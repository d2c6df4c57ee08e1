/// A program folder of its own for each test, with a scripted user; both are gone afterwards.
#pragma once

#include "core/files.h"
#include "core/res_file.h"
#include "core/settings.h"
#include "tests/support/scripted_platform.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace velkoro {

class ProgramFolder : public testing::Test {
protected:
    void SetUp() override
    {
        std::string name = testing::TempDir() + "velkoroXXXXXX";
        ASSERT_NE(::mkdtemp(name.data()), nullptr);
        folders.program = name + "/";
        settings.ini_path = folders.program + "velkoro.ini";
    }
    void TearDown() override
    {
        std::filesystem::permissions(folders.program, std::filesystem::perms::owner_all);
        std::filesystem::remove_all(folders.program);
        folders = {};
    }
    void write(const std::string& name, std::string_view bytes)
    {
        write_file(folders.program + name, bytes);
    }
    std::string read(const std::string& name)
    {
        return read_file(folders.program + name).value_or("<missing>");
    }
    /// Puts the shipped text table into the folder.
    void shipped_texts()
    {
        write("velkoro.res", res_build(read_file(VELKORO_SOURCE_DIR "/data/velkoro.txt").value()));
    }
    scripted_platform user{};
};

} // namespace velkoro
