/// Widgets that the toolkit lacks: the ring of the job window, a label that elides a path, and the
/// thin lines of the forms.
#pragma once

#include <QLabel>
#include <QTimer>
#include <QWidget>

namespace velkoro {

/// Progress as a ring with its percentage within; below 0 it turns without a number.
class progress_ring : public QWidget {
public:
    explicit progress_ring(QWidget* parent = nullptr);
    /// `value` of `max`; a negative value is unknown progress.
    void set_progress(int value, int max);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int per_mille_ = 0;
    int turn_ = 0; ///< degrees
    QTimer turning_{};
};

/// A label whose text is cut in its middle to the room that it has; the whole text is its tool
/// tip. The home folder is shown as "~".
class elided_label : public QLabel {
public:
    explicit elided_label(QWidget* parent = nullptr);
    void set_full_text(const QString& text);
    const QString& full_text() const { return full_; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void elide();
    QString full_{};
    QString shown_{}; ///< with "~" for the home folder
};

/// A line in the colour of frames; its size in the form says which way it runs.
class thin_line : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace velkoro
