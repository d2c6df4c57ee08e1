/// The list of the whole program under its user's hands, in both languages: names changed in place,
/// waypoints cut and pasted, files dropped.
#include "tests/ui/program_fixture.h"

#include "core/code_page.h"
#include "core/settings.h"
#include "core/texts.h"
#include "ui/qt_text.h"
#include "waypoints/editor.h"
#include "waypoints/list.h"
#include "waypoints/list_sort.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <QToolButton>

namespace velkoro::test {
namespace {

constexpr int name_column = 0, position_column = static_cast<int>(list_col::position);

class ListUser : public ProgramTest, public testing::WithParamInterface<int> {
protected:
    void SetUp() override
    {
        ProgramTest::SetUp();
        home->put("velkoro.ini",
                  "[Main]\r\nLang3=" + std::to_string(GetParam()) + "\r\nTheme=light\r\n");
        ASSERT_TRUE(start("sample.wp"));
    }
    static std::string shown(int row, int column = name_column)
    {
        return list().model()->index(row, column).data().toString().toStdString();
    }
    /// Types into the field that has opened in the row; the test library knows no umlauts.
    static void type(QLineEdit& field, const char* utf8)
    {
        for (const QChar c : QString::fromUtf8(utf8))
            QTest::sendKeyEvent(QTest::Click, &field, Qt::Key_unknown, QString(c), Qt::NoModifier);
    }
    static void choose_editor()
    {
        click_row(1);
        QTest::mouseClick(widget_of(Form1.Edit_w[1]), Qt::LeftButton);
    }
    static QLineEdit* name_field() { return list().viewport()->findChild<QLineEdit*>(); }
    static void end_edit(Qt::Key key)
    {
        QTest::keyClick(name_field(), key);
        QCoreApplication::processEvents(); // the field hands its text over behind the key
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
};

TEST_P(ListUser, F2ChangesTheNameInItsRowAndTheRoutesFollow)
{
    const std::string key = store.rou[0].wps.substr(0, store.rou[0].wps.find('$'));
    const int row = row_named(key);
    ASSERT_GE(row, 0);
    const int index = wp_index(row);
    click_row(row);
    QTest::keyClick(&list(), Qt::Key_F2);
    ASSERT_NE(name_field(), nullptr);
    EXPECT_EQ(name_field()->text().toStdString(), shown(row));
    EXPECT_EQ(name_field()->selectedText(), name_field()->text());
    type(*name_field(), "höhe+1");
    end_edit(Qt::Key_Return);
    const std::string nam = store.wp[static_cast<std::size_t>(index)].nam;
    EXPECT_TRUE(nam.starts_with("HOHE")) << nam;
    EXPECT_EQ(shown(row), nam) << "the row stays where it is";
    EXPECT_TRUE(store.rou[0].wps.starts_with(wp_key(index) + "$")) << store.rou[0].wps;
    ASSERT_EQ(shown_texts().size(), 1U);
    EXPECT_NE(shown_texts()[0].find(nam), std::string::npos);
    EXPECT_EQ(shown_texts()[0].substr(0, 3), text(4340).substr(0, 3)) << "in the language chosen";
    EXPECT_TRUE(wait_for([] { return top().isWindowModified(); }));
}

TEST_P(ListUser, EscapeLeavesTheNameAsItWas)
{
    click_row(4);
    const std::string before = shown(4);
    QTest::keyClick(&list(), Qt::Key_F2);
    ASSERT_NE(name_field(), nullptr);
    type(*name_field(), "x");
    end_edit(Qt::Key_Escape);
    EXPECT_EQ(shown(4), before);
    EXPECT_FALSE(store.wp_dirty);
    EXPECT_TRUE(top().isVisible());
}

TEST_P(ListUser, ATakenNameIsCountedUp)
{
    click_row(4);
    const std::string taken = shown(5);
    QTest::keyClick(&list(), Qt::Key_F2);
    ASSERT_NE(name_field(), nullptr);
    type(*name_field(), taken.c_str());
    end_edit(Qt::Key_Return);
    EXPECT_NE(shown(4), taken);
    EXPECT_EQ(shown(5), taken);
}

TEST_P(ListUser, CutWaypointsComeBackByPasting)
{
    const stored_data before = stored_now();
    const int all = list().model()->rowCount();
    // Two that no route uses, so that one question is asked.
    std::vector<int> free_rows;
    for (int row = 0; row < all && free_rows.size() < 2; ++row) {
        bool used = false;
        for (const route_rec& r : before.routes)
            used =
                used || ("$" + r.wps).find("$" + wp_key(wp_index(row)) + "$") != std::string::npos;
        if (!used)
            free_rows.push_back(row);
    }
    ASSERT_EQ(free_rows.size(), 2U);
    const std::string first = shown(free_rows[0]), second = shown(free_rows[1]);
    click_row(free_rows[0]);
    click_row(free_rows[1], Qt::ControlModifier);
    answers = {answer::ok};
    QTest::keyClick(&list(), Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(list().model()->rowCount(), all - 2);
    EXPECT_TRUE(QApplication::clipboard()->text().startsWith(QLatin1String("Velkoro waypoints\t")));
    to_front();
    list().setFocus();
    QTest::keyClick(&list(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(list().model()->rowCount(), all);
    EXPECT_TRUE(stored_now().waypoints == before.waypoints);
    ASSERT_EQ(marks().size(), 2U) << "what came in is marked";
    EXPECT_EQ(shown(marks()[0]), first);
    EXPECT_EQ(shown(marks()[1]), second);
    EXPECT_EQ(widget<QLabel>(Form1.anz)->text(), QStringLiteral("2 / %1").arg(all));
    EXPECT_EQ(shown_texts().size(), 1U) << "only the question before cutting";
}

TEST_P(ListUser, ATextChangedByHandIsAskedAbout)
{
    click_row(2);
    QTest::keyClick(&list(), Qt::Key_C, Qt::ControlModifier);
    QApplication::clipboard()->setText(QApplication::clipboard()->text() + QStringLiteral("X\r\n"));
    answers = {answer::cancel};
    choose(Form1.B_einfüg);
    EXPECT_EQ(shown_texts(), (std::vector<std::string>{text(7732)}));
    EXPECT_FALSE(store.wp_dirty);
    choose(Form1.B_test);
    ASSERT_EQ(shown_texts().size(), 2U);
    EXPECT_NE(shown_texts()[1].find(text(7733)), std::string::npos);
}

TEST_P(ListUser, AFileOfAnotherKindThatIsDroppedIsTold)
{
    home->put("notes.doc", "hello");
    drop({file("notes.doc")});
    EXPECT_TRUE(wait_for([this] { return !shown_texts().empty(); }));
    EXPECT_EQ(shown_texts(), (std::vector<std::string>{text(7910, "notes.doc")}));
    EXPECT_EQ(list().model()->rowCount(), 85);
}

TEST_P(ListUser, ATextThatHoldsNoWaypointsIsTold)
{
    home->put("notes.txt", "hello\r\n");
    drop({file("notes.txt")});
    EXPECT_TRUE(wait_for([this] { return !shown_texts().empty(); }));
    EXPECT_EQ(shown_texts(), (std::vector<std::string>{text(7962) + "\n" + text(7960, 1, 1)}));
    EXPECT_EQ(list().model()->rowCount(), 85);
}

TEST_P(ListUser, ASecondFileDroppedIsMergedMarkedAndReported)
{
    const int all = list().model()->rowCount();
    click_row(0);
    const std::string first = shown(0);
    QTest::keyClick(&list(), Qt::Key_F2);
    type(*name_field(), "zzz1");
    end_edit(Qt::Key_Return);
    // The file holds the old name at the old place: a question about the position.
    std::vector<std::string> titles;
    QTimer answer_conflict;
    QObject::connect(&answer_conflict, &QTimer::timeout, [&] {
        QWidget* w = QApplication::activeModalWidget();
        if (!w || w->objectName() != QStringLiteral("einfüg_q"))
            return;
        titles.push_back(w->windowTitle().toStdString());
        QTest::keyClick(w->focusWidget(), Qt::Key_Return); // keep both, the preset answer
    });
    answer_conflict.start(5);
    drop({file("Waypoints/sample.wp")});
    EXPECT_TRUE(wait_for([this] { return !shown_texts().empty(); }, 5000));
    answer_conflict.stop();
    EXPECT_EQ(titles, (std::vector<std::string>{to_utf8(text(720)) + "[*]"}));
    EXPECT_EQ(list().model()->rowCount(), all + 1);
    EXPECT_NE(row_named(first), -1);
    EXPECT_NE(shown_texts().back().find(text(2000, 1)), std::string::npos) << shown_texts().back();
    EXPECT_NE(shown_texts().back().find(text(2030, all - 1)), std::string::npos);
    EXPECT_EQ(widget<QLineEdit>(Form1.wayp_titel)->text().count(QLatin1String(" & ")), 1);
}

TEST_P(ListUser, EveryQuestionOfABatchHasTheFocus)
{
    int row = 0;
    for (const char* name : {"zzz1", "zzz2", "zzz3"}) {
        click_row(row += 2); // two clicks on one place would be a double click
        QTest::keyClick(&list(), Qt::Key_F2);
        ASSERT_NE(name_field(), nullptr);
        type(*name_field(), name);
        end_edit(Qt::Key_Return);
        sort_apply(); // the row moves to the end
        binder_flush();
    }
    int questions = 0;
    QTimer user;
    QObject::connect(&user, &QTimer::timeout, [&] {
        QWidget* focus = QApplication::focusWidget();
        if (!focus || focus->window()->objectName() != QStringLiteral("einfüg_q"))
            return;
        ++questions;
        EXPECT_EQ(focus->objectName(), QStringLiteral("neunam"));
        QTest::keyClick(focus, Qt::Key_Return);
    });
    user.start(5);
    drop({file("Waypoints/sample.wp")});
    EXPECT_TRUE(wait_for([&] { return questions == 3; }, 5000));
    EXPECT_TRUE(wait_for([this] { return !shown_texts().empty(); }, 5000));
    user.stop();
    EXPECT_EQ(list().model()->rowCount(), 88);
}

TEST_P(ListUser, HeadingsSortAndTheOrderIsKept)
{
    auto* header = list().header();
    const auto click_heading = [&](int column) {
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          {header->sectionViewportPosition(column) + 20, header->height() / 2});
    };
    click_heading(static_cast<int>(list_col::altitude));
    EXPECT_EQ(Form1.sort.selected, static_cast<int>(sort_entry::altitude));
    const auto altitude = [](int row) {
        return store.wp[static_cast<std::size_t>(wp_index(row))].alt;
    };
    EXPECT_LE(altitude(0), altitude(1));
    click_heading(static_cast<int>(list_col::altitude));
    EXPECT_TRUE(rows().sort_down);
    EXPECT_NE(shown(0, position_column), "");
    EXPECT_EQ(list().model()->headerData(2, Qt::Horizontal).toString().toStdString(),
              to_utf8(text(2345)));
}

TEST_P(ListUser, ColumnWidthsAndThePlaceOfTheEditorComeBackAtTheNextStart)
{
    const auto in_editor = [](const std::function<void(QWidget&)>& act) {
        bool done = false;
        QTimer user;
        QObject::connect(&user, &QTimer::timeout, [&] {
            QWidget* w = QApplication::activeModalWidget();
            if (done || !w || w != widget_of(WAYPOINT.form))
                return;
            done = true;
            act(*w);
            close_window(WAYPOINT.form);
            binder_flush();
        });
        user.start(10);
        choose_editor();
        EXPECT_TRUE(done);
    };
    in_editor([](QWidget& w) {
        w.move(3, 60); // the screen of the tests is hardly wider than the window
        QCoreApplication::processEvents();
    });
    list().header()->resizeSection(name_column, 166);
    EXPECT_TRUE(run_main_loop([] { choose(Form1.Ende); }));
    EXPECT_EQ(shown_texts().size(), 0U);
    WAYPOINT.form.left = WAYPOINT.form.top = -1; // a new process knows nothing of it
    start_again("sample.wp");
    EXPECT_EQ(list().header()->sectionSize(name_column), 166);
    in_editor([](QWidget& w) { EXPECT_EQ(w.pos(), QPoint(3, 60)); });
    WAYPOINT.form.left = WAYPOINT.form.top = -1;
}

INSTANTIATE_TEST_SUITE_P(Languages, ListUser, testing::Values(0, 1), [](const auto& i) {
    return std::string(i.param == 0 ? "English" : "German");
});

} // namespace
} // namespace velkoro::test
