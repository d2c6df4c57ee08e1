/// The search window, driven as a user drives it.
#include "waypoints/such.h"

#include "tests/ui/waypoint_windows_fixture.h"
#include "ui/list_view.h"
#include "ui/qt_text.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QRadioButton>
#include <QTest>

namespace velkoro::test {
namespace {

class SearchWindow : public WaypointWindows {
protected:
    void SetUp() override
    {
        WaypointWindows::SetUp();
        for (int n = 0; n < 200; ++n)
            add({.nam = "W" + std::to_string(n),
                 .kom = n == 150 ? "Baldenweger Hütte"_w : std::string("tree"),
                 .pos = {(n + 1) << 20, 0}});
        list_refill();
        open_main();
    }
    static QLineEdit* field() { return widget<QLineEdit>(such.stext); }
    static std::vector<int> marked() { return hooks.marked_rows(); }
    static void choose_from_menu() { action_of(Form1.suchen)->trigger(); }
};

TEST_F(SearchWindow, MarksWhatIsTypedAndBringsItIntoView)
{
    when_open(such.form, {[] {
                  EXPECT_TRUE(field()->hasFocus());
                  EXPECT_TRUE(widget<QRadioButton>(such.nam[0])->isChecked());
                  type(field(), QStringLiteral("w15"));
                  EXPECT_EQ(field()->text(), QStringLiteral("W15"));
                  QTest::keyClick(field(), Qt::Key_Return);
              }});
    choose_from_menu();
    EXPECT_TRUE(all_done());
    EXPECT_FALSE(widget_of(such.form)->isVisible());
    EXPECT_EQ(marked().size(), 11U);
    auto* list = widget<list_view>(Form1.Waypl2);
    const int row = wp_row(marked().front());
    EXPECT_TRUE(
        list->viewport()->rect().intersects(list->visualRect(list->model()->index(row, 0))));
}

TEST_F(SearchWindow, UpperCasesInTheMiddleOfATextWithoutMovingTheCursor)
{
    when_open(such.form, {[] {
                  type(field(), QStringLiteral("wx"));
                  field()->setCursorPosition(1);
                  type(field(), QStringLiteral("ab"));
                  EXPECT_EQ(field()->text(), QStringLiteral("WABX"));
                  EXPECT_EQ(field()->cursorPosition(), 3);
                  QTest::keyClick(field(), Qt::Key_Escape);
              }});
    choose_from_menu();
    EXPECT_TRUE(all_done());
    EXPECT_FALSE(such.form.shown);
}

TEST_F(SearchWindow, TheTwoRowsOfOptionsStandOnTheirOwn)
{
    when_open(such.form, {[] {
                  press(such.nam[1]);
                  EXPECT_TRUE(widget<QRadioButton>(such.Anf[0])->isChecked());
                  press(such.Anf[1]);
                  EXPECT_TRUE(such.nam[1].checked);
                  EXPECT_FALSE(such.nam[0].checked);
                  EXPECT_TRUE(such.Anf[1].checked);
                  type(field(), QStringLiteral("hütt"));
                  EXPECT_EQ(field()->text(), QStringLiteral("hütt"));
                  QTest::keyClick(field(), Qt::Key_Return);
              }});
    choose_from_menu();
    EXPECT_EQ(marked(), (std::vector<int>{150}));
}

TEST_F(SearchWindow, AddsToTheMarks)
{
    row_refresh(7, true);
    when_open(such.form, {[] {
                  press(such.mark);
                  EXPECT_TRUE(such.mark.checked);
                  type(field(), QStringLiteral("w199"));
                  QTest::keyClick(field(), Qt::Key_Return);
              }});
    choose_from_menu();
    EXPECT_EQ(marked(), (std::vector<int>{199, 7})) << "in the order of names";
}

TEST_F(SearchWindow, WithoutAMatchItStaysWithTheTextSelected)
{
    when_open(such.form, {[] {
                              QTimer::singleShot(50, [] {
                                  auto* box =
                                      qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
                                  ASSERT_NE(box, nullptr);
                                  EXPECT_TRUE(box->text().contains(QStringLiteral("NONE")));
                                  QTest::keyClick(box, Qt::Key_Return);
                              });
                              type(field(), QStringLiteral("none"));
                              QTest::keyClick(field(), Qt::Key_Return);
                          },
                          [] {
                              EXPECT_TRUE(such.form.shown);
                              EXPECT_TRUE(field()->hasFocus());
                              EXPECT_EQ(field()->selectedText(), QStringLiteral("NONE"));
                              QTest::keyClick(field(), Qt::Key_Escape);
                          }});
    choose_from_menu();
    EXPECT_TRUE(all_done());
    EXPECT_TRUE(marked().empty());
}

} // namespace
} // namespace velkoro::test
