#include "ui/list_view.h"

#include "ui/icon_paint.h"
#include "ui/list_model.h"
#include "ui/look.h"
#include "ui/qt_text.h"
#include "ui/user_action.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <QToolTip>

#include <algorithm>
#include <utility>

namespace velkoro {
namespace {

constexpr int cell_margin = 6;
constexpr int row_air = 7; // added to the height of the font
constexpr int narrowest_column = 24;

class row_delegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override
    {
        return {40, qMax(option.fontMetrics.height(), glyph_size) + row_air};
    }
};

} // namespace

list_view::list_view(QWidget* parent) : QTreeView(parent)
{
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setExpandsOnDoubleClick(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setAlternatingRowColors(true);
    setSelectionMode(ExtendedSelection);
    setSelectionBehavior(SelectRows);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollMode(ScrollPerPixel);
    setItemDelegate(new row_delegate(this));
    setFont(list_font());
    header()->setSectionsClickable(true);
    header()->setHighlightSections(false);
    header()->setSectionsMovable(false);
    header()->setStretchLastSection(false);
    header()->setMinimumSectionSize(narrowest_column);
    header()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

list_view::~list_view()
{
    // The base class still asks for its model while it goes.
    QTreeView::setModel(nullptr);
}

void list_view::attach(control& c)
{
    control_ = &c;
    syncing_ = true; // the toolkit tells of a lost current row while the models change
    model_ = std::make_unique<list_model>(c);
    setModel(model_.get());
    marks_ = std::make_unique<list_selection>(*model_);
    QItemSelectionModel* stock = selectionModel();
    setSelectionModel(marks_.get());
    delete stock;
    syncing_ = false;
    connect(header(), &QHeaderView::sectionClicked, this, [this](int column) {
        if (control_->header_click) {
            const auto handler = control_->header_click;
            user_action([&] { handler(column); });
        }
        sync_header_arrow(); // the header has turned its arrow by itself
    });
    connect(header(), &QHeaderView::sectionResized, this, [this](int column, int, int width) {
        const auto at = static_cast<std::size_t>(column);
        if (syncing_ || at >= control_->rows.columns.size() || at >= columns_.size() || width <= 0)
            return;
        control_->rows.columns[at].width = columns_[at].width = width;
    });
    sync();
}

void list_view::sync()
{
    if (!control_ || syncing_)
        return;
    row_list& r = control_->rows;
    syncing_ = true;
    if (r.version != version_) {
        version_ = r.version;
        model_->announce();
        sync_columns();
        sync_header_arrow();
        viewport()->update();
    }
    const int rows = model_->rowCount();
    if (r.current != current_ || currentIndex().row() != r.current) {
        current_ = r.current;
        marks_->setCurrentIndex(r.current >= 0 && r.current < rows ? model_->index(r.current, 0)
                                                                   : QModelIndex(),
                                QItemSelectionModel::NoUpdate);
        viewport()->update();
    }
    if (r.show_row >= 0) {
        if (r.show_row < rows)
            scrollTo(model_->index(r.show_row, 0));
        r.show_row = -1;
    }
    syncing_ = false;
    place_empty_panel();
}

void list_view::sync_columns()
{
    const std::vector<list_column>& now = control_->rows.columns;
    if (now == columns_)
        return;
    columns_ = now;
    bool stretched = false;
    for (int i = 0; i < static_cast<int>(now.size()); ++i) {
        const list_column& c = now[static_cast<std::size_t>(i)];
        header()->setSectionHidden(i, !c.visible);
        const bool stretch = c.stretch && c.visible && !stretched;
        stretched = stretched || stretch;
        header()->setSectionResizeMode(i,
                                       stretch ? QHeaderView::Stretch : QHeaderView::Interactive);
        if (!stretch && c.visible)
            header()->resizeSection(i, qMax(narrowest_column, c.width));
    }
    header()->viewport()->update();
}

void list_view::sync_header_arrow()
{
    const row_list& r = control_->rows;
    const QSignalBlocker block(header());
    header()->setSortIndicatorShown(r.sort_column >= 0);
    header()->setSortIndicator(r.sort_column,
                               r.sort_down ? Qt::DescendingOrder : Qt::AscendingOrder);
    header()->viewport()->update();
}

void list_view::set_empty_panel(QWidget* panel)
{
    empty_panel_ = panel;
    panel->setParent(viewport());
    place_empty_panel();
}

void list_view::place_empty_panel()
{
    if (!empty_panel_)
        return;
    // While a job fills the list its window stands in front, and the words would only flicker.
    const bool empty = control_ && control_->rows.rows.empty();
    if (empty && !QApplication::activeModalWidget())
        empty_panel_->show();
    else if (!empty)
        empty_panel_->hide();
    empty_panel_->setGeometry(viewport()->rect());
}

void list_view::keyboardSearch(const QString& search)
{
    if (currentIndex().column() > 0)
        marks_->setCurrentIndex(currentIndex().siblingAtColumn(0), QItemSelectionModel::NoUpdate);
    QTreeView::keyboardSearch(search);
}

void list_view::currentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    QTreeView::currentChanged(current, previous);
    viewport()->update();
    if (!syncing_ && control_)
        control_->rows.current = current_ = current.row();
}

QItemSelectionModel::SelectionFlags list_view::selectionCommand(const QModelIndex& index,
                                                                const QEvent* event) const
{
    if (event && event->type() == QEvent::MouseButtonPress && index.isValid() && model_) {
        const auto* press = static_cast<const QMouseEvent*>(event);
        const bool marked = model_->marked(index.row());
        // The pop-up menu acts on the marks: a right click on a marked row must not change them.
        if (press->button() == Qt::RightButton && marked)
            return QItemSelectionModel::NoUpdate;
        // The base class would ask the selection model, which knows of no marks.
        if (press->button() == Qt::LeftButton && selectionMode() == ExtendedSelection &&
            press->modifiers().testFlag(Qt::ControlModifier) &&
            !press->modifiers().testFlag(Qt::ShiftModifier))
            return QItemSelectionModel::Rows |
                   (marked ? QItemSelectionModel::Deselect : QItemSelectionModel::Select);
    }
    return QTreeView::selectionCommand(index, event);
}

void list_view::drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const
{
    const int row = index.row();
    const QPalette& colours = viewport()->palette(); // a record may give the rows a ground
    const auto group = isEnabled() ? QPalette::Active : QPalette::Disabled;
    // Where only one row can be chosen the current row is the choice.
    const bool marked =
        selectionMode() == SingleSelection ? row == currentIndex().row() : model_->marked(row);
    const QRect all(0, option.rect.y(), viewport()->width(), option.rect.height());
    if (marked)
        painter->fillRect(all, mark_colour(colours));
    else if (row % 2 == 1)
        painter->fillRect(all, colours.color(group, QPalette::AlternateBase));
    const QColor ink = colours.color(group, QPalette::Text);
    const QColor quiet = marked ? ink : colours.color(group, QPalette::PlaceholderText);
    for (int c = 0; c < static_cast<int>(columns_.size()); ++c) {
        if (header()->isSectionHidden(c))
            continue;
        QRect r(header()->sectionViewportPosition(c), all.y(), header()->sectionSize(c),
                all.height());
        if (r.right() < 0 || r.left() > all.right())
            continue;
        r.adjust(cell_margin, 0, -cell_margin, 0);
        if (const QString name = model_->glyph(row, c); !name.isEmpty()) {
            const QPixmap glyph =
                icon_pixmap(name, ink, glyph_size, painter->device()->devicePixelRatioF());
            if (r.width() >= glyph_size)
                painter->drawPixmap(r.x(), r.y() + (r.height() - glyph_size) / 2, glyph);
            r.adjust(glyph_size + 12, 0, 0, 0);
        }
        const QString text = model_->cell(row, c);
        if (text.isEmpty() || r.width() <= 0)
            continue;
        painter->setPen(model_->dim(row, c) ? quiet : ink);
        const bool right = columns_[static_cast<std::size_t>(c)].right;
        painter->drawText(
            r, Qt::AlignVCenter | Qt::TextSingleLine | (right ? Qt::AlignRight : Qt::AlignLeft),
            option.fontMetrics.elidedText(text, Qt::ElideRight, r.width()));
    }
    if (row == currentIndex().row()) {
        painter->setPen(colours.color(QPalette::Active, QPalette::Highlight));
        painter->drawLine(all.topLeft(), all.topRight());
        painter->drawLine(all.bottomLeft(), all.bottomRight());
    }
}

/// Runs a handler with the current row.
void list_view::run_row(const std::function<void(int)>& handler)
{
    if (!handler)
        return;
    const auto copy = handler;
    const int row = control_->rows.current;
    user_action([&] { copy(row); });
}

/// Tells the record of new marks or, when asked, of a click that left them as they were.
void list_view::after_gesture(bool always)
{
    if (!control_)
        return;
    const bool touched = marks_->take_touched();
    if (touched)
        viewport()->update();
    if ((touched || always) && control_->rows.current >= 0)
        run_row(control_->row_click);
    else if (touched)
        user_action({});
}

void list_view::mousePressEvent(QMouseEvent* event)
{
    QTreeView::mousePressEvent(event);
    after_gesture(indexAt(event->position().toPoint()).isValid());
}

void list_view::mouseMoveEvent(QMouseEvent* event)
{
    QTreeView::mouseMoveEvent(event);
    after_gesture(false);
}

void list_view::mouseReleaseEvent(QMouseEvent* event)
{
    QTreeView::mouseReleaseEvent(event);
    after_gesture(false);
}

void list_view::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && control_ &&
        indexAt(event->position().toPoint()).isValid()) {
        run_row(control_->row_open);
        return;
    }
    QTreeView::mouseDoubleClickEvent(event);
}

bool list_view::offer_key(const QKeyEvent& event)
{
    if (!control_ || !control_->key)
        return false;
    const auto handler = control_->key;
    bool handled = false;
    user_action([&] {
        handled = handler(event.key(), event.modifiers().testFlag(Qt::ControlModifier),
                          event.modifiers().testFlag(Qt::ShiftModifier));
    });
    return handled;
}

void list_view::keyPressEvent(QKeyEvent* event)
{
    if (offer_key(*event)) {
        event->accept();
        return;
    }
    const int row = currentIndex().row();
    if (event->key() == Qt::Key_F2 && row >= 0 && control_ && control_->rows.edit_names) {
        edit(model_->index(row, 0));
        return;
    }
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && row >= 0 && control_ &&
        control_->row_open && state() != EditingState) {
        run_row(control_->row_open);
        return;
    }
    const int before = row;
    QTreeView::keyPressEvent(event);
    after_gesture(currentIndex().row() != before);
}

void list_view::contextMenuEvent(QContextMenuEvent* event)
{
    if (control_ && control_->right_click) {
        user_action(control_->right_click);
        event->accept();
        return;
    }
    QTreeView::contextMenuEvent(event);
}

void list_view::focusInEvent(QFocusEvent* event)
{
    // The toolkit would make the first row the current one, which nobody has chosen.
    const bool none = !currentIndex().isValid();
    const bool was_syncing = std::exchange(syncing_, true);
    QTreeView::focusInEvent(event);
    if (none && marks_)
        marks_->clearCurrentIndex();
    syncing_ = was_syncing;
}

void list_view::resizeEvent(QResizeEvent* event)
{
    QTreeView::resizeEvent(event);
    place_empty_panel();
}

void list_view::changeEvent(QEvent* event)
{
    QTreeView::changeEvent(event);
    if (event->type() == QEvent::ApplicationFontChange)
        setFont(list_font());
}

bool list_view::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::ToolTip && model_) {
        // A text that had to be cut is told in full.
        const auto* help = static_cast<QHelpEvent*>(event);
        const QModelIndex at = indexAt(help->pos());
        const QString text = at.isValid() ? model_->cell(at.row(), at.column()) : QString();
        const int taken =
            2 * cell_margin +
            (at.isValid() && !model_->glyph(at.row(), at.column()).isEmpty() ? glyph_size + 12 : 0);
        if (at.isValid() &&
            fontMetrics().horizontalAdvance(text) + taken > header()->sectionSize(at.column()))
            QToolTip::showText(help->globalPos(), text, this);
        else if (!at.isValid() || isHeaderHidden())
            QToolTip::showText(help->globalPos(), toolTip(), this); // else the headings tell it
        else
            QToolTip::hideText();
        return true;
    }
    return QTreeView::viewportEvent(event);
}

int list_view::sizeHintForColumn(int column) const
{
    // A double click on a separator fits the column to the rows in view.
    if (!model_)
        return QTreeView::sizeHintForColumn(column);
    const int first = qMax(0, indexAt({1, 1}).row());
    const int last = qMin(model_->rowCount() - 1, first + 200);
    int widest = narrowest_column;
    for (int row = first; row <= last; ++row)
        widest = qMax(widest, fontMetrics().horizontalAdvance(model_->cell(row, column)) +
                                  2 * cell_margin +
                                  (model_->glyph(row, column).isEmpty() ? 0 : glyph_size + 12));
    return widest;
}

} // namespace velkoro
