/// A program folder of its own for a test: empty but for the text table; gone at the end.
///
///     program_folder home;                    // after the scripted_platform
///     home.put("velkoro.ini", "[Main]\r\n");
#pragma once

#include "core/files.h"
#include "core/form1.h"
#include "core/settings.h"
#include "core/texts.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>

namespace velkoro {

struct program_folder {
    std::filesystem::path path{};
    std::filesystem::path start = std::filesystem::current_path();

    program_folder()
    {
        static int number = 0;
        path = std::filesystem::temp_directory_path() /
               ("velkoro_test_" + std::to_string(getpid()) + "_" + std::to_string(++number));
        std::filesystem::create_directories(path);
        folders.program = path.string() + "/";
        settings.ini_path = folders.program + "velkoro.ini";
        put("velkoro.res", text_table_bytes());
        reset_form1();
    }
    ~program_folder()
    {
        std::error_code ignored;
        std::filesystem::current_path(start, ignored);
        std::filesystem::remove_all(path, ignored);
        folders = {};
        reset_form1();
    }
    program_folder(const program_folder&) = delete;
    program_folder& operator=(const program_folder&) = delete;

    void put(const std::string& name, const std::string& bytes) const
    {
        std::ofstream(path / name, std::ios::binary) << bytes;
    }
    std::string get(const std::string& name) const
    {
        std::ifstream in(path / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    bool has(const std::string& name) const { return std::filesystem::exists(path / name); }

    /// The main window as it is before start-up, its handlers left in place.
    static void reset_form1()
    {
        Form1.m_lang_sel.clear();
        Form1.prof.clear();
        for (control* c : Form1.form.controls) {
            static_cast<look&>(*c) = c->design;
            c->rows = {};
        }
        static_cast<look&>(Form1.form) = Form1.form.design;
        Form1.form.shown = Form1.form.modified = false;
        Form1.form.left = Form1.form.top = Form1.form.width = Form1.form.height = -1;
    }

private:
    static const std::string& text_table_bytes()
    {
        static const std::string bytes = [] {
            std::ifstream in(VELKORO_SOURCE_DIR "/data/velkoro.txt", std::ios::binary);
            return res_build(std::string(std::istreambuf_iterator<char>(in), {}));
        }();
        return bytes;
    }
};

} // namespace velkoro
