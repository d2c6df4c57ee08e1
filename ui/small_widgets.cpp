#include "ui/small_widgets.h"

#include "ui/look.h"

#include <QAccessible>
#include <QDir>
#include <QPainter>

namespace velkoro {
namespace {

constexpr int ring_side = 64;
constexpr double ring_width = 8;
constexpr int turn_step = 8;    // degrees
constexpr int turn_period = 40; // ms
constexpr int turn_length = 80; // degrees

} // namespace

progress_ring::progress_ring(QWidget* parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    QObject::connect(&turning_, &QTimer::timeout, this, [this] {
        turn_ = (turn_ + turn_step) % 360;
        update();
    });
}

void progress_ring::set_progress(int value, int max)
{
    per_mille_ =
        value < 0 || max <= 0 ? -1 : qBound(0, static_cast<int>(1000LL * value / max), 1000);
    if (per_mille_ < 0 && !turning_.isActive())
        turning_.start(turn_period);
    else if (per_mille_ >= 0)
        turning_.stop();
    setAccessibleDescription(
        per_mille_ < 0 ? QString() : QString::number(per_mille_ / 10) + QStringLiteral(" %"));
    update();
}

QSize progress_ring::sizeHint() const
{
    return {ring_side, ring_side};
}

void progress_ring::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const double side = qMin(width(), height()) - ring_width;
    const QRectF r((width() - side) / 2, (height() - side) / 2, side, side);
    p.setPen(
        QPen(mixed(palette().color(QPalette::Window), palette().color(QPalette::WindowText), 0.12),
             ring_width, Qt::SolidLine, Qt::FlatCap));
    p.drawEllipse(r);
    p.setPen(QPen(palette().color(QPalette::Active, QPalette::Highlight), ring_width, Qt::SolidLine,
                  Qt::FlatCap));
    // Angles count counter-clockwise in sixteenths of a degree, 0 at three o'clock.
    if (per_mille_ < 0) {
        p.drawArc(r, (90 - turn_) * 16, -turn_length * 16);
        return;
    }
    p.drawArc(r, 90 * 16, -per_mille_ * 360 * 16 / 1000);
    p.setPen(palette().color(QPalette::WindowText));
    p.setFont(strong_font());
    p.drawText(rect(), Qt::AlignCenter, QString::number(per_mille_ / 10) + QStringLiteral(" %"));
}

elided_label::elided_label(QWidget* parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
}

void elided_label::set_full_text(const QString& text)
{
    full_ = shown_ = text;
    const QString home = QDir::homePath() + QLatin1Char('/');
    if (home.size() > 1 && shown_.startsWith(home))
        shown_.replace(0, home.size() - 1, QLatin1Char('~'));
    setToolTip(full_);
    setAccessibleName(full_);
    updateGeometry();
    elide();
}

QSize elided_label::sizeHint() const
{
    return {fontMetrics().horizontalAdvance(shown_) + 2, QLabel::sizeHint().height()};
}

QSize elided_label::minimumSizeHint() const
{
    return {qMin(60, sizeHint().width()), QLabel::minimumSizeHint().height()};
}

void elided_label::resizeEvent(QResizeEvent* event)
{
    QLabel::resizeEvent(event);
    elide();
}

void elided_label::elide()
{
    setText(fontMetrics().elidedText(shown_, Qt::ElideMiddle, contentsRect().width()));
}

void thin_line::paintEvent(QPaintEvent*)
{
    QPainter(this).fillRect(rect(), frame_colour(palette()));
}

} // namespace velkoro
