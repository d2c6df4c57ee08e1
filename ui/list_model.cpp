#include "ui/list_model.h"

#include "core/texts.h"
#include "ui/qt_text.h"
#include "ui/user_action.h"

#include <QGuiApplication>
#include <QPalette>

#include <utility>

namespace velkoro {
namespace {

constexpr int text_marked = 7653;

std::vector<char> marks_of(const row_list& r)
{
    std::vector<char> m(r.rows.size());
    for (std::size_t i = 0; i < m.size(); ++i)
        m[i] = r.rows[i].marked;
    return m;
}

} // namespace

void list_model::announce()
{
    const int rows_now = static_cast<int>(rows().rows.size());
    const int columns_now = static_cast<int>(rows().columns.size());
    if (columns_now > columns_) {
        beginInsertColumns({}, columns_, columns_now - 1);
        columns_ = columns_now;
        endInsertColumns();
    } else if (columns_now < columns_) {
        beginRemoveColumns({}, columns_now, columns_ - 1);
        columns_ = columns_now;
        endRemoveColumns();
    }
    if (rows_now > rows_) {
        beginInsertRows({}, rows_, rows_now - 1);
        rows_ = rows_now;
        endInsertRows();
    } else if (rows_now < rows_) {
        beginRemoveRows({}, rows_now, rows_ - 1);
        rows_ = rows_now;
        endRemoveRows();
    }
}

int list_model::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : rows_;
}

int list_model::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : columns_;
}

bool list_model::there(int row, int column) const
{
    // A handler under way may have shortened the rows since they were announced.
    return row >= 0 && column >= 0 && std::cmp_less(row, rows().rows.size()) &&
           std::cmp_less(column, rows().columns.size());
}

QString list_model::cell(int row, int column) const
{
    if (!there(row, column))
        return {};
    if (rows().cell)
        return to_q(rows().cell(row, column));
    const auto& cells = rows().rows[static_cast<std::size_t>(row)].cells;
    return std::cmp_less(column, cells.size()) ? to_q(cells[static_cast<std::size_t>(column)])
                                               : QString();
}

QString list_model::glyph(int row, int column) const
{
    return there(row, column) && rows().glyph ? to_q(rows().glyph(row, column)) : QString();
}

bool list_model::dim(int row, int column) const
{
    return there(row, column) && rows().dim && rows().dim(row, column);
}

bool list_model::marked(int row) const
{
    return there(row, 0) && rows().rows[static_cast<std::size_t>(row)].marked;
}

QVariant list_model::data(const QModelIndex& index, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole: return cell(index.row(), index.column());
    case Qt::AccessibleTextRole:
        // Marks are spoken with the name, as they are told by a ground colour only.
        return index.column() == 0 && marked(index.row())
                   ? QString(cell(index.row(), 0) + QStringLiteral(", ") + to_q(text(text_marked)))
                   : cell(index.row(), index.column());
    default: return {};
    }
}

QVariant list_model::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 ||
        std::cmp_greater_equal(section, rows().columns.size()))
        return {};
    const list_column& c = rows().columns[static_cast<std::size_t>(section)];
    switch (role) {
    case Qt::DisplayRole: return to_q(c.heading);
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(Qt::AlignVCenter | (c.right ? Qt::AlignRight : Qt::AlignLeft));
    case Qt::ForegroundRole:
        return QGuiApplication::palette().brush(
            section == rows().sort_column ? QPalette::WindowText : QPalette::PlaceholderText);
    default: return {};
    }
}

Qt::ItemFlags list_model::flags(const QModelIndex& index) const
{
    Qt::ItemFlags f = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    if (index.column() == 0 && rows().edit_names)
        f |= Qt::ItemIsEditable;
    return f;
}

bool list_model::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::EditRole || index.column() != 0 || !there(index.row(), 0) ||
        !control_->label_edited)
        return false;
    if (value.toString() == cell(index.row(), 0))
        return true;
    const auto edited = control_->label_edited;
    const int row = index.row();
    const std::string name = from_q(value.toString());
    user_action([&] { edited(row, name); });
    return true;
}

void list_selection::select(const QItemSelection& selection,
                            QItemSelectionModel::SelectionFlags command)
{
    if (command == NoUpdate)
        return;
    row_list& r = model_->rows();
    std::vector<char> marks = marks_of(r);
    // A sweep or a growing range starts from the marks before it, unless the program changed them
    // meanwhile.
    if (!command.testFlag(Current) || marks != left_)
        before_ = marks;
    if (command.testFlag(Clear))
        before_.assign(marks.size(), 0);
    left_ = before_;
    for (const QItemSelectionRange& range : selection)
        for (int i = qMax(0, range.top()); i <= range.bottom(); ++i) {
            if (std::cmp_greater_equal(i, left_.size()))
                break;
            const auto at = static_cast<std::size_t>(i);
            if (command.testFlag(Toggle))
                left_[at] = before_[at] ? 0 : 1;
            else if (command.testFlag(Select))
                left_[at] = 1;
            else if (command.testFlag(Deselect))
                left_[at] = 0;
        }
    if (left_ == marks)
        return;
    for (std::size_t i = 0; i < left_.size(); ++i)
        r.rows[i].marked = left_[i] != 0;
    r.changed();
    touched_ = true;
}

bool list_selection::take_touched()
{
    return std::exchange(touched_, false);
}

} // namespace velkoro
