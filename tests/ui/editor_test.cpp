/// The waypoint editor driven through its widgets as a user does it.
#include "waypoints/editor.h"

#include "coords/coord_text.h"
#include "coords/datum.h"
#include "core/files.h"
#include "core/hooks.h"
#include "core/reset.h"
#include "core/settings.h"
#include "core/symbols.h"
#include "core/wayp_insert.h"
#include "tests/ui/ui_fixture.h"
#include "waypoints/list.h"

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeView>

namespace velkoro::test {
namespace {

std::string shipped(const char* name)
{
    return read_file(std::string(VELKORO_SOURCE_DIR "/data/") + name).value_or("");
}

class EditorWindow : public UiTest {
protected:
    void SetUp() override
    {
        UiTest::SetUp();
        store_reset();
        saved_ = hooks;
        editor_install();
        coord = {};
        datums = datum_parse(shipped("Datum.ins"));
        Form1.posform.items = {"hddd.ddddd\xB0", "hddd\xB0mm.mmm'"};
        Form1.posform.selected = fmt_minutes;
        Form1.Datum.items.clear();
        for (const datum_rec& d : datums.rows)
            Form1.Datum.items.push_back(d.name);
        Form1.Datum.selected = datum_find("WGS 84");
        symbols_parse(shipped("de/SYMBOL_3.INS"), symbols);
        symbols.level = settings.symbol_level = 3;
        wp_append({.nam = "RINKEN", .pos = {571203000, 95900000}});
        wp_append({.nam = "BALDHT", .kom = "Baldenweger H\xFCtte", .pos = {571263000, 95730000}});
        store.refp_name = "RINKEN";
        store.refp_pos = store.wp[0].pos;
    }
    void TearDown() override
    {
        WAYPOINT.form.shown = false;
        platform.show(WAYPOINT.form);
        hooks = saved_;
        editor = {};
        datums = {};
        coord = {};
        reset_all();
        UiTest::TearDown();
    }
    /// Runs `acts` as soon as the editor stands before the user.
    static void while_open(const std::function<void()>& open, const std::function<void()>& acts)
    {
        bool ran = false;
        QTimer wait;
        QObject::connect(&wait, &QTimer::timeout, [&] {
            const QWidget* w = widget_of(WAYPOINT.form);
            if (ran || !w || !w->isVisible())
                return;
            ran = true;
            wait.stop();
            acts();
            WAYPOINT.form.shown = false; // a test that failed must not wait for ever
            binder_flush();
        });
        wait.start(10);
        open();
        EXPECT_TRUE(ran);
    }
    /// One key, umlauts too.
    static void strike(QLineEdit& field, const char* utf8)
    {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString::fromUtf8(utf8));
        QApplication::sendEvent(&field, &press);
    }
    static QLineEdit* line(const control& c) { return widget<QLineEdit>(c); }

private:
    hook_table saved_{};
};

TEST_F(EditorWindow, ANewWaypointIsTypedByKeyboardAlone)
{
    open_main();
    while_open([] { waypoint_new(); },
               [] {
                   EXPECT_EQ(widget_of(WAYPOINT.form)->focusWidget(), widget_of(WAYPOINT.nam));
                   strike(*line(WAYPOINT.nam), "h");
                   strike(*line(WAYPOINT.nam), "ü");
                   strike(*line(WAYPOINT.nam), "1");
                   EXPECT_EQ(line(WAYPOINT.nam)->text(), QStringLiteral("HU1"));
                   QTest::keyClick(line(WAYPOINT.nam), Qt::Key_Tab);
                   EXPECT_EQ(widget_of(WAYPOINT.form)->focusWidget(), widget_of(WAYPOINT.kom));
                   QTest::keyClicks(line(WAYPOINT.kom), QStringLiteral("Haus"));
                   QTest::keyClick(line(WAYPOINT.kom), Qt::Key_Tab);
                   QTest::keyClicks(line(WAYPOINT.lat), QStringLiteral("N47 52.5"));
                   QTest::keyClick(line(WAYPOINT.lat), Qt::Key_Tab);
                   QTest::keyClicks(line(WAYPOINT.lon), QStringLiteral("E8 1.5"));
                   EXPECT_FALSE(line(WAYPOINT.dist)->text().isEmpty());
                   QTest::keyClick(line(WAYPOINT.lon), Qt::Key_Return);
                   EXPECT_FALSE(WAYPOINT.form.shown);
               });
    ASSERT_EQ(store.wp_top, 2);
    EXPECT_EQ(store.wp[2].nam, "HU1");
    EXPECT_EQ(store.wp[2].kom, "Haus");
}

TEST_F(EditorWindow, FilteringDoesNotMoveTheCursor)
{
    while_open([] { waypoint_edit(1); },
               [] {
                   QLineEdit* nam = line(WAYPOINT.nam);
                   nam->deselect();
                   nam->setCursorPosition(2);
                   strike(*nam, "ö");
                   EXPECT_EQ(nam->text(), QStringLiteral("BAOLDHT"));
                   EXPECT_EQ(nam->cursorPosition(), 3);
               });
    EXPECT_EQ(store.wp[1].nam, "BALDHT");
}

TEST_F(EditorWindow, EscapeCancels)
{
    while_open([] { EXPECT_FALSE(waypoint_edit(1)); },
               [] {
                   QTest::keyClicks(line(WAYPOINT.nam), QStringLiteral("X"));
                   QTest::keyClick(line(WAYPOINT.nam), Qt::Key_Escape);
                   EXPECT_FALSE(WAYPOINT.form.shown);
               });
    EXPECT_EQ(store.wp[1].nam, "BALDHT");
}

TEST_F(EditorWindow, SymbolAndNearestWaypointAreChosenByMouse)
{
    while_open([] { waypoint_edit(1); },
               [] {
                   auto* symb = widget<QTreeView>(WAYPOINT.symb);
                   symb->scrollTo(symb->model()->index(2, 0));
                   QTest::mouseClick(symb->viewport(), Qt::LeftButton, {},
                                     symb->visualRect(symb->model()->index(2, 0)).center());
                   EXPECT_EQ(symbol_chosen(), WAYPOINT.symb.rows.rows[2].data);
                   QTest::mouseClick(widget<QPushButton>(WAYPOINT.OK), Qt::LeftButton);
               });
    EXPECT_EQ(store.wp[1].symb, WAYPOINT.symb.rows.rows[2].data);
    while_open([] { waypoint_edit(1); },
               [] {
                   auto* near = widget<QTreeView>(WAYPOINT.nächst);
                   QTest::mouseClick(near->viewport(), Qt::LeftButton, {},
                                     near->visualRect(near->model()->index(0, 0)).center());
                   EXPECT_EQ(line(WAYPOINT.nam)->text(), QStringLiteral("RINKEN"));
               });
}

TEST_F(EditorWindow, SixNearestFitWithoutScrolling)
{
    for (int n = 0; n < 8; ++n)
        wp_append({.nam = "N" + std::to_string(n), .pos = {571263000 + 9000 * n, 95730000}});
    while_open([] { waypoint_edit(1); },
               [] {
                   auto* near = widget<QTreeView>(WAYPOINT.nächst);
                   QCoreApplication::processEvents();
                   EXPECT_EQ(near->model()->rowCount(), 6);
                   EXPECT_LE(near->visualRect(near->model()->index(5, 0)).bottom(),
                             near->viewport()->height());
               });
}

} // namespace
} // namespace velkoro::test
