#include "tests/ui/program_fixture.h"

#include "core/job.h"
#include "core/reset.h"
#include "core/shell.h"
#include "interchange/selfil.h"
#include "ui/qt_platform.h"
#include "ui/qt_text.h"
#include "waypoints/list.h"

#include <QAction>
#include <QApplication>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QTest>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace velkoro::test {
namespace {

namespace fs = std::filesystem;

void copy_into(const fs::path& folder, const char* name)
{
    fs::create_directories((folder / name).parent_path());
    fs::copy_file(fs::path(VELKORO_SOURCE_DIR "/data") / name, folder / name);
}

} // namespace

stored_data stored_now()
{
    stored_data d;
    d.title = Form1.wayp_titel.text;
    d.waypoints.assign(store.wp.begin(), store.wp.begin() + store.wp_top + 1);
    for (wayp_rec& w : d.waypoints) { // scratch of drawing is not data
        const wayp_rec plain;
        w.dist = plain.dist;
        w.bear = plain.bear;
        w.mapx = plain.mapx;
        w.mapy = plain.mapy;
        w.drawn = plain.drawn;
    }
    std::ranges::sort(d.waypoints, {}, &wayp_rec::nam);
    d.routes.assign(store.rou.begin(), store.rou.begin() + store.rou_top + 1);
    return d;
}

void ProgramTest::SetUp()
{
    saved_hooks_ = hooks;
    UiTest::SetUp();
    qt_platform_remove();
    home.emplace();
    link = file("link");
    for (const char* name : {"Datum.ins", "SYMBOL_2.INS", "SYMBOL_3.INS", "Garmin.ini",
                             "glyphs.csv", "Waypoints/sample.wp", "Track/sample.t"})
        copy_into(home->path, name);
    home->put("velkoro.ini", "[Main]\r\nLang3=0\r\nTheme=light\r\n");
    QObject::connect(&user_, &QTimer::timeout, [this] { answer_boxes(); });
    user_.start(5);
}

void ProgramTest::TearDown()
{
    user_.stop();
    EXPECT_TRUE(answers.empty()) << answers.size() << " answers were never asked for";
    UiTest::TearDown();
    shell = {};
    job.jobs.clear();
    wayp_list = {};
    reset_all();
    hooks = saved_hooks_;
    reset_window(Form1.form);
    home.reset();
}

bool ProgramTest::start(const std::string& command_line)
{
    qt_platform_install(link);
    platform.screen = [] { return std::vector<double>{0, 0, 1600, 1000}; };
    platform.open_files = [this](const file_request& r) {
        requests.push_back(r);
        if (to_open.empty())
            return std::vector<std::string>{};
        auto paths = to_open.front();
        to_open.pop_front();
        return paths;
    };
    const auto next = [](std::deque<std::optional<std::string>>& script) {
        std::optional<std::string> one;
        if (!script.empty()) {
            one = script.front();
            script.pop_front();
        }
        return one;
    };
    platform.save_file = [this, next](const file_request& r) {
        requests.push_back(r);
        return next(to_save);
    };
    platform.input = [this, next](const input_box&) { return next(inputs); };
    folders.program = home->path.string() + "/";
    compose();
    const bool stays = shell_start(command_line);
    binder_flush();
    QCoreApplication::processEvents();
    return stays;
}

void ProgramTest::start_again(const std::string& command_line)
{
    qt_platform_remove();
    reset_all();
    shell = {};
    wayp_list = {};
    hooks = saved_hooks_;
    reset_window(Form1.form);
    Form1.m_lang_sel.clear();
    Form1.prof.clear();
    ASSERT_TRUE(start(command_line));
}

bool ProgramTest::run_main_loop(const std::function<void()>& act)
{
    QTimer::singleShot(0, act);
    QTimer limit;
    limit.setSingleShot(true);
    QObject::connect(&limit, &QTimer::timeout, [] { QCoreApplication::exit(1); });
    limit.start(5000);
    return QApplication::exec() == 0 && quit_asked();
}

bool ProgramTest::wait_for(const std::function<bool()>& condition, int ms)
{
    QElapsedTimer t;
    t.start();
    while (!condition() && t.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    return condition();
}

void ProgramTest::to_front()
{
    top().activateWindow();
    QCoreApplication::processEvents();
}

void ProgramTest::choose(const control& entry)
{
    QAction* a = action_of(entry);
    ASSERT_NE(a, nullptr) << entry.name;
    a->trigger();
}

void ProgramTest::click_row(int row, Qt::KeyboardModifiers keys)
{
    list().scrollTo(list().model()->index(row, 0));
    QTest::mouseClick(list().viewport(), Qt::LeftButton, keys,
                      list().visualRect(list().model()->index(row, 0)).center());
}

void ProgramTest::drop(const std::vector<std::string>& paths)
{
    QMimeData data;
    QList<QUrl> urls;
    for (const std::string& p : paths)
        urls.append(QUrl::fromLocalFile(QString::fromStdString(p)));
    data.setUrls(urls);
    QDragEnterEvent enter({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&top(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent dropped({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&top(), &dropped);
    QCoreApplication::processEvents();
}

std::vector<int> ProgramTest::marks()
{
    std::vector<int> m;
    for (int i = 0; i < static_cast<int>(rows().rows.size()); ++i)
        if (rows().rows[static_cast<std::size_t>(i)].marked)
            m.push_back(i);
    return m;
}

int ProgramTest::row_named(const std::string& key)
{
    for (int i = 0; i < static_cast<int>(rows().rows.size()); ++i)
        if (wp_key(wp_index(i)) == key)
            return i;
    return -1;
}

/// Browses, and takes what was chosen there.
void ProgramTest::use_file_window()
{
    selfil.filnam.text.clear();
    binder_flush();
    QTest::mouseClick(widget_of(selfil.durch), Qt::LeftButton);
    browsing_ = false;
    QTest::mouseClick(widget_of(selfil.filnam.text.empty() ? selfil.Abbr : selfil.OK),
                      Qt::LeftButton);
}

/// The user's eyes and hand: reads a box or the result window and presses a button.
void ProgramTest::answer_boxes()
{
    QWidget* modal = QApplication::activeModalWidget();
    if (!modal || !modal->isVisible())
        return;
    if (modal == widget_of(op2.form)) {
        texts_.push_back(op2.anz.caption);
        QTest::mouseClick(widget_of(op2.OK), Qt::LeftButton);
        return;
    }
    if (modal == widget_of(selfil.form)) {
        // Outside this timer's own call: what the file leads to is answered here too.
        if (!std::exchange(browsing_, true))
            QTimer::singleShot(0, modal, [this] { use_file_window(); });
        return;
    }
    auto* box = qobject_cast<QMessageBox*>(modal);
    if (!box)
        return;
    texts_.push_back(from_q(box->text()));
    if (answers.empty()) {
        QTest::keyClick(box, Qt::Key_Escape);
        return;
    }
    const answer wanted = answers.front();
    for (QAbstractButton* b : box->buttons())
        if (b->property("answer").toInt() == static_cast<int>(wanted)) {
            answers.pop_front();
            QTest::mouseClick(b, Qt::LeftButton);
            return;
        }
    ADD_FAILURE() << "no such answer in: " << texts_.back();
    answers.clear();
    QTest::keyClick(box, Qt::Key_Escape);
}

} // namespace velkoro::test
