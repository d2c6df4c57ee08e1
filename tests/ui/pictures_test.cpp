/// Screen pictures of every window, light and dark, German and English. They are to be looked at;
/// the tests only see to it that each shows something. Run with QT_SCALE_FACTOR=2 they make the
/// pictures of a dense screen.
#include "comm/gar_proto.h"
#include "comm/garmin_prop.h"
#include "comm/selrou.h"
#include "comm/selwp.h"
#include "core/info.h"
#include "core/job.h"
#include "core/sellang.h"
#include "core/settings.h"
#include "core/texts.h"
#include "interchange/selfil.h"
#include "tests/ui/program_fixture.h"
#include "ui/look.h"
#include "waypoints/conflict.h"
#include "waypoints/editor.h"
#include "waypoints/list.h"
#include "waypoints/such.h"

#include <QAction>
#include <QApplication>
#include <QPixmap>

#include <set>

namespace velkoro::test {
namespace {

class Pictures : public UiTest, public testing::WithParamInterface<std::tuple<int, bool>> {
protected:
    static void take(window& w, const char* what)
    {
        const auto load = std::exchange(w.load, nullptr);
        w.keeps_state = true;
        translate_form(w);
        open_window(w);
        binder_show_now(w);
        QCoreApplication::processEvents();
        const auto& [language, dark] = GetParam();
        const QPixmap picture =
            save_picture(*widget_of(w), QString::fromUtf8(what), dark, language);
        w.load = load;
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
    open_main();
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
    take(info.form, "info");
    info.form.shown = info.form.keeps_state = false;
    platform.show(info.form);
    Garmin_prop.msg.caption = "COM1 (ttyUSB0):  GPSMAP 76S,  ID 194. 3.40 G\n"
                              "L001 A010 A100 D109 A201 D202 D109 D210 A301 D310 D301";
    Garmin_prop.f_wp.items = {"Garmin (GRMN)"};
    Garmin_prop.f_pos.items = {"NMEA 0183 2.0   4800 baud"};
    Garmin_prop.f_wp.selected = Garmin_prop.f_pos.selected = 0;
    for (control* c : {&Garmin_prop.mwp, &Garmin_prop.mtrack})
        c->text = "1000";
    for (control* c : {&Garmin_prop.mprox, &Garmin_prop.mnaml})
        c->text = "10";
    for (control* c : {&Garmin_prop.mrou, &Garmin_prop.mwp_rou})
        c->text = "50";
    Garmin_prop.r_unique.checked = true;
    Garmin_prop.Label7.visible = true;
    Garmin_prop.AVD.enabled = Garmin_prop.alt_kom.enabled = false;
    receiver.gar_symbol_set = 1;
    take(Garmin_prop.form, "Garmin_prop");
    receiver = {};
    Garmin_prop.form.keeps_state = false;
    selfil.filform.items = {"EXPORT VELkoro Text *.txt"};
    selfil.filform.selected = selfil.posform.selected = selfil.Trenn.selected =
        selfil.Zeitf.selected = 0;
    selfil.pathnam.text = "~/GPS/Austausch";
    selfil.filnam.text = "schwarzwald.txt";
    selfil.ausw_w.checked = false;
    selfil.ausw_wm.checked = true;
    selfil.routen_m.rows.columns = {{.heading = "Route", .width = 200, .stretch = true}};
    selfil.routen_m.rows.rows = {{.cells = {"00: Rundtour Feldberg"}},
                                 {.cells = {"01: Schluchsee Ufer"}},
                                 {.cells = {"02: Höllental"_w}}};
    selfil.routen_m.rows.changed();
    selfil.routen_m.enabled = false;
    selfil.posform.items = {"hddd\xB0mm.mmm'"};
    selfil.Trenn.items = {"Tab"};
    selfil.Zeitf.items = {"YYYY-MM-DD hh:mm:ss"};
    selfil.naml.text = "14";
    selfil.akt.caption = velkoro::text(8005, 7);
    take(selfil.form, "selfil");
    selfil.form.keeps_state = false;
    for (control* list : {&selwp.routen_m, &selrou.routen_m}) {
        list->rows.columns = {{.heading = "Route", .width = 170},
                              {.heading = "Koordinaten", .stretch = true}};
        list->rows.rows = {{.cells = {"00: FELDBERG", "RINKEN - SEEBCK (9)"}},
                           {.marked = true, .cells = {"01: BELCHEN", "MULTEN - GIPFEL (6)"}}};
        list->rows.changed();
    }
    selwp.ausw_r.checked = selwp.ausw_rm.checked = true;
    selwp.gar_t.caption = "61 Waypoints, 1 Routen";
    selwp.gar_v.value = 12;
    selrou.com.caption = "MULTEN BELCHW GIPFEL";
    take(selwp.form, "selwp");
    take(selrou.form, "selrou");
    for (window* w :
         {&such.form, &einfüg_q.form, &Garmin_prop.form, &selfil.form, &selwp.form, &selrou.form}) {
        for (control* c : w->controls)
            static_cast<look&>(*c) = c->design;
        w->shown = false;
        platform.show(*w);
    }
    einfüg_q.form.keeps_state = selwp.form.keeps_state = selrou.form.keeps_state = false;
    for (window* w : {&op.form, &op2.form, &sellang.form}) {
        w->shown = w->keeps_state = false;
        platform.show(*w);
    }
    op2.form.keeps_state = true;
}

std::string picture_name(const testing::TestParamInfo<std::tuple<int, bool>>& i)
{
    return std::string(std::get<0>(i.param) == 0 ? "English" : "German") +
           (std::get<1>(i.param) ? "Dark" : "Light");
}

INSTANTIATE_TEST_SUITE_P(LanguagesAndThemes, Pictures,
                         testing::Combine(testing::Values(0, 1), testing::Bool()), picture_name);

/// The windows that live on data, over the sample library.
class ProgramPictures : public ProgramTest,
                        public testing::WithParamInterface<std::tuple<int, bool>> {
protected:
    static QPixmap take(const window& w, const QString& what)
    {
        QCoreApplication::processEvents();
        const auto& [language, dark] = GetParam();
        return save_picture(*widget_of(w), what, dark, language);
    }
};

TEST_P(ProgramPictures, OfTheListAndTheEditor)
{
    const auto& [language, dark] = GetParam();
    home->put("velkoro.ini", "[Main]\r\nLang3=" + std::to_string(language) +
                                 "\r\nTheme=" + (dark ? "dark" : "light") + "\r\n");
    settings.overrides.clear();
    ASSERT_TRUE(start());
    EXPECT_TRUE(wait_for([] { return !Form1.anz.caption.empty(); }));
    EXPECT_EQ(take(Form1.form, QStringLiteral("Form1-empty")).toImage().pixelColor(2, 2),
              own_palette(dark).color(QPalette::Window));
    drop({file("Waypoints/sample.wp")});
    EXPECT_TRUE(wait_for([] { return store.wp_top == 84; }));
    for (const int row : {3, 4, 7, 12, 13})
        click_row(row, row == 3 ? Qt::NoModifier : Qt::ControlModifier);
    list().scrollToTop();
    EXPECT_TRUE(wait_for([] { return Form1.anz.caption == "5 / 85"; }));
    EXPECT_GE(take(Form1.form, QStringLiteral("Form1")).width(), 1000);

    int editors = 0;
    QTimer user;
    QObject::connect(&user, &QTimer::timeout, [&] {
        if (QApplication::activeModalWidget() != widget_of(WAYPOINT.form))
            return;
        if (QApplication::focusWidget() != widget_of(WAYPOINT.nam))
            return;
        const QString what =
            editors++ == 0 ? QStringLiteral("WAYPOINT") : QStringLiteral("WAYPOINT-new");
        const QPixmap picture = take(WAYPOINT.form, what);
        EXPECT_LE(picture.width() / picture.devicePixelRatio(), 900);
        close_window(WAYPOINT.form);
        binder_flush();
    });
    user.start(20);
    QTimer::singleShot(10000, &user, [&] {
        user.stop();
        close_window(WAYPOINT.form); // the field never got the focus
    });
    Form1.Edit_w[1].click();
    Form1.posform.selected = 3; // a grid with zones
    Form1.posform.change();
    Form1.Edit_w[0].click();
    EXPECT_EQ(editors, 2);
}

INSTANTIATE_TEST_SUITE_P(LanguagesAndThemes, ProgramPictures,
                         testing::Combine(testing::Values(0, 1), testing::Bool()), picture_name);

} // namespace
} // namespace velkoro::test
