#include "ui/list_view.h"

#include "tests/ui/ui_fixture.h"
#include "ui/list_model.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <set>

namespace velkoro::test {
namespace {

class List : public UiTest {
protected:
    static row_list& rows() { return Form1.Waypl2.rows; }
    static list_view& view() { return *dynamic_cast<list_view*>(widget_of(Form1.Waypl2)); }
    static QPoint at(int row, int column = 0)
    {
        return view().visualRect(view().model()->index(row, column)).center();
    }
    static void click(int row, Qt::KeyboardModifiers keys = {}, Qt::MouseButton b = Qt::LeftButton)
    {
        QTest::mouseClick(view().viewport(), b, keys, at(row));
    }
    static std::set<int> marks()
    {
        std::set<int> m;
        for (int i = 0; i < static_cast<int>(rows().rows.size()); ++i)
            if (rows().rows[static_cast<std::size_t>(i)].marked)
                m.insert(i);
        return m;
    }
    static std::set<int> range(int from, int to)
    {
        std::set<int> m;
        for (int i = from; i <= to; ++i)
            m.insert(i);
        return m;
    }
};

TEST_F(List, AClickMarksOneRowAndTellsTheRecord)
{
    fill_rows(10);
    std::vector<int> clicks;
    Form1.Waypl2.row_click = [&](int row) { clicks.push_back(row); };
    open_main();
    click(2);
    click(4);
    EXPECT_EQ(marks(), std::set<int>{4});
    EXPECT_EQ(rows().current, 4);
    EXPECT_EQ(clicks, (std::vector<int>{2, 4}));
}

TEST_F(List, ControlAddsAndTakesAndShiftSpansARange)
{
    fill_rows(12);
    open_main();
    click(2);
    click(5, Qt::ControlModifier);
    EXPECT_EQ(marks(), (std::set<int>{2, 5}));
    click(2, Qt::ControlModifier);
    EXPECT_EQ(marks(), std::set<int>{5});
    click(3);
    click(7, Qt::ShiftModifier);
    EXPECT_EQ(marks(), range(3, 7));
    click(5, Qt::ShiftModifier); // a smaller range from the same start
    EXPECT_EQ(marks(), range(3, 5));
}

TEST_F(List, ASweepMarksTheRowsUnderIt)
{
    fill_rows(12);
    int told = 0;
    Form1.Waypl2.row_click = [&](int) { ++told; };
    open_main();
    QWidget* v = view().viewport();
    QTest::mousePress(v, Qt::LeftButton, {}, at(2));
    for (const int row : {3, 4, 5, 6, 5}) {
        QMouseEvent move(QEvent::MouseMove, at(row), v->mapToGlobal(at(row)), Qt::NoButton,
                         Qt::LeftButton, {});
        QApplication::sendEvent(v, &move);
    }
    QTest::mouseRelease(v, Qt::LeftButton, {}, at(5));
    EXPECT_EQ(marks(), range(2, 5));
    EXPECT_GE(told, 4);
}

TEST_F(List, AControlSweepTurnsTheMarksUnderIt)
{
    fill_rows(12);
    open_main();
    click(3);
    QWidget* v = view().viewport();
    QTest::mousePress(v, Qt::LeftButton, Qt::ControlModifier, at(5));
    for (const int row : {6, 7}) {
        QMouseEvent move(QEvent::MouseMove, at(row), v->mapToGlobal(at(row)), Qt::NoButton,
                         Qt::LeftButton, Qt::ControlModifier);
        QApplication::sendEvent(v, &move);
    }
    QTest::mouseRelease(v, Qt::LeftButton, Qt::ControlModifier, at(7));
    EXPECT_EQ(marks(), (std::set<int>{3, 5, 6, 7}));
}

TEST_F(List, AClickOnEmptyGroundTakesAllMarks)
{
    fill_rows(2);
    open_main();
    click(1);
    QTest::mouseClick(view().viewport(), Qt::LeftButton, {}, {50, view().viewport()->height() - 5});
    EXPECT_TRUE(marks().empty());
}

TEST_F(List, ArrowKeysMoveTheMarkAndShiftArrowsGrowIt)
{
    fill_rows(10);
    open_main();
    click(3);
    view().setFocus();
    QTest::keyClick(&view(), Qt::Key_Down);
    EXPECT_EQ(marks(), std::set<int>{4});
    EXPECT_EQ(rows().current, 4);
    QTest::keyClick(&view(), Qt::Key_Down, Qt::ShiftModifier);
    QTest::keyClick(&view(), Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(marks(), range(4, 6));
    QTest::keyClick(&view(), Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(marks(), range(4, 5));
    QTest::keyClick(&view(), Qt::Key_Up, Qt::ControlModifier); // moves without marking
    EXPECT_EQ(marks(), range(4, 5));
    EXPECT_EQ(rows().current, 4);
    QTest::keyClick(&view(), Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(marks(), std::set<int>{5});
}

TEST_F(List, MarksThatTheProgramSetAreTheStartOfTheNextGesture)
{
    fill_rows(10);
    open_main();
    click(1);
    rows().rows[8].marked = true;
    rows().changed();
    binder_flush();
    click(3, Qt::ControlModifier);
    EXPECT_EQ(marks(), (std::set<int>{1, 3, 8}));
}

TEST_F(List, ARightClickOnAMarkedRowKeepsTheMarks)
{
    fill_rows(10);
    int menus = 0;
    Form1.Waypl2.right_click = [&] { ++menus; };
    open_main();
    click(2);
    click(5, Qt::ShiftModifier);
    click(4, {}, Qt::RightButton);
    QContextMenuEvent ask(QContextMenuEvent::Mouse, at(4), view().viewport()->mapToGlobal(at(4)));
    QApplication::sendEvent(view().viewport(), &ask);
    EXPECT_EQ(marks(), range(2, 5));
    EXPECT_EQ(menus, 1);
    click(8, {}, Qt::RightButton);
    EXPECT_EQ(marks(), std::set<int>{8});
}

TEST_F(List, ADoubleClickAndEnterOpenTheRow)
{
    fill_rows(5);
    std::vector<int> opened;
    Form1.Waypl2.row_open = [&](int row) { opened.push_back(row); };
    open_main();
    click(2);
    QTest::mouseDClick(view().viewport(), Qt::LeftButton, {}, at(2));
    QTest::keyClick(&view(), Qt::Key_Return);
    EXPECT_EQ(opened, (std::vector<int>{2, 2}));
}

TEST_F(List, F2EditsTheNameInPlaceWhateverColumnWasClicked)
{
    fill_rows(5);
    rows().edit_names = true;
    std::pair<int, std::string> edited{-1, ""};
    Form1.Waypl2.label_edited = [&](int row, const std::string& s) { edited = {row, s}; };
    open_main();
    QTest::mouseClick(view().viewport(), Qt::LeftButton, {}, at(3, 1));
    QTest::keyClick(&view(), Qt::Key_F2);
    auto* field = view().viewport()->findChild<QLineEdit*>();
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(field->text(), QStringLiteral("W3"));
    QTest::keyClicks(field, QStringLiteral("neu"));
    QTest::keyClick(field, Qt::Key_Return);
    QCoreApplication::processEvents(); // the field hands its text over behind the key
    EXPECT_EQ(edited, (std::pair<int, std::string>{3, "neu"}));
}

TEST_F(List, NamesAreNotEditedWhereTheRecordForbidsIt)
{
    fill_rows(5);
    open_main();
    click(1);
    QTest::keyClick(&view(), Qt::Key_F2);
    EXPECT_EQ(view().viewport()->findChild<QLineEdit*>(), nullptr);
}

TEST_F(List, TheRecordSeesEveryKeyFirst)
{
    fill_rows(5);
    std::vector<int> keys;
    Form1.Waypl2.key = [&](int key, bool ctrl, bool) {
        keys.push_back(key);
        return key == Qt::Key_Backspace || ctrl;
    };
    open_main();
    click(1);
    QTest::keyClick(&view(), Qt::Key_Backspace);
    QTest::keyClick(&view(), Qt::Key_Down);
    EXPECT_EQ(keys, (std::vector<int>{Qt::Key_Backspace, Qt::Key_Down}));
    EXPECT_EQ(rows().current, 2); // the unhandled key went on
}

TEST_F(List, TypingJumpsToTheName)
{
    fill_rows(30);
    open_main();
    click(2);
    QTest::keyClicks(&view(), QStringLiteral("w17"));
    EXPECT_EQ(rows().current, 17);
}

TEST_F(List, AHeadingClickReachesTheRecordAndTheArrowIsTheRecords)
{
    fill_rows(5);
    rows().sort_column = 1;
    int column = -1;
    Form1.Waypl2.header_click = [&](int c) { column = c; };
    open_main();
    QHeaderView* h = view().header();
    QTest::mouseClick(h->viewport(), Qt::LeftButton, {},
                      {h->sectionViewportPosition(2) + 20, h->height() / 2});
    EXPECT_EQ(column, 2);
    EXPECT_EQ(h->sortIndicatorSection(), 1);
    rows().sort_column = 2;
    rows().sort_down = true;
    rows().changed();
    binder_flush();
    EXPECT_EQ(h->sortIndicatorSection(), 2);
    EXPECT_EQ(h->sortIndicatorOrder(), Qt::DescendingOrder);
}

TEST_F(List, ColumnWidthsGoBothWays)
{
    fill_rows(5);
    open_main();
    EXPECT_EQ(view().header()->sectionSize(0), 100);
    view().header()->resizeSection(0, 140);
    EXPECT_EQ(rows().columns[0].width, 140);
    rows().columns[2].width = 90;
    rows().columns[3].visible = false;
    rows().changed();
    binder_flush();
    EXPECT_EQ(view().header()->sectionSize(2), 90);
    EXPECT_TRUE(view().header()->isSectionHidden(3));
    EXPECT_EQ(view().header()->sectionSize(0), 140);
}

TEST_F(List, AnEmptyListSaysWhatToDo)
{
    fill_rows(0);
    int opened = 0;
    Form1.Wayp_Datei_lesen.click = [&] { ++opened; };
    open_main();
    auto* button = view().findChild<QPushButton*>(QStringLiteral("deko_empty_Wayp_Datei_lesen"));
    ASSERT_NE(button, nullptr);
    EXPECT_TRUE(button->isVisible());
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(opened, 1);
    fill_rows(1);
    binder_flush();
    EXPECT_FALSE(button->isVisible());
}

TEST_F(List, RowsThatVanishWhileTheyArePaintedReadAsEmpty)
{
    fill_rows(50);
    open_main();
    rows().rows.resize(1); // not announced yet
    view().grab();
    const auto* model = dynamic_cast<list_model*>(view().model());
    EXPECT_EQ(model->cell(40, 0), QString());
    EXPECT_EQ(model->rowCount(), 50);
    rows().changed();
    binder_flush();
    EXPECT_EQ(model->rowCount(), 1);
}

TEST_F(List, ThirtyTwoThousandRowsReadOnlyTheCellsInView)
{
    fill_rows(32000);
    int reads = 0;
    int highest = 0;
    rows().cell = [&](int row, int) {
        ++reads;
        highest = std::max(highest, row);
        return std::string("x");
    };
    open_main();
    view().grab();
    EXPECT_LT(highest, 100);
    EXPECT_LT(reads, 2000);
}

TEST_F(List, MarkingThirtyTwoThousandRowsIsInstant)
{
    fill_rows(32000);
    open_main();
    click(0);
    QElapsedTimer t;
    t.start();
    view().selectAll();
    view().selectAll();
    EXPECT_LT(t.elapsed(), 500); // the sanitizers take most of it
    EXPECT_EQ(marks().size(), 32000U);
}

TEST_F(List, ARowAskedForIsBroughtIntoView)
{
    fill_rows(1000);
    open_main();
    rows().show_row = 700;
    rows().current = 700;
    binder_flush();
    EXPECT_TRUE(view().viewport()->rect().contains(at(700)));
    EXPECT_EQ(rows().show_row, -1);
    EXPECT_EQ(view().currentIndex().row(), 700);
}

TEST_F(List, FocusAloneMakesNoRowTheCurrentOne)
{
    fill_rows(5);
    open_main();
    view().setFocus();
    QCoreApplication::processEvents();
    EXPECT_EQ(rows().current, -1);
}

TEST_F(List, AMarkIsSpokenWithTheName)
{
    fill_rows(3);
    rows().rows[1].marked = true;
    open_main();
    EXPECT_EQ(view().model()->index(1, 0).data(Qt::AccessibleTextRole).toString(),
              QStringLiteral("W1, markiert"));
    EXPECT_EQ(view().model()->index(0, 0).data(Qt::AccessibleTextRole).toString(),
              QStringLiteral("W0"));
}

} // namespace
} // namespace velkoro::test
