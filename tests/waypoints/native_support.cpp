#include "tests/waypoints/native_support.h"

#include "core/code_page.h"
#include "core/files.h"
#include "core/job.h"
#include "core/settings.h"
#include "core/store.h"
#include "core/text_tools.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <unistd.h>

namespace velkoro {
namespace {

std::string golden_folder(const std::string& folder)
{
    return std::string(VELKORO_SOURCE_DIR) + "/tests/golden/" + folder + "/";
}

std::string chosen(const control& c)
{
    return c.selected < 0 ? "-" : c.items.at(static_cast<std::size_t>(c.selected));
}

void put_boxes(std::ostringstream& out, const scripted_platform& user)
{
    for (const message_box& m : user.messages)
        out << "box " << m.text << "\n";
}

void clear_windows()
{
    for (control* c : {&Form1.posform, &Form1.Datum, &Form1.sort}) {
        c->items.clear();
        c->selected = -1;
        c->change = {};
        c->click = {};
    }
    Form1.wayp_titel.text.clear();
    op2.anz.caption.clear();
    op2.anz2.caption.clear();
    job.jobs.clear();
}

} // namespace

native_fixture::native_fixture()
{
    scripted_platform::plain_texts();
    clear_windows();
    Form1.posform.items = {"hddd.ddddd°"_w, "hddd°mm.mmm'"_w, "hddd°mm'ss.s\""_w, "UTM", "MGRS"};
    for (int i = 0; i < 14; ++i)
        Form1.Datum.items.push_back(i == 7 ? "WGS 84" : "Datum " + std::to_string(i));
    for (int i = 0; i < sort_entries; ++i)
        Form1.sort.items.push_back("order " + std::to_string(i));
    Form1.posform.selected = Form1.Datum.selected = Form1.sort.selected = 0;
    store.wp_name_max = 30;
    store.wp_ext_chars = true;
    std::string pattern = (std::filesystem::temp_directory_path() / "velkoro_XXXXXX").string();
    folder = std::string(::mkdtemp(pattern.data())) + "/";
    folders.program = folder;
    settings.ini_path = folder + "velkoro.ini";
}

native_fixture::~native_fixture()
{
    std::error_code gone;
    std::filesystem::remove_all(folder, gone);
    clear_windows();
    folders = {};
}

void make_progress_due()
{
    job.calls = job.calls_to_look = 0;
    job.last_pump = -100;
}

std::vector<std::string> golden_files(const std::string& folder, const std::string& extension)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(golden_folder(folder)))
        if (entry.path().extension() == extension)
            names.push_back(entry.path().filename().string());
    std::ranges::sort(names);
    return names;
}

std::string golden_bytes(const std::string& folder, const std::string& name)
{
    const auto bytes = read_file(golden_folder(folder) + name);
    EXPECT_TRUE(bytes) << folder << "/" << name;
    return bytes.value_or("");
}

void expect_golden(const std::string& folder, const std::string& name, std::string_view actual)
{
    const char* write = std::getenv("VELKORO_GOLDEN");
    if (write != nullptr && std::string_view(write) == "write")
        write_file(golden_folder(folder) + name, actual);
    else
        EXPECT_EQ(golden_bytes(folder, name), actual) << folder << "/" << name;
}

std::string dump_waypoints(const scripted_platform& user)
{
    std::ostringstream out;
    out << "title " << Form1.wayp_titel.text << "\nposform " << chosen(Form1.posform) << "\ndatum "
        << chosen(Form1.Datum) << "\nzone " << settings.list_zone << "\nsort " << chosen(Form1.sort)
        << "\nreference " << store.refp_name << " " << store.refp_pos.lat << " "
        << store.refp_pos.lon << "\nscale " << settings.scale << "\n";
    for (int i = 0; i <= store.wp_top; ++i) {
        const wayp_rec& w = store.wp[static_cast<std::size_t>(i)];
        out << "waypoint [" << w.nam << "] [" << w.kom << "] " << w.pos.lat << " " << w.pos.lon
            << " date " << w.dat << " prox " << w.prox << " symbol " << w.symb << "/" << w.symbmode
            << " alt " << w.alt << "\n";
    }
    for (int i = 0; i <= store.rou_top; ++i) {
        const route_rec& r = store.rou[static_cast<std::size_t>(i)];
        out << "route [" << r.nam << "] " << r.wps << " colour " << r.farbe << " speed [" << r.speed
            << "] korr [" << r.korr << "] anw [" << r.anw << "]\n";
    }
    put_boxes(out, user);
    return to_utf8(out.str());
}

std::string dump_track(const scripted_platform& user)
{
    std::ostringstream out;
    out << "title " << store.trk_title << "\n";
    for (std::int32_t i = 0; i <= store.trk_top; ++i) {
        const trackp_rec& p = store.trk[static_cast<std::size_t>(i)];
        out << "point " << p.pos.lat << " " << p.pos.lon << " time " << p.zeit << " new " << p.neu
            << " class " << p.art << " [" << p.kom.view() << "] alt " << p.alt << "\n";
    }
    put_boxes(out, user);
    return to_utf8(out.str());
}

} // namespace velkoro
