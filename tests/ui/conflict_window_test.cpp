/// The window of insert conflicts, driven as a user drives it.
#include "waypoints/conflict.h"

#include "core/job.h"
#include "core/trap.h"
#include "core/wayp_insert.h"
#include "tests/ui/waypoint_windows_fixture.h"
#include "ui/qt_text.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QRadioButton>
#include <QTest>

namespace velkoro::test {
namespace {

class ConflictWindow : public WaypointWindows {
protected:
    void SetUp() override
    {
        WaypointWindows::SetUp();
        add({.nam = "HUT", .kom = "old", .pos = {1 << 20, 0}, .alt = 1310});
        open_main();
    }
    wayp_rec incoming{.nam = "HUT", .kom = "new", .pos = {2 << 20, 0}, .alt = 98};
    conflict_question question{.old_index = 0, .incoming = &incoming};

    static QRadioButton* option(int n) { return widget<QRadioButton>(einfüg_q.wp_sel[n]); }
    static QLineEdit* name() { return widget<QLineEdit>(einfüg_q.neunam); }
    static void enter() { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return); }
};

TEST_F(ConflictWindow, ShowsBothRecordsInAFontOfOnePitchAndTheNameReadyToBeTyped)
{
    when_open(einfüg_q.form, {[] {
                  EXPECT_EQ(widget<QLabel>(einfüg_q.entf)->text(), QStringLiteral("0.42 km"));
                  const auto* a = widget<QLabel>(einfüg_q.beschr_a);
                  const auto* n = widget<QLabel>(einfüg_q.beschr_n);
                  EXPECT_TRUE(a->text().contains(QStringLiteral("1310 m / Prox")));
                  EXPECT_TRUE(n->text().contains(QStringLiteral("  98 m / Prox")));
                  for (const QLabel* l : {a, n}) {
                      const QFontMetrics m(l->font());
                      EXPECT_EQ(m.horizontalAdvance(QLatin1Char('i')),
                                m.horizontalAdvance(QLatin1Char('M')));
                      EXPECT_GE(l->width(), l->minimumSizeHint().width());
                      EXPECT_EQ(l->backgroundRole(), QPalette::Base);
                  }
                  EXPECT_TRUE(option(sel_both)->isChecked());
                  EXPECT_TRUE(name()->hasFocus());
                  EXPECT_EQ(name()->selectedText(), QStringLiteral("HUT1"));
                  EXPECT_TRUE(QApplication::activeModalWidget() == widget_of(einfüg_q.form));
                  enter();
              }});
    EXPECT_EQ(conflict_ask(question), conflict_answer::keep_both);
    EXPECT_TRUE(all_done());
    EXPECT_EQ(incoming.nam, "HUT1");
}

TEST_F(ConflictWindow, FiltersTheNameAtTheKeystrokeAndLeavesTheCursor)
{
    when_open(einfüg_q.form, {[] {
                  type(name(), QStringLiteral("kabn"));
                  EXPECT_EQ(name()->text(), QStringLiteral("KABN"));
                  name()->setCursorPosition(3);
                  type(name(), QStringLiteral("ü"));
                  EXPECT_EQ(name()->text(), QStringLiteral("KABUN"));
                  EXPECT_EQ(name()->cursorPosition(), 4);
                  type(name(), QStringLiteral("7"));
                  EXPECT_EQ(name()->text(), QStringLiteral("KABU7N"));
                  enter();
              }});
    EXPECT_EQ(conflict_ask(question), conflict_answer::keep_both);
    EXPECT_EQ(incoming.nam, "KABU7N");
}

TEST_F(ConflictWindow, TheFieldsOfAnOptionAreOpenWhileItIsChosen)
{
    when_open(einfüg_q.form, {[] {
                  const auto* label = child<QLabel>(einfüg_q.form, "deko_neunam");
                  press(einfüg_q.wp_sel[sel_new]);
                  EXPECT_FALSE(name()->isEnabled());
                  EXPECT_FALSE(label->isEnabled());
                  EXPECT_FALSE(widget_of(einfüg_q.Bezeichnung2)->isEnabled());
                  QTest::keyClick(option(sel_new), Qt::Key_Up);
                  EXPECT_TRUE(einfüg_q.wp_sel[sel_old].checked);
                  EXPECT_FALSE(einfüg_q.wp_sel[sel_new].checked);
                  press(einfüg_q.wp_sel[sel_both]);
                  EXPECT_TRUE(name()->isEnabled());
                  EXPECT_TRUE(label->isEnabled());
                  press(einfüg_q.wp_sel[sel_old]);
                  press(einfüg_q.ohne);
                  press(einfüg_q.OK);
              }});
    EXPECT_EQ(conflict_ask(question), conflict_answer::keep_old);
    EXPECT_TRUE(question.remember);
}

TEST_F(ConflictWindow, TheTabKeyFollowsTheEye)
{
    when_open(einfüg_q.form, {[] {
                  std::vector<QWidget*> order;
                  for (int n = 0; n < 6; ++n) {
                      order.push_back(QApplication::focusWidget());
                      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
                  }
                  EXPECT_EQ(order,
                            (std::vector<QWidget*>{name(), widget_of(einfüg_q.kom),
                                                   widget_of(einfüg_q.ohne), widget_of(einfüg_q.OK),
                                                   widget_of(einfüg_q.Abbr), option(sel_old)}));
                  close_window(einfüg_q.form);
              }});
    conflict_ask(question);
    EXPECT_TRUE(all_done());
}

TEST_F(ConflictWindow, EscapeEndsTheBatch)
{
    when_open(einfüg_q.form, {[] { QTest::keyClick(name(), Qt::Key_Escape); }});
    EXPECT_EQ(conflict_ask(question), conflict_answer::cancel_batch);
    EXPECT_FALSE(widget_of(einfüg_q.form)->isVisible());
}

TEST_F(ConflictWindow, ATakenNameIsToldAndTheWindowStaysWithAFreeOne)
{
    add({.nam = "BARN", .pos = {9 << 20, 0}});
    when_open(einfüg_q.form,
              {[] {
                   QTimer::singleShot(50, [] {
                       auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
                       ASSERT_NE(box, nullptr);
                       EXPECT_TRUE(box->text().contains(QStringLiteral("BARN1")));
                       QTest::keyClick(box, Qt::Key_Return);
                   });
                   type(name(), QStringLiteral("barn"));
                   enter();
               },
               [] {
                   EXPECT_EQ(name()->text(), QStringLiteral("BARN1"));
                   EXPECT_TRUE(name()->hasFocus());
                   EXPECT_EQ(name()->selectedText(), QStringLiteral("BARN1"));
                   enter();
               }});
    EXPECT_EQ(conflict_ask(question), conflict_answer::keep_both);
    EXPECT_EQ(incoming.nam, "BARN1");
}

TEST_F(ConflictWindow, TheEditorsQuestionHasNeitherCancelNorTheNewOne)
{
    question.silent = true;
    when_open(einfüg_q.form, {[] {
                  EXPECT_FALSE(option(sel_new)->isVisible());
                  EXPECT_FALSE(widget_of(einfüg_q.beschr_n)->isVisible());
                  EXPECT_FALSE(widget_of(einfüg_q.Abbr)->isVisible());
                  EXPECT_FALSE(widget_of(einfüg_q.ohne)->isVisible());
                  EXPECT_TRUE(widget_of(einfüg_q.OK)->isVisible());
                  QTest::keyClick(name(), Qt::Key_Escape);
              }});
    EXPECT_EQ(conflict_ask(question), conflict_answer::keep_old);
    EXPECT_TRUE(all_done());
}

TEST_F(ConflictWindow, StandsInFrontOfAJobThatHasNotShownItselfYet)
{
    when_open(einfüg_q.form,
              {[] {
                   EXPECT_TRUE(widget_of(op.form)->isVisible());
                   EXPECT_TRUE(QApplication::activeModalWidget() == widget_of(einfüg_q.form));
                   const QCursor* over = QApplication::overrideCursor();
                   EXPECT_TRUE(!over || over->shape() != Qt::WaitCursor);
               },
               [] {},
               [] {
                   press(einfüg_q.wp_sel[sel_new]);
                   press(einfüg_q.OK);
               }});
    job = {};
    job.jobs["W_O"] = [this] {
        wayp_rec report;
        wayp_insert(report, batch_open);
        wayp_insert(incoming, 0);
        wayp_insert(report, batch_close);
        platform.pump(0);
    };
    run_job("W_O");
    job = {};
    EXPECT_TRUE(all_done());
    EXPECT_EQ(store.wp[0].kom, "new");
    EXPECT_FALSE(widget_of(op.form)->isVisible());
}

} // namespace
} // namespace velkoro::test
