/// The shell with a main window of its own, a program folder and a scripted user.
#pragma once

#include "core/code_page.h"
#include "core/job.h"
#include "core/shell.h"
#include "tests/support/program_folder.h"
#include "tests/support/scripted_platform.h"

#include <string>
#include <vector>

namespace velkoro {

struct ShellTest : testing::Test {
    scripted_platform user{};
    program_folder home{};
    std::vector<std::string> opened{}; ///< waypoint files that the command line led to
    int quits = 0;

    ShellTest()
    {
        home.put("Datum.ini", "");
        home.put("SYMBOL_3.ini", ""); // the level of a first start
        platform.quit = [this] { ++quits; };
        shell_install();
        Form1.Wayp_Datei_lesen.click = [this] {
            opened.push_back(settings.wp_pending);
            settings.wp_pending.clear();
        };
    }
    ~ShellTest() override
    {
        Form1.Wayp_Datei_lesen.click = {};
        Form1.form.query_close = {};
        shell = {};
    }
    /// A settings file with a language, so that the language window stays away.
    void ini(const std::string& more) const
    {
        home.put("velkoro.ini", "[Main]\r\nLang3=0\r\n" + more);
    }
    static void screen(double width, double height)
    {
        platform.screen = [=] { return std::vector<double>{0, 0, width, height}; };
    }
    using lines = std::vector<std::string>;
};

} // namespace velkoro
