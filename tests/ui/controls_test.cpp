/// What every control of every window owes its user: a tool tip in each language, the Tab key in
/// the order of the form, the focus where work begins.
#include "core/info.h"
#include "core/job.h"
#include "core/sellang.h"
#include "core/texts.h"
#include "tests/ui/ui_fixture.h"
#include "ui/form_loader.h"
#include "ui/icon_paint.h"
#include "ui/small_widgets.h"
#include "waypoints/conflict.h"
#include "waypoints/editor.h"
#include "waypoints/such.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QTest>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

namespace velkoro::test {
namespace {

/// Named here so that they are linked.
const window* const linked[] = {&info.form, &einfüg_q.form, &such.form, &WAYPOINT.form};

/// All windows that have a form.
std::vector<window*> windows_with_form()
{
    load_resources();
    std::vector<window*> found;
    for (window* w : all_windows())
        if (QFile::exists(QStringLiteral(":/forms/%1.ui").arg(QString::fromUtf8(w->name))))
            found.push_back(w);
    return found;
}

/// Containers, timers, and what is never seen need no words.
bool needs_words(const control& c)
{
    if (c.kind == kind::timer || c.kind == kind::frame || !c.design.visible || !c.visible)
        return false;
    if (c.kind != kind::menu)
        return !(c.kind == kind::button && c.design.caption.empty() && c.tag.empty()); // op.Dummy
    const bool opens_menu =
        std::ranges::any_of(c.form->controls, [&](const control* e) { return e->in == &c; });
    return c.in && !opens_menu && c.caption != "-";
}

class Controls : public UiTest {
protected:
    /// A window on the screen without the work that its opening stands for.
    struct open_alone {
        explicit open_alone(window& opened)
            : w(opened), load(std::exchange(w.load, nullptr)),
              close(std::exchange(w.query_close, nullptr))
        {
            open_window(w);
            QCoreApplication::processEvents();
            binder_show_now(w);
            QCoreApplication::processEvents();
        }
        ~open_alone()
        {
            w.shown = false;
            platform.show(w);
            w.load = load;
            w.query_close = close;
        }
        open_alone(const open_alone&) = delete;
        open_alone& operator=(const open_alone&) = delete;
        window& w;
        std::function<void()> load;
        std::function<bool()> close;
    };
    static bool takes_tab(const QWidget& w)
    {
        return w.isVisible() && w.isEnabled() && (w.focusPolicy() & Qt::TabFocus) != 0 &&
               !w.size().isEmpty() && !w.objectName().startsWith(QLatin1String("qt_")) &&
               !w.objectName().isEmpty();
    }
    static std::vector<std::string> in_order_of_the_form(const QWidget& top)
    {
        std::vector<std::string> names;
        for (const QWidget* w : top.findChildren<QWidget*>())
            if (takes_tab(*w))
                names.push_back(w->objectName().toStdString());
        return names;
    }
    static std::vector<std::string> in_order_of_the_tab_key(const QWidget& top)
    {
        std::vector<std::string> names;
        for (const QWidget* w = top.nextInFocusChain(); w != &top; w = w->nextInFocusChain())
            if (top.isAncestorOf(w) && takes_tab(*w))
                names.push_back(w->objectName().toStdString());
        return names;
    }
};

TEST_F(Controls, HaveAToolTipInEveryLanguage)
{
    ASSERT_GE(windows_with_form().size(), std::size(linked) + 4);
    for (const int language : {0, 1}) {
        load_texts(language);
        for (window* w : windows_with_form()) {
            SCOPED_TRACE(std::string(w->name) + (language == 0 ? ", English" : ", German"));
            const open_alone shown(*w);
            for (const control* c : w->controls) {
                if (!needs_words(*c))
                    continue;
                const QWidget* widget = widget_of(*c);
                const QAction* action = action_of(*c);
                ASSERT_TRUE(widget || action) << c->name;
                // A path that is cut in its middle tells its whole self.
                if (dynamic_cast<const elided_label*>(widget))
                    continue;
                const QString tip = widget ? widget->toolTip() : action->toolTip();
                EXPECT_FALSE(tip.isEmpty()) << c->name << ' ' << c->index;
                EXPECT_FALSE(tip.contains(QLatin1String("Missing text"))) << c->name;
            }
        }
    }
}

TEST_F(Controls, AreReachedByTheTabKeyInTheOrderOfTheForm)
{
    for (window* w : windows_with_form()) {
        SCOPED_TRACE(w->name);
        const open_alone shown(*w);
        const QWidget& top = *widget_of(*w);
        std::vector<std::string> chain = in_order_of_the_tab_key(top);
        const std::vector<std::string> form = in_order_of_the_form(top);
        // The chain is a ring: it begins where the form does.
        if (!form.empty())
            std::ranges::rotate(chain, std::ranges::find(chain, form.front()));
        EXPECT_EQ(chain, form);
    }
}

TEST_F(Controls, WorkBeginsInTheFirstFieldOrOnTheDefaultButton)
{
    struct beginning {
        window& w;
        const control& first;
    };
    const beginning cases[] = {{such.form, such.stext},
                               {sellang.form, sellang.sprachen},
                               {info.form, info.OK},
                               {op2.form, op2.OK},
                               {Form1.form, Form1.Waypl2}};
    for (const beginning& c : cases) {
        SCOPED_TRACE(c.w.name);
        open_window(c.w);
        QCoreApplication::processEvents();
        EXPECT_EQ(widget_of(c.w)->focusWidget(), widget_of(c.first));
        c.w.shown = false;
        platform.show(c.w);
    }
}

TEST_F(Controls, ALabelSaysWhatItsFieldSays)
{
    load_texts(0);
    open_main();
    EXPECT_EQ(widget_of(Form1.sort_h)->toolTip(), QStringLiteral("Order of the list"));
    Form1.sort.tooltip = "something else";
    binder_flush();
    EXPECT_EQ(widget_of(Form1.sort_h)->toolTip(), QStringLiteral("something else"));
}

} // namespace
} // namespace velkoro::test
