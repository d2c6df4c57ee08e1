#include "ui/binder.h"

#include "core/sellang.h"
#include "core/texts.h"
#include "tests/ui/ui_fixture.h"
#include "ui/form_loader.h"
#include "ui/qt_text.h"

#include <QAbstractScrollArea>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QUrl>

namespace velkoro::test {
namespace {

class Binder : public UiTest {};

QWidget& top()
{
    return *widget_of(Form1.form);
}

std::vector<std::string> entry_names(const control& menu)
{
    std::vector<std::string> names;
    for (const QAction* a : menu_of(menu)->actions())
        names.push_back(a->isSeparator() ? "-" : a->objectName().toStdString());
    return names;
}

TEST_F(Binder, TypingSetsTheRecordAndRunsItsHandlerForEveryKey)
{
    std::vector<std::string> seen;
    Form1.wayp_titel.change = [&] { seen.push_back(Form1.wayp_titel.text); };
    open_main();
    QTest::keyClicks(widget<QLineEdit>(Form1.wayp_titel), QStringLiteral("Öl"));
    EXPECT_EQ(seen, (std::vector<std::string>{"Ö"_w, "Öl"_w}));
}

TEST_F(Binder, AWriteByTheProgramShowsAtTheNextFlushAndRunsNoHandler)
{
    int runs = 0;
    Form1.wayp_titel.change = [&] { ++runs; };
    open_main();
    Form1.wayp_titel.text = "Süd"_w;
    Form1.anz.caption = "7 / 60";
    binder_flush();
    EXPECT_EQ(widget<QLineEdit>(Form1.wayp_titel)->text(), QStringLiteral("Süd"));
    EXPECT_EQ(widget<QLabel>(Form1.anz)->text(), QStringLiteral("7 / 60"));
    EXPECT_EQ(runs, 0);
}

TEST_F(Binder, WhatAHandlerWritesIsShownWhenItEnds)
{
    Form1.Edit_w[0].click = [] {
        Form1.filnam.caption = "a.wp";
        Form1.Edit_w[1].enabled = false;
    };
    open_main();
    QTest::mouseClick(widget<QToolButton>(Form1.Edit_w[0]), Qt::LeftButton);
    EXPECT_EQ(widget_caption(*widget_of(Form1.filnam)), QStringLiteral("a.wp"));
    EXPECT_FALSE(widget<QToolButton>(Form1.Edit_w[1])->isEnabled());
}

TEST_F(Binder, ATextThatAHandlerRewritesKeepsItsOwnWording)
{
    Form1.wayp_titel.change = [] { Form1.wayp_titel.text = "ABC"; };
    open_main();
    QTest::keyClicks(widget<QLineEdit>(Form1.wayp_titel), QStringLiteral("x"));
    EXPECT_EQ(widget<QLineEdit>(Form1.wayp_titel)->text(), QStringLiteral("ABC"));
}

TEST_F(Binder, ADisabledButtonDoesNotRun)
{
    int runs = 0;
    Form1.Edit_w[2].click = [&] { ++runs; };
    Form1.Edit_w[2].enabled = false;
    open_main();
    QTest::mouseClick(widget<QToolButton>(Form1.Edit_w[2]), Qt::LeftButton);
    EXPECT_EQ(runs, 0);
}

TEST_F(Binder, AChoiceInADropDownSetsTheRecordAndRunsClick)
{
    Form1.sort.items = {"Name", "Höhe"_w, "Datum"};
    Form1.sort.selected = 0;
    int seen = -1;
    Form1.sort.click = [&] { seen = Form1.sort.selected; };
    open_main();
    auto* box = widget<QComboBox>(Form1.sort);
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Down);
    EXPECT_EQ(seen, 1);
    Form1.sort.selected = 2;
    binder_flush();
    EXPECT_EQ(box->currentText(), QStringLiteral("Datum"));
    EXPECT_EQ(seen, 1);
}

TEST_F(Binder, NewEntriesOfADropDownAndItsChoiceArriveTogether)
{
    open_main();
    Form1.refp.items = {"START", "ZIEL"};
    Form1.refp.selected = 1;
    binder_flush();
    EXPECT_EQ(widget<QComboBox>(Form1.refp)->count(), 2);
    EXPECT_EQ(widget<QComboBox>(Form1.refp)->currentText(), QStringLiteral("ZIEL"));
}

TEST_F(Binder, MenusStandInTheOrderOfTheirRecords)
{
    open_main();
    EXPECT_EQ(entry_names(Form1.datei),
              (std::vector<std::string>{"Wayp_Datei_lesen", "Wayp_Datei_Speich_0",
                                        "Wayp_Datei_Speich_1", "-", "druck", "-", "Ende"}));
    EXPECT_EQ(action_of(Form1.Zeit_S)->menu()->actions().size(), 7);
}

TEST_F(Binder, TheTickOfAnEntryFollowsTheRecordNotTheClick)
{
    bool turn = false;
    Form1.backup.click = [&] { Form1.backup.checked = turn; };
    Form1.backup.checked = true;
    open_main();
    action_of(Form1.backup)->trigger();
    EXPECT_FALSE(action_of(Form1.backup)->isChecked());
    action_of(Form1.backup)->trigger();
    EXPECT_FALSE(action_of(Form1.backup)->isChecked());
    turn = true;
    action_of(Form1.backup)->trigger();
    EXPECT_TRUE(action_of(Form1.backup)->isChecked());
    action_of(Form1.backup)->trigger(); // the toolkit takes the tick away, the record does not
    EXPECT_TRUE(action_of(Form1.backup)->isChecked());
}

void add_profile(const char* name)
{
    Form1.prof.push_back(std::make_unique<control>(
        Form1.form, Form1.pr, "prof", look{.caption = name}, static_cast<int>(Form1.prof.size())));
}

TEST_F(Binder, ProfilesComeAndGoBeforeTheirSeparator)
{
    open_main();
    EXPECT_EQ(entry_names(Form1.pr), (std::vector<std::string>{"-", "prof_lösch", "prof_neu"}));
    add_profile("Standard");
    add_profile("Boot");
    binder_flush();
    EXPECT_EQ(entry_names(Form1.pr),
              (std::vector<std::string>{"prof_0", "prof_1", "-", "prof_lösch", "prof_neu"}));
    Form1.prof.pop_back();
    binder_flush();
    EXPECT_EQ(entry_names(Form1.pr),
              (std::vector<std::string>{"prof_0", "-", "prof_lösch", "prof_neu"}));
}

TEST_F(Binder, AnEntryMayRemoveItselfWhileItsHandlerRuns)
{
    open_main();
    add_profile("Standard");
    add_profile("Boot");
    Form1.prof[1]->click = [] {
        Form1.prof.clear();
        add_profile("Rad");
        Form1.prof[0]->click = [] { Form1.anz.caption = "Rad"; };
        Form1.anz.caption = "weg";
    };
    binder_flush();
    action_of(*Form1.prof[1])->trigger();
    EXPECT_EQ(Form1.anz.caption, "weg");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(entry_names(Form1.pr),
              (std::vector<std::string>{"prof_0", "-", "prof_lösch", "prof_neu"}));
    EXPECT_EQ(action_of(*Form1.prof[0])->text(), QStringLiteral("Rad"));
    action_of(*Form1.prof[0])->trigger();
    EXPECT_EQ(Form1.anz.caption, "Rad");
}

TEST_F(Binder, KeysOfEntriesAndButtonsWork)
{
    std::string seen;
    Form1.Wayp_Datei_lesen.click = [&] { seen += "o"; };
    Form1.Edit_w[0].click = [&] { seen += "n"; };
    Form1.zeich_akt.click = [&] { seen += "m"; };
    Form1.hilf[0].click = [&] { seen += "?"; };
    open_main();
    QTest::keyClick(&top(), Qt::Key_O, Qt::ControlModifier);
    QTest::keyClick(&top(), Qt::Key_N, Qt::ControlModifier);
    QTest::keyClick(&top(), Qt::Key_M, Qt::ControlModifier);
    QTest::keyClick(&top(), Qt::Key_F1);
    EXPECT_EQ(seen, "onm?");
}

TEST_F(Binder, DeleteInTheListRunsTheEntryButInAFieldItDeletesACharacter)
{
    fill_rows(3);
    int runs = 0;
    Form1.B_lösch.click = [&] { ++runs; };
    Form1.wayp_titel.text = "xyz";
    open_main();
    auto* field = widget<QLineEdit>(Form1.wayp_titel);
    field->setFocus();
    field->setCursorPosition(0);
    QTest::keyClick(field, Qt::Key_Delete);
    EXPECT_EQ(runs, 0);
    EXPECT_EQ(Form1.wayp_titel.text, "yz");
    widget_of(Form1.Waypl2)->setFocus();
    QTest::keyClick(widget_of(Form1.Waypl2), Qt::Key_Delete);
    EXPECT_EQ(runs, 1);
}

TEST_F(Binder, AccessLettersAreReadAsTheyAreMeant)
{
    EXPECT_EQ(caption_q("&Datei"), QStringLiteral("&Datei"));
    EXPECT_EQ(caption_q("Rock && Roll"), QStringLiteral("Rock && Roll"));
    EXPECT_EQ(caption_q("A & B"), QStringLiteral("A && B"));
    EXPECT_EQ(caption_q("Ende&"), QStringLiteral("Ende&&"));
    EXPECT_EQ(plain_q("&Rock && Roll & mehr"), QStringLiteral("Rock & Roll & mehr"));
}

TEST_F(Binder, AFileNameInALabelKeepsItsSigns)
{
    open_main();
    Form1.filnam.caption = "/a/Rad & Fuß.wp"_w;
    binder_flush();
    EXPECT_EQ(widget_caption(*widget_of(Form1.filnam)), QStringLiteral("/a/Rad & Fuß.wp"));
}

TEST_F(Binder, ToolButtonsShareTheEntry)
{
    int runs = 0;
    Form1.Wayp_Datei_lesen.click = [&] { ++runs; };
    open_main();
    auto* button = top().findChild<QToolButton*>(QStringLiteral("deko_open"));
    ASSERT_NE(button, nullptr);
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(runs, 1);
    Form1.Wayp_Datei_lesen.enabled = false;
    binder_flush();
    EXPECT_FALSE(button->isEnabled());
    EXPECT_TRUE(button->toolTip().contains(QStringLiteral("Ctrl+O")) ||
                button->toolTip().contains(QStringLiteral("Strg+O")));
}

TEST_F(Binder, AChangedLanguageRewritesRecordsAndDecoration)
{
    fill_rows(0);
    translate_form(Form1.form);
    open_main();
    EXPECT_EQ(action_of(Form1.datei)->text(), QStringLiteral("&Datei"));
    load_texts(0);
    translate_form(Form1.form);
    binder_flush();
    EXPECT_EQ(action_of(Form1.datei)->text(), QStringLiteral("&File"));
    EXPECT_EQ(widget<QToolButton>(Form1.Edit_w[0])->text(), QStringLiteral("&New waypoint"));
    EXPECT_EQ(widget_of(Form1.Waypl2)->accessibleName(), QStringLiteral("Waypoint list"));
    bool found = false;
    for (const QLabel* l : top().findChildren<QLabel*>())
        found = found || l->text() == QStringLiteral("No waypoints yet");
    EXPECT_TRUE(found);
}

TEST_F(Binder, TheCloseBoxAsksTheRecord)
{
    bool may = false;
    int asked = 0;
    Form1.form.query_close = [&] {
        ++asked;
        return may;
    };
    open_main();
    EXPECT_FALSE(top().close());
    EXPECT_TRUE(Form1.form.shown);
    EXPECT_TRUE(top().isVisible());
    may = true;
    top().close();
    EXPECT_EQ(asked, 2);
    EXPECT_FALSE(Form1.form.shown);
    EXPECT_FALSE(top().isVisible());
}

TEST_F(Binder, EscapeClosesADialogThroughItsRecordButNotTheMainWindow)
{
    open_main();
    QTest::keyClick(&top(), Qt::Key_Escape);
    EXPECT_TRUE(Form1.form.shown);
    bool may = false;
    sellang.form.query_close = [&] { return may; };
    sellang.form.load = nullptr;
    sellang.form.modal = false;
    open_window(sellang.form);
    QWidget* dialog = widget_of(sellang.form);
    QTest::keyClick(dialog, Qt::Key_Escape);
    EXPECT_TRUE(dialog->isVisible());
    may = true;
    QTest::keyClick(dialog, Qt::Key_Escape);
    EXPECT_FALSE(sellang.form.shown);
    EXPECT_FALSE(dialog->isVisible());
    sellang.form.query_close = nullptr;
}

TEST_F(Binder, AModalWindowWaitsUntilItsRecordIsClosed)
{
    open_main();
    sellang.form.load = nullptr;
    sellang.form.query_close = nullptr;
    QTimer::singleShot(20, [] {
        auto* ok = qobject_cast<QPushButton*>(widget_of(sellang.OKButton));
        ASSERT_NE(ok, nullptr);
        EXPECT_TRUE(ok->isDefault());
        const auto click = sellang.OKButton.click;
        sellang.OKButton.click = [] { close_window(sellang.form); };
        QTest::mouseClick(ok, Qt::LeftButton);
        sellang.OKButton.click = click;
    });
    run_window(sellang.form);
    EXPECT_FALSE(widget_of(sellang.form)->isVisible());
}

TEST_F(Binder, SizeAndColumnWidthsComeBackIntoTheRecords)
{
    fill_rows(3);
    open_main();
    top().resize(1200, 650);
    QCoreApplication::processEvents();
    EXPECT_EQ(Form1.form.width, 1200);
    EXPECT_EQ(Form1.form.height, 650);
    Form1.form.width = 1100;
    binder_flush();
    EXPECT_EQ(top().width(), 1100);
}

TEST_F(Binder, TheDefaultAndSmallestSizeOfTheMainWindow)
{
    open_main();
    EXPECT_EQ(top().size(), QSize(1120, 720).boundedTo(top().size()));
    EXPECT_EQ(top().minimumSize(), QSize(1000, 480));
    EXPECT_LE(top().minimumSizeHint().width(), 1000);
}

TEST_F(Binder, TheTitleBearsTheModifiedMark)
{
    open_main();
    EXPECT_FALSE(top().isWindowModified());
    Form1.form.modified = true;
    binder_flush();
    EXPECT_TRUE(top().isWindowModified());
    EXPECT_TRUE(top().windowTitle().contains(QStringLiteral("[*]")));
}

TEST_F(Binder, AFileDroppedAnywhereReachesTheList)
{
    std::vector<std::string> got;
    Form1.Waypl2.files_dropped = [&](const std::vector<std::string>& paths) { got = paths; };
    open_main();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QStringLiteral("/a/süd.wp"))});
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&top(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&top(), &drop);
    EXPECT_TRUE(got.empty()); // the other program is let go first
    QCoreApplication::processEvents();
    ASSERT_EQ(got.size(), 1U);
    EXPECT_EQ(got[0], "/a/süd.wp"); // a path keeps the bytes of the operating system
}

TEST_F(Binder, AFieldThatIsAskedForGetsTheFocusWithItsTextSelected)
{
    Form1.wayp_titel.text = "abc";
    open_main();
    EXPECT_TRUE(widget_of(Form1.Waypl2)->hasFocus() ||
                top().focusWidget() == widget_of(Form1.Waypl2));
    Form1.form.focus = &Form1.wayp_titel;
    binder_flush();
    EXPECT_EQ(top().focusWidget(), widget_of(Form1.wayp_titel));
    EXPECT_EQ(widget<QLineEdit>(Form1.wayp_titel)->selectedText(), QStringLiteral("abc"));
    EXPECT_EQ(Form1.form.focus, nullptr);
}

TEST_F(Binder, TabGoesThroughTheWindowInReadingOrder)
{
    open_main();
    auto* field = widget_of(Form1.wayp_titel);
    field->setFocus();
    QTest::keyClick(field, Qt::Key_Tab);
    EXPECT_EQ(top().focusWidget(), widget_of(Form1.zeich_akt));
    QTest::keyClick(top().focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(top().focusWidget(), widget_of(Form1.Routen_akt));
    QTest::keyClick(top().focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(top().focusWidget(), widget_of(Form1.Edit_w[0]));
}

TEST_F(Binder, AZoneThatAppearsMovesNothing)
{
    Form1.posform.items = {"UTM"};
    open_main();
    const QRect before = widget_of(Form1.posform)->geometry();
    EXPECT_FALSE(widget_of(Form1.zone)->isVisible());
    Form1.zone.visible = true;
    binder_flush();
    QCoreApplication::processEvents();
    EXPECT_TRUE(widget_of(Form1.zone)->isVisible());
    EXPECT_EQ(widget_of(Form1.posform)->geometry(), before);
}

TEST_F(Binder, AGroundOfARecordTurnsTheTextToWhatContrastsMore)
{
    open_main();
    const auto viewport = [] {
        return dynamic_cast<QAbstractScrollArea*>(widget_of(Form1.Waypl2))->viewport();
    };
    const QColor own = viewport()->palette().color(QPalette::Base);
    Form1.Waypl2.back = 16776960; // the blue ground of lists
    binder_flush();
    EXPECT_EQ(viewport()->palette().color(QPalette::Base), QColor(0, 255, 255));
    EXPECT_EQ(viewport()->palette().color(QPalette::Text), QColor(0x1d, 0x21, 0x26));
    Form1.Waypl2.back = 0xFFFFFF; // white is the style's own
    binder_flush();
    EXPECT_EQ(viewport()->palette().color(QPalette::Base), own);
}

TEST_F(Binder, ATimerTicksWhileItsRecordIsEnabled)
{
    int ticks = 0;
    Form1.wayp_big_timer.tick = [&] {
        if (++ticks == 2)
            Form1.wayp_big_timer.enabled = false;
    };
    Form1.wayp_big_timer.value = 5;
    Form1.wayp_big_timer.enabled = true;
    open_main();
    QTest::qWait(120);
    EXPECT_EQ(ticks, 2);
}

TEST_F(Binder, AnExceptionOfAHandlerIsReportedAndStaysOutOfTheToolkit)
{
    std::string told;
    platform.message = [&](const message_box& m) {
        told = m.text;
        return answer::ok;
    };
    Form1.Edit_w[0].click = [] { throw std::runtime_error("kaputt"); };
    open_main();
    QTest::mouseClick(widget<QToolButton>(Form1.Edit_w[0]), Qt::LeftButton);
    EXPECT_EQ(told, "kaputt in user_action");
}

TEST_F(Binder, SixLeadsToTheList)
{
    fill_rows(2);
    open_main();
    widget_of(Form1.wayp_titel)->setFocus();
    QTest::keyClick(&top(), Qt::Key_F6);
    EXPECT_EQ(top().focusWidget(), widget_of(Form1.Waypl2));
}

} // namespace
} // namespace velkoro::test
