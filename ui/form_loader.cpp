#include "ui/form_loader.h"

#include "core/texts.h"
#include "core/window.h"
#include "ui/icon_paint.h"
#include "ui/list_view.h"
#include "ui/look.h"
#include "ui/qt_text.h"
#include "ui/small_widgets.h"

#include <QAbstractButton>
#include <QDialog>
#include <QEvent>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QUiLoader>

namespace velkoro {
namespace {

constexpr int label_icon_size = 28;

class loader : public QUiLoader {
public:
    QWidget* createWidget(const QString& class_name, QWidget* parent, const QString& name) override
    {
        QWidget* w = nullptr;
        if (class_name == QLatin1String("QTreeView"))
            w = new list_view(parent);
        else if (class_name == QLatin1String("progress_ring"))
            w = new progress_ring(parent);
        else if (class_name == QLatin1String("elided_label"))
            w = new elided_label(parent);
        else if (class_name == QLatin1String("thin_line"))
            w = new thin_line(parent);
        if (!w)
            return QUiLoader::createWidget(class_name, parent, name);
        w->setObjectName(name);
        return w;
    }
};

/// Repaints a label's icon whenever the palette changes; buttons repaint theirs by themselves.
class label_icon : public QObject {
public:
    label_icon(QLabel& label, QString name)
        : QObject(&label), label_(&label), name_(std::move(name))
    {
        label.installEventFilter(this);
        paint();
    }
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::PaletteChange)
            paint();
        return false;
    }

private:
    void paint()
    {
        label_->setPixmap(icon_pixmap(name_, label_->palette().color(label_->foregroundRole()),
                                      label_icon_size, label_->devicePixelRatioF()));
    }
    QLabel* label_;
    QString name_;
};

/// Numbers of a property "n" or "n m"; an absent one is 0.
std::pair<int, int> numbers(const QWidget& w, const char* property)
{
    const QStringList parts =
        w.property(property).toString().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    return {parts.isEmpty() ? 0 : parts[0].toInt(), parts.size() < 2 ? 0 : parts[1].toInt()};
}

} // namespace

QWidget* load_form(const QString& window_name)
{
    load_resources();
    QFile file(QStringLiteral(":/forms/") + window_name + QStringLiteral(".ui"));
    if (!file.open(QIODevice::ReadOnly))
        return nullptr;
    loader l;
    return l.load(&file);
}

void dress_form(QWidget& top)
{
    QList<QWidget*> all = top.findChildren<QWidget*>();
    for (QWidget* w : all) {
        for (const QString& role :
             w->property("role").toString().split(QLatin1Char(' '), Qt::SkipEmptyParts))
            apply_role(*w, role);
        if (const QString icon = w->property("icon_name").toString(); !icon.isEmpty()) {
            if (auto* b = qobject_cast<QAbstractButton*>(w)) {
                b->setIcon(make_icon(icon));
                const int side = w->property("icon_side").toInt();
                b->setIconSize(side > 0 ? QSize(side, side) : QSize(icon_size, icon_size));
            } else if (auto* l = qobject_cast<QLabel*>(w))
                new label_icon(*l, icon);
        }
        if (auto* b = qobject_cast<QPushButton*>(w); b && !b->isDefault())
            b->setAutoDefault(false); // one default button per window
        if (auto* e = qobject_cast<QLineEdit*>(w))
            e->setAcceptDrops(false); // files dropped anywhere belong to the window
    }
}

void translate_decoration(QWidget& top)
{
    for (QWidget* w : top.findChildren<QWidget*>()) {
        if (const auto [caption, tip] = numbers(*w, "tag"); caption > 0 || tip > 0) {
            if (caption > 0)
                set_widget_caption(*w, text(caption));
            if (tip > 0)
                w->setToolTip(to_q(text(tip)));
        }
        if (const int n = numbers(*w, "access").first; n > 0)
            w->setAccessibleName(to_q(text(n)));
    }
}

QString widget_caption(const QWidget& w)
{
    if (const auto* elided = dynamic_cast<const elided_label*>(&w))
        return elided->full_text();
    if (const auto* l = qobject_cast<const QLabel*>(&w))
        return l->text();
    if (const auto* b = qobject_cast<const QAbstractButton*>(&w))
        return b->text();
    if (const auto* g = qobject_cast<const QGroupBox*>(&w))
        return g->title();
    return {};
}

void set_widget_caption(QWidget& w, const std::string& caption, bool is_caption)
{
    if (auto* elided = dynamic_cast<elided_label*>(&w))
        elided->set_full_text(to_q(caption));
    else if (auto* l = qobject_cast<QLabel*>(&w)) {
        l->setTextFormat(Qt::PlainText);
        // Only a label with a buddy knows access letters; elsewhere an "&" would show.
        l->setText(!is_caption  ? to_q(caption)
                   : l->buddy() ? caption_q(caption)
                                : plain_q(caption));
    } else if (auto* b = qobject_cast<QAbstractButton*>(&w))
        b->setText(caption_q(caption));
    else if (auto* g = qobject_cast<QGroupBox*>(&w))
        g->setTitle(caption_q(caption));
}

QString object_name(const control& c)
{
    QString n = QString::fromUtf8(c.name);
    return c.index < 0 ? n : n + QLatin1Char('_') + QString::number(c.index);
}

} // namespace velkoro
