/// The view of a list control: rows painted straight from the records, marks and the current row
/// drawn apart, keys and clicks handed to the record's handlers, and what stands in an empty list.
#pragma once

#include "core/window.h"

#include <QTreeView>

#include <functional>
#include <memory>

namespace velkoro {

class list_model;
class list_selection;

class list_view : public QTreeView {
public:
    explicit list_view(QWidget* parent = nullptr);
    ~list_view() override;

    /// Connects the view with its record.
    void attach(control& c);
    /// Shows what the record holds now.
    void sync();
    control* record() const { return control_; }
    /// Shown over the rows' place while there are none.
    void set_empty_panel(QWidget* panel);

    void keyboardSearch(const QString& search) override;

protected:
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event) const override;
    void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                 const QModelIndex& index) const override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    int sizeHintForColumn(int column) const override;

private:
    void sync_columns();
    void sync_header_arrow();
    void run_row(const std::function<void(int)>& handler);
    void after_gesture(bool always);
    bool offer_key(const QKeyEvent& event);
    void place_empty_panel();

    control* control_ = nullptr;
    std::unique_ptr<list_model> model_;
    std::unique_ptr<list_selection> marks_;
    std::vector<list_column> columns_{}; ///< as last shown
    std::uint64_t version_ = ~std::uint64_t{0};
    int current_ = -1;
    bool syncing_ = false;
    QWidget* empty_panel_ = nullptr;
};

} // namespace velkoro
