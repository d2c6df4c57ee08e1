/// Icons from the program's own drawings, painted in the colours of the palette.
/// The drawings (20 x 20 grid, `currentColor`) lie in the resources under icons/. They are
/// rendered at the resolution of the device whenever they are painted, so that a changed palette
/// or screen needs no second icon.
#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <QString>

namespace velkoro {

inline constexpr int icon_size = 18;  ///< on buttons and in menus, logical pixels
inline constexpr int glyph_size = 16; ///< before a text in a list, logical pixels

/// Makes drawings and forms of the library known to the toolkit. Any number of times.
void load_resources();

/// An icon that follows palette and state. An unknown name gives an icon that paints nothing.
QIcon make_icon(const QString& name);

/// A drawing in one colour, as a square of `size` logical pixels at `ratio` device pixels each.
/// Glyphs keep their own colours. An unknown name gives a null pixmap.
QPixmap icon_pixmap(const QString& name, const QColor& colour, int size, double ratio);

} // namespace velkoro
