#include "core/info.h"

#include "core/log.h"
#include "core/texts.h"

namespace velkoro {
namespace {

void show_texts()
{
    info.anz.caption = text(7320, VELKORO_VERSION);
    info.log_anz.caption = log_book.log_on ? text(7916) : std::string{};
}

} // namespace

info_window info;

info_window::info_window()
{
    form.load = [] { info.form.focus = &info.OK; };
    form.translated = show_texts;
    Bild.click = [] {
        log_open();
        show_texts();
    };
    OK.click = [] { close_window(info.form); };
}

} // namespace velkoro
