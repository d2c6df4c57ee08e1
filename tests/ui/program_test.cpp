/// One user's day with the program: files, marks, deleting, saving, languages, profiles, the end.
#include "tests/ui/program_fixture.h"

#include "core/job.h"
#include "core/settings.h"
#include "core/shell.h"
#include "ui/instance_link.h"
#include "ui/look.h"
#include "ui/qt_platform.h"
#include "ui/qt_text.h"
#include "waypoints/list.h"
#include "waypoints/native_wp.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

#include <algorithm>
#include <atomic>
#include <set>
#include <thread>

namespace velkoro::test {
namespace {

using Program = ProgramTest;
using lines = std::vector<std::string>;

constexpr int sample_waypoints = 85, sample_routes = 4;
constexpr int symbol_column = static_cast<int>(list_col::symbol);

std::string title()
{
    return widget_of(Form1.form)->windowTitle().toStdString();
}

std::string first_of_route(int route)
{
    const std::string& wps = store.rou[static_cast<std::size_t>(route)].wps;
    return wps.substr(0, wps.find('$'));
}

bool has_ink(const QImage& image)
{
    std::set<QRgb> colours;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            colours.insert(image.pixel(x, y));
    return colours.size() > 2;
}

/// The place of a row's glyph, as it is painted.
QImage painted_glyph(list_view& view, int row)
{
    const QRect cell = view.visualRect(view.model()->index(row, symbol_column));
    return view.viewport()
        ->grab(QRect(cell.x() + 4, cell.y() + 2, 20, cell.height() - 4))
        .toImage();
}

bool shows_empty_panel(const list_view& view)
{
    const auto* b = view.findChild<QPushButton*>(QStringLiteral("deko_empty_Wayp_Datei_lesen"));
    return b && b->isVisible();
}

// Reading
// ----------------------------------------------------------------------------------------------

TEST_F(Program, AFileOpenedByTheMenuShowsItsRowsGlyphsAndName)
{
    ASSERT_TRUE(start());
    EXPECT_TRUE(shows_empty_panel(list()));
    EXPECT_EQ(title(), "VELkoro[*]");
    to_open = {{file("Waypoints/sample.wp")}};
    choose(Form1.Wayp_Datei_lesen);
    ASSERT_EQ(requests.size(), 1U);
    EXPECT_TRUE(requests[0].many);
    EXPECT_EQ(shown_texts(), lines{});
    ASSERT_EQ(store.wp_top + 1, sample_waypoints);
    EXPECT_EQ(store.rou_top + 1, sample_routes);
    EXPECT_EQ(list().model()->rowCount(), sample_waypoints);
    EXPECT_FALSE(shows_empty_panel(list()));
    for (int row = 0; row < sample_waypoints; ++row) {
        const auto cell = [&](int c) { return list().model()->index(row, c).data().toString(); };
        EXPECT_EQ(cell(0).toStdString(), store.wp[static_cast<std::size_t>(wp_index(row))].nam);
        EXPECT_TRUE(cell(static_cast<int>(list_col::position)).contains(QLatin1Char('N')));
        EXPECT_FALSE(rows().glyph(row, symbol_column).empty()) << row;
    }
    EXPECT_TRUE(has_ink(painted_glyph(list(), 0)));
    EXPECT_EQ(title(), "sample.wp[*] - VELkoro");
    EXPECT_FALSE(top().isWindowModified());
    EXPECT_EQ(widget<QLineEdit>(Form1.wayp_titel)->text(),
              QStringLiteral("Schwarzwald, Hochtouren 2025"));
}

TEST_F(Program, ACancelledDialogChangesNothing)
{
    ASSERT_TRUE(start("sample.wp"));
    const stored_data before = stored_now();
    choose(Form1.Wayp_Datei_lesen);
    choose(Form1.Wayp_Datei_Speich[1]);
    EXPECT_EQ(requests.size(), 2U);
    EXPECT_TRUE(stored_now() == before);
    EXPECT_TRUE(settings.wp_file.ends_with("sample.wp"));
    EXPECT_FALSE(home->has("Waypoints/sample.wpb"));
}

TEST_F(Program, AWaypointFileAndATrackDroppedTogetherAreBothRead)
{
    ASSERT_TRUE(start());
    drop({file("Waypoints/sample.wp"), file("Track/sample.t")});
    EXPECT_TRUE(wait_for([] { return store.trk_top >= 0; }));
    EXPECT_EQ(store.wp_top + 1, sample_waypoints);
    EXPECT_GT(store.trk_top, 100);
    EXPECT_EQ(list().model()->rowCount(), sample_waypoints);
    EXPECT_TRUE(settings.trk_file.ends_with("sample.t"));
    EXPECT_FALSE(store.wp_dirty);
    EXPECT_EQ(shown_texts(), lines{});
}

TEST_F(Program, ADamagedFileIsToldAndWhatWasReadStays)
{
    std::string bytes = home->get("Waypoints/sample.wp");
    home->put("Waypoints/cut.wp", bytes.substr(0, bytes.size() / 2));
    ASSERT_TRUE(start());
    to_open = {{file("Waypoints/cut.wp")}};
    answers = {answer::ok};
    choose(Form1.Wayp_Datei_lesen);
    EXPECT_EQ(shown_texts(), lines{text(2430)});
    EXPECT_GT(store.wp_top + 1, 20);
    EXPECT_LT(store.wp_top + 1, sample_waypoints);
    EXPECT_EQ(list().model()->rowCount(), store.wp_top + 1);
    EXPECT_EQ(title(), "VELkoro[*]") << "saving must not replace the damaged file";
}

TEST_F(Program, AFileReadOverItselfEndsInTheReportOfTheBatch)
{
    ASSERT_TRUE(start("sample.wp"));
    const stored_data before = stored_now();
    to_open = {{file("Waypoints/sample.wp")}};
    choose(Form1.Wayp_Datei_lesen);
    ASSERT_EQ(shown_texts().size(), 1U);
    EXPECT_EQ(shown_texts()[0], text(2000, 0) + "\n" + text(2010, 0) + "\n" + text(2020, 0) + "\n" +
                                    text(2030, sample_waypoints));
    EXPECT_TRUE(stored_now().waypoints == before.waypoints);
    EXPECT_FALSE(op2.form.shown);
}

TEST_F(Program, CancelInALongReadKeepsWhatWasRead)
{
    ASSERT_TRUE(start());
    byte_writer big;
    big.out = write_wp({}).bytes;
    for (int i = 0; i < 30000; ++i) {
        big.u8('W');
        big.lstr("W" + std::to_string(i));
        big.lstr("");
        big.i32(500000000 + i * 100);
        big.i32(100000000 + i * 100);
        big.i32(800000000);
        big.i16(0);
        big.i16(18);
        big.i16(300);
    }
    home->put("big.wp", big.out);
    // A slow machine: every progress point takes a while.
    double slow = 0;
    platform.ticks = [&slow] { return slow += 0.6; };
    platform.pump = [pump = platform.pump](int ms) {
        QTest::qSleep(20);
        pump(ms);
    };
    bool seen = false;
    QTimer press;
    QObject::connect(&press, &QTimer::timeout, [&] {
        const QWidget* w = widget_of(op.form);
        if (!w || !w->isVisible() || job.op_cancel)
            return;
        seen = true;
        QTest::mouseClick(widget_of(op.Abbr), Qt::LeftButton);
    });
    press.start(5);
    to_open = {{file("big.wp")}};
    answers = {answer::ok};
    choose(Form1.Wayp_Datei_lesen);
    EXPECT_TRUE(seen);
    EXPECT_EQ(shown_texts(), lines{text(2420)});
    EXPECT_GT(store.wp_top, 5);
    EXPECT_LT(store.wp_top, 29999);
    EXPECT_EQ(list().model()->rowCount(), store.wp_top + 1);
    EXPECT_FALSE(op.form.shown);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(title(), "VELkoro[*]");
}

// Marks and deleting
// ----------------------------------------------------------------------------------------------

TEST_F(Program, RowsAreMarkedByMouseAndKeyboard)
{
    ASSERT_TRUE(start("sample.wp"));
    click_row(2);
    EXPECT_EQ(marks(), (std::vector<int>{2}));
    click_row(5, Qt::ShiftModifier);
    EXPECT_EQ(marks(), (std::vector<int>{2, 3, 4, 5}));
    click_row(8, Qt::ControlModifier);
    EXPECT_EQ(marks(), (std::vector<int>{2, 3, 4, 5, 8}));
    EXPECT_TRUE(wait_for([] { return Form1.anz.caption == "5 / 85"; })) << Form1.anz.caption;
    EXPECT_EQ(widget<QLabel>(Form1.anz)->text(), QStringLiteral("5 / 85"));
    QTest::keyClick(&list(), Qt::Key_Down);
    EXPECT_EQ(marks(), (std::vector<int>{9}));
    QTest::keyClick(&list(), Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(marks(), (std::vector<int>{9, 10}));
    QTest::keyClick(&list(), Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(marks().size(), 85U);
    choose(Form1.mark_inv);
    EXPECT_EQ(marks().size(), 0U);
    EXPECT_FALSE(widget<QToolButton>(Form1.Edit_w[2])->isEnabled());
}

TEST_F(Program, DeletingAsksTwiceWhereARouteUsesTheWaypoint)
{
    ASSERT_TRUE(start("sample.wp"));
    const stored_data before = stored_now();
    const std::string key = first_of_route(0);
    click_row(row_named(key));
    list().setFocus();
    answers = {answer::ok, answer::cancel};
    QTest::keyClick(&list(), Qt::Key_Delete);
    EXPECT_EQ(shown_texts().size(), 2U);
    EXPECT_TRUE(stored_now() == before);
    EXPECT_FALSE(top().isWindowModified());

    answers = {answer::ok, answer::ok};
    QTest::mouseClick(widget_of(Form1.Edit_w[2]), Qt::LeftButton);
    ASSERT_EQ(shown_texts().size(), 4U);
    EXPECT_EQ(shown_texts()[2], text(2060, key));
    EXPECT_EQ(row_named(key), -1);
    EXPECT_EQ(list().model()->rowCount(), sample_waypoints - 1);
    for (const route_rec& r : stored_now().routes)
        EXPECT_EQ(("$" + r.wps).find("$" + key + "$"), std::string::npos);
    EXPECT_TRUE(wait_for([] { return widget_of(Form1.form)->isWindowModified(); }));
    EXPECT_TRUE(Form1.filnam.caption.ends_with("sample.wp *"));
}

// Saving
// ----------------------------------------------------------------------------------------------

TEST_F(Program, WhatWasChangedAndSavedIsThereWhenTheProgramStartsAgain)
{
    ASSERT_TRUE(start("sample.wp"));
    const std::string old_bytes = home->get("Waypoints/sample.wp");
    click_row(10);
    click_row(12, Qt::ShiftModifier);
    answers = {answer::ok, answer::ok};
    QTest::keyClick(&list(), Qt::Key_Delete);
    answers.clear(); // the second question depends on the routes of these three
    ASSERT_EQ(store.wp_top + 1, sample_waypoints - 3);
    to_front(); // nobody else hands the focus back from a closed box without a display
    auto* field = widget<QLineEdit>(Form1.wayp_titel);
    field->setFocus();
    field->selectAll();
    QTest::keyClicks(field, QStringLiteral("Gipfelweg"));
    EXPECT_TRUE(wait_for([] { return widget_of(Form1.form)->isWindowModified(); }));
    QTest::keyClick(field, Qt::Key_S, Qt::ControlModifier);
    EXPECT_FALSE(top().isWindowModified());
    EXPECT_TRUE(home->get("Waypoints/sample.wpb") == old_bytes);
    const stored_data saved = stored_now();
    EXPECT_EQ(saved.title, "Gipfelweg");

    start_again("sample.wp");
    EXPECT_TRUE(stored_now() == saved);
    EXPECT_EQ(widget<QLineEdit>(Form1.wayp_titel)->text(), QStringLiteral("Gipfelweg"));
    EXPECT_EQ(list().model()->rowCount(), sample_waypoints - 3);
}

TEST_F(Program, SavedUnderAnotherNameTheOldFileStaysAsItWas)
{
    ASSERT_TRUE(start("sample.wp"));
    const std::string old_bytes = home->get("Waypoints/sample.wp");
    const stored_data before = stored_now();
    to_save = {file("copy")};
    QTest::keyClick(&top(), Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_TRUE(home->has("copy.wp"));
    EXPECT_TRUE(home->get("Waypoints/sample.wp") == old_bytes);
    EXPECT_FALSE(home->has("Waypoints/sample.wpb"));
    EXPECT_EQ(title(), "copy.wp[*] - VELkoro");
    start_again(file("copy.wp"));
    EXPECT_TRUE(stored_now() == before);
}

TEST_F(Program, WithoutTheSwitchNoBackupIsMade)
{
    ASSERT_TRUE(start("sample.wp"));
    EXPECT_TRUE(action_of(Form1.backup)->isChecked());
    choose(Form1.backup);
    EXPECT_FALSE(action_of(Form1.backup)->isChecked());
    QTest::keyClick(&top(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_FALSE(home->has("Waypoints/sample.wpb"));
    start_again("sample.wp");
    EXPECT_FALSE(action_of(Form1.backup)->isChecked());
    choose(Form1.backup);
    QTest::keyClick(&top(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_TRUE(home->has("Waypoints/sample.wpb"));
}

// Language, profiles, looks
// ----------------------------------------------------------------------------------------------

TEST_F(Program, AnotherLanguageIsShownAtOnceInEveryPart)
{
    ASSERT_TRUE(start());
    EXPECT_TRUE(wait_for([] { return Form1.anz.caption == "no waypoints"; }));
    const auto panel_lines = [] {
        std::set<QString> found;
        for (const QLabel* l : list().findChildren<QLabel*>())
            found.insert(l->text());
        return found;
    };
    EXPECT_TRUE(panel_lines().contains(QStringLiteral("No waypoints yet")));
    choose(*Form1.m_lang_sel.at(1));
    EXPECT_EQ(action_of(Form1.datei)->text(), QStringLiteral("&Datei"));
    EXPECT_EQ(action_of(Form1.B_alle)->text(), QStringLiteral("&alle markieren"));
    EXPECT_EQ(widget<QToolButton>(Form1.Edit_w[2])->text(), QStringLiteral("&löschen"));
    EXPECT_EQ(list().model()->headerData(1, Qt::Horizontal).toString(),
              QStringLiteral("Beschreibung"));
    EXPECT_EQ(widget<QComboBox>(Form1.sort)->itemText(2), QStringLiteral("Höhe"));
    EXPECT_TRUE(panel_lines().contains(QStringLiteral("Noch keine Waypoints")));
    EXPECT_EQ(widget<QLabel>(Form1.anz)->text(), QStringLiteral("keine Waypoints"));
    EXPECT_TRUE(action_of(*Form1.m_lang_sel[1])->isChecked());
    EXPECT_FALSE(action_of(*Form1.m_lang_sel[0])->isChecked());
    EXPECT_EQ(widget<QLabel>(Form1.profil_anz)->text(), QStringLiteral("Profil: Standard"));
    start_again();
    EXPECT_EQ(action_of(Form1.datei)->text(), QStringLiteral("&Datei"));
    choose(*Form1.m_lang_sel.at(0));
    EXPECT_EQ(action_of(Form1.datei)->text(), QStringLiteral("&File"));
}

TEST_F(Program, ProfilesAreMadeChosenAndDeletedByTheirMenu)
{
    ASSERT_TRUE(start("sample.wp"));
    EXPECT_FALSE(action_of(Form1.prof_lösch)->isEnabled());
    inputs = {"Boot & Bike"};
    choose(Form1.prof_neu);
    ASSERT_EQ(Form1.prof.size(), 2U);
    EXPECT_EQ(action_of(*Form1.prof[1])->text(), QStringLiteral("Boot && Bike"));
    EXPECT_TRUE(action_of(*Form1.prof[1])->isChecked());
    EXPECT_EQ(widget<QLabel>(Form1.profil_anz)->text(), QStringLiteral("Profile: Boot & Bike"));
    choose(Form1.back_b); // belongs to this profile only
    choose(*Form1.prof[0]);
    EXPECT_EQ(settings.profile, "Standard");
    EXPECT_FALSE(action_of(Form1.back_b)->isChecked());
    choose(*Form1.prof[1]);
    EXPECT_TRUE(action_of(Form1.back_b)->isChecked());
    EXPECT_TRUE(action_of(Form1.prof_lösch)->isEnabled());
    answers = {answer::cancel, answer::ok};
    choose(Form1.prof_lösch);
    EXPECT_EQ(Form1.prof.size(), 2U);
    choose(Form1.prof_lösch);
    EXPECT_EQ(Form1.prof.size(), 1U);
    EXPECT_EQ(settings.profile, "Standard");
    EXPECT_EQ(menu_of(Form1.pr)->actions().size(), 4);
    EXPECT_EQ(widget<QLabel>(Form1.profil_anz)->text(), QStringLiteral("Profile: Standard"));
}

TEST_F(Program, TheBlueGroundComesGoesAndIsRemembered)
{
    ASSERT_TRUE(start("sample.wp"));
    const auto ground = [] { return list().viewport()->palette().color(QPalette::Base); };
    const QColor own = ground();
    choose(Form1.back_b);
    EXPECT_EQ(ground(), QColor(0, 255, 255));
    start_again("sample.wp");
    EXPECT_EQ(ground(), QColor(0, 255, 255));
    EXPECT_TRUE(action_of(Form1.back_b)->isChecked());
    choose(Form1.back_b);
    EXPECT_EQ(ground(), own);
}

TEST_F(Program, TheKeyThemeMakesItDark)
{
    settings.overrides.clear();
    home->put("velkoro.ini", "[Main]\r\nLang3=0\r\nTheme=dark\r\n");
    ASSERT_TRUE(start("sample.wp"));
    EXPECT_TRUE(is_dark(top().palette()));
    EXPECT_TRUE(is_dark(list().viewport()->palette()));
    home->put("velkoro.ini", "[Main]\r\nLang3=0\r\nTheme=light\r\n");
    start_again("sample.wp");
    EXPECT_FALSE(is_dark(top().palette()));
}

TEST_F(Program, GlyphsAreShownInTheResolutionOfTheScreen)
{
    ASSERT_TRUE(start("sample.wp"));
    const QImage glyph = painted_glyph(list(), 0);
    EXPECT_EQ(glyph.devicePixelRatio(), top().devicePixelRatioF());
    EXPECT_EQ(glyph.width(), qRound(20 * top().devicePixelRatioF()));
    EXPECT_TRUE(has_ink(glyph));
}

// Keys and buttons
// ----------------------------------------------------------------------------------------------

TEST_F(Program, AKeyThatAMenuEntryAndAToolButtonShareActsOnce)
{
    ASSERT_TRUE(start("sample.wp"));
    click_row(1);
    struct key_case {
        control* c;
        Qt::Key key;
        Qt::KeyboardModifiers with;
    };
    const key_case cases[] = {{&Form1.Wayp_Datei_lesen, Qt::Key_O, Qt::ControlModifier},
                              {&Form1.Wayp_Datei_Speich[0], Qt::Key_S, Qt::ControlModifier},
                              {&Form1.B_alle, Qt::Key_A, Qt::ControlModifier},
                              {&Form1.B_lösch, Qt::Key_Delete, Qt::NoModifier}};
    for (const key_case& k : cases) {
        int runs = 0;
        const auto own = k.c->click;
        k.c->click = [&runs] { ++runs; };
        list().setFocus();
        QTest::keyClick(&list(), k.key, k.with);
        EXPECT_EQ(runs, 1) << k.c->name << " from the list";
        QWidget* combo = widget_of(Form1.sort);
        combo->setFocus();
        QTest::keyClick(combo, k.key, k.with);
        EXPECT_EQ(runs, 2) << k.c->name << " from a drop-down";
        k.c->click = own;
    }
}

TEST_F(Program, AKeyOfADisabledEntryDoesNothing)
{
    ASSERT_TRUE(start());
    int runs = 0;
    for (control* c : {&Form1.B_alle, &Form1.B_lösch, &Form1.Wayp_Datei_Speich[0], &Form1.druck}) {
        EXPECT_FALSE(c->enabled) << c->name;
        c->click = [&runs] { ++runs; };
    }
    list().setFocus();
    QTest::keyClick(&list(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&list(), Qt::Key_Delete);
    QTest::keyClick(&list(), Qt::Key_S, Qt::ControlModifier);
    QTest::keyClick(&list(), Qt::Key_P, Qt::ControlModifier);
    EXPECT_EQ(runs, 0);
}

TEST_F(Program, TheToolBarFollowsWhatCanBeDone)
{
    ASSERT_TRUE(start());
    const auto tool = [](const char* name) {
        auto* b = top().findChild<QToolButton*>(QString::fromLatin1(name));
        EXPECT_NE(b, nullptr) << name;
        return b && b->isEnabled();
    };
    EXPECT_TRUE(tool("deko_open"));
    EXPECT_FALSE(tool("deko_save"));
    EXPECT_FALSE(widget_of(Form1.Edit_w[2])->isEnabled());
    EXPECT_FALSE(widget_of(Form1.sort_oben)->isEnabled());
    drop({file("Waypoints/sample.wp")});
    EXPECT_TRUE(wait_for([&] { return tool("deko_save"); }));
    EXPECT_FALSE(widget_of(Form1.Edit_w[2])->isEnabled());
    click_row(3);
    EXPECT_TRUE(widget_of(Form1.Edit_w[2])->isEnabled());
    EXPECT_TRUE(widget_of(Form1.sort_oben)->isEnabled());
    QTest::mouseClick(widget_of(Form1.sort_oben), Qt::LeftButton);
    EXPECT_EQ(marks(), (std::vector<int>{0}));
}

TEST_F(Program, EscapeAndEnterInAFieldLeaveTheWindowAndItsDataAlone)
{
    ASSERT_TRUE(start("sample.wp"));
    const stored_data before = stored_now();
    for (const control* c : {&Form1.wayp_titel, &Form1.sort, &Form1.posform}) {
        QWidget* w = widget_of(*c);
        w->setFocus();
        for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return})
            QTest::keyClick(w, key);
        EXPECT_TRUE(top().isVisible()) << c->name;
    }
    list().setFocus();
    QTest::keyClick(&list(), Qt::Key_Escape);
    EXPECT_TRUE(top().isVisible());
    EXPECT_TRUE(stored_now() == before);
    EXPECT_FALSE(store.wp_dirty);
    EXPECT_EQ(shown_texts(), lines{});
}

// The end, and a second program
// ----------------------------------------------------------------------------------------------

TEST_F(Program, QuitAsksOnceAndSavesWhenTheAnswerIsYes)
{
    ASSERT_TRUE(start("sample.wp"));
    QTest::keyClicks(widget<QLineEdit>(Form1.wayp_titel), QStringLiteral("!"));
    const stored_data changed = stored_now();
    answers = {answer::yes};
    EXPECT_TRUE(run_main_loop([] { QTest::keyClick(&top(), Qt::Key_Q, Qt::ControlModifier); }));
    EXPECT_EQ(shown_texts(), lines{text(1030, "sample.wp")});
    EXPECT_FALSE(Form1.form.shown);
    start_again("sample.wp");
    EXPECT_TRUE(stored_now() == changed);
}

TEST_F(Program, QuitAsksOnceAndForgetsWhenTheAnswerIsNo)
{
    ASSERT_TRUE(start("sample.wp"));
    const std::string bytes = home->get("Waypoints/sample.wp");
    QTest::keyClicks(widget<QLineEdit>(Form1.wayp_titel), QStringLiteral("!"));
    answers = {answer::no};
    EXPECT_TRUE(run_main_loop([] { choose(Form1.Ende); }));
    EXPECT_EQ(shown_texts(), lines{text(1030, "sample.wp")});
    EXPECT_TRUE(home->get("Waypoints/sample.wp") == bytes);
    EXPECT_FALSE(home->has("Waypoints/sample.wpb"));
}

TEST_F(Program, QuitAnsweredWithCancelLeavesTheProgramAtWork)
{
    ASSERT_TRUE(start("sample.wp"));
    QTest::keyClicks(widget<QLineEdit>(Form1.wayp_titel), QStringLiteral("!"));
    const stored_data changed = stored_now();
    answers = {answer::cancel};
    top().close();
    EXPECT_EQ(shown_texts(), lines{text(1030, "sample.wp")});
    EXPECT_FALSE(quit_asked());
    EXPECT_TRUE(top().isVisible());
    EXPECT_TRUE(stored_now() == changed);
    click_row(4);
    EXPECT_EQ(marks(), (std::vector<int>{4}));
    answers = {answer::no};
    EXPECT_TRUE(run_main_loop([] { top().close(); }));
    EXPECT_EQ(shown_texts().size(), 2U);
}

TEST_F(Program, QuitWithoutChangesAsksNothingAndRemembersTheWindow)
{
    ASSERT_TRUE(start("sample.wp"));
    top().resize(1000, 640);
    QCoreApplication::processEvents();
    EXPECT_TRUE(run_main_loop([] { choose(Form1.Ende); }));
    EXPECT_EQ(shown_texts(), lines{});
    start_again();
    EXPECT_EQ(top().size(), QSize(1000, 640));
}

TEST_F(Program, ASecondProgramHandsItsFileToTheRunningOne)
{
    ASSERT_TRUE(start());
    EXPECT_TRUE(link_alive(link));
    const std::string path = '"' + file("Waypoints/sample.wp") + '"';
    std::atomic<int> sent = -1;
    std::thread other([&] { sent = link_send(link, path) ? 1 : 0; });
    EXPECT_TRUE(wait_for([&] { return sent >= 0; }, 5000));
    other.join();
    EXPECT_EQ(sent, 1);
    EXPECT_TRUE(wait_for([] { return store.wp_top + 1 == sample_waypoints; }));
    EXPECT_EQ(list().model()->rowCount(), sample_waypoints);
    EXPECT_EQ(title(), "sample.wp[*] - VELkoro");
    EXPECT_TRUE(top().isVisible());
}

} // namespace
} // namespace velkoro::test
