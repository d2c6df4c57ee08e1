/// A program folder of its own for each test, without a text table, and a scripted user.
#pragma once

#include "core/files.h"
#include "core/settings.h"
#include "core/texts.h"
#include "tests/support/program_folder.h"
#include "tests/support/scripted_platform.h"

#include <gtest/gtest.h>

#include <string>

namespace velkoro {

class ProgramFolder : public testing::Test {
protected:
    ProgramFolder() { delete_file(folders.program + "velkoro.res"); }
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
    program_folder home{}; // behind the user, whose start resets the settings
};

} // namespace velkoro
