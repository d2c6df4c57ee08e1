// Frames of the list of a large library, painted by the toolkit without a display: scrolled by the
// wheel and by whole pages, and one row shown anew.
#include "app/compose.h"
#include "core/form1.h"
#include "core/reset.h"
#include "core/settings.h"
#include "core/texts.h"
#include "ui/binder.h"
#include "ui/look.h"
#include "ui/qt_platform.h"
#include "waypoints/list.h"

#include <QApplication>
#include <QScrollBar>
#include <QTreeView>

#include <benchmark/benchmark.h>

#include <random>
#include <string>

using namespace velkoro;

namespace {

constexpr int library_size = 32000;

QTreeView* open_library()
{
    static QTreeView* view = nullptr;
    if (view)
        return view;
    text_table.languages = {"none"};
    text_table.loaded = text_table.language = 0;
    text_table.texts.assign(10000, "#");
    Form1.posform.items = {"hddd.ddddd", "hddd mm.mmm", "hddd mm ss.s"};
    Form1.posform.selected = 1;
    std::mt19937 random(1);
    for (int i = 0; i < library_size; ++i)
        store.wp.push_back({.nam = "W" + std::to_string(i),
                            .kom = "Huette am Weg Nummer " + std::to_string(random() % 5000),
                            .pos = {static_cast<std::int32_t>(550000000 + random() % 100000000),
                                    static_cast<std::int32_t>(70000000 + random() % 150000000)},
                            .dat = static_cast<std::int32_t>(random() % 1100000000),
                            .prox = static_cast<std::int16_t>(random() % 100),
                            .alt = static_cast<std::int16_t>(random() % 3000)});
    store.wp_top = library_size - 1;
    list_refill();
    Form1.form.keeps_state = true;
    open_window(Form1.form);
    widget_of(Form1.form)->resize(1120, 720);
    QCoreApplication::processEvents();
    view = dynamic_cast<QTreeView*>(widget_of(Form1.Waypl2));
    return view;
}

void scroll(benchmark::State& state)
{
    QTreeView* view = open_library();
    QScrollBar* bar = view->verticalScrollBar();
    const int step = state.range(0) == 0 ? 60 : bar->pageStep();
    for (auto _ : state) {
        bar->setValue(bar->value() + step < bar->maximum() ? bar->value() + step : 0);
        view->viewport()->repaint();
    }
}
BENCHMARK(scroll)->ArgName("pages")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// A changed waypoint on the screen: told to the list, flushed, painted.
void one_row_shown(benchmark::State& state)
{
    const QTreeView* view = open_library();
    for (auto _ : state) {
        row_refresh(5, false);
        binder_flush();
        view->viewport()->repaint();
    }
}
BENCHMARK(one_row_shown)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    look_install(app, false);
    reset_all();
    qt_platform_install("/nowhere/velkoro-bench");
    compose();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    qt_platform_remove();
    return 0;
}
