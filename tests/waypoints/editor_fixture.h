/// The waypoint editor over store and list with the shipped tables; English texts, metres.
#pragma once

#include "coords/coord_text.h"
#include "coords/distance.h"
#include "coords/install.h"
#include "core/hooks.h"
#include "core/job.h"
#include "core/shell.h"
#include "core/symbols.h"
#include "core/wayp_insert.h"
#include "tests/support/program_folder.h"
#include "tests/support/scripted_platform.h"
#include "waypoints/editor.h"
#include "waypoints/install.h"
#include "waypoints/list.h"

#include <functional>
#include <string>
#include <vector>

namespace velkoro {

struct EditorTest : testing::Test {
    scripted_platform user{};
    program_folder home{};

    EditorTest()
    {
        home.put("velkoro.ini", "[Main]\r\nLang3=0\r\n");
        home.put("Datum.ini", shipped("Datum.ins"));
        home.put("SYMBOL_3.INI", shipped("SYMBOL_3.INS"));
        home.put("glyphs.csv", shipped("glyphs.csv"));
        shell_install();
        coords_install();
        waypoints_install();
        glyphs = {};
        shell_start("");
        settings.symbol_level = 3;
        symbols_load();
        settings.km_grid = false;
        settings.utm_zero = false;
        coord = {};
        Form1.posform.selected = fmt_minutes;
        Form1.Datum.selected = datum_find("WGS 84");
        user.messages.clear();
    }
    ~EditorTest() override
    {
        WAYPOINT.form.shown = false;
        job.jobs.clear();
        shell = {};
        wayp_list = {};
        editor = {};
        coord = {};
        datums = {};
    }

    static std::string shipped(const std::string& name)
    {
        return read_file(std::string(VELKORO_SOURCE_DIR "/data/") + name).value_or("");
    }
    static pos_rec at(double lat, double lon)
    {
        constexpr double rad = 3.14159265358979323846 / 180;
        return {rad_to_semi(lat * rad), rad_to_semi(lon * rad)};
    }
    static double apart_m(const pos_rec& a, const pos_rec& b)
    {
        return dist_chord(a, b).distance * static_cast<double>(settings.dist_unit);
    }
    static int add(const wayp_rec& rec) { return wp_append(rec); }
    static wayp_rec& wp(int index) { return store.wp[static_cast<std::size_t>(index)]; }
    static void refer_to(int index)
    {
        store.refp_name = wp(index).nam;
        store.refp_pos = wp(index).pos;
    }
    static void mark(const std::vector<int>& indexes)
    {
        for (const int i : indexes)
            Form1.Waypl2.rows.rows[static_cast<std::size_t>(wp_row(i))].marked = true;
    }

    // As the binder does for the user's actions.
    static void type(control& c, const std::string& text)
    {
        c.text = text;
        if (c.change)
            c.change();
    }
    static void tick(control& c, bool on)
    {
        c.checked = on;
        if (c.click)
            c.click();
    }
    static void choose(control& c, int entry)
    {
        c.selected = entry;
        if (c.change)
            c.change();
    }
    static void choose_symbol(const std::string& name)
    {
        for (std::size_t i = 0; i < WAYPOINT.symb.items.size(); ++i)
            if (WAYPOINT.symb.items[i] == name)
                WAYPOINT.symb.row_click(static_cast<int>(i));
    }
    static void ok() { WAYPOINT.OK.click(); }

    /// Opens the window, does what the user does in it, and closes it if it still stands.
    static void while_open(std::function<void()> acts)
    {
        platform.wait_closed = [acts = std::move(acts)](window&) { acts(); };
    }
    static bool edit(int index, std::function<void()> acts)
    {
        while_open(std::move(acts));
        return waypoint_edit(index);
    }
    static int enter(std::function<void()> acts, std::optional<pos_rec> start = {})
    {
        while_open(std::move(acts));
        return waypoint_new(start);
    }
    using ints = std::vector<int>;
};

} // namespace velkoro
