#include "core/sellang.h"

#include "core/shell.h"
#include "core/texts.h"
#include "core/trap.h"

#include <algorithm>

namespace velkoro {
namespace {

void sellang_load()
{
    row_list& rows = sellang.sprachen.rows;
    rows.columns = {{.heading = {}, .width = 200, .stretch = true}};
    rows.rows.clear();
    for (std::size_t n = 0; n < text_table.languages.size(); ++n)
        rows.rows.push_back(
            {.data = static_cast<std::int32_t>(n), .cells = {text_table.languages[n]}});
    const int last = static_cast<int>(rows.rows.size()) - 1;
    rows.current = std::min(text_table.language, last);
    rows.show_row = rows.current;
    rows.changed();
    sellang.OKButton.enabled = rows.current >= 0;
    sellang.form.focus = &sellang.sprachen;
}

void choose()
try {
    const row_list& rows = sellang.sprachen.rows;
    if (rows.current >= 0 && rows.current < static_cast<int>(rows.rows.size()))
        language_select(rows.rows[static_cast<std::size_t>(rows.current)].data);
    close_window(sellang.form);
} catch (...) {
    trap("sellang_OK");
}

} // namespace

sellang_window sellang;

sellang_window::sellang_window()
{
    form.load = sellang_load;
    sprachen.row_click = [](int row) { sellang.sprachen.rows.current = row; };
    sprachen.row_open = [](int row) {
        sellang.sprachen.rows.current = row;
        choose();
    };
    OKButton.click = choose;
}

} // namespace velkoro
