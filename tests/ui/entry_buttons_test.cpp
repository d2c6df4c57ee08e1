#include "ui/entry_buttons.h"

#include "core/files.h"
#include "core/settings.h"
#include "tests/support/program_folder.h"
#include "tests/ui/ui_fixture.h"

#include <QHBoxLayout>
#include <QToolButton>

namespace velkoro::test {
namespace {

class Toggles : public UiTest {};

/// A window with a section and the button that opens it.
struct section_window {
    window form{"section_test", "Test"};
    bound_window bound{};
    QToolButton* button = nullptr;
    QWidget* section = nullptr;

    explicit section_window(bool open)
    {
        bound.record = &form;
        bound.top = new QWidget;
        button = new QToolButton(bound.top);
        button->setProperty("opens", QStringLiteral("rahmen"));
        section = new QWidget(bound.top);
        section->setObjectName(QStringLiteral("rahmen"));
        section->setVisible(open);
        bind_toggles(bound);
    }
    ~section_window() { delete bound.top; }
    section_window(const section_window&) = delete;
    section_window& operator=(const section_window&) = delete;
};

TEST_F(Toggles, ASectionOpensAsItsFormSaysAndThenAsItWasLeft)
{
    const program_folder home;
    {
        const section_window w(true);
        EXPECT_TRUE(w.button->isChecked());
        w.button->click();
        EXPECT_TRUE(w.section->isHidden());
    }
    {
        const section_window w(true);
        EXPECT_FALSE(w.button->isChecked());
        EXPECT_TRUE(w.section->isHidden());
        w.button->click();
        EXPECT_FALSE(w.section->isHidden());
    }
    const section_window w(false);
    EXPECT_TRUE(w.button->isChecked());
    EXPECT_FALSE(w.section->isHidden());
    EXPECT_EQ(ini_get("Main", "open_section_test_rahmen"), "1");
}

} // namespace
} // namespace velkoro::test
