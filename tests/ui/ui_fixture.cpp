#include "tests/ui/ui_fixture.h"

#include "core/files.h"
#include "core/job.h"
#include "core/sellang.h"
#include "core/settings.h"
#include "core/texts.h"
#include "ui/look.h"
#include "ui/qt_platform.h"

#include <QCoreApplication>
#include <QDir>

#include <unistd.h>

namespace velkoro::test {

void load_texts(int language)
{
    static const res_table table = res_decode(
        res_build(read_file(VELKORO_SOURCE_DIR "/data/velkoro.txt").value_or(std::string())));
    text_table = {};
    for (const auto& [number, columns] : table.rows) {
        const auto n = static_cast<std::size_t>(number);
        if (text_table.texts.size() <= n)
            text_table.texts.resize(n + 1);
        std::string& t = text_table.texts[n] = columns.at(static_cast<std::size_t>(language));
        for (auto at = t.find("\\n"); at != std::string::npos; at = t.find("\\n", at))
            t.replace(at, 2, "\n"); // as the loader of the program does
    }
    text_table.languages = {"English", "Deutsch"};
    text_table.language = text_table.loaded = language;
}

void reset_window(window& w)
{
    static_cast<look&>(w) = w.design;
    w.shown = w.modal = w.modified = w.maximised = w.keeps_state = false;
    w.translated = nullptr;
    w.left = w.top = w.width = w.height = -1;
    w.focus = nullptr;
    w.load = w.activate = w.closed = nullptr;
    w.query_close = nullptr;
    for (control* c : w.controls) {
        static_cast<look&>(*c) = c->design;
        c->rows = {};
        c->click = c->change = c->tick = c->right_click = nullptr;
        c->row_click = c->row_open = c->header_click = nullptr;
        c->label_edited = nullptr;
        c->key = nullptr;
        c->files_dropped = nullptr;
    }
}

QPixmap save_picture(QWidget& w, const QString& what, bool dark, int language)
{
    const QString folder =
        qEnvironmentVariable("VELKORO_PICTURES", QStringLiteral(VELKORO_BINARY_DIR "/pictures"));
    QDir().mkpath(folder);
    const QPixmap picture = w.grab();
    EXPECT_TRUE(
        picture.save(QStringLiteral("%1/%2-%3-%4-%5x.png")
                         .arg(folder, what, dark ? QStringLiteral("dark") : QStringLiteral("light"),
                              language == 0 ? QStringLiteral("en") : QStringLiteral("de"))
                         .arg(qRound(picture.devicePixelRatio()))))
        << what.toStdString();
    return picture;
}

void UiTest::SetUp()
{
    platform = {};
    settings = {};
    Form1.prof.clear();
    Form1.m_lang_sel.clear();
    reset_window(Form1.form);
    Form1.form.keeps_state = true;
    Form1.wayp_big_timer.enabled = false;
    load_texts(1);
    qt_platform_install((QDir::tempPath() + QStringLiteral("/velkoro-test-")).toStdString() +
                        std::to_string(getpid()));
    settings.overrides[{"main", "theme"}] = "light";
}

void UiTest::TearDown()
{
    qt_platform_remove();
    look_set_theme(theme::light);
}

void UiTest::fill_rows(int count)
{
    row_list& r = Form1.Waypl2.rows;
    r.columns = {{.heading = "Name", .width = 100},
                 {.heading = "Text", .width = 180, .stretch = true},
                 {.heading = "Symb", .width = 120},
                 {.heading = "Prox", .width = 60, .right = true}};
    r.rows.clear();
    for (int i = 0; i < count; ++i)
        r.rows.push_back({.data = i});
    r.cell = [](int row, int column) {
        return column == 0 ? "W" + std::to_string(row) : std::string(column == 3 ? "-.-" : "text");
    };
    r.glyph = [](int row, int column) {
        return std::string(column == 2 && row % 3 == 0 ? "g_mountain" : "");
    };
    r.dim = [](int, int column) { return column == 3; };
    r.changed();
}

void UiTest::open_main()
{
    open_window(Form1.form);
    QCoreApplication::processEvents();
}

} // namespace velkoro::test
