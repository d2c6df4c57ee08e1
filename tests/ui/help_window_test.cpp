#include "ui/help_window.h"

#include "core/files.h"
#include "core/help_pages.h"
#include "core/texts.h"
#include "tests/ui/ui_fixture.h"
#include "ui/look.h"

#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QPixmap>
#include <QTest>
#include <QTextBrowser>
#include <QToolButton>
#include <QTreeWidget>

namespace velkoro::test {
namespace {

class HelpWindow : public UiTest {
protected:
    void SetUp() override
    {
        UiTest::SetUp();
        folders.program = VELKORO_SOURCE_DIR "/data/";
        load_texts(0);
    }
    void TearDown() override
    {
        UiTest::TearDown();
        folders.program.clear();
    }
    template <class Widget> static Widget& part(const char* name)
    {
        auto* w = help_widget()->findChild<Widget*>(QLatin1String(name));
        EXPECT_NE(w, nullptr) << name;
        return *w;
    }
    static QTextBrowser& page() { return part<QTextBrowser>("help_text"); }
    static QTreeWidget& contents() { return part<QTreeWidget>("help_contents"); }
    static QLineEdit& search() { return part<QLineEdit>("help_search"); }
    static std::string shown() { return page().source().fileName().toStdString(); }
    static std::string language_shown()
    {
        return QFileInfo(page().source().toLocalFile()).dir().dirName().toStdString();
    }
    static std::vector<std::string> entries()
    {
        std::vector<std::string> titles;
        for (QTreeWidgetItemIterator i(&contents()); *i; ++i)
            titles.push_back((*i)->text(0).section(QLatin1Char('\n'), 0, 0).toStdString());
        return titles;
    }
    static void press(Qt::Key key, Qt::KeyboardModifiers with = Qt::NoModifier)
    {
        EXPECT_TRUE(QTest::qWaitForWindowActive(help_widget()));
        QTest::keyClick(help_widget(), key, with);
        QCoreApplication::processEvents();
    }
};

TEST_F(HelpWindow, OpensAtATopicAndShowsItInTheContents)
{
    platform.help("editing");
    ASSERT_TRUE(help_widget());
    EXPECT_TRUE(help_widget()->isVisible());
    EXPECT_EQ(shown(), "editing.html");
    EXPECT_EQ(help_widget()->windowTitle(), QStringLiteral("Help: Editing a waypoint"));
    ASSERT_TRUE(contents().currentItem());
    EXPECT_EQ(contents().currentItem()->text(0), QStringLiteral("Editing a waypoint"));
    EXPECT_EQ(entries().size(), help_contents().size());
    EXPECT_TRUE(page().toPlainText().contains(QStringLiteral("six nearest waypoints")));
    platform.help("no such topic");
    EXPECT_EQ(shown(), "index.html");
    platform.help("");
    EXPECT_EQ(shown(), "index.html");
}

TEST_F(HelpWindow, TheTopicsThatTheProgramCallsExist)
{
    for (const char* topic : {"index", "news", "time_zones"}) {
        platform.help(topic);
        EXPECT_EQ(shown(), std::string(topic) + ".html");
    }
    for (const char* window : {"Form1", "WAYPOINT", "einfüg_q", "such", "op", "op2", "sellang"}) {
        const std::string topic = help_topic_of(QString::fromUtf8(window));
        ASSERT_NE(topic, "") << window;
        platform.help(topic);
        EXPECT_EQ(shown(), topic + ".html") << window;
    }
}

TEST_F(HelpWindow, AClickInTheContentsOpensThePage)
{
    platform.help("index");
    const auto found = contents().findItems(QStringLiteral("Units"), Qt::MatchRecursive);
    ASSERT_EQ(found.size(), 1);
    QTest::mouseClick(contents().viewport(), Qt::LeftButton, {},
                      contents().visualItemRect(found[0]).center());
    EXPECT_EQ(shown(), "units.html");
}

TEST_F(HelpWindow, FollowsLinksAndGoesBackAndForward)
{
    platform.help("index");
    page().setFocus();
    // Tab goes to the first link of the page, Enter follows it.
    QTest::keyClick(&page(), Qt::Key_Tab);
    QTest::keyClick(&page(), Qt::Key_Return);
    EXPECT_EQ(shown(), "first_steps.html");
    press(Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(shown(), "index.html");
    press(Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(shown(), "first_steps.html");
    auto& back = part<QToolButton>("help_back");
    EXPECT_TRUE(back.isEnabled());
    back.click();
    EXPECT_EQ(shown(), "index.html");
    EXPECT_FALSE(back.isEnabled());
    EXPECT_TRUE(part<QToolButton>("help_forward").isEnabled());
}

TEST_F(HelpWindow, HeadingsWithAnAnchorDoNotLookLikeLinks)
{
    platform.help("units");
    platform.help("time_zones");
    const QTextCursor c = page().document()->find(QStringLiteral("How a rule is written"));
    EXPECT_NE(c.charFormat().foreground().color(), own_palette(false).color(QPalette::Link));
}

TEST_F(HelpWindow, AnAnchorOfALinkScrollsToItsHeading)
{
    platform.help("coordinates");
    help_widget()->resize(700, 300);
    QCoreApplication::processEvents();
    page().setSource(page().source().resolved(QUrl(QStringLiteral("coordinates.html#metric"))));
    QCoreApplication::processEvents();
    EXPECT_GT(page().cursorForPosition({20, 60}).position(),
              page().toPlainText().indexOf(QStringLiteral("How coordinates may be typed")));
}

TEST_F(HelpWindow, TheSearchFindsPagesWithAllWordsAndHighlightsThem)
{
    platform.help("index");
    QTest::keyClicks(&search(), QStringLiteral("sydney NEW york"));
    EXPECT_EQ(entries(), std::vector<std::string>{"Time zones"});
    QTest::keyClick(&search(), Qt::Key_Return);
    EXPECT_EQ(shown(), "time_zones.html");
    const auto places = page().extraSelections();
    ASSERT_GE(places.size(), 5);
    for (const QTextEdit::ExtraSelection& s : places) {
        const QString word = s.cursor.selectedText().toLower();
        EXPECT_TRUE(word == QLatin1String("sydney") || word == QLatin1String("new") ||
                    word == QLatin1String("york"))
            << word.toStdString();
    }
    search().clear();
    EXPECT_TRUE(page().extraSelections().isEmpty());
    EXPECT_EQ(entries().size(), help_contents().size());
}

TEST_F(HelpWindow, APageNamedAfterTheWordStandsFirst)
{
    platform.help("index");
    QTest::keyClicks(&search(), QStringLiteral("clipboard"));
    ASSERT_GT(entries().size(), 2U);
    EXPECT_EQ(entries().front(), "Clipboard");
}

TEST_F(HelpWindow, AWordThatNoPageHasIsToldInTheList)
{
    platform.help("index");
    QTest::keyClicks(&search(), QStringLiteral("xyzzy"));
    EXPECT_EQ(entries(), std::vector<std::string>{"Nothing found"});
    QTest::keyClick(&search(), Qt::Key_Return);
    EXPECT_EQ(shown(), "index.html");
}

TEST_F(HelpWindow, SwitchesThePageWithTheLanguage)
{
    platform.help("units");
    EXPECT_EQ(language_shown(), "en");
    load_texts(1);
    binder_flush();
    EXPECT_EQ(language_shown(), "de");
    EXPECT_EQ(shown(), "units.html");
    EXPECT_EQ(help_widget()->windowTitle(), QStringLiteral("Hilfe: Einheiten"));
    EXPECT_EQ(search().placeholderText(), QStringLiteral("Hilfe durchsuchen"));
    EXPECT_EQ(entries().front(), "Willkommen");
    EXPECT_FALSE(part<QToolButton>("help_back").isEnabled()) << "those pages were English";
    EXPECT_TRUE(page().toPlainText().contains(QStringLiteral("Einheit für Höhe")));
}

TEST_F(HelpWindow, FollowsThePalette)
{
    platform.help("index");
    look_set_theme(theme::light);
    QCoreApplication::processEvents();
    const auto link_colour = [] {
        const QTextCursor c = page().document()->find(QStringLiteral("First steps"));
        return c.charFormat().foreground().color();
    };
    EXPECT_EQ(link_colour(), own_palette(false).color(QPalette::Link));
    look_set_theme(theme::dark);
    QCoreApplication::processEvents();
    EXPECT_EQ(link_colour(), own_palette(true).color(QPalette::Link));
    EXPECT_EQ(page().palette().color(QPalette::Base), own_palette(true).color(QPalette::Base));
}

TEST_F(HelpWindow, CtrlWithPlusMinusAndZeroSetsTheSizeOfTheText)
{
    platform.help("index");
    const double normal = page().font().pointSizeF();
    press(Qt::Key_Plus, Qt::ControlModifier);
    press(Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_DOUBLE_EQ(page().font().pointSizeF(), normal + 2);
    press(Qt::Key_Minus, Qt::ControlModifier);
    EXPECT_DOUBLE_EQ(page().font().pointSizeF(), normal + 1);
    press(Qt::Key_0, Qt::ControlModifier);
    EXPECT_DOUBLE_EQ(page().font().pointSizeF(), normal);
}

TEST_F(HelpWindow, EscapeClosesAndTheNextCallOpensItAgain)
{
    platform.help("index");
    press(Qt::Key_Escape);
    EXPECT_FALSE(help_widget()->isVisible());
    platform.help("files");
    EXPECT_TRUE(help_widget()->isVisible());
    EXPECT_EQ(shown(), "files.html");
}

TEST_F(HelpWindow, F1OpensThePageAboutTheWindowUnderWorkAndBesideAModalOne)
{
    QDialog dialog;
    dialog.setObjectName(QStringLiteral("such"));
    dialog.setModal(true);
    dialog.show();
    dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    QTest::keyClick(&dialog, Qt::Key_F1);
    ASSERT_TRUE(help_widget());
    EXPECT_TRUE(help_widget()->isVisible());
    EXPECT_EQ(shown(), "searching.html");
    EXPECT_EQ(help_widget()->parentWidget(), &dialog) << "a modal window blocks all others";
    dialog.hide();
    EXPECT_EQ(help_widget()->parentWidget(), nullptr);
    EXPECT_TRUE(help_widget()->isVisible());
}

TEST_F(HelpWindow, TellsWhereThePagesShouldBe)
{
    folders.program = "/nowhere/";
    std::vector<int> told;
    platform.message = [&](const message_box& m) {
        told.push_back(m.number);
        EXPECT_NE(m.text.find("/nowhere/"), std::string::npos);
        return answer::ok;
    };
    platform.help("index");
    EXPECT_EQ(told, std::vector<int>{7908});
    EXPECT_EQ(help_widget(), nullptr);
}

class HelpPictures : public HelpWindow,
                     public testing::WithParamInterface<std::tuple<int, bool>> {};

TEST_P(HelpPictures, OfTheWindow)
{
    const auto& [language, dark] = GetParam();
    load_texts(language);
    look_set_theme(dark ? theme::dark : theme::light);
    platform.help("time_zones");
    QCoreApplication::processEvents();
    const QPixmap picture = save_picture(*help_widget(), QStringLiteral("help"), dark, language);
    EXPECT_EQ(picture.toImage().pixelColor(2, 2), own_palette(dark).color(QPalette::Window));
}

INSTANTIATE_TEST_SUITE_P(Shown, HelpPictures,
                         testing::Combine(testing::Values(0, 1), testing::Bool()));

} // namespace
} // namespace velkoro::test
