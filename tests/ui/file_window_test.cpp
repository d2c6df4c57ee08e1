/// The file window, driven as a user drives it, in both languages.
#include "interchange/selfil.h"

#include "core/files.h"
#include "core/job.h"
#include "core/settings.h"
#include "interchange/install.h"
#include "tests/support/program_folder.h"
#include "tests/ui/waypoint_windows_fixture.h"
#include "ui/list_view.h"
#include "ui/qt_text.h"
#include "waypoints/native_jobs.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>

#include <filesystem>
#include <optional>

namespace velkoro::test {
namespace {

class FileWindow : public WaypointWindows, public testing::WithParamInterface<int> {
protected:
    std::optional<program_folder> home{};

    void SetUp() override
    {
        home.emplace(); // ahead of the list, as it takes the main window back to its design
        WaypointWindows::SetUp();
        settings.ini_path = folders.program + "velkoro.ini";
        load_texts(GetParam());
        native_files_install();
        interchange_install();
        Form1.posform.items = {"hddd.ddddd\xB0", "hddd\xB0mm.mmm'", "hddd\xB0mm'ss.s\""};
        Form1.posform.selected = 0;
        add({.nam = "ALPHA", .kom = "Hütte"_w, .pos = {574000000, 138000000}});
        add({.nam = "BETA", .kom = "top", .pos = {-574000000, -138000000}});
        route_rec tour;
        tour.nam = "TOUR";
        tour.wps = "ALPHA$BETA$";
        route_add(tour);
        list_refill();
        open_main();
    }
    void TearDown() override
    {
        job.jobs.clear();
        for (control* c : selfil.form.controls) // the handlers are the window's own
            static_cast<look&>(*c) = c->design;
        WaypointWindows::TearDown();
        home.reset();
    }
    static void pick(const control& c, const QString& start)
    {
        auto* box = widget<QComboBox>(c);
        const int i = box->findText(start, Qt::MatchStartsWith);
        ASSERT_GE(i, 0) << start.toStdString();
        box->setCurrentIndex(i);
        emit box->activated(i);
        QCoreApplication::processEvents();
    }
    static void write_over(const control& c, const QString& text)
    {
        auto* line = widget<QLineEdit>(c);
        line->selectAll();
        type(line, text);
    }
    static bool is_shown(const control& c) { return widget_of(c)->isVisible(); }
};

TEST_P(FileWindow, ShowsWhatTheChosenFormatCanHold)
{
    when_open(selfil.form, {[] {
                  pick(selfil.filform, QStringLiteral("EXPORT VELkoro Text"));
                  EXPECT_TRUE(is_shown(selfil.posform));
                  EXPECT_TRUE(is_shown(selfil.Trenn));
                  EXPECT_TRUE(is_shown(selfil.Zeitf));
                  EXPECT_TRUE(child<QLabel>(selfil.form, "deko_Trenn")->isVisible());
                  const QPoint before = widget_of(selfil.naml)->pos();
                  pick(selfil.filform, QStringLiteral("EXPORT StreetAtlas"));
                  EXPECT_FALSE(is_shown(selfil.Trenn));
                  EXPECT_FALSE(child<QLabel>(selfil.form, "deko_Trenn")->isVisible());
                  EXPECT_TRUE(is_shown(selfil.naml));
                  EXPECT_EQ(widget_of(selfil.naml)->pos(), before) << "the others keep their place";
                  EXPECT_FALSE(widget_of(selfil.ausw_r)->isEnabled());
                  EXPECT_FALSE(widget<QComboBox>(selfil.filform)->toolTip().isEmpty());
                  for (const control* c : selfil.form.controls)
                      if (c != &selfil.akt && c->kind != kind::frame) {
                          EXPECT_FALSE(widget_of(*c)->toolTip().isEmpty()) << c->name;
                      }
                  QTest::keyClick(widget_of(selfil.filform), Qt::Key_Escape);
              }});
    action_of(Form1.Wayp_Datei_Speich[1])->trigger();
    EXPECT_TRUE(all_done());
    EXPECT_FALSE(selfil.form.shown);
}

TEST_P(FileWindow, WritesTheMarkedRoutesThatAreChosenInTheList)
{
    when_open(selfil.form, {[this] {
                  pick(selfil.filform, QStringLiteral("EXPORT TerrainNavigator"));
                  press(selfil.ausw_rm);
                  EXPECT_TRUE(widget_of(selfil.routen_m)->isEnabled());
                  auto* list = widget<list_view>(selfil.routen_m);
                  QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier,
                                    list->visualRect(list->model()->index(0, 0)).center());
                  EXPECT_EQ(widget<QLabel>(selfil.akt)->text(), to_q(text(8007, 1)));
                  write_over(selfil.pathnam, QString::fromStdString(home->path.string()));
                  write_over(selfil.filnam, QStringLiteral("tour"));
                  QTest::keyClick(widget_of(selfil.filnam), Qt::Key_Return);
              }});
    action_of(Form1.Wayp_Datei_Speich[1])->trigger();
    EXPECT_TRUE(all_done());
    EXPECT_NE(home->get("tour.rxf").find("ALPHA"), std::string::npos);
}

TEST_P(FileWindow, ReadsTheFileThatWasTyped)
{
    home->put("more.geo", "GAMMA,N47.5\xB0,E008.5\xB0\r\n");
    when_open(selfil.form, {[this] {
                  EXPECT_FALSE(is_shown(selfil.ausw_w));
                  EXPECT_FALSE(is_shown(selfil.posform));
                  EXPECT_LT(widget_of(selfil.form)->height(), 260) << "no empty room";
                  write_over(selfil.pathnam, QString::fromStdString(home->path.string()));
                  write_over(selfil.filnam, QStringLiteral("more.geo"));
                  press(selfil.OK);
              }});
    action_of(Form1.Wayp_Datei_lesen)->trigger();
    EXPECT_TRUE(all_done());
    ASSERT_EQ(store.wp_top, 2);
    EXPECT_EQ(store.wp[2].nam, "GAMMA");
    EXPECT_EQ(Form1.Waypl2.rows.rows.size(), 3U);
}

INSTANTIATE_TEST_SUITE_P(Languages, FileWindow, testing::Values(0, 1),
                         [](const auto& i) { return i.param == 0 ? "English" : "German"; });

} // namespace
} // namespace velkoro::test
