/// Palettes and fonts of the program: the desktop's own where it has one, else our light and dark
/// palette by the desktop's wish or the key `Theme` of the section `Main`.
#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>

#include <cstdint>

class QApplication;
class QWidget;

namespace velkoro {

enum class theme { desktop, light, dark };

/// Puts style and palette on the application and follows the desktop's wish for light or dark.
/// `own_style`: the user asked for a style himself; then only the palette is ours.
void look_install(QApplication& app, bool own_style);
/// What the key `Theme` says: "light", "dark", anything else the desktop's wish.
void look_set_theme(theme t);
/// Our palette, for tests and pictures.
QPalette own_palette(bool dark);
/// True when the palette in force has light text on dark ground.
bool is_dark(const QPalette& p);

/// `part` of `over` (0 to 1) upon `under`.
QColor mixed(const QColor& under, const QColor& over, double part);
/// Colour of frames: the window's ground with a fifth of its text colour.
QColor frame_colour(const QPalette& p);
/// Ground of a marked row of a list.
QColor mark_colour(const QPalette& p);
/// The text colour, nearly black or white, that contrasts more with a ground.
QColor contrast_text(const QColor& ground);
/// A colour of a record (0xBBGGRR).
QColor record_colour(std::uint32_t bgr);

/// The general font in semi-bold, `more_points` larger.
QFont strong_font(int more_points = 0);
/// The general font, or one of the same size whose figures have one width.
QFont list_font();

/// Gives a widget what its form's property `role` says: title, strong, head, dim, warn, mono, card.
void apply_role(QWidget& w, const QString& role);

} // namespace velkoro
