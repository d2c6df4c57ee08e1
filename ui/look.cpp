#include "ui/look.h"

#include "ui/desktop_theme.h"
#include "ui/icon_paint.h"
#include "ui/style.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QFrame>
#include <QStyleFactory>
#include <QWidget>

#include <array>
#include <cmath>
#include <memory>

namespace velkoro {
namespace {

struct look_state {
    QPalette platform{};          ///< what the desktop gave before we touched it
    bool platform_counts = false; ///< it differs from the bare style's own
    theme wish = theme::desktop;
    bool desktop_dark = false;
};
look_state state;

struct role_colour {
    QPalette::ColorRole role;
    const char* light;
    const char* dark;
};

// clang-format off
constexpr role_colour role_colours[] = {
    {QPalette::Window,          "#f4f5f7", "#24282d"},
    {QPalette::Base,            "#ffffff", "#1a1d21"},
    {QPalette::AlternateBase,   "#f8f9fb", "#1f2327"},
    {QPalette::Button,          "#fdfdfe", "#31363c"},
    {QPalette::WindowText,      "#1d2126", "#e7e9ec"},
    {QPalette::Text,            "#1d2126", "#e7e9ec"},
    {QPalette::ButtonText,      "#1d2126", "#e7e9ec"},
    {QPalette::PlaceholderText, "#68717c", "#98a1ab"},
    {QPalette::Highlight,       "#1f62c4", "#356fcb"},
    {QPalette::HighlightedText, "#ffffff", "#ffffff"},
    {QPalette::Link,            "#1f62c4", "#7fb0f5"},
    {QPalette::LinkVisited,     "#1f62c4", "#7fb0f5"},
    {QPalette::BrightText,      "#b3261e", "#ff8a80"},
    {QPalette::ToolTipBase,     "#262b31", "#3a4047"},
    {QPalette::ToolTipText,     "#f2f3f5", "#f2f3f5"},
};
// clang-format on

double luminance(const QColor& c)
{
    const auto linear = [](double v) {
        return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(c.redF()) + 0.7152 * linear(c.greenF()) + 0.0722 * linear(c.blueF());
}

double contrast(const QColor& a, const QColor& b)
{
    const double x = luminance(a);
    const double y = luminance(b);
    return (std::max(x, y) + 0.05) / (std::min(x, y) + 0.05);
}

bool same_main_colours(const QPalette& a, const QPalette& b)
{
    for (const auto role :
         {QPalette::Window, QPalette::Base, QPalette::Text, QPalette::Button, QPalette::Highlight})
        if (a.color(QPalette::Active, role) != b.color(QPalette::Active, role))
            return false;
    return true;
}

void apply()
{
    if (state.wish == theme::desktop && state.platform_counts) {
        QApplication::setPalette(state.platform);
        return;
    }
    const bool dark =
        state.wish == theme::dark || (state.wish == theme::desktop && state.desktop_dark);
    QApplication::setPalette(own_palette(dark));
}

} // namespace

void look_install(QApplication& app, bool own_style)
{
    load_resources();
    state.platform = QApplication::palette();
    const std::unique_ptr<QStyle> fusion(QStyleFactory::create(QStringLiteral("Fusion")));
    state.platform_counts = !same_main_colours(state.platform, fusion->standardPalette());
    if (!own_style)
        QApplication::setStyle(new velkoro_style);
    state.desktop_dark = desktop_wants_dark();
    follow_desktop_theme(app, [](bool dark) {
        state.desktop_dark = dark;
        apply();
    });
    apply();
}

void look_set_theme(theme t)
{
    if (t == state.wish)
        return;
    state.wish = t;
    apply();
}

QPalette own_palette(bool dark)
{
    QPalette p;
    for (const role_colour& c : role_colours)
        p.setColor(QPalette::All, c.role, QColor(QLatin1String(dark ? c.dark : c.light)));
    const QColor off(QLatin1String(dark ? "#747d87" : "#98a0a9"));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                            QPalette::HighlightedText, QPalette::PlaceholderText})
        p.setColor(QPalette::Disabled, role, off);
    const QColor ground = p.color(QPalette::Window);
    const QColor ink = p.color(QPalette::WindowText);
    p.setColor(QPalette::Disabled, QPalette::Base, mixed(ground, p.color(QPalette::Base), 0.5));
    p.setColor(QPalette::Disabled, QPalette::Highlight, mixed(ground, ink, 0.25));
    p.setColor(QPalette::Light, dark ? mixed(ground, ink, 0.12) : QColor(Qt::white));
    p.setColor(QPalette::Midlight, mixed(ground, ink, 0.08));
    p.setColor(QPalette::Mid, mixed(ground, ink, 0.2));
    p.setColor(QPalette::Dark, mixed(ground, ink, 0.3));
    p.setColor(QPalette::Shadow, mixed(ground, dark ? QColor(Qt::black) : ink, 0.6));
    return p;
}

bool is_dark(const QPalette& p)
{
    return p.color(QPalette::WindowText).lightness() > p.color(QPalette::Window).lightness();
}

QColor mixed(const QColor& under, const QColor& over, double part)
{
    const auto mix = [part](float u, float o) { return static_cast<float>(u + (o - u) * part); };
    return QColor::fromRgbF(mix(under.redF(), over.redF()), mix(under.greenF(), over.greenF()),
                            mix(under.blueF(), over.blueF()));
}

QColor frame_colour(const QPalette& p)
{
    return mixed(p.color(QPalette::Window), p.color(QPalette::WindowText), 0.195);
}

QColor mark_colour(const QPalette& p)
{
    // On a ground of its own, as strong as the list's blue one, a sixth would be lost.
    const QColor ground = p.color(QPalette::Base);
    const bool plain = ground == QApplication::palette().color(QPalette::Base);
    return mixed(ground, p.color(QPalette::Active, QPalette::Highlight),
                 !plain || is_dark(p) ? 0.36 : 0.17);
}

QColor contrast_text(const QColor& ground)
{
    const QColor dark(QLatin1String("#1d2126"));
    const QColor light(Qt::white);
    return contrast(dark, ground) >= contrast(light, ground) ? dark : light;
}

QColor record_colour(std::uint32_t bgr)
{
    return QColor(static_cast<int>(bgr & 0xFF), static_cast<int>(bgr >> 8 & 0xFF),
                  static_cast<int>(bgr >> 16 & 0xFF));
}

QFont strong_font(int more_points)
{
    QFont f = QApplication::font();
    f.setWeight(QFont::DemiBold);
    if (f.pointSizeF() > 0)
        f.setPointSizeF(f.pointSizeF() + more_points);
    return f;
}

QFont list_font()
{
    QFont f = QApplication::font();
    const QFontMetricsF m(f);
    if (std::abs(m.horizontalAdvance(QLatin1Char('0')) - m.horizontalAdvance(QLatin1Char('1'))) >
        0.5)
        f.setFamily(QStringLiteral("Liberation Sans"));
    return f;
}

void apply_role(QWidget& w, const QString& role)
{
    if (role == QLatin1String("title"))
        w.setFont(strong_font(3));
    else if (role == QLatin1String("strong") || role == QLatin1String("head"))
        w.setFont(strong_font());
    else if (role == QLatin1String("dim"))
        w.setForegroundRole(QPalette::PlaceholderText);
    else if (role == QLatin1String("warn"))
        w.setForegroundRole(QPalette::BrightText);
    else if (role == QLatin1String("mono") || role == QLatin1String("card")) {
        w.setFont(role == QLatin1String("mono")
                      ? QFontDatabase::systemFont(QFontDatabase::FixedFont)
                      : w.font());
        if (role == QLatin1String("card")) {
            w.setBackgroundRole(QPalette::Base);
            w.setAutoFillBackground(true);
        }
    }
}

} // namespace velkoro
