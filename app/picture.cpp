#include "app/picture.h"

#include "core/form1.h"
#include "ui/binder.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QPixmap>
#include <QWidget>
#include <QWindow>

namespace velkoro {
namespace {

constexpr int settle_ms = 700; // the mark count comes half a second after the last change

} // namespace

bool save_main_picture(const std::string& path)
{
    QWidget* top = widget_of(Form1.form);
    if (!top)
        return false;
    QElapsedTimer settling;
    settling.start();
    while (settling.elapsed() < settle_ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    binder_flush();
    QCoreApplication::processEvents(); // labels that have grown get their room
    return top->grab().save(QFile::decodeName(QByteArray::fromStdString(path)), "PNG");
}

void paint_main_window()
{
    QWidget* top = widget_of(Form1.form);
    const QWindow* on_screen = top ? top->windowHandle() : nullptr;
    if (!on_screen)
        return;
    while (!on_screen->isExposed())
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    top->repaint();
}

} // namespace velkoro
