/// The window of the receiver's properties, driven as a user drives it.
#include "comm/garmin_prop.h"

#include "comm/comm.h"
#include "comm/gar_ident.h"
#include "comm/gar_proto.h"
#include "core/settings.h"
#include "core/symbols.h"
#include "tests/ui/waypoint_windows_fixture.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace velkoro::test {
namespace {

class GarminPropWindow : public WaypointWindows {
protected:
    void SetUp() override
    {
        WaypointWindows::SetUp();
        comm = {};
        receiver = {};
        gar_ident_run = {};
        garmin_prop_install();
        comm.comm_port = 1; // a port without a device: no receiver answers
        comm.quiet = true;
        settings.symbol_level = symbols.level = 3; // as if its table had been read
        open_main();
    }
    void TearDown() override
    {
        for (control* c : Garmin_prop.form.controls)
            static_cast<look&>(*c) = c->design;
        comm = {};
        receiver = {};
        gar_ident_run = {};
        Form1.gar_ident.click = nullptr;
        WaypointWindows::TearDown();
    }
    static void open() { action_of(Form1.gar_ident)->trigger(); }
    static QLabel* label_of(const control& c)
    {
        return widget_of(Garmin_prop.form)
            ->findChild<QLabel*>(QStringLiteral("deko_") + QString::fromUtf8(c.name));
    }
};

TEST_F(GarminPropWindow, TakesWhatIsTypedAndClicked)
{
    when_open(Garmin_prop.form, {[] {
                  auto* length = widget<QLineEdit>(Garmin_prop.mnaml);
                  auto* ok = widget<QPushButton>(Garmin_prop.Command1);
                  EXPECT_EQ(length->text(), QStringLiteral("6"));
                  length->selectAll();
                  type(length, QStringLiteral("5"));
                  EXPECT_FALSE(ok->isEnabled());
                  length->selectAll();
                  type(length, QStringLiteral("12"));
                  EXPECT_TRUE(ok->isEnabled());
                  auto* waypoints = widget<QLineEdit>(Garmin_prop.mwp);
                  waypoints->selectAll();
                  type(waypoints, QStringLiteral("3000"));
                  press(Garmin_prop.r_unique);
                  auto* format = widget<QComboBox>(Garmin_prop.f_wp);
                  EXPECT_EQ(format->count(), 7);
                  EXPECT_FALSE(widget<QLabel>(Garmin_prop.Label7)->isVisible());
                  format->setFocus();
                  QTest::keyClick(format, Qt::Key_Down);
                  EXPECT_TRUE(widget<QLabel>(Garmin_prop.Label7)->isVisible());
                  EXPECT_EQ(Form1.gar.caption, "&Magellan");
                  QTest::keyClick(widget<QLineEdit>(Garmin_prop.mwp), Qt::Key_Return);
              }});
    open();
    EXPECT_TRUE(all_done());
    EXPECT_EQ(gar_option(gar_place::mwp), 3000);
    EXPECT_EQ(gar_option(gar_place::gar_wp_format), 1);
    EXPECT_EQ(gar_option(gar_place::r_unique), 1);
    EXPECT_EQ(store.wp_name_max, 12);
}

TEST_F(GarminPropWindow, SymbolBoxGoesThroughItsThreeStates)
{
    when_open(Garmin_prop.form, {[] {
                  auto* box = widget<QCheckBox>(Garmin_prop.symb);
                  EXPECT_EQ(box->checkState(), Qt::Checked);
                  const QString all = box->text();
                  press(Garmin_prop.symb);
                  EXPECT_EQ(box->checkState(), Qt::Unchecked);
                  EXPECT_EQ(receiver.gar_symbol_set, 0);
                  EXPECT_NE(box->text(), all);
                  press(Garmin_prop.symb);
                  EXPECT_EQ(box->checkState(), Qt::PartiallyChecked);
                  EXPECT_EQ(receiver.gar_symbol_set, 1);
                  press(Garmin_prop.symb);
                  EXPECT_EQ(box->checkState(), Qt::Checked);
                  EXPECT_EQ(receiver.gar_symbol_set, 2);
                  EXPECT_EQ(box->text(), all);
                  QTest::keyClick(box, Qt::Key_Escape);
              }});
    open();
    EXPECT_TRUE(all_done());
    EXPECT_FALSE(Garmin_prop.form.shown);
}

TEST_F(GarminPropWindow, FieldThatDoesNotApplyGoesWithItsLabelAndLeavesItsPlace)
{
    when_open(Garmin_prop.form, {[] {
                  auto* field = widget<QLineEdit>(Garmin_prop.mprox);
                  EXPECT_TRUE(field->isVisible());
                  EXPECT_TRUE(label_of(Garmin_prop.mprox)->isVisible());
                  const int top = widget<QLineEdit>(Garmin_prop.mrou)->y();
                  Garmin_prop.mprox.visible = false;
                  binder_flush();
                  QCoreApplication::processEvents();
                  EXPECT_FALSE(field->isVisible());
                  EXPECT_FALSE(label_of(Garmin_prop.mprox)->isVisible());
                  EXPECT_EQ(widget<QLineEdit>(Garmin_prop.mrou)->y(), top);
                  QTest::keyClick(widget<QLineEdit>(Garmin_prop.mwp), Qt::Key_Escape);
              }});
    open();
    EXPECT_TRUE(all_done());
}

} // namespace
} // namespace velkoro::test
