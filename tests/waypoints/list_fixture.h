/// The waypoint list over a store with a scripted user; English texts.
#pragma once

#include "core/hooks.h"
#include "core/job.h"
#include "core/shell.h"
#include "core/symbols.h"
#include "tests/support/program_folder.h"
#include "tests/support/scripted_platform.h"
#include "waypoints/conflict.h"
#include "waypoints/list.h"
#include "waypoints/list_sort.h"

#include <string>
#include <vector>

namespace velkoro {

struct ListTest : testing::Test {
    scripted_platform user{};
    program_folder home{};

    ListTest()
    {
        home.put("velkoro.ini", "[Main]\r\nLang3=0\r\n");
        home.put("Datum.ini", "");
        shell_install();
        wayp_list_install();
        conflict_install();
        glyphs = {};
        shell_start("");
        user.messages.clear();
    }
    ~ListTest() override
    {
        shell = {};
        wayp_list = {};
    }

    static void add(const wayp_rec& rec)
    {
        wayp_rec w = rec;
        wayp_insert(w, -10);
        wayp_insert(w, 0);
        wayp_insert(w, 2);
    }
    static void add_names(const std::vector<std::string>& names)
    {
        int n = 0;
        for (const std::string& name : names)
            add({.nam = name, .pos = {++n * 100000, n * 100000}});
    }
    static row_list& list() { return Form1.Waypl2.rows; }
    /// Names in row order, marked ones with a "*" in front.
    static std::vector<std::string> rows()
    {
        std::vector<std::string> out;
        for (const list_row& r : list().rows)
            out.push_back((r.marked ? "*" : "") + store.wp[static_cast<std::size_t>(r.data)].nam);
        return out;
    }
    static std::string cell(int row, list_col column)
    {
        return list().cell(row, static_cast<int>(column));
    }
    static void sort_by(sort_entry order)
    {
        Form1.sort.selected = static_cast<int>(order);
        Form1.sort.change();
    }
    /// As the binder does when the user clicks with Ctrl held.
    static void mark(int row, bool on = true)
    {
        list().rows[static_cast<std::size_t>(row)].marked = on;
        Form1.Waypl2.row_click(row);
    }
    void tick(double seconds)
    {
        user.time_s += seconds;
        Form1.wayp_big_timer.tick();
    }
    using lines = std::vector<std::string>;
};

} // namespace velkoro
