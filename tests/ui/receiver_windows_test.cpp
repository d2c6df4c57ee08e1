/// The windows that choose what goes to the receiver, driven as a user drives them.
#include "comm/selrou.h"
#include "comm/selwp.h"
#include "tests/ui/waypoint_windows_fixture.h"
#include "ui/list_view.h"
#include "ui/qt_text.h"

#include <QCheckBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>

namespace velkoro::test {
namespace {

class ReceiverWindows : public WaypointWindows {
protected:
    void SetUp() override
    {
        WaypointWindows::SetUp();
        for (const int language : {1, 0}) // the last one stays
            load_texts(language);
        for (window* w : {&selwp.form, &selrou.form})
            for (control* c : w->controls)
                static_cast<look&>(*c) = c->design;
        transfer = {};
        for (int n = 0; n < 12; ++n)
            add({.nam = "W" + std::to_string(n), .pos = {(n + 1) << 20, 0}});
        route_add({.nam = "FELDBERG", .wps = "W0$W3$W7$W0$"});
        route_add({.nam = "BELCHEN", .wps = "W2$W4$"});
        route_add({.nam = "KANDEL", .wps = "W5$W6$W8$"});
        list_refill();
        open_main();
    }
    static void click_row(const control& list, int row, Qt::KeyboardModifiers with = {})
    {
        auto* view = widget<list_view>(list);
        const QRect r = view->visualRect(view->model()->index(row, 0));
        QTest::mouseClick(view->viewport(), Qt::LeftButton, with, r.center());
    }
};

TEST_F(ReceiverWindows, AChoiceIsMadeWithTheMouse)
{
    when_open(
        selwp.form, {[] {
            EXPECT_TRUE(widget<QCheckBox>(selwp.ausw_w)->isChecked());
            EXPECT_FALSE(widget<QCheckBox>(selwp.ausw_rm)->isEnabled());
            EXPECT_EQ(widget<QLabel>(selwp.gar_t)->text(),
                      QStringLiteral("12 waypoints, 0 routes"));
            EXPECT_EQ(widget<QProgressBar>(selwp.gar_v)->value(), 12);
            press(selwp.ausw_w);
            EXPECT_FALSE(widget<QPushButton>(selwp.OK)->isEnabled());
            press(selwp.ausw_r);
            EXPECT_TRUE(widget<QCheckBox>(selwp.ausw_rm)->isEnabled());
            EXPECT_EQ(widget<QLabel>(selwp.gar_t)->text(), QStringLiteral("8 waypoints, 3 routes"));
            click_row(selwp.routen_m, 1);
            EXPECT_TRUE(widget<QCheckBox>(selwp.ausw_rm)->isChecked());
            EXPECT_EQ(widget<QLabel>(selwp.gar_t)->text(), QStringLiteral("2 waypoints, 1 routes"));
            click_row(selwp.routen_m, 2, Qt::ControlModifier);
            EXPECT_EQ(widget<QLabel>(selwp.gar_t)->text(), QStringLiteral("5 waypoints, 2 routes"));
            save_picture(*widget_of(selwp.form), QStringLiteral("selwp"), false, 0);
            QTest::keyClick(widget_of(selwp.form), Qt::Key_Return);
        }});
    EXPECT_TRUE(selwp_open());
    EXPECT_TRUE(all_done());
    EXPECT_EQ(transfer.choice.route_marks, "011");
}

TEST_F(ReceiverWindows, EscapeChoosesNothing)
{
    when_open(selwp.form, {[] { QTest::keyClick(widget_of(selwp.form), Qt::Key_Escape); }});
    EXPECT_FALSE(selwp_open());
    EXPECT_TRUE(all_done());
}

TEST_F(ReceiverWindows, RoutesAreChosenFromTheirList)
{
    when_open(selrou.form, {[] {
                  EXPECT_FALSE(widget<QPushButton>(selrou.OK)->isEnabled());
                  click_row(selrou.routen_m, 2);
                  EXPECT_EQ(widget<QLabel>(selrou.com)->text(), QStringLiteral("W5 W6 W8"));
                  click_row(selrou.routen_m, 0, Qt::ControlModifier);
                  save_picture(*widget_of(selrou.form), QStringLiteral("selrou"), false, 0);
                  press(selrou.OK);
              }});
    EXPECT_EQ(selrou_open(), (std::vector<int>{0, 2}));
    EXPECT_TRUE(all_done());
    selrou_run = {};
}

} // namespace
} // namespace velkoro::test
