#include "cli/messages.h"

#include "cli/command.h"
#include "cli/marks.h"
#include "core/code_page.h"
#include "core/job.h"
#include "core/platform.h"
#include "core/poll_watch.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace velkoro {
namespace {

constexpr double redraw_every_s = 0.1; // a transfer pumps at every packet

struct progress_state {
    bool on_terminal = false;
    bool visible = false;
    double begin = -1; ///< ticks of the first progress point, -1 no job yet
    double drawn = -1; ///< ticks when the bar was last drawn
};
progress_state progress;

/// A box's text as one line.
std::string one_line(std::string_view text)
{
    std::string line;
    for (const char c : text) {
        if (c == '\r')
            continue;
        line += c == '\n' ? ' ' : c;
    }
    return line;
}

void print_error(const std::string& utf8_line)
{
    end_progress();
    std::fprintf(stderr, "%s\n", utf8_line.c_str());
}

answer answer_of_options(enum buttons b)
{
    switch (b) {
    case buttons::ok: return answer::ok;
    case buttons::ok_cancel: return cli.answer_yes ? answer::ok : answer::cancel;
    case buttons::yes_no:
    case buttons::yes_no_cancel: return cli.answer_yes ? answer::yes : answer::no;
    }
    return answer::ok;
}

answer show_message(const message_box& m)
{
    cli.messages.push_back({m.number, m.text});
    const std::string line = to_utf8(one_line(m.text));
    if (m.number > 0)
        print_error("[" + std::to_string(m.number) + "] " + line);
    else
        print_error("velkoro-cli: " + line);
    if (m.icon == icon::critical)
        cli.failed = true;
    return answer_of_options(m.buttons);
}

/// Draws the bar once a job has run for a second; a shorter one leaves the terminal alone.
void draw_progress()
{
    if (!progress.on_terminal)
        return;
    const double now = platform.ticks();
    if (progress.begin < 0)
        progress.begin = now;
    if (now - progress.begin < 1.0 || now - progress.drawn < redraw_every_s)
        return;
    progress.drawn = now;
    constexpr int width = 30;
    std::string bar(width, '-');
    int percent = -1;
    if (op.ring.value >= 0) {
        percent = std::clamp(op.ring.value / 10, 0, 100);
        std::fill_n(bar.begin(), percent * width / 100, '#');
    }
    const std::string text = to_utf8(one_line(op.anz.caption));
    std::fprintf(stderr, "\r\x1b[K[%s] ", bar.c_str());
    if (percent >= 0)
        std::fprintf(stderr, "%3d %% ", percent);
    std::fprintf(stderr, "%s", text.c_str());
    std::fflush(stderr);
    progress.visible = true;
}

} // namespace

void install_cli_platform()
{
    progress = {};
    progress.on_terminal = isatty(STDERR_FILENO) != 0;
    platform.message = show_message;
    poll_watch_install();
    platform.pump = [](int ms) {
        draw_progress();
        poll_serve(ms);
    };
    // A modal window has nobody to close it.
    platform.wait_closed = [](window& w) { w.shown = false; };
    hooks.conflict_ask = [](conflict_question&) { return cli.on_conflict; };
    install_cli_marks();
}

void cli_note(std::string_view text)
{
    print_error(to_utf8(one_line(text)));
}

int cli_fail(std::string_view reason)
{
    print_error("velkoro-cli: " + to_utf8(one_line(reason)));
    cli.failed = true;
    return exit_failed;
}

int cli_exit_code()
{
    return cli.failed ? exit_failed : exit_done;
}

void end_progress()
{
    if (progress.visible)
        std::fputs("\r\x1b[K", stderr);
    progress.visible = false;
    progress.begin = -1;
}

} // namespace velkoro
