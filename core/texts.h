/// The numbered text table: every visible text is fetched by number from velkoro.res, one column
/// per language, and windows are translated by the numbers in their tags.
/// velkoro.rep, a text of "from<TAB>to" lines, lets users put their own words in place. The two
/// characters "\n" of a text in the table are a line break here.
#pragma once

#include "core/platform.h"
#include "core/res_file.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velkoro {

struct window;

struct text_state {
    std::vector<std::string> texts{}; ///< by number; empty slot: missing
    std::vector<std::string> languages{};
    std::vector<std::pair<std::string, std::string>> replacements{}; ///< from velkoro.rep
    int language = 0;                                                ///< active column
    int loaded = -1;                                                 ///< column in memory, -1 none
    bool generator = false;  ///< missing texts are shown in a box too
    bool regenerate = false; ///< the command line was "$$$res_gen$$$": see texts_regenerate
};
inline text_state text_table;
inline constexpr const char* res_gen_command = "$$$res_gen$$$";

/// The text of a number in the active language, its marks "#" replaced by the parameters in order.
/// A parameter "#" leaves its mark. A number below 1 gives an empty text, an unknown one "Missing
/// text " and the number (12 alone may be empty). Loads the table on first use and when
/// text_table.language is not the loaded one.
std::string text(int number, std::string_view p1 = "#", std::string_view p2 = "#",
                 std::string_view p3 = "#");
std::string text(int number, long long p1);
std::string text(int number, long long p1, long long p2);

/// Shows a numbered text and returns the answer.
answer say(int number, enum buttons b = buttons::ok, enum icon i = icon::exclamation,
           std::string_view p1 = "#", std::string_view p2 = "#", std::string_view p3 = "#");

/// Loads velkoro.res and velkoro.rep of the program folder for text_table.language, which becomes 0
/// when the table has no such column; an empty field gives that of the first language. Messages
/// tell of a missing or wrong table and of numbers that stand twice (the last one wins).
void texts_load();

/// Builds velkoro.res anew from velkoro.txt when that is newer, after a question.
void texts_regenerate();

/// Translates a window from its tags and those of its controls, then runs its `translated`. A tag
/// is "n" or "n m", the numbers of caption and tool tip; "0 m" has a tool tip alone. Gives the
/// window the list's background, unless it has a colour of its own. All windows but Form1 lose the
/// "&" of their captions, as they have no access letters.
void translate_form(window& w);
/// Translates every window.
void translate_all();

} // namespace velkoro
