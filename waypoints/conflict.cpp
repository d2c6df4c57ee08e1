#include "waypoints/conflict.h"

#include "core/num_text.h"
#include "core/platform.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"
#include "core/wayp_insert.h"
#include "waypoints/row_text.h"

#include <algorithm>

namespace velkoro {
namespace {

constexpr std::size_t comment_columns = 60; // characters of a line, unless the line above is longer
constexpr std::size_t comment_lines = 4;

// Summaries
// ----------------------------------------------------------------------------------------------

std::string padded_left(const std::string& text, std::size_t width)
{
    return std::string(width - std::min(width, text.size()), ' ') + text;
}

/// The comment in lines of a width, broken at blanks where there are any; a long one is cut.
std::string broken_comment(std::string_view comment, std::size_t width)
{
    std::string out = "/";
    comment = trim(comment);
    for (std::size_t line = 0; !comment.empty(); ++line) {
        if (line == comment_lines)
            return out + " ...";
        std::size_t n = comment.size();
        if (n > width) {
            const std::size_t blank = comment.rfind(' ', width);
            n = blank == std::string_view::npos || blank == 0 ? width : blank;
        }
        out.append(line == 0 ? " " : "\n  ").append(trim_right(comment.substr(0, n)));
        comment = trim_left(comment.substr(n));
    }
    return out;
}

// The window's life
// ----------------------------------------------------------------------------------------------

/// The question that the window asks; forgotten however the window ends.
struct standing_question {
    explicit standing_question(conflict_question& q)
    {
        conflicts.question = &q;
        conflicts.answered = false;
    }
    ~standing_question() { conflicts.question = nullptr; }
    standing_question(const standing_question&) = delete;
    standing_question& operator=(const standing_question&) = delete;
};

int chosen_option()
{
    for (const int n : {sel_both, sel_old, sel_new})
        if (einfüg_q.wp_sel[n].checked)
            return n;
    return sel_old;
}

/// The fields of an option are open while it is chosen.
void show_choice()
{
    einfüg_q_window& w = einfüg_q;
    for (control* c : {&w.neunam, &w.Bezeichnung2, &w.kom})
        c->enabled = w.wp_sel[sel_both].checked;
}

void choose(int option)
{
    for (const int n : {sel_both, sel_old, sel_new})
        einfüg_q.wp_sel[n].checked = n == option;
    show_choice();
}

/// Behind the caption, so that two records that met by their position can be told apart. A name has
/// no access letter.
std::string named(const std::string& caption, const std::string& nam)
{
    std::string out = caption + " ";
    for (const char c : nam)
        out.append(c == '&' ? 2 : 1, c);
    return out;
}

std::string proposal(const conflict_question& q, std::string nam, std::string_view kom)
{
    name_unique(nam, kom, q.skip_index);
    return nam;
}

void load()
{
    if (!conflicts.question)
        return;
    einfüg_q_window& w = einfüg_q;
    const conflict_question& q = *conflicts.question;
    const wayp_rec& rec = *q.incoming;
    const wayp_rec& old = store.wp[static_cast<std::size_t>(q.old_index)];

    w.entf.caption = pic(hooks.distance(rec.pos, old.pos), "#0.00") + " " + distance_unit();
    conflict_summary both = conflict_summaries(old, rec);
    w.beschr_a.caption = std::move(both.old_text);
    w.beschr_n.caption = std::move(both.new_text);
    w.wp_sel[sel_old].caption = named(w.wp_sel[sel_old].caption, old.nam);
    w.wp_sel[sel_new].caption = named(w.wp_sel[sel_new].caption, rec.nam);
    w.neunam.text = proposal(q, rec.nam, rec.kom);
    w.kom.text = rec.kom;

    for (control* c : {&w.ohne, &w.Abbr, &w.wp_sel[sel_new], &w.beschr_n})
        c->visible = !q.silent;
    const bool hidden = q.silent && conflicts.option == sel_new;
    const int option = hidden ? sel_both : conflicts.option;
    choose(option);
    w.form.focus = option == sel_both ? &w.neunam : &w.wp_sel[option];
}

void type_name()
{
    einfüg_q.neunam.text = name_typed(einfüg_q.neunam.text);
}

void warn_of_long_name()
{
    if (batch.open && batch.warned_long)
        return;
    batch.warned_long = batch.open;
    say(2035, buttons::ok, icon::exclamation, std::to_string(store.wp_name_max));
}

/// Takes the user's name and comment into the incoming record. False: they do not serve, the window
/// stays with a name that does.
bool take_names(const conflict_question& q)
{
    einfüg_q_window& w = einfüg_q;
    std::string nam = name_clean(w.neunam.text, 0);
    std::string kom = w.kom.text;
    if (nam.empty()) {
        say(736);
        w.neunam.text = proposal(q, q.incoming->nam, kom);
        w.form.focus = &w.neunam;
        return false;
    }
    if (name_cut(nam, kom))
        warn_of_long_name();
    const std::string free = proposal(q, nam, kom);
    if (free != nam) {
        say(735, buttons::ok, icon::exclamation, nam, free);
        w.neunam.text = free;
        w.kom.text = kom;
        w.form.focus = &w.neunam;
        return false;
    }
    q.incoming->nam = std::move(nam);
    q.incoming->kom = std::move(kom);
    return true;
}

void confirm()
try {
    const int option = chosen_option();
    if (conflicts.question) {
        if (option == sel_both && !take_names(*conflicts.question))
            return;
        conflicts.option = option;
        conflicts.answered = true;
    }
    close_window(einfüg_q.form);
} catch (...) {
    trap("einfüg_q_OK");
}

} // namespace

einfüg_q_window einfüg_q;

einfüg_q_window::einfüg_q_window()
{
    form.load = load;
    form.translated = [] {
        einfüg_q.beschr_a.tooltip = text(738);
        einfüg_q.beschr_n.tooltip = text(739);
    };
    for (control& option : wp_sel)
        option.click = show_choice;
    neunam.change = type_name;
    OK.click = confirm;
    Abbr.click = [] { close_window(einfüg_q.form); };
}

conflict_answer conflict_ask(conflict_question& question)
{
    if (!question.incoming || question.old_index < 0 || question.old_index > store.wp_top)
        return conflict_answer::keep_old;
    if (conflicts.question)
        return conflict_answer::cancel_batch;
    const standing_question stands(question);
    run_window(einfüg_q.form);
    if (!conflicts.answered)
        return question.silent ? conflict_answer::keep_old : conflict_answer::cancel_batch;
    question.remember = einfüg_q.ohne.checked && !question.silent;
    switch (conflicts.option) {
    case sel_both: return conflict_answer::keep_both;
    case sel_new: return conflict_answer::take_new;
    default: return conflict_answer::keep_old;
    }
}

conflict_summary conflict_summaries(const wayp_rec& old_rec, const wayp_rec& new_rec)
{
    std::string out[2];
    const wayp_rec* const records[2] = {&old_rec, &new_rec};
    const auto column = [&](list_col c, std::string_view ahead, bool right) {
        const std::string cell[2] = {wp_shown_text(*records[0], c), wp_shown_text(*records[1], c)};
        const std::size_t width = std::max(cell[0].size(), cell[1].size());
        if (width == 0)
            return;
        for (const std::size_t i : {0U, 1U})
            out[i].append(ahead).append(right ? padded_left(cell[i], width)
                                              : fixed_text(cell[i], width));
    };
    column(list_col::altitude, "", true);
    column(list_col::proximity, " / Prox ", false);
    column(list_col::symbol, "  ", false);
    column(list_col::variable, "  ", false); // the date
    column(list_col::position, ": ", false);
    const std::size_t width = std::max({out[0].size(), out[1].size(), comment_columns}) - 2;
    for (const std::size_t i : {0U, 1U})
        out[i] = std::string(trim_right(out[i])) + "\n" + broken_comment(records[i]->kom, width);
    return {std::move(out[0]), std::move(out[1])};
}

void conflict_install()
{
    conflicts = {};
    hooks.conflict_ask = conflict_ask;
}

} // namespace velkoro
