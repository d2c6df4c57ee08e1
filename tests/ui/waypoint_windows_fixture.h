/// The waypoint list with its windows on the screen, and a user who acts once a window is open.
#pragma once

#include "core/hooks.h"
#include "core/reset.h"
#include "core/shell.h"
#include "tests/ui/ui_fixture.h"
#include "waypoints/conflict.h"
#include "waypoints/list.h"
#include "waypoints/such.h"

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QTest>
#include <QTimer>

#include <functional>
#include <vector>

namespace velkoro::test {

class WaypointWindows : public UiTest {
protected:
    void SetUp() override
    {
        reset_all();
        saved_hooks_ = hooks;
        UiTest::SetUp();
        wayp_list_install();
        conflict_install();
        such_install();
        for (window* w : {&such.form, &einfüg_q.form})
            for (control* c : w->controls)
                static_cast<look&>(*c) = c->design;
        hooks.distance = [](const pos_rec&, const pos_rec&) { return 0.417; };
        hooks.position_text = [](const pos_rec&) { return "N47.88290 E008.02410"; };
        hooks.symbols_in_use = [] { return false; };
        QObject::connect(&clock_, &QTimer::timeout, [this] { act(); });
    }
    void TearDown() override
    {
        clock_.stop();
        UiTest::TearDown();
        hooks = saved_hooks_;
        shell = {};
        wayp_list = {};
        reset_all();
    }
    static void add(const wayp_rec& rec)
    {
        wayp_rec w = rec;
        wayp_insert(w, -10);
        wayp_insert(w, 0);
        wayp_insert(w, 2);
    }
    /// Acts one after the other while the window is on the screen. A window that outlives them, or
    /// never comes, ends the test.
    void when_open(window& w, std::vector<std::function<void()>> acts)
    {
        waited_for_ = &w;
        acts_ = std::move(acts);
        next_ = 0;
        since_.start();
        clock_.start(10);
    }
    bool all_done() const { return next_ == acts_.size(); }
    /// A click on the mark of a check box or option, or near the edge of a button: behind a short
    /// caption a click on the middle of a wide widget would miss.
    static void press(const control& c)
    {
        auto* w = widget<QAbstractButton>(c);
        QTest::mouseClick(w, Qt::LeftButton, Qt::NoModifier, QPoint(8, w->height() / 2));
    }
    /// Types a text; the test library's own typing knows no umlauts.
    static void type(QWidget* w, const QString& text)
    {
        for (const QChar c : text)
            QTest::sendKeyEvent(QTest::Click, w, Qt::Key_unknown, QString(c), Qt::NoModifier);
    }
    template <class Widget> static Widget* child(const window& w, const char* name)
    {
        auto* c = widget_of(w)->findChild<Widget*>(QString::fromUtf8(name));
        EXPECT_NE(c, nullptr) << name;
        return c;
    }

private:
    void act()
    {
        const QWidget* top = widget_of(*waited_for_);
        if (since_.elapsed() > 10000) {
            ADD_FAILURE() << "the window did not do what was expected";
            clock_.stop();
            waited_for_->shown = false;
            return;
        }
        // A window in front of it, a message for one, has the user's attention.
        if (!top || QApplication::activeModalWidget() != top || next_ == acts_.size())
            return;
        if (QApplication::activeWindow() != top) {
            widget_of(*waited_for_)->activateWindow(); // a screen without a desktop leaves it to us
            return;
        }
        const auto run = acts_[next_++];
        run(); // may close the window
        if (next_ == acts_.size())
            clock_.stop();
    }
    hook_table saved_hooks_{};
    QTimer clock_{};
    QElapsedTimer since_{};
    window* waited_for_ = nullptr;
    std::vector<std::function<void()>> acts_{};
    std::size_t next_ = 0;
};

} // namespace velkoro::test
