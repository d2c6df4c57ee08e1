/// Screen pictures of every window, light and dark, German and English, into the build folder's
/// pictures/. They are to be looked at; the test only sees to it that each shows something. Run
/// with QT_SCALE_FACTOR=2 it makes the pictures of a dense screen.
#include "core/job.h"
#include "core/sellang.h"
#include "core/settings.h"
#include "core/texts.h"
#include "tests/ui/ui_fixture.h"
#include "ui/look.h"
#include "waypoints/conflict.h"
#include "waypoints/such.h"

#include <QCoreApplication>
#include <QDir>
#include <QPixmap>

#include <set>

namespace velkoro::test {
namespace {

class Pictures : public UiTest, public testing::WithParamInterface<std::tuple<int, bool>> {
protected:
    static QString folder()
    {
        const QString f = QStringLiteral(VELKORO_BINARY_DIR "/pictures");
        QDir().mkpath(f);
        return f;
    }
    static void take(window& w, const char* what)
    {
        const auto load = std::exchange(w.load, nullptr);
        w.keeps_state = true;
        translate_form(w);
        open_window(w);
        binder_show_now(w);
        QCoreApplication::processEvents();
        const QPixmap picture = widget_of(w)->grab();
        w.load = load;
        const auto& [language, dark] = GetParam();
        const QString name = QStringLiteral("%1-%2-%3-%4x.png")
                                 .arg(QString::fromUtf8(what),
                                      dark ? QStringLiteral("dark") : QStringLiteral("light"),
                                      language == 0 ? QStringLiteral("en") : QStringLiteral("de"))
                                 .arg(qRound(picture.devicePixelRatio()));
        EXPECT_TRUE(picture.save(folder() + QLatin1Char('/') + name));
        const QImage image = picture.toImage();
        std::set<QRgb> colours;
        for (int y = 0; y < image.height(); y += 2)
            for (int x = 0; x < image.width(); x += 2)
                colours.insert(image.pixel(x, y));
        EXPECT_GT(colours.size(), 10U) << what;
        const QColor ground = image.pixelColor(2, image.height() - 3);
        EXPECT_EQ(ground, own_palette(dark).color(QPalette::Window)) << what;
    }
};

TEST_P(Pictures, OfEveryWindow)
{
    const auto& [language, dark] = GetParam();
    load_texts(language);
    settings.overrides[{"main", "theme"}] = dark ? "dark" : "light";
    fill_rows(0);
    take(Form1.form, "Form1-empty");
    fill_rows(60);
    for (const int marked : {3, 4, 7, 12, 13})
        Form1.Waypl2.rows.rows[static_cast<std::size_t>(marked)].marked = true;
    Form1.Waypl2.rows.current = 7;
    Form1.wayp_titel.text = "Schwarzwald, Hochtouren 2025";
    Form1.anz.caption = "5 / 60";
    Form1.filnam.caption = "/home/GPS/schwarzwald.wp";
    take(Form1.form, "Form1");
    op.akt.caption = "GPSMAP 76S Software 3.40";
    op.anz.caption = "312 / 500";
    op.ring.value = 620;
    take(op.form, "op");
    op2.anz.caption = "sample.wp";
    op2.anz2.caption = "60 Waypoints, 4 Routen";
    take(op2.form, "op2");
    sellang.sprachen.rows.columns = {{.heading = {}, .width = 200, .stretch = true}};
    sellang.sprachen.rows.rows = {{.cells = {"English"}}, {.cells = {"Deutsch"}}};
    sellang.sprachen.rows.current = 1;
    sellang.sprachen.rows.changed();
    take(sellang.form, "sellang");
    such.stext.text = "hütte"_w;
    such.nam[0].checked = such.Anf[0].checked = false;
    such.nam[1].checked = such.Anf[1].checked = true;
    take(such.form, "such");
    einfüg_q.entf.caption = "0.42 km";
    einfüg_q.beschr_a.caption = "1310 m / Prox 0.5   Restaurant  2025-06-14: N47°52.974' "
                                "E008°01.446'\n/ Baldenweger Hütte"_w;
    einfüg_q.beschr_n.caption = "1321 m / Prox -.-   Haus        2025-09-02: N47°53.112' "
                                "E008°01.180'\n/ BALDENWEG HUETTE"_w;
    einfüg_q.neunam.text = "BALDH1";
    einfüg_q.kom.text = "BALDENWEG HUETTE";
    einfüg_q.wp_sel[sel_both].checked = true;
    take(einfüg_q.form, "einfüg_q");
    for (window* w : {&such.form, &einfüg_q.form}) {
        for (control* c : w->controls)
            static_cast<look&>(*c) = c->design;
        w->shown = false;
        platform.show(*w);
    }
    einfüg_q.form.keeps_state = false;
    for (window* w : {&op.form, &op2.form, &sellang.form}) {
        w->shown = w->keeps_state = false;
        platform.show(*w);
    }
    op2.form.keeps_state = true;
}

INSTANTIATE_TEST_SUITE_P(LanguagesAndThemes, Pictures,
                         testing::Combine(testing::Values(0, 1), testing::Bool()),
                         [](const auto& i) {
                             return std::string(std::get<0>(i.param) == 0 ? "English" : "German") +
                                    (std::get<1>(i.param) ? "Dark" : "Light");
                         });

} // namespace
} // namespace velkoro::test
