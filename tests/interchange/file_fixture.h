/// A program folder, datums and the main window's lists for tests of import and export.
#pragma once

#include "coords/datum.h"
#include "coords/install.h"
#include "core/cmd_open.h"
#include "core/form1.h"
#include "core/hooks.h"
#include "core/job.h"
#include "core/reset.h"
#include "core/shell.h"
#include "core/store.h"
#include "core/wayp_insert.h"
#include "interchange/install.h"
#include "tests/support/program_folder.h"
#include "tests/support/scripted_platform.h"
#include "waypoints/native_jobs.h"

#include <gtest/gtest.h>

#include <string>

namespace velkoro {

class FileTest : public testing::Test {
protected:
    scripted_platform outside{};
    program_folder home{};

    void SetUp() override
    {
        datums = datum_parse("WGS 84\r\nEuropean 1950,-251,-0.14192702,-87,-98,-121\r\n"
                             "WGS 84,0,0,0,0,0\r\n");
        Form1.Datum.items = {"European 1950", "WGS 84"};
        Form1.Datum.selected = 1;
        Form1.posform.items = {"hddd.ddddd\xB0", "hddd\xB0mm.mmm'", "hddd\xB0mm'ss.s\"", "UTM",
                               "MGRS"};
        Form1.posform.selected = 0;
        native_files_install();
        interchange_install();
    }
    void TearDown() override
    {
        for (control* c : Form1.form.controls)
            c->click = {};
        job.jobs.clear();
        cmd_opens = {};
        datums = {};
        native_job = {};
        reset_all();
    }
    std::string file(const std::string& name) const { return (home.path / name).string(); }
    static int add(const std::string& name, double lat, double lon, const std::string& comment = {})
    {
        wayp_rec w;
        w.nam = name;
        w.kom = comment;
        w.pos = {static_cast<std::int32_t>(lat / 180 * 2147483648.0),
                 static_cast<std::int32_t>(lon / 180 * 2147483648.0)};
        return wp_append(w);
    }
    static void add_route(const std::string& name, const std::string& keys)
    {
        route_rec r;
        r.nam = name;
        r.wps = keys;
        route_add(r);
    }
};

} // namespace velkoro
