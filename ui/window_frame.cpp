#include "ui/window_frame.h"

#include "core/form1.h"
#include "ui/qt_text.h"
#include "ui/user_action.h"

#include <QApplication>
#include <QDialog>
#include <QDropEvent>
#include <QFile>
#include <QKeyEvent>
#include <QMainWindow>
#include <QMimeData>
#include <QScreen>
#include <QTimer>
#include <QUrl>
#include <QWindow>

#include <algorithm>

namespace velkoro {
namespace {

/// Drops the user's input while a job's window has not shown itself: the job is modal already.
class input_lock : public QObject {
public:
    bool eventFilter(QObject*, QEvent* event) override
    {
        switch (event->type()) {
        case QEvent::Close:
            if (!event->spontaneous())
                return false;
            event->ignore();
            return true;
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::Wheel:
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::Shortcut:
        case QEvent::ShortcutOverride:
        case QEvent::ContextMenu:
        case QEvent::Drop: return true;
        default: return false;
        }
    }
};

struct frame_state {
    int waiting = 0; ///< windows that wait for their delay
    std::unique_ptr<input_lock> lock{};
};
frame_state frames;

void hold_input(int more)
{
    frames.waiting += more;
    if (frames.waiting > 0 && !frames.lock) {
        frames.lock = std::make_unique<input_lock>();
        qApp->installEventFilter(frames.lock.get());
        QApplication::setOverrideCursor(Qt::WaitCursor);
    } else if (frames.waiting == 0 && frames.lock) {
        qApp->removeEventFilter(frames.lock.get());
        frames.lock.reset();
        QApplication::restoreOverrideCursor();
    }
}

QStringList local_files(const QMimeData& data)
{
    QStringList files;
    for (const QUrl& url : data.urls())
        if (url.isLocalFile())
            files.append(url.toLocalFile());
    return files;
}

control* drop_target(const window& w)
{
    const auto hit = std::ranges::find_if(
        w.controls, [](const control* c) { return static_cast<bool>(c->files_dropped); });
    return hit == w.controls.end() ? nullptr : *hit;
}

void drop_files(bound_window& w, const QStringList& files)
{
    const control* target = drop_target(*w.record);
    if (!target || files.isEmpty())
        return;
    std::vector<std::string> paths;
    for (const QString& f : files)
        paths.push_back(QFile::encodeName(f).toStdString());
    // The program that the file came from waits until the drop is done, and reading may ask
    // questions: so it is done first.
    QTimer::singleShot(0, w.top, [handler = target->files_dropped, paths] {
        user_action([&] { handler(paths); });
    });
}

void take_geometry(bound_window& w)
{
    window& r = *w.record;
    r.maximised = w.top->isMaximized();
    if (r.maximised || w.top->isMinimized() || !w.top->isVisible())
        return; // the size to come back to stays
    w.placed = QRect(w.top->pos(), w.top->size());
    w.was_placed = true;
    r.left = w.placed.left();
    r.top = w.placed.top();
    r.width = w.placed.width();
    r.height = w.placed.height();
}

class frame_watcher : public QObject {
public:
    explicit frame_watcher(bound_window& w) : QObject(w.top), w_(&w) {}
    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (object != w_->top)
            return false;
        switch (event->type()) {
        case QEvent::Close:
            if (!w_->record->shown)
                return false; // closed by its record
            event->ignore();
            user_action([r = w_->record] { close_window(*r); });
            return true;
        case QEvent::KeyPress:
            if (static_cast<QKeyEvent*>(event)->key() != Qt::Key_Escape ||
                !qobject_cast<QDialog*>(w_->top))
                return false;
            // A dialog would hide itself and leave its record open.
            user_action([r = w_->record] { close_window(*r); });
            return true;
        case QEvent::Move:
        case QEvent::Resize:
        case QEvent::WindowStateChange: take_geometry(*w_); return false;
        case QEvent::DragEnter:
        case QEvent::DragMove: {
            auto* drag = static_cast<QDropEvent*>(event);
            if (!drop_target(*w_->record) || local_files(*drag->mimeData()).isEmpty())
                return false;
            drag->setDropAction(Qt::CopyAction);
            drag->accept();
            return true;
        }
        case QEvent::Drop: {
            auto* drop = static_cast<QDropEvent*>(event);
            drop->setDropAction(Qt::CopyAction);
            drop->accept();
            drop_files(*w_, local_files(*drop->mimeData()));
            return true;
        }
        default: return false;
        }
    }

private:
    bound_window* w_;
};

QRect cut_to_screen(QRect r)
{
    const QScreen* screen = QApplication::screenAt(r.center());
    if (!screen)
        screen = QApplication::primaryScreen();
    if (!screen)
        return r;
    const QRect area = screen->availableGeometry();
    r.setSize(r.size().boundedTo(area.size()));
    r.moveLeft(qBound(area.left(), r.left(), area.right() - r.width() + 1));
    r.moveTop(qBound(area.top(), r.top(), area.bottom() - r.height() + 1));
    return r;
}

/// What the record asks for, whole pixels; a part that was never set comes from the widget.
QRect wanted_geometry(const bound_window& w)
{
    const window& r = *w.record;
    const QSize size(r.width > 0 ? qRound(r.width) : w.top->width(),
                     r.height > 0 ? qRound(r.height) : w.top->height());
    const QPoint at(r.left >= 0 ? qRound(r.left) : w.top->x(),
                    r.top >= 0 ? qRound(r.top) : w.top->y());
    return {at, size};
}

bool has_place(const window& r)
{
    return r.left >= 0 && r.top >= 0;
}

/// The window that a new one belongs to: the one in front, else the main window.
QWidget* window_in_front(const QWidget* except)
{
    if (QWidget* modal = QApplication::activeModalWidget(); modal && modal != except)
        return modal;
    if (QWidget* active = QApplication::activeWindow(); active && active != except)
        return active;
    QWidget* main = widget_of(Form1.form);
    return main && main->isVisible() && main != except ? main : nullptr;
}

/// The window behind takes over at once: one that is shown again right after it was hidden, the
/// next question of a batch, would otherwise be taken for the active one and never get the focus.
void hide_frame(QWidget& top)
{
    const bool was_active = top.isActiveWindow();
    top.hide();
    if (QWidget* behind = was_active ? window_in_front(&top) : nullptr)
        behind->activateWindow();
}

void really_show(bound_window& w)
{
    const window& r = *w.record;
    QWidget& top = *w.top;
    QWidget* const front = window_in_front(&top);
    top.setWindowModality(r.modal ? Qt::ApplicationModal : Qt::NonModal);
    if (qobject_cast<QDialog*>(&top)) {
        top.ensurePolished();
        top.adjustSize();
    }
    QRect place = wanted_geometry(w);
    if (!has_place(r) && front)
        place.moveCenter(front->geometry().center());
    place = cut_to_screen(place);
    top.resize(place.size());
    if (has_place(r) || front)
        top.move(place.topLeft());
    if (front) {
        top.winId(); // makes the native window, which can then follow the one in front
        if (top.windowHandle() && front->windowHandle())
            top.windowHandle()->setTransientParent(front->windowHandle());
    }
    if (qobject_cast<QMainWindow*>(&top) && !r.focus)
        // Work begins in the list or the map, not in the field that happens to be the first.
        for (const auto& b : w.controls)
            if (b->widget && (b->record->kind == kind::list || b->record->kind == kind::picture)) {
                b->widget->setFocus();
                break;
            }
    if (r.maximised)
        top.showMaximized();
    else
        top.show();
    take_geometry(w);
}

/// True when the bar of the window says that the job will be over before it could be read.
bool nearly_done(const bound_window& w)
{
    return std::ranges::any_of(w.controls, [](const auto& b) {
        return b->record->kind == kind::bar && b->record->value > b->record->max / 2;
    });
}

/// The toolkit puts its mark of unsaved data where "[*]" stands, and reads a doubled one as a name.
QString title_of(const window& r)
{
    const QString mark = QStringLiteral("[*]");
    const QString caption = plain_q(r.caption);
    if (r.text.empty())
        return caption + mark;
    QString name = to_q(r.text);
    name.replace(mark, mark + mark);
    return name + mark + QStringLiteral(" - ") + caption;
}

} // namespace

void watch_frame(bound_window& w)
{
    w.top->setAcceptDrops(drop_target(*w.record) != nullptr);
    w.top->installEventFilter(new frame_watcher(w));
    if (w.record->no_close)
        w.top->setWindowFlag(Qt::WindowCloseButtonHint, false);
}

void push_frame(bound_window& w)
{
    const window& r = *w.record;
    QWidget& top = *w.top;
    if (const QString title = title_of(r); top.windowTitle() != title)
        top.setWindowTitle(title);
    if (w.fresh || r.enabled != w.shown.enabled)
        top.setEnabled(r.enabled);
    top.setWindowModified(r.modified);
    w.shown = r;
    w.fresh = false;
    if (w.waiting && !r.shown)
        drop_delay(w);
    if (w.waiting && w.waits_since.elapsed() >= w.delay_ms &&
        (!nearly_done(w) || w.waits_since.elapsed() >= 2LL * w.delay_ms))
        end_delay(w);
    if (!r.shown && top.isVisible())
        hide_frame(top);
    if (top.isVisible() && w.was_placed && !r.maximised) {
        const QRect wanted = wanted_geometry(w);
        if (wanted.size() != w.placed.size())
            top.resize(wanted.size());
        if (has_place(r) && wanted.topLeft() != w.placed.topLeft())
            top.move(wanted.topLeft());
    }
}

void show_frame(bound_window& w)
{
    QWidget& top = *w.top;
    if (!w.record->shown) {
        drop_delay(w);
        if (top.isVisible())
            hide_frame(top);
        return;
    }
    if (top.isVisible()) {
        if (top.isMinimized())
            top.setWindowState(top.windowState() & ~Qt::WindowMinimized);
        top.raise();
        top.activateWindow();
        return;
    }
    if (w.waiting)
        return;
    if (w.delay_ms > 0) {
        w.waiting = true;
        w.waits_since.start();
        hold_input(+1);
        return;
    }
    really_show(w);
}

void end_delay(bound_window& w)
{
    drop_delay(w);
    really_show(w);
}

void drop_delay(bound_window& w)
{
    if (!w.waiting)
        return;
    w.waiting = false;
    hold_input(-1);
}

} // namespace velkoro
