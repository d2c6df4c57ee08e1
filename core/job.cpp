#include "core/job.h"

#include "core/num_text.h"
#include "core/platform.h"
#include "core/texts.h"
#include "core/trap.h"

#include <algorithm>

namespace velkoro {
namespace {

constexpr double pump_every_s = 0.5;   // texts that change faster cannot be read
constexpr double clock_every_s = 0.02; // a clock reading as often as this is enough to notice that
constexpr int most_calls_unread = 256;

void cancel_job()
{
    if (!job.op_cancel)
        op.anz.caption = text(2360);
    job.op_cancel = true;
}

void run_code(const std::string& code)
try {
    const auto it = job.jobs.find(code);
    if (it == job.jobs.end() || !it->second)
        return;
    // The table may change while the job pumps.
    const std::function<void()> work = it->second;
    work();
} catch (const batch_cancelled&) {
    // The job stops with what it has done; its report says the rest.
} catch (...) {
    trap("op_activate");
}

void op_activate()
{
    run_code(job.code);
    if (job.ended)
        job.ended();
    op.form.shown = false;
}

} // namespace

op_window op;
op2_window op2;

op_window::op_window()
{
    form.no_close = true;
    form.activate = op_activate;
    // Escape and the desktop's own ways of closing mean Cancel: the job ends the window.
    form.query_close = [] {
        cancel_job();
        return false;
    };
    Abbr.click = cancel_job;
}

op2_window::op2_window()
{
    form.keeps_state = true; // the job has written the texts before the window opens
    OK.click = [] { close_window(op2.form); };
}

void run_job(const std::string& code)
{
    if (!job.code.empty()) { // called from within a job: a part of it, under the same window
        run_code(code);
        return;
    }
    job.code = code;
    job.op_cancel = false;
    op_restart();
    op2.anz.caption.clear();
    op2.anz2.caption.clear();
    try {
        run_window(op.form);
    } catch (...) {
        trap("run_job");
    }
    job.code.clear();
    if (!op2.anz.caption.empty() || !op2.anz2.caption.empty())
        run_window(op2.form);
}

void op_progress(double fraction)
{
    op.ring.value =
        fraction >= 0 ? to_i32(std::min(fraction, 1.0) * 1000.0) : -1; // not-a-number is unknown
}

void op_restart()
{
    job.last_pump = job.last_look = platform.ticks();
    job.calls = job.calls_to_look = 0;
}

bool op_due()
{
    if (++job.calls < job.calls_to_look)
        return false;
    const double now = platform.ticks();
    // Fast records are counted, slow ones are timed one by one.
    const double spent = now - job.last_look;
    const double calls = std::max(job.calls, 1);
    job.calls_to_look =
        spent > 0 ? static_cast<int>(std::clamp(calls * clock_every_s / spent, 1.0,
                                                std::min(2 * calls, double{most_calls_unread})))
                  : std::min(2 * job.calls, most_calls_unread);
    job.calls = 0;
    job.last_look = now;
    if (now - job.last_pump < pump_every_s)
        return false;
    job.last_pump = now;
    return true;
}

bool op_pump()
{
    platform.pump(0);
    return !job.op_cancel;
}

} // namespace velkoro
