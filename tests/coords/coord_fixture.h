/// A test with the shipped datum table, metres instead of kilometres and no leading zero put in.
#pragma once

#include "coords/coord_text.h"
#include "coords/distance.h"
#include "core/code_page.h"
#include "core/files.h"
#include "core/form1.h"
#include "core/position_formats.h"
#include "core/settings.h"
#include "tests/support/scripted_platform.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace velkoro {

inline std::string shipped_datum_table()
{
    return read_file(std::string(VELKORO_SOURCE_DIR) + "/data/Datum.ins").value_or("");
}

class CoordTest : public testing::Test {
protected:
    scripted_platform user{};
    std::string zone{}, east{}, north{};

    CoordTest()
    {
        coord = {};
        datums = datum_parse(shipped_datum_table());
        Form1.posform.items = position_formats();
        for (const std::string& name : datums.grid_names)
            Form1.posform.items.push_back(name);
        Form1.Datum.items.clear();
        for (const datum_rec& d : datums.rows)
            Form1.Datum.items.push_back(d.name);
        Form1.posform.selected = 0;
        Form1.zone.selected = -1;
        settings.km_grid = false;
        settings.utm_zero = false;
        use_datum("WGS 84");
    }
    ~CoordTest() override
    {
        coord = {};
        datums = {};
        Form1.posform.items.clear();
        Form1.Datum.items.clear();
        Form1.posform.selected = Form1.Datum.selected = -1;
    }
    static void use_datum(const std::string& name)
    {
        Form1.Datum.selected = datum_find(name);
        ASSERT_GE(Form1.Datum.selected, 0) << name;
    }
    static int format_named(const std::string& name)
    {
        const auto& all = Form1.posform.items;
        return static_cast<int>(std::ranges::find(all, name) - all.begin());
    }
    static pos_rec at(double lat, double lon)
    {
        constexpr double rad = 3.14159265358979323846 / 180;
        return {rad_to_semi(lat * rad), rad_to_semi(lon * rad)};
    }
    /// Metres between two positions.
    static double apart(const pos_rec& a, const pos_rec& b)
    {
        return dist_chord(a, b).distance * static_cast<double>(settings.dist_unit);
    }
    /// "zone|east|north" of a position.
    std::string line(const pos_rec& pos, int fmt, int keep = 0)
    {
        pos_to_text(pos, zone, east, north, keep, fmt);
        return zone + "|" + east + "|" + north;
    }
};

} // namespace velkoro
