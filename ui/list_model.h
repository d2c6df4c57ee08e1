/// Rows of a list control as a table for the toolkit.
/// Nothing is copied: the model announces how many rows there are and reads a cell when it is
/// painted. Marks live in the rows; the selection model writes them there and stores nothing of
/// its own but the marks before the gesture under way.
#pragma once

#include "core/window.h"

#include <QAbstractTableModel>
#include <QItemSelectionModel>

#include <vector>

namespace velkoro {

class list_model : public QAbstractTableModel {
public:
    explicit list_model(control& c) : control_(&c) {}

    /// Announces rows and columns that came or went since the last call.
    void announce();
    row_list& rows() const { return control_->rows; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    /// Text of a cell; empty for one that is not there any more.
    QString cell(int row, int column) const;
    /// Name of the drawing before the text, empty for none.
    QString glyph(int row, int column) const;
    bool dim(int row, int column) const;
    bool marked(int row) const;

private:
    bool there(int row, int column) const;
    control* control_;
    int rows_ = 0;
    int columns_ = 0;
};

/// Selecting marks rows; asking for the selection gives none, so the view asks list_model::marked.
class list_selection : public QItemSelectionModel {
public:
    explicit list_selection(list_model& m) : QItemSelectionModel(&m), model_(&m) {}

    using QItemSelectionModel::select;
    void select(const QItemSelection& selection,
                QItemSelectionModel::SelectionFlags command) override;
    void clear() override { clearCurrentIndex(); }
    void reset() override {}
    /// True once after the user changed marks.
    bool take_touched();

private:
    list_model* model_;
    std::vector<char> before_{}; ///< marks that the gesture under way started from
    std::vector<char> left_{};   ///< marks as the last command left them
    bool touched_ = false;
};

} // namespace velkoro
