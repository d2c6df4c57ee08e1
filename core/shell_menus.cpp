#include "core/shell_parts.h"

#include "core/form1.h"
#include "core/help_pages.h"
#include "core/hooks.h"
#include "core/info.h"
#include "core/platform.h"
#include "core/settings.h"
#include "core/shell.h"
#include "core/texts.h"
#include "core/trap.h"

#include <algorithm>
#include <string>

namespace velkoro {
namespace {

using entry_list = std::vector<std::unique_ptr<control>>;

// Makes the entries of a menu whose number changes at run time. Entries that stay keep their
// record: one of them may be the one whose handler is running.
void set_entries(entry_list& entries, control& menu, const char* name,
                 const std::vector<std::string>& captions, const std::string& tooltip,
                 void (*chosen)(int), const control* ahead)
{
    while (entries.size() > captions.size())
        entries.pop_back();
    while (entries.size() < captions.size()) {
        const int n = static_cast<int>(entries.size());
        entries.push_back(std::make_unique<control>(Form1.form, menu, name, look{}, n));
        entries.back()->click = [chosen, n] { chosen(n); };
        std::vector<control*>& all = Form1.form.controls;
        const auto place = std::ranges::find(all, ahead);
        if (place != all.end()) // the order of the controls is that of the menu
            std::rotate(place, all.end() - 1, all.end());
    }
    for (std::size_t n = 0; n < entries.size(); ++n) {
        entries[n]->caption = captions[n];
        entries[n]->tooltip = tooltip;
    }
}

// A name in a menu: its "&" are no access letters.
std::string as_caption(const std::string& name)
{
    std::string out;
    for (const char c : name)
        out += c == '&' ? std::string("&&") : std::string(1, c);
    return out;
}

void language_click(int n)
try {
    language_select(n);
} catch (...) {
    trap("m_lang_sel");
}

void profile_leaving()
{
    for (std::size_t i = 0; i < shell.profile_out.size(); ++i)
        shell.profile_out[i].run();
    columns_write();
}

// Everything on show follows the profile just read.
void profile_entered()
{
    profile_menu();
    columns_read();
    hooks.units_changed();
    hooks.row_changed(-1, false);
    for (std::size_t i = 0; i < shell.profile_in.size(); ++i)
        shell.profile_in[i].run();
    shell_show_state();
}

void prof_click(int n)
try {
    profile_switch(n);
} catch (...) {
    trap("prof");
}

void prof_neu_click()
try {
    profile_new();
} catch (...) {
    trap("prof_neu");
}

void prof_lösch_click()
try {
    profile_delete();
} catch (...) {
    trap("prof_lösch");
}

void backup_click()
try {
    settings.backup_on = !settings.backup_on;
    settings_write();
    settings_show();
} catch (...) {
    trap("backup");
}

void back_b_click()
try {
    settings.back_blue = !settings.back_blue;
    settings.list_back = settings.back_blue ? list_back_blue : own_colour;
    settings_write();
    settings_show();
    translate_all(); // carries the colour to every window
} catch (...) {
    trap("back_b");
}

void hilf_click(int n)
try {
    if (n == 2)
        run_window(info.form);
    else
        platform.help(n == 0 ? "index" : "news");
} catch (...) {
    trap("hilf");
}

} // namespace

void shell_menu_handlers()
{
    hooks.profile_leaving = profile_leaving;
    hooks.profile_entered = profile_entered;
    Form1.form.translated = shell_fill_texts;
    Form1.backup.click = backup_click;
    Form1.back_b.click = back_b_click;
    Form1.prof_neu.click = prof_neu_click;
    Form1.prof_lösch.click = prof_lösch_click;
    for (int n = 0; n < 3; ++n)
        Form1.hilf[n].click = [n] { hilf_click(n); };
}

void language_select(int language)
{
    settings.lang = text_table.language = language;
    ini_put("Main", "Lang3", std::to_string(language));
    texts_load();
    language_menu();
    translate_all();
    profile_menu();
    shell_show_state();
    hooks.language_changed();
}

void language_menu()
{
    std::vector<std::string> captions;
    for (const std::string& name : text_table.languages)
        captions.push_back(as_caption(name));
    const auto chosen = static_cast<std::size_t>(text_table.language);
    if (chosen < captions.size())
        captions[chosen] = text(11); // with the access letter that the language's authors gave it
    set_entries(Form1.m_lang_sel, Form1.m_lang, "m_lang_sel", captions, text(7942), language_click,
                nullptr);
    for (std::size_t n = 0; n < Form1.m_lang_sel.size(); ++n)
        Form1.m_lang_sel[n]->checked = n == chosen;
}

void profile_menu()
{
    const std::vector<std::string> names = profile_names();
    std::vector<std::string> captions;
    for (const std::string& name : names)
        captions.push_back(as_caption(name));
    set_entries(Form1.prof, Form1.pr, "prof", captions, text(7943), prof_click, &Form1.pr_s1);
    for (std::size_t n = 0; n < names.size(); ++n)
        Form1.prof[n]->checked = names[n] == settings.profile;
    Form1.prof_lösch.enabled = profile_deletable();
}

void shell_fill_texts()
{
    Form1.sort.items.clear();
    for (int n = 0; n < sort_entries; ++n)
        Form1.sort.items.push_back(text(sort_first_text + n));
    if (Form1.sort.selected < 0)
        Form1.sort.selected = 0;
    const bool help = !help_folder().empty();
    Form1.hilf[0].enabled = Form1.hilf[1].enabled = help;
}

} // namespace velkoro
