#include "ui/icon_paint.h"

#include <QBuffer>
#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QImageReader>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>

// The macro declares a function, which must not stand in a namespace.
static void register_resources()
{
    Q_INIT_RESOURCE(resources);
}

namespace velkoro {
namespace {

QColor state_colour(QIcon::Mode mode)
{
    const QPalette p = QGuiApplication::palette();
    switch (mode) {
    case QIcon::Disabled: return p.color(QPalette::Disabled, QPalette::ButtonText);
    case QIcon::Selected: return p.color(QPalette::Active, QPalette::HighlightedText);
    default: return p.color(QPalette::Active, QPalette::ButtonText);
    }
}

class svg_engine : public QIconEngine {
public:
    explicit svg_engine(QString name) : name_(std::move(name)) {}
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        const int side = qMin(rect.width(), rect.height());
        const QPixmap picture =
            icon_pixmap(name_, state_colour(mode), side, painter->device()->devicePixelRatioF());
        painter->drawPixmap(rect.x() + (rect.width() - side) / 2,
                            rect.y() + (rect.height() - side) / 2, picture);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override
    {
        return icon_pixmap(name_, state_colour(mode), qMin(size.width(), size.height()), 1.0);
    }
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State, qreal scale) override
    {
        const int side = qMin(size.width(), size.height());
        const int logical = qMax(1, qRound(side / scale));
        return icon_pixmap(name_, state_colour(mode), logical, scale);
    }
    QIconEngine* clone() const override { return new svg_engine(name_); }

private:
    QString name_;
};

} // namespace

void load_resources()
{
    register_resources();
}

QIcon make_icon(const QString& name)
{
    return name.isEmpty() ? QIcon() : QIcon(new svg_engine(name));
}

QPixmap icon_pixmap(const QString& name, const QColor& colour, int size, double ratio)
{
    const QString key =
        QStringLiteral("velkoro_%1_%2_%3_%4")
            .arg(name, colour.name(), QString::number(size), QString::number(ratio));
    QPixmap picture;
    if (QPixmapCache::find(key, &picture))
        return picture;
    QFile file(QStringLiteral(":/icons/") + name + QStringLiteral(".svg"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QByteArray drawing = file.readAll().replace("currentColor", colour.name().toLatin1());
    QBuffer buffer(&drawing);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, "svg");
    const int device = qRound(size * ratio);
    reader.setScaledSize({device, device});
    const QImage image = reader.read();
    if (image.isNull())
        return {};
    picture = QPixmap::fromImage(image);
    picture.setDevicePixelRatio(ratio);
    QPixmapCache::insert(key, picture);
    return picture;
}

} // namespace velkoro
