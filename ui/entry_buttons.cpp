#include "ui/entry_buttons.h"

#include "core/ini_file.h"
#include "ui/icon_paint.h"
#include "ui/list_view.h"
#include "ui/look.h"

#include <QAction>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace velkoro {
namespace {

constexpr int empty_icon_size = 44;

QAction* action_by_name(bound_window& w, const QString& name)
{
    const bound_control* b = bound_by_name(w, name);
    return b ? b->action.data() : nullptr;
}

void follow(QPushButton& button, QAction& action)
{
    const auto show = [&button, &action] {
        button.setText(action.text());
        button.setIcon(action.icon());
        button.setToolTip(action.toolTip());
        button.setEnabled(action.isEnabled());
    };
    QObject::connect(&action, &QAction::changed, &button, show);
    QObject::connect(&button, &QPushButton::clicked, &action, &QAction::trigger);
    show();
}

/// A drawing in the dim colour that follows the palette.
class dim_icon : public QLabel {
public:
    dim_icon(QString name, QWidget* parent) : QLabel(parent), name_(std::move(name))
    {
        setAlignment(Qt::AlignCenter);
        draw();
    }

protected:
    void changeEvent(QEvent* event) override
    {
        QLabel::changeEvent(event);
        if (event->type() == QEvent::PaletteChange)
            draw();
    }

private:
    void draw()
    {
        setPixmap(icon_pixmap(name_, palette().color(QPalette::PlaceholderText), empty_icon_size,
                              devicePixelRatioF()));
    }
    QString name_;
};

QLabel* text_line(QWidget* parent, const QString& tag, const QString& role)
{
    auto* l = new QLabel(parent);
    l->setAlignment(Qt::AlignCenter);
    l->setProperty("tag", tag); // translated with the rest of the decoration
    apply_role(*l, role);
    return l;
}

void make_empty_panel(bound_window& w, list_view& list)
{
    const QStringList numbers =
        list.property("empty").toString().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (numbers.size() < 2)
        return;
    auto* panel = new QWidget;
    auto* column = new QVBoxLayout(panel);
    column->setSpacing(10);
    column->addStretch(2);
    if (const QString icon = list.property("empty_icon").toString(); !icon.isEmpty())
        column->addWidget(new dim_icon(icon, panel));
    column->addWidget(text_line(panel, numbers[0], QStringLiteral("title")));
    column->addWidget(text_line(panel, numbers[1], QStringLiteral("dim")));
    auto* row = new QHBoxLayout;
    row->setSpacing(8);
    row->addStretch();
    for (const QString& name :
         list.property("empty_entries").toString().split(QLatin1Char(' '), Qt::SkipEmptyParts))
        if (QAction* a = action_by_name(w, name)) {
            auto* button = new QPushButton(panel);
            button->setObjectName(QStringLiteral("deko_empty_") + name);
            follow(*button, *a);
            row->addWidget(button);
        }
    row->addStretch();
    column->addSpacing(4);
    column->addLayout(row);
    column->addStretch(3);
    list.set_empty_panel(panel);
}

} // namespace

void bind_entries(bound_window& w)
{
    for (QWidget* widget : w.top->findChildren<QWidget*>()) {
        QAction* a = action_by_name(w, widget->property("entry").toString());
        if (auto* tool = qobject_cast<QToolButton*>(widget); tool && a) {
            tool->setDefaultAction(a);
            tool->setIconSize({icon_size, icon_size});
        } else if (auto* push = qobject_cast<QPushButton*>(widget); push && a)
            follow(*push, *a);
        if (auto* list = dynamic_cast<list_view*>(widget); list && list->record())
            make_empty_panel(w, *list);
    }
}

void bind_toggles(bound_window& w)
{
    for (QAbstractButton* toggle : w.top->findChildren<QAbstractButton*>()) {
        const QString name = toggle->property("opens").toString();
        QWidget* target = name.isEmpty() ? nullptr : w.top->findChild<QWidget*>(name);
        if (!target)
            continue;
        const std::string key =
            std::string("open_") + w.record->name + "_" + name.toUtf8().toStdString();
        if (const std::string last = ini_get("Main", key); !last.empty())
            target->setVisible(last != "0");
        toggle->setCheckable(true);
        toggle->setChecked(!target->isHidden());
        QObject::connect(toggle, &QAbstractButton::toggled, target, [target, key](bool open) {
            target->setVisible(open);
            ini_put("Main", key, open ? "1" : "0");
        });
    }
}

} // namespace velkoro
