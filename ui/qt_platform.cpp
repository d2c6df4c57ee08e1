#include "ui/qt_platform.h"

#include "core/files.h"
#include "core/platform.h"
#include "core/settings.h"
#include "core/texts.h"
#include "core/window.h"
#include "ui/binder.h"
#include "ui/help_window.h"
#include "ui/icon_paint.h"
#include "ui/instance_link.h"
#include "ui/look.h"
#include "ui/qt_text.h"
#include "ui/toolkit_words.h"
#include "ui/user_action.h"

#include <QApplication>
#include <QClipboard>
#include <QCursor>
#include <QEventLoop>
#include <QFile>
#include <QFileDialog>
#include <QInputDialog>
#include <QLocale>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QSocketNotifier>
#include <QTimer>

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace velkoro {
namespace {

constexpr int text_cancel = 7301, text_ok = 7302, text_yes = 7303, text_no = 7304;
constexpr int box_icon_size = 36;

struct notifier_gone {
    /// A procedure may end its own watch: the notifier is in its slot then.
    void operator()(QSocketNotifier* n) const
    {
        n->setEnabled(false);
        n->deleteLater();
    }
};

struct desktop_state {
    bool quit = false;
    bool theme_read = false;
    std::string link{};
    std::map<int, std::unique_ptr<QSocketNotifier, notifier_gone>> watched{};
};
desktop_state desktop;

QString path_q(const std::string& path)
{
    return QFile::decodeName(QByteArray::fromStdString(path));
}

std::string path_bytes(const QString& path)
{
    return QFile::encodeName(path).toStdString();
}

QWidget* front_window()
{
    QWidget* modal = QApplication::activeModalWidget();
    return modal ? modal : QApplication::activeWindow();
}

/// Wait cursors stand back while the user is asked.
class plain_cursor {
public:
    plain_cursor() : shown_(QApplication::overrideCursor() != nullptr)
    {
        if (shown_)
            QApplication::setOverrideCursor(Qt::ArrowCursor);
    }
    ~plain_cursor()
    {
        if (shown_)
            QApplication::restoreOverrideCursor();
    }
    plain_cursor(const plain_cursor&) = delete;
    plain_cursor& operator=(const plain_cursor&) = delete;

private:
    bool shown_;
};

/// A job's window that still waits for its delay would lie in front of the question, and hold its
/// input back.
void before_question(const window* asking = nullptr)
{
    for (window* w : all_windows())
        if (w != asking)
            binder_show_now(*w);
    binder_flush();
}

struct box_button {
    answer gives;
    int text;
    QMessageBox::ButtonRole role;
};

std::vector<box_button> box_buttons(buttons b)
{
    const box_button ok{answer::ok, text_ok, QMessageBox::AcceptRole};
    const box_button cancel{answer::cancel, text_cancel, QMessageBox::RejectRole};
    const box_button yes{answer::yes, text_yes, QMessageBox::YesRole};
    const box_button no{answer::no, text_no, QMessageBox::NoRole};
    switch (b) {
    case buttons::ok: return {ok};
    case buttons::ok_cancel: return {ok, cancel};
    case buttons::yes_no: return {yes, no};
    case buttons::yes_no_cancel: return {yes, no, cancel};
    }
    return {ok};
}

/// What closing the box without a button means: the most careful answer that it has.
answer closing_answer(buttons b)
{
    return b == buttons::ok ? answer::ok : b == buttons::yes_no ? answer::no : answer::cancel;
}

answer ask(const message_box& m)
{
    before_question();
    const plain_cursor cursor;
    const std::unique_ptr<QMessageBox> box(make_message_box(m));
    box->exec();
    const std::vector<box_button> list = box_buttons(m.buttons);
    for (const box_button& b : list)
        if (box->clickedButton() &&
            box->clickedButton()->property("answer").toInt() == static_cast<int>(b.gives))
            return b.gives;
    return closing_answer(m.buttons);
}

std::optional<std::string> ask_line(const input_box& b)
{
    before_question();
    const plain_cursor cursor;
    QInputDialog dialog(front_window());
    dialog.setWindowTitle(to_q(b.title));
    dialog.setLabelText(to_q(b.prompt));
    dialog.setTextValue(to_q(b.text));
    dialog.setOkButtonText(plain_q(text(text_ok)));
    dialog.setCancelButtonText(plain_q(text(text_cancel)));
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return from_q(dialog.textValue());
}

QString filter_line(const file_request& r)
{
    QStringList parts;
    for (const auto& [caption, patterns] : r.filters)
        parts.append(to_q(caption) + QStringLiteral(" (") + to_q(patterns) + QLatin1Char(')'));
    return parts.join(QStringLiteral(";;"));
}

std::vector<std::string> ask_files(const file_request& r)
{
    before_question();
    const plain_cursor cursor;
    const QString start = path_q(real_path(r.folder));
    QStringList chosen;
    if (r.many)
        chosen =
            QFileDialog::getOpenFileNames(front_window(), to_q(r.title), start, filter_line(r));
    else if (const QString one =
                 QFileDialog::getOpenFileName(front_window(), to_q(r.title), start, filter_line(r));
             !one.isEmpty())
        chosen.append(one);
    std::vector<std::string> paths;
    for (const QString& p : chosen)
        paths.push_back(path_bytes(p));
    return paths;
}

std::optional<std::string> ask_target(const file_request& r)
{
    before_question();
    const plain_cursor cursor;
    QString start = path_q(real_path(r.folder));
    if (!start.isEmpty() && !start.endsWith(QLatin1Char('/')))
        start += QLatin1Char('/');
    const QString chosen = QFileDialog::getSaveFileName(front_window(), to_q(r.title),
                                                        start + path_q(r.name), filter_line(r));
    if (chosen.isEmpty())
        return std::nullopt;
    return path_bytes(chosen);
}

void serve_events(int ms)
{
    binder_flush();
    if (ms <= 0) {
        QCoreApplication::processEvents();
        return;
    }
    // The wake timer ends the wait: processEvents with a time limit does not block.
    QTimer wake;
    wake.setSingleShot(true);
    wake.start(ms);
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

void watch(int fd, const std::function<void()>& ready)
{
    auto& notifier = desktop.watched[fd];
    notifier.reset(new QSocketNotifier(fd, QSocketNotifier::Read));
    QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(),
                     [ready] { user_action(ready); });
}

void wait_closed(window& w)
{
    binder_show_now(w);
    if (!widget_of(w)) {
        w.shown = false; // nobody could close what cannot be seen
        return;
    }
    const plain_cursor cursor;
    while (w.shown && !desktop.quit) {
        binder_flush();
        if (!w.shown)
            break;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    w.shown = false;
}

void show_window(window& w)
{
    if (!desktop.theme_read && w.shown) {
        // The settings are known by the time that the first window opens.
        desktop.theme_read = true;
        const std::string wish = ini_get("Main", "Theme");
        look_set_theme(wish == "dark"    ? theme::dark
                       : wish == "light" ? theme::light
                                         : theme::desktop);
    }
    if (w.shown && w.modal)
        before_question(&w);
    binder_show(w);
}

std::optional<std::vector<double>> usable_screen()
{
    const QScreen* s = QApplication::primaryScreen();
    if (!s)
        return std::nullopt;
    const QRect r = s->availableGeometry();
    return std::vector<double>{double(r.left()), double(r.top()), double(r.width()),
                               double(r.height())};
}

void pop_up(control& c)
{
    binder_flush();
    if (QMenu* menu = menu_of(c))
        menu->exec(QCursor::pos());
}

} // namespace

QMessageBox* make_message_box(const message_box& m)
{
    auto* box = new QMessageBox(front_window());
    box->setWindowTitle(to_q(m.title));
    box->setTextFormat(Qt::PlainText);
    box->setText(to_q(m.text));
    if (m.icon != icon::none) {
        const bool warns = m.icon == icon::exclamation || m.icon == icon::critical;
        const QPalette p = box->palette();
        const QColor colour = m.icon == icon::critical
                                  ? p.color(QPalette::BrightText)
                                  : p.color(warns ? QPalette::WindowText : QPalette::Highlight);
        box->setIconPixmap(icon_pixmap(warns ? QStringLiteral("warn") : QStringLiteral("info"),
                                       colour, box_icon_size, box->devicePixelRatioF()));
    }
    int at = 1;
    for (const box_button& b : box_buttons(m.buttons)) {
        QPushButton* button = box->addButton(caption_q(text(b.text)), b.role);
        button->setProperty("answer", static_cast<int>(b.gives));
        button->setAutoDefault(false);
        if (at++ == m.preset)
            box->setDefaultButton(button);
        if (b.gives == closing_answer(m.buttons))
            box->setEscapeButton(button);
    }
    return box;
}

void qt_platform_install(const std::string& link)
{
    desktop = desktop_state{};
    desktop.link = link.empty() ? link_name() : link;
    translate_toolkit();
    platform.message = ask;
    platform.input = ask_line;
    platform.show = show_window;
    platform.wait_closed = wait_closed;
    platform.pump = serve_events;
    platform.clipboard = [] { return from_q(QApplication::clipboard()->text()); };
    platform.set_clipboard = [](const std::string& s) {
        QApplication::clipboard()->setText(to_q(s));
    };
    platform.beep = [] { QApplication::beep(); };
    platform.busy = [](bool on) {
        if (on)
            QApplication::setOverrideCursor(Qt::WaitCursor);
        else
            QApplication::restoreOverrideCursor();
    };
    platform.popup = pop_up;
    platform.open_files = ask_files;
    platform.save_file = ask_target;
    platform.instance_send = [](const std::string& s) { return link_send(desktop.link, s); };
    platform.instance_running = [] { return link_alive(desktop.link); };
    platform.instance_listen = [](const std::function<void(const std::string&)>& arrived) {
        link_listen(desktop.link,
                    [arrived](const std::string& s) { user_action([&] { arrived(s); }); });
    };
    platform.help = help_show;
    help_listen_for_key();
    platform.screen = usable_screen;
    platform.locale_language = [] {
        return QLocale::system().name().left(2).toLower().toStdString();
    };
    platform.watch = watch;
    platform.unwatch = [](int fd) { desktop.watched.erase(fd); };
    platform.quit = [] {
        desktop.quit = true;
        // quit() would first close every window, and the main window ask its questions again.
        QCoreApplication::exit();
    };
}

bool quit_asked()
{
    return desktop.quit;
}

void qt_platform_remove()
{
    link_close();
    desktop.watched.clear();
    help_close(); // it may be the child of a window
    binder_clear();
    platform = {};
}

} // namespace velkoro
