/// Every window against its form, both ways: names, widget classes, captions.
#include "ui/adapters.h"

#include "comm/garmin_prop.h"
#include "comm/selrou.h"
#include "comm/selwp.h"
#include "core/info.h"
#include "core/job.h"
#include "core/sellang.h"
#include "interchange/selfil.h"
#include "tests/ui/ui_fixture.h"
#include "ui/form_loader.h"
#include "ui/icon_paint.h"
#include "ui/qt_text.h"
#include "ui/small_widgets.h"
#include "waypoints/conflict.h"
#include "waypoints/such.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>

#include <map>
#include <memory>

namespace velkoro::test {
namespace {

std::vector<std::string> form_names()
{
    load_resources();
    std::vector<std::string> names;
    for (const QString& f : QDir(QStringLiteral(":/forms")).entryList())
        names.push_back(f.chopped(3).toStdString());
    return names;
}

/// The windows of the folders above the core, named here so that they are linked.
const window* const linked[] = {&einfüg_q.form, &Garmin_prop.form, &info.form, &selrou.form,
                                &selwp.form,    &selfil.form,      &such.form};

const window* window_of(const std::string& name)
{
    for (const window* w : linked)
        if (name == w->name)
            return w;
    for (const window* w : all_windows())
        if (name == w->name)
            return w;
    return nullptr;
}

/// A window's name as a part of a test's name, which takes plain letters only.
std::string plain_name(std::string name)
{
    for (char& c : name)
        if (static_cast<unsigned char>(c) >= 0x80)
            c = '_';
    return name;
}

class Form : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override
    {
        record = window_of(GetParam());
        ASSERT_NE(record, nullptr);
        top.reset(load_form(QString::fromStdString(GetParam())));
        ASSERT_NE(top, nullptr);
    }
    const window* record = nullptr;
    std::unique_ptr<QWidget> top{};
};

bool stands_in_a_menu_or_is_a_timer(const control& c)
{
    return c.kind == kind::menu || c.kind == kind::timer;
}

TEST_P(Form, HoldsAFittingWidgetForEveryControl)
{
    for (const control* c : record->controls) {
        if (stands_in_a_menu_or_is_a_timer(*c))
            continue;
        const auto* w = top->findChild<QWidget*>(object_name(*c));
        ASSERT_NE(w, nullptr) << object_name(*c).toStdString();
        EXPECT_TRUE(accepts_widget(c->kind, *w)) << object_name(*c).toStdString();
    }
}

TEST_P(Form, ShowsTheBaseCaptionsOfItsControls)
{
    EXPECT_EQ(top->windowTitle(), to_q(record->design.caption));
    for (const control* c : record->controls) {
        const auto* w = top->findChild<QWidget*>(object_name(*c));
        if (w && (qobject_cast<const QAbstractButton*>(w) || qobject_cast<const QLabel*>(w))) {
            EXPECT_EQ(widget_caption(*w), to_q(c->design.caption)) << object_name(*c).toStdString();
        }
    }
}

TEST_P(Form, HoldsNoWidgetThatIsNeitherAControlNorDecoration)
{
    for (const QWidget* w : top->findChildren<QWidget*>()) {
        const QString name = w->objectName();
        if (name.isEmpty() || name.startsWith(QLatin1String("qt_")) ||
            name.startsWith(QLatin1String("deko_")))
            continue;
        bool known = false;
        for (const control* c : record->controls)
            known = known || object_name(*c) == name;
        EXPECT_TRUE(known) << name.toStdString();
    }
}

TEST_P(Form, IsADialogOrAMainWindow)
{
    EXPECT_TRUE(qobject_cast<QDialog*>(top.get()) || qobject_cast<QMainWindow*>(top.get()));
}

TEST_P(Form, HasAtMostOneDefaultButton)
{
    int defaults = 0;
    for (const QPushButton* b : top->findChildren<QPushButton*>())
        defaults += b->isDefault() ? 1 : 0;
    EXPECT_LE(defaults, 1);
}

TEST_P(Form, NamesOnlyDrawingsAndEntriesThatExist)
{
    for (const QWidget* w : top->findChildren<QWidget*>()) {
        if (const QString icon = w->property("icon_name").toString(); !icon.isEmpty()) {
            EXPECT_FALSE(icon_pixmap(icon, Qt::black, 18, 1).isNull()) << icon.toStdString();
        }
        QStringList entries = w->property("empty_entries").toString().split(QLatin1Char(' '));
        entries.append(w->property("entry").toString());
        for (const QString& entry : entries) {
            bool known = entry.isEmpty();
            for (const control* c : record->controls)
                known = known || (c->kind == kind::menu && object_name(*c) == entry);
            EXPECT_TRUE(known) << entry.toStdString();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Every, Form, testing::ValuesIn(form_names()),
                         [](const auto& i) { return plain_name(i.param); });

/// What a window must be in every language: all captions in full, every control with a name.
class Shown : public UiTest, public testing::WithParamInterface<std::tuple<std::string, int>> {};

int access_letter(const QString& caption)
{
    const QKeySequence k = QKeySequence::mnemonic(caption);
    return k.isEmpty() ? 0 : k[0].toCombined();
}

TEST_P(Shown, IsWholeInEveryLanguage)
{
    const auto& [name, language] = GetParam();
    load_texts(language);
    auto* w = const_cast<window*>(window_of(name));
    const auto load = std::exchange(w->load, nullptr);
    const auto close = std::exchange(w->query_close, nullptr);
    open_window(*w);
    QCoreApplication::processEvents();
    binder_show_now(*w);
    QWidget& top = *widget_of(*w);
    QCoreApplication::processEvents();

    EXPECT_LE(top.minimumSizeHint().width(), top.width());
    EXPECT_LE(top.minimumSizeHint().height(), top.height());
    EXPECT_LE(top.width(), 1120);
    EXPECT_LE(top.height(), 720);
    std::map<int, QString> letters;
    for (const QWidget* child : top.findChildren<QWidget*>()) {
        if (!child->isVisible() || child->visibleRegion().isEmpty())
            continue;
        const QString id = child->objectName();
        const auto* button = qobject_cast<const QAbstractButton*>(child);
        if (button || qobject_cast<const QLabel*>(child)) {
            EXPECT_FALSE(widget_caption(*child).contains(QLatin1String("Missing text")))
                << id.toStdString();
            if (!dynamic_cast<const elided_label*>(child) && !child->objectName().isEmpty()) {
                EXPECT_GE(child->width(), child->minimumSizeHint().width()) << id.toStdString();
            }
        }
        if (button || qobject_cast<const QLineEdit*>(child) ||
            qobject_cast<const QComboBox*>(child) ||
            qobject_cast<const QAbstractItemView*>(child)) {
            bool named = !child->accessibleName().isEmpty() ||
                         (button && !button->text().isEmpty()) || child->size().isEmpty();
            for (const QLabel* l : top.findChildren<QLabel*>())
                named = named || (l->buddy() == child && !l->text().isEmpty());
            EXPECT_TRUE(named || id.startsWith(QLatin1String("qt_")) || id.isEmpty())
                << id.toStdString();
        }
        const auto* label = qobject_cast<const QLabel*>(child);
        const int letter = button                    ? access_letter(button->text())
                           : label && label->buddy() ? access_letter(label->text())
                                                     : 0;
        // The one pair that its fixed captions make.
        const bool fixed = language == 1 && id == QLatin1String("Anf_1");
        if (letter != 0 && child->isEnabled() && !fixed && !id.startsWith(QLatin1String("deko_"))) {
            EXPECT_TRUE(letters.emplace(letter, id).second)
                << id.toStdString() << " and " << letters[letter].toStdString();
        }
    }
    w->shown = false;
    platform.show(*w);
    w->load = load;
    w->query_close = close;
}

INSTANTIATE_TEST_SUITE_P(Every, Shown,
                         testing::Combine(testing::ValuesIn(form_names()), testing::Values(0, 1)),
                         [](const auto& i) {
                             return plain_name(std::get<0>(i.param)) +
                                    (std::get<1>(i.param) == 0 ? "English" : "German");
                         });

} // namespace
} // namespace velkoro::test
